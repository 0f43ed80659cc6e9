#include "linux/Composition.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <openssl/crypto.h>

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>
#include <utility>

#include "agent/AgentReport.h"
#include "base/FatalError.h"
#include "library/LibraryFile.h"
#include "linux/player/MpvPlayer.h"
#include "linux/session/dbus/PowerWatches.h"
#include "linux/session/dbus/SessionState.h"
#include "linux/session/programs/RunningPrograms.h"
#include "linux/toolkit/http/QtHTTPSession.h"
#include "linux/toolkit/http/QtImage.h"
#include "linux/toolkit/http/ServiceURL.h"
#include "linux/toolkit/language/Translations.h"
#include "linux/toolkit/tray/QtStatusItem.h"
#include "linux/toolkit/windows/InterfaceFiles.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kSettingsPatience{300};

Composition* current = nullptr;

// `reason` is set to why it is that renderer, if there was a choice.
Result<std::unique_ptr<Renderer>> chooseRenderer(Desktop& desktop, std::string& reason) {
  const char* variable = std::getenv("QUILEX_RENDERER");
  const std::string forced = variable != nullptr ? variable : "";
  if (forced.empty()) {
    auto renderer = desktop.makeGpuRenderer(Rasteriser::hardwareOnly);
    if (renderer) {
      return renderer;
    }
    reason = renderer.error().message;
    return desktop.makeCpuRenderer();
  }
  reason = "QUILEX_RENDERER";
  if (forced == "cpu") {
    return desktop.makeCpuRenderer();
  }
  if (forced != "gpu") {
    return failed("QUILEX_RENDERER must be gpu or cpu, not \"" + forced + "\"");
  }
  return desktop.makeGpuRenderer(Rasteriser::any).map_error([](const Failure& failure) {
    return Failure{"QUILEX_RENDERER=gpu: this display has no EGL with OpenGL ES 3: " + failure.message};
  });
}

std::optional<std::string> serviceEntry(const AppEnvironment& environment) {
  const auto entry = environment.informationDictionary.find("QuilexServiceURL");
  return entry != environment.informationDictionary.end() ? entry->second : std::nullopt;
}

/// Empty if the bundle names no acceptable address; then every request fails.
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

std::string localize(const char* english, const char* comment) {
  return QCoreApplication::translate("QuilexHelper", english, comment).toStdString();
}

UniformRandom systemRandom() {
  auto device = std::make_shared<std::random_device>();
  return [device](std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(*device); };
}

}  // namespace

/// What may be missing, so that the agent cannot start.
struct Composition::Foundation {
  Desktop& desktop;
  std::string backendReason;
  std::unique_ptr<QtRunLoop> runLoop;
  std::unique_ptr<JsonSettingsSuite> suite;
  std::unique_ptr<JsonSettingsSuite> standardDefaults;
  std::unique_ptr<Renderer> renderer;
  std::string rendererReason;
};

Result<std::unique_ptr<Composition>> Composition::make(Desktop& desktop, std::string backendReason,
                                                       std::function<void()> desktopLost) {
  Foundation foundation{desktop, std::move(backendReason), std::make_unique<QtRunLoop>(), {}, {}, {}, {}};
  auto suite = JsonSettingsSuite::open(settingsFile(), *foundation.runLoop);
  if (!suite) {
    return failed(suite.error());
  }
  foundation.suite = *std::move(suite);
  auto defaults = JsonSettingsSuite::open(configHome() / settings::kStandardDefaultsFile, *foundation.runLoop);
  if (!defaults) {
    return failed(defaults.error());
  }
  foundation.standardDefaults = *std::move(defaults);
  auto renderer = chooseRenderer(foundation.desktop, foundation.rendererReason);
  if (!renderer) {
    return failed(renderer.error());
  }
  foundation.renderer = *std::move(renderer);
  foundation.desktop.start(std::move(desktopLost));
  // Before anything looks a text up.
  installTranslations(QLocale::system().uiLanguages(), LinuxBundle::main().path() / "translations");
  return std::unique_ptr<Composition>(new Composition(std::move(foundation)));
}

