#include "linux/Composition.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <openssl/crypto.h>

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string_view>
#include <utility>

#include "agent/AgentReport.h"
#include "base/FatalError.h"
#include "library/LibraryFile.h"
#include "linux/player/MpvPlayer.h"
#include "linux/toolkit/http/QtHTTPSession.h"
#include "linux/toolkit/http/QtImage.h"
#include "linux/toolkit/http/ServiceURL.h"
#include "linux/toolkit/tray/QtStatusItem.h"
#include "linux/toolkit/windows/InterfaceFiles.h"
#include "linux/toolkit/windows/Translations.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kSettingsPatience{300};

Composition* current = nullptr;

// `reason` comes to say why it is that one.
std::variant<std::unique_ptr<Renderer>, Composition::Failure> chooseRenderer(Desktop& desktop, std::string& reason) {
  const char* variable = std::getenv("QUILEX_RENDERER");
  const std::string_view forced = variable != nullptr ? variable : "";
  if (!forced.empty()) {
    reason = "QUILEX_RENDERER";
  }
  if (forced == "cpu") {
    return desktop.makeCpuRenderer();
  }
  if (forced == "gpu") {
    auto renderer = desktop.makeGpuRenderer(Rasteriser::any);
    if (renderer) {
      return *std::move(renderer);
    }
    return Composition::Failure{"QUILEX_RENDERER=gpu: this display has no EGL with OpenGL ES 3: " +
                                renderer.error().message};
  }
  if (!forced.empty()) {
    return Composition::Failure{"QUILEX_RENDERER must be gpu or cpu, not \"" + std::string(forced) + "\""};
  }
  auto renderer = desktop.makeGpuRenderer(Rasteriser::hardwareOnly);
  if (renderer) {
    return *std::move(renderer);
  }
  reason = renderer.error().message;
  return desktop.makeCpuRenderer();
}

std::optional<std::string> serviceEntry(const AppEnvironment& environment) {
  const auto entry = environment.informationDictionary.find("QuilexServiceURL");
  return entry != environment.informationDictionary.end() ? entry->second : std::nullopt;
}

/// Empty, so that every request fails, when the bundle names no address that may be asked.
std::string serviceURL(const AppEnvironment& environment) {
  const auto entry = serviceEntry(environment);
  const auto origin = entry ? serviceOrigin(*entry) : std::nullopt;
  if (!origin) {
    std::fprintf(stderr,
                 "quilexhelper: no guide, no updates: \"QuilexServiceURL\" in Info.json must be https://HOST, or http "
                 "for a loopback host%s\n",
                 entry ? (", not \"" + *entry + "\"").c_str() : "");
  }
  return origin.value_or("");
}

UniformRandom systemRandom() {
  auto device = std::make_shared<std::random_device>();
  return [device](std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(*device); };
}

}  // namespace

std::variant<std::unique_ptr<Composition>, Composition::Failure> Composition::make(std::unique_ptr<Desktop> desktop,
                                                                                   std::string backendReason,
                                                                                   std::function<void()> desktopLost) {
  Start start{std::move(desktop), std::move(backendReason), {}, std::make_unique<QtRunLoop>(), {}, {}};
  for (const auto& [suite, file] :
       {std::pair(&start.suites.shared, settingsFile()),
        std::pair(&start.suites.standardDefaults, configHome() / settings::kStandardDefaultsFile)}) {
    auto opened = JsonSettingsSuite::open(file, *start.loop);
    if (!opened) {
      return Failure{opened.error().message};
    }
    *suite = *std::move(opened);
  }
  auto renderer = chooseRenderer(*start.desktop, start.rendererReason);
  if (const auto* failure = std::get_if<Failure>(&renderer)) {
    return *failure;
  }
  start.renderer = std::get<std::unique_ptr<Renderer>>(std::move(renderer));
  start.desktop->start(std::move(desktopLost));
  return std::unique_ptr<Composition>(new Composition(std::move(start)));
}

Composition::Composition(Start start)
    : runLoop_(std::move(start.loop)),
      suites_(std::move(start.suites)),
      desktop_(std::move(start.desktop)),
      renderer_(*start.renderer),
      output_(std::move(start.renderer)),
      windows_(desktop_->makeWindowServer(output_, *runLoop_)) {
  current = this;
  installTranslations(QLocale::system().uiLanguages(), bundle_.path() / "translations");
  reportStart(start);
}

