#include <QApplication>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <variant>

#include "app/AppDelegate.h"
#include "linux/Composition.h"
#include "linux/dbus/DBusNotificationCenter.h"
#include "linux/qt/TerminationSignals.h"

namespace {

using quilex::Composition;

// The toolkit ends the process by itself when it is the first to see that the desktop is gone; the main application is
// told even then, and once.
quilex::AppDelegate* delegateToTell = nullptr;

void tellTermination() {
  if (auto* const delegate = std::exchange(delegateToTell, nullptr)) {
    delegate->applicationWillTerminate();
  }
}

const char* serverName = nullptr;
std::promise<void> lossTold;
const std::shared_future<void> lossIsTold = lossTold.get_future().share();

void desktopLost() {
  if (const char* const server = std::exchange(serverName, nullptr)) {
    std::fprintf(stderr, "quilexhelper: %s is gone\n", server);
    tellTermination();
    lossTold.set_value();
  }
}

QtMessageHandler printMessage = nullptr;
const std::thread::id mainThread = std::this_thread::get_id();

// Of a compositor that is gone the toolkit tells nobody but the user, from a thread of its own or from this one, and
// ends the process without its exit handlers. In its own thread it is held up until this one has told.
void toolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  constexpr std::chrono::seconds kLongestWait{5};
  if (!text.startsWith(QStringLiteral("The Wayland connection"))) {
    printMessage(type, context, text);
  } else if (std::this_thread::get_id() == mainThread) {
    desktopLost();
  } else {
    lossIsTold.wait_for(kLongestWait);
  }
}

int runAgent(std::unique_ptr<quilex::Desktop> desktop) {
  int status = EXIT_SUCCESS;
  serverName = desktop->serverName();
  printMessage = qInstallMessageHandler(toolkitMessage);
  auto made = Composition::make(std::move(desktop), [&status] {
    desktopLost();
    status = EXIT_FAILURE;
    QCoreApplication::quit();
  });
  if (const auto* failure = std::get_if<Composition::Failure>(&made)) {
    std::fprintf(stderr, "quilexhelper: %s\n", failure->message.c_str());
    return EXIT_FAILURE;
  }
  const auto composition = std::get<std::unique_ptr<Composition>>(std::move(made));

  quilex::AppDelegate delegate({[]() -> quilex::Preferences& { return quilex::Preferences::shared(); },
                                []() -> quilex::VideoPlayerManager& { return quilex::VideoPlayerManager::shared(); },
                                []() -> quilex::StatusBarManager& { return quilex::StatusBarManager::shared(); },
                                composition->workspace(), composition->notificationCenter(), composition->eventLoop(),
                                []() -> const quilex::AppInfo& { return quilex::AppInfo::shared(); },
                                [](const quilex::AppDelegate::UpgradeCompletion& completion) {
                                  quilex::WebModel::shared().requestUpgradeInfo(completion);
                                },
                                composition->interfaceFiles(), Composition::localization()});
  composition->checkUpdates = [&delegate] { delegate.checkUpdates(quilex::AppDelegate::Check::manual); };
  delegateToTell = &delegate;
  std::atexit(tellTermination);
  quilex::WindowServer& windows = composition->windowServer();
  const auto screens = windows.observeScreens([&] { delegate.applicationDidChangeScreenParameters(); });
  const auto occlusion = windows.observeOcclusion([&] { delegate.applicationDidChangeOcclusionState(); });
  const auto activity = composition->workspace().observeResignActive([&] { delegate.applicationDidResignActive(); });
  delegate.applicationDidFinishLaunching();
  QCoreApplication::exec();
  tellTermination();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // Standard output may be a pipe whose reader has gone; the wallpaper plays on.
  std::signal(SIGPIPE, SIG_IGN);
  // The toolkit would end the process without a word of ours if there were no desktop.
  auto desktop = quilex::Desktop::open();
  if (!desktop) {
    std::fputs(
        "quilexhelper: no desktop to play on: neither a Wayland compositor with a layer shell at WAYLAND_DISPLAY, nor "
        "an X server with 24-bit colour at DISPLAY\n",
        stderr);
    return EXIT_FAILURE;
  }
  constexpr const char* kToolkitPlugin = "QT_QPA_PLATFORM";
  const bool isChosen = qEnvironmentVariableIsSet(kToolkitPlugin);
  if (!isChosen) {
    qputenv(kToolkitPlugin, desktop->toolkitPlugin());
  }
  const QApplication application(argc, argv);
  if (!isChosen) {
    // The programs that the agent starts choose for themselves.
    qunsetenv(kToolkitPlugin);
  }
  QApplication::setApplicationName(QStringLiteral("QuilexHelper"));
  QApplication::setQuitOnLastWindowClosed(false);
  const auto termination = quilex::observeTerminationSignals([] { QCoreApplication::quit(); });

  switch (quilex::claimInstanceName()) {
    case quilex::InstanceState::first:
      break;
    case quilex::InstanceState::another:
      std::fputs("quilexhelper: already running in this session\n", stderr);
      return EXIT_SUCCESS;
    case quilex::InstanceState::noBus:
      std::fputs(
          "quilexhelper: no D-Bus session bus: changes of the library are not noticed, a second start is not "
          "prevented, "
          "and the status item appears only in trays of the older kind\n",
          stderr);
      break;
  }
  return runAgent(std::move(desktop));
}