// Building the parts writes the settings that are missing, opens the library and arms the timers, in this order. All
// that can be seen is for the delegate to launch.
Composition::Composition(Foundation&& foundation)
    : runLoop_(std::move(foundation.runLoop)),
      suite_(std::move(foundation.suite)),
      standardDefaults_(std::move(foundation.standardDefaults)),
      desktop_(foundation.desktop),
      renderer_(*foundation.renderer),
      output_(std::move(foundation.renderer)),
      windowServer_(desktop_.makeWindowServer(output_, *runLoop_)),
      library(appInfo.urls().applicationSupport(), bundle_.resource("Quilex", "db"), console_),
      videoPlayerManager({preferences, *standardDefaults_, library, fileFinder_, *windowServer_, notifications_,
                          *runLoop_, console_, [this] { return std::make_unique<MpvPlayer>(output_, report_); },
                          systemRandom(), report_}),
      standstill(*runLoop_, report_, [this](bool isHeld) { videoPlayerManager.setHeld(isHeld); }),
      pauseRules(preferences, standstill, pauseWatches()),
      statusBarManager({preferences, videoPlayerManager, *windowServer_, workspace_,
                        [this] { return makeStatusItem(); }, localize, appInfo.displayVersion(),
                        [this] { delegate.checkUpdates(AppDelegate::Check::manual); }}),
      webModel({*suite_, *standardDefaults_, *runLoop_, backgroundWork_, wallClock_, processNotifications_,
                [this](const HTTPSessionConfiguration& configuration) {
                  return std::make_unique<QtHTTPSession>(configuration, backgroundWork_, report_);
                },
                decodeQtImage, systemRandom(), serviceURL(bundle_.environment()), appInfo.version()}),
      delegate({preferences, videoPlayerManager, statusBarManager, webModel, workspace_, notifications_, *runLoop_,
                appInfo, [this](const std::string& name) { return loadInterfaceFile(bundle_, name); }, localize}) {
  current = this;
  reportStart(foundation);
  observations_ = reportSettings(preferences, report_);
  observations_.push_back(desktop_.observePlacement([this] { reportPlacement(); }));
  observations_.push_back(windowServer_->observeScreens([this] {
    reportDisplays();
    delegate.applicationDidChangeScreenParameters();
  }));
  observations_.push_back(windowServer_->observeOcclusion([this] { delegate.applicationDidChangeOcclusionState(); }));
  observations_.push_back(workspace_.observeResignActive([this] { delegate.applicationDidResignActive(); }));
  respectReasons();
}

void Composition::respectReasons() {
  const auto respect = [this](const StandstillReason& reason) { observations_.push_back(standstill.respect(reason)); };
  std::ranges::for_each(sessionStandstillReasons(), respect);
  std::ranges::for_each(desktop_.standstillReasons(), respect);
  respect({"no part of the wallpaper can be seen",
           [this](StandstillReason::Handler handler) { return windowServer_->observeUnseen(std::move(handler)); }});
}

PauseWatches Composition::pauseWatches() {
  const auto windows = [this](WindowExtent extent) {
    return [this, extent](StandstillReason::Handler handler) {
      return desktop_.watchWindows(extent, *runLoop_, std::move(handler));
    };
  };
  return {watchOnBattery,
          watchBelowCharge,
          watchPowerSaver,
          watchIdleSession,
          windows(WindowExtent::fullScreen),
          windows(WindowExtent::maximized),
          watchGames,
          [this](const std::vector<std::string>& names, StandstillReason::Handler handler) {
            return watchPrograms(names, backgroundWork_, *runLoop_, std::move(handler));
          }};
}

std::unique_ptr<StatusItem> Composition::makeStatusItem() {
  return std::make_unique<QtStatusItem>(bundle_, *runLoop_, desktop_.embeddingTray(), report_);
}

void Composition::reportStart(const Foundation& foundation) {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string(value != nullptr ? value : "");
  };
  report_.update([&](AgentStatus& status) {
    status.version = appInfo.displayVersion();
    status.processId = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    status.libraries = {
        {"Qt", qVersion()}, {"SQLite", SQLite::getLibVersion()}, {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)}};
    status.desktop = variable("XDG_CURRENT_DESKTOP");
    status.sessionType = variable("XDG_SESSION_TYPE");
    status.backend = desktop_.kind();
    status.backendReason = foundation.backendReason;
    status.gpu = renderer_.device();
    status.renderer = status.gpu.empty() ? "cpu" : "gpu";
    status.rendererReason = foundation.rendererReason;
    status.settingsFile = settingsFile();
    status.libraryFile = libraryFile(appInfo.urls().applicationSupport());
    status.serviceAddress = serviceEntry(bundle_.environment()).value_or("");
  });
  report_.setCount([this](AgentStatus& status) {
    status.framesShown = output_.framesShown();
    status.framesDropped = output_.framesDropped();
  });
  reportDisplays();
  reportPlacement();
}

void Composition::reportPlacement() {
  report_.update([&](AgentStatus& status) {
    status.placement = desktop_.placement();
    status.placementAdvice = desktop_.placementAdvice();
  });
}

void Composition::reportDisplays() {
  report_.update([&](AgentStatus& status) { status.displays = desktop_.displays(); });
}

Composition::~Composition() {
  current = nullptr;
}

void Composition::writeSettings() {
  for (JsonSettingsSuite* suite : {suite_.get(), standardDefaults_.get()}) {
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

const AppInfo& AppInfo::shared() {
  return Composition::instance().appInfo;
}
Preferences& Preferences::shared() {
  return Composition::instance().preferences;
}
LocalVideoDBManager& LocalVideoDBManager::shared() {
  return Composition::instance().library;
}
VideoPlayerManager& VideoPlayerManager::shared() {
  return Composition::instance().videoPlayerManager;
}
StatusBarManager& StatusBarManager::shared() {
  return Composition::instance().statusBarManager;
}
WebModel& WebModel::shared() {
  return Composition::instance().webModel;
}

}  // namespace quilex