void Composition::reportStart(const Start& start) {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string(value != nullptr ? value : "");
  };
  report_.update([&](AgentStatus& status) {
    status.version = appInfo().displayVersion();
    status.processId = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    status.libraries = {
        {"Qt", qVersion()}, {"SQLite", SQLite::getLibVersion()}, {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)}};
    status.desktop = variable("XDG_CURRENT_DESKTOP");
    status.sessionType = variable("XDG_SESSION_TYPE");
    status.backend = desktop_->kind();
    status.backendReason = start.backendReason;
    status.gpu = renderer_.device();
    status.renderer = status.gpu.empty() ? "cpu" : "gpu";
    status.rendererReason = start.rendererReason;
    status.settingsFile = settingsFile();
    status.libraryFile = libraryFile(appInfo().urls().applicationSupport());
    status.serviceAddress = serviceEntry(bundle_.environment()).value_or("");
  });
  report_.setCount([this](AgentStatus& status) {
    status.framesShown = output_.framesShown();
    status.framesDropped = output_.framesDropped();
  });
  reportDisplays();
  reporting_.push_back(windows_->observeScreens([this] { reportDisplays(); }));
}

void Composition::reportDisplays() {
  report_.update([&](AgentStatus& status) { status.displays = desktop_->displays(); });
}

Composition::~Composition() {
  current = nullptr;
}

void Composition::writeSettings() {
  for (JsonSettingsSuite* suite : {suites_.shared.get(), suites_.standardDefaults.get()}) {
    if (const auto written = suite->writeNow(kSettingsPatience); !written) {
      std::fprintf(stderr, "%s\n", written.error().message.c_str());
    }
  }
}

Composition& Composition::instance() {
  if (current == nullptr) {
    fatalError("a shared instance was asked for before the start or after the end");
  }
  return *current;
}

const AppInfo& Composition::appInfo() {
  if (!info_) {
    info_ = std::make_unique<AppInfo>(bundle_.environment());
  }
  return *info_;
}

Preferences& Composition::preferences() {
  if (!settings_) {
    settings_ = std::make_unique<Preferences>(*suites_.shared, *runLoop_);
    std::ranges::move(reportSettings(*settings_, report_), std::back_inserter(reporting_));
  }
  return *settings_;
}

LocalVideoDBManager& Composition::library() {
  if (!videos_) {
    videos_ = std::make_unique<LocalVideoDBManager>(appInfo().urls().applicationSupport(),
                                                    bundle_.resource("Quilex", "db"), console_);
  }
  return *videos_;
}

VideoPlayerManager& Composition::videoPlayerManager() {
  if (!manager_) {
    manager_ = std::make_unique<VideoPlayerManager>(VideoPlayerManager::Services{
        preferences(), *suites_.standardDefaults, library(), fileFinder_, *windows_, notifications_, *runLoop_,
        console_, [this] { return std::make_unique<MpvPlayer>(output_, report_); }, systemRandom(), report_});
  }
  return *manager_;
}

StatusBarManager& Composition::statusBarManager() {
  if (!statusBar_) {
    const auto makeStatusItem = [this] {
      return std::make_unique<QtStatusItem>(bundle_, *runLoop_, desktop_->embeddingTray(), report_);
    };
    statusBar_ = std::make_unique<StatusBarManager>(
        StatusBarManager::Services{preferences(), videoPlayerManager(), *windows_, session_, makeStatusItem,
                                   localization(), appInfo().displayVersion(), [this] { checkUpdates(); }});
  }
  return *statusBar_;
}

WebModel& Composition::webModel() {
  if (!web_) {
    const auto makeSession = [this](const HTTPSessionConfiguration& configuration) {
      return std::make_unique<QtHTTPSession>(configuration, backgroundWork_, report_);
    };
    web_ = std::make_unique<WebModel>(WebModel::Services{
        *suites_.shared, *suites_.standardDefaults, *runLoop_, backgroundWork_, wallClock_, processNotifications_,
        makeSession, decodeQtImage, systemRandom(), serviceURL(bundle_.environment()), appInfo().version()});
  }
  return *web_;
}

LoadInterfaceFile Composition::interfaceFiles() {
  return [this](const std::string& name) { return loadInterfaceFile(bundle_, name); };
}

Localize Composition::localization() {
  return [](const char* english, const char* comment) {
    return QCoreApplication::translate("QuilexHelper", english, comment).toStdString();
  };
}

const AppInfo& AppInfo::shared() {
  return Composition::instance().appInfo();
}
Preferences& Preferences::shared() {
  return Composition::instance().preferences();
}
LocalVideoDBManager& LocalVideoDBManager::shared() {
  return Composition::instance().library();
}
VideoPlayerManager& VideoPlayerManager::shared() {
  return Composition::instance().videoPlayerManager();
}
StatusBarManager& StatusBarManager::shared() {
  return Composition::instance().statusBarManager();
}
WebModel& WebModel::shared() {
  return Composition::instance().webModel();
}

}  // namespace quilex
