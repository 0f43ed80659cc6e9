#include "linux/Composition.h"

#include <QCoreApplication>
#include <QLocale>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>
#include <utility>

#include "app/FatalError.h"
#include "linux/mpv/MpvPlayer.h"
#include "linux/qt/InterfaceFiles.h"
#include "linux/qt/QtHTTPSession.h"
#include "linux/qt/QtImage.h"
#include "linux/qt/QtStatusItem.h"
#include "linux/qt/ServiceURL.h"
#include "linux/qt/Translations.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kSettingsPatience{300};

Composition* current = nullptr;

std::variant<std::unique_ptr<Renderer>, Composition::Failure> chooseRenderer(Desktop& desktop) {
  const char* variable = std::getenv("QUILEX_RENDERER");
  const std::string_view forced = variable != nullptr ? variable : "";
  if (forced == "cpu") {
    return desktop.makeCpuRenderer();
  }
  if (forced == "gpu") {
    if (auto renderer = desktop.makeGpuRenderer(Rasteriser::any)) {
      return renderer;
    }
    return Composition::Failure{"QUILEX_RENDERER=gpu: this display has no EGL with OpenGL ES 3"};
  }
  if (!forced.empty()) {
    return Composition::Failure{"QUILEX_RENDERER must be gpu or cpu, not \"" + std::string(forced) + "\""};
  }
  if (auto renderer = desktop.makeGpuRenderer(Rasteriser::hardwareOnly)) {
    return renderer;
  }
  return desktop.makeCpuRenderer();
}

/// Empty, so that every request fails, when the bundle names no address that may be asked.
std::string serviceURL(const AppEnvironment& environment) {
  const auto entry = environment.informationDictionary.find("QuilexServiceURL");
  const bool isText = entry != environment.informationDictionary.end() && entry->second;
  const auto origin = isText ? serviceOrigin(*entry->second) : std::nullopt;
  if (!origin) {
    std::fprintf(stderr,
                 "quilexhelper: no guide, no updates: \"QuilexServiceURL\" in Info.json must be https://HOST, or http "
                 "for a loopback host%s\n",
                 isText ? (", not \"" + *entry->second + "\"").c_str() : "");
  }
  return origin.value_or("");
}

UniformRandom systemRandom() {
  auto device = std::make_shared<std::random_device>();
  return [device](std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(*device); };
}

}  // namespace

std::variant<std::unique_ptr<Composition>, Composition::Failure> Composition::make(std::unique_ptr<Desktop> desktop,
                                                                                   std::function<void()> desktopLost) {
  auto loop = std::make_unique<QtRunLoop>();
  Suites suites;
  for (const auto& [suite, file] : {std::pair(&suites.shared, fs::path(AppInfo::groupIdentifier) / "settings.json"),
                                    std::pair(&suites.standardDefaults, fs::path(settings::kStandardDefaultsFile))}) {
    auto opened = JsonSettingsSuite::open(configHome() / file, *loop);
    if (const auto* error = std::get_if<JsonSettingsSuite::OpenError>(&opened)) {
      return Failure{error->message};
    }
    *suite = std::get<std::unique_ptr<JsonSettingsSuite>>(std::move(opened));
  }
  auto renderer = chooseRenderer(*desktop);
  if (const auto* failure = std::get_if<Failure>(&renderer)) {
    return *failure;
  }
  desktop->start(std::move(desktopLost));
  return std::unique_ptr<Composition>(new Composition(std::move(desktop), std::move(suites), std::move(loop),
                                                      std::get<std::unique_ptr<Renderer>>(std::move(renderer))));
}

Composition::Composition(std::unique_ptr<Desktop> openedDesktop, Suites openedSuites, std::unique_ptr<QtRunLoop> loop,
                         std::unique_ptr<Renderer> chosen)
    : runLoop(std::move(loop)),
      suites(std::move(openedSuites)),
      desktop(std::move(openedDesktop)),
      renderer(*chosen),
      output(std::move(chosen)),
      windows(desktop->makeWindowServer(output, renderer, *runLoop)) {
  current = this;
  installTranslations(QLocale::system().uiLanguages(), bundle.path() / "translations");
}

Composition::~Composition() {
  current = nullptr;
}

void Composition::writeSettings() {
  for (JsonSettingsSuite* suite : {suites.shared.get(), suites.standardDefaults.get()}) {
    if (const auto error = suite->writeNow(kSettingsPatience)) {
      std::fprintf(stderr, "%s\n", error->message.c_str());
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
  if (!info) {
    info = std::make_unique<AppInfo>(bundle.environment());
  }
  return *info;
}

Preferences& Composition::preferences() {
  if (!settings) {
    settings = std::make_unique<Preferences>(*suites.shared, *runLoop);
  }
  return *settings;
}

LocalVideoDBManager& Composition::library() {
  if (!videos) {
    videos = std::make_unique<LocalVideoDBManager>(appInfo().urls().applicationSupport(),
                                                   bundle.resource("Quilex", "db"), console);
  }
  return *videos;
}

VideoPlayerManager& Composition::videoPlayerManager() {
  if (!manager) {
    manager = std::make_unique<VideoPlayerManager>(VideoPlayerManager::Services{
        preferences(), *suites.standardDefaults, library(), fileFinder, *windows, notifications, *runLoop, console,
        [this] { return std::make_unique<MpvPlayer>(output); }, systemRandom()});
  }
  return *manager;
}

StatusBarManager& Composition::statusBarManager() {
  if (!statusBar) {
    const auto makeStatusItem = [this] {
      return std::make_unique<QtStatusItem>(bundle, *runLoop, desktop->embeddingTray());
    };
    statusBar = std::make_unique<StatusBarManager>(
        StatusBarManager::Services{preferences(), videoPlayerManager(), *windows, session, makeStatusItem,
                                   localization(), appInfo().displayVersion(), [this] { checkUpdates(); }});
  }
  return *statusBar;
}

WebModel& Composition::webModel() {
  if (!web) {
    const auto makeSession = [this](const HTTPSessionConfiguration& configuration) {
      return std::make_unique<QtHTTPSession>(configuration, backgroundWork);
    };
    web = std::make_unique<WebModel>(WebModel::Services{
        *suites.shared, *suites.standardDefaults, *runLoop, backgroundWork, wallClock, processNotifications,
        makeSession, decodeQtImage, systemRandom(), serviceURL(bundle.environment()), appInfo().version()});
  }
  return *web;
}

LoadInterfaceFile Composition::interfaceFiles() {
  return [this](const std::string& name) { return loadInterfaceFile(bundle, name); };
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
