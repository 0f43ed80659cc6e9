#include <QApplication>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <variant>

#include "agent/AppDelegate.h"
#include "linux/CommandLine.h"
#include "linux/Composition.h"
#include "linux/DesktopChoice.h"
#include "linux/session/dbus/BusConnection.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "linux/toolkit/loop/EndDeadline.h"

namespace {

using quilex::Composition;

// Longer than a bus takes that is only busy.
constexpr std::chrono::milliseconds kBusPatience{2000};

// The main application is notified once, even where the toolkit ends the process by itself because it is the first to
// see that the desktop is gone, and where the main thread hangs at the end.
std::atomic<bool> terminationPosted = false;
quilex::AppDelegate* delegateToNotify = nullptr;

void notifyOfTermination() {
  auto* const delegate = std::exchange(delegateToNotify, nullptr);
  if (delegate != nullptr && !terminationPosted.exchange(true)) {
    delegate->applicationWillTerminate();
  }
}

void postTerminationSeparately() {
  if (!terminationPosted.exchange(true)) {
    quilex::postSeparately(quilex::AppDelegate::kTermination, quilex::EndDeadline::kLastActions);
  }
}

const char* serverName = nullptr;
std::promise<void> lossTold;
const std::shared_future<void> lossIsTold = lossTold.get_future().share();

void desktopLost() {
  if (const char* const server = std::exchange(serverName, nullptr)) {
    quilex::EndDeadline::shared().begin(EXIT_FAILURE);
    std::fprintf(stderr, "quilexhelper: %s is gone\n", server);
    notifyOfTermination();
    lossTold.set_value();
  }
}

QtMessageHandler printMessage = nullptr;
const std::thread::id mainThread = std::this_thread::get_id();

// Of a compositor that is gone the toolkit tells nobody but the user, from a thread of its own or from this one, and
// ends the process without its exit handlers, with a status of its own. In its own thread it is held up until this one
// has told.
void toolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  constexpr std::chrono::seconds kLongestWait{5};
  const bool isMainThread = std::this_thread::get_id() == mainThread;
  if (text.startsWith(QStringLiteral("The Wayland connection"))) {
    if (isMainThread) {
      desktopLost();
    } else {
      quilex::EndDeadline::shared().begin(EXIT_FAILURE);
      lossIsTold.wait_for(kLongestWait);
    }
    std::_Exit(EXIT_FAILURE);
  }
  // What the toolkit cannot do any more without its desktop is no news.
  if (!isMainThread || serverName != nullptr || qstrcmp(context.category, "default") != 0) {
    printMessage(type, context, text);
  }
}

void installMessageHandler() {
  // The handler needs the one before it from its first message on, which may come from any thread.
  printMessage = qInstallMessageHandler(nullptr);
  qInstallMessageHandler(toolkitMessage);
}

int runAgent(std::unique_ptr<quilex::Desktop> desktop, const std::string& backendReason) {
  int status = EXIT_SUCCESS;
  serverName = desktop->serverName();
  installMessageHandler();
  auto made = Composition::make(std::move(desktop), backendReason, [&status] {
    desktopLost();
    status = EXIT_FAILURE;
    QCoreApplication::quit();
  });
  if (const auto* failure = std::get_if<Composition::Failure>(&made)) {
    std::fprintf(stderr, "quilexhelper: %s\n", failure->message.c_str());
    return EXIT_FAILURE;
  }
  const auto composition = std::get<std::unique_ptr<Composition>>(std::move(made));
  quilex::EndDeadline& deadline = quilex::EndDeadline::shared();
  const auto lastPost = deadline.addLastAction(postTerminationSeparately);
  const auto lastWriting = deadline.addLastAction([&composition] { composition->writeSettings(); });

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
  delegateToNotify = &delegate;
  std::atexit(notifyOfTermination);
  quilex::WindowServer& windows = composition->windowServer();
  const auto screens = windows.observeScreens([&] { delegate.applicationDidChangeScreenParameters(); });
  const auto occlusion = windows.observeOcclusion([&] { delegate.applicationDidChangeOcclusionState(); });
  const auto activity = composition->workspace().observeResignActive([&] { delegate.applicationDidResignActive(); });
  delegate.applicationDidFinishLaunching();
  QCoreApplication::exec();
  deadline.begin(status);
  notifyOfTermination();
  composition->writeSettings();
  return status;
}

int claimAndRun(std::unique_ptr<quilex::Desktop> desktop, const std::string& backendReason, bool busIsSilent) {
  switch (quilex::claimInstanceName()) {
    case quilex::InstanceState::first:
      break;
    case quilex::InstanceState::another:
      std::fputs("quilexhelper: already running in this session\n", stderr);
      return EXIT_SUCCESS;
    case quilex::InstanceState::noBus:
      std::fprintf(stderr,
                   "quilexhelper: %s: changes of the library are not noticed, a second start is not prevented, and the "
                   "status item appears only in trays of the older kind\n",
                   busIsSilent ? "the D-Bus session bus does not answer" : "no D-Bus session bus");
      break;
  }
  return runAgent(std::move(desktop), backendReason);
}

}  // namespace

int main(int argc, char** argv) {
  const auto read = quilex::readCommandLine(argc, argv);
  if (const auto* ended = std::get_if<quilex::Ended>(&read)) {
    return ended->status;
  }
  quilex::EndDeadline& deadline = quilex::EndDeadline::shared();
  // Standard output may be a pipe whose reader has gone; the wallpaper plays on.
  std::signal(SIGPIPE, SIG_IGN);
  // The toolkit would end the process without a word of ours if there were no desktop.
  std::string backendReason;
  auto desktop = quilex::openDesktop(backendReason);
  if (!desktop) {
    std::fputs(
        "quilexhelper: no desktop to play on: neither a Wayland compositor with a layer shell at WAYLAND_DISPLAY, nor "
        "an X server with 24-bit colour at DISPLAY\n",
        stderr);
    return EXIT_FAILURE;
  }
  bool busIsSilent = false;
  std::optional<quilex::Disposable> silentBuses =
      quilex::hideSilentBuses(kBusPatience, [&busIsSilent](quilex::BusKind kind) {
        if (kind == quilex::BusKind::session) {
          busIsSilent = true;
        } else {
          std::fputs("quilexhelper: the D-Bus system bus does not answer: a wake from sleep is not noticed\n", stderr);
        }
      });
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
  silentBuses.reset();
  QApplication::setApplicationName(QStringLiteral("QuilexHelper"));
  QApplication::setQuitOnLastWindowClosed(false);
  const auto termination = deadline.observe([] { QCoreApplication::quit(); });

  const int status = claimAndRun(std::move(desktop), backendReason, busIsSilent);
  // What the toolkit still does may hang too.
  deadline.begin(status);
  return status;
}
