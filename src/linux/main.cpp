#include <QApplication>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "linux/AgentLife.h"
#include "linux/CommandLine.h"
#include "linux/DesktopChoice.h"
#include "linux/session/dbus/BusConnection.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "linux/toolkit/loop/EndDeadline.h"

namespace {

struct Toolkit {
  std::unique_ptr<QApplication> application;
  bool sessionBusIsSilent = false;
};

// Keeps references to the arguments.
Toolkit startToolkit(int& argc, char** argv, const char* plugin) {
  // A bus that is only busy answers sooner.
  constexpr std::chrono::milliseconds kBusPatience{2000};
  constexpr const char* kPluginVariable = "QT_QPA_PLATFORM";
  Toolkit toolkit;
  const auto silentBuses = quilex::hideSilentBuses(kBusPatience, [&toolkit](quilex::BusKind kind) {
    if (kind == quilex::BusKind::session) {
      toolkit.sessionBusIsSilent = true;
    } else {
      std::fputs("quilexhelper: the D-Bus system bus does not answer: a wake from sleep is not noticed\n", stderr);
    }
  });
  const bool isChosen = qEnvironmentVariableIsSet(kPluginVariable);
  if (!isChosen) {
    qputenv(kPluginVariable, plugin);
  }
  toolkit.application = std::make_unique<QApplication>(argc, argv);
  if (!isChosen) {
    // The programs that the agent starts choose for themselves.
    qunsetenv(kPluginVariable);
  }
  QApplication::setApplicationName(QStringLiteral("QuilexHelper"));
  QApplication::setQuitOnLastWindowClosed(false);
  return toolkit;
}

// False if the session has an agent already.
bool claimSession(bool busIsSilent) {
  switch (quilex::claimInstanceName()) {
    case quilex::InstanceState::first:
      break;
    case quilex::InstanceState::another:
      std::fputs("quilexhelper: already running in this session\n", stderr);
      return false;
    case quilex::InstanceState::noBus:
      std::fprintf(stderr,
                   "quilexhelper: %s: changes of the library are not noticed, a second start is not prevented, and the "
                   "status item appears only in trays of the older kind\n",
                   busIsSilent ? "the D-Bus session bus does not answer" : "no D-Bus session bus");
      break;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const auto commandLine = quilex::readCommandLine(argc, argv);
  if (const auto* ended = std::get_if<quilex::Ended>(&commandLine)) {
    return ended->status;
  }
  quilex::EndDeadline& deadline = quilex::EndDeadline::shared();
  // Standard output may be a pipe whose reader has gone; the wallpaper plays on.
  std::signal(SIGPIPE, SIG_IGN);
  // Before the toolkit, which without a desktop would end the process with a message of its own.
  std::string backendReason;
  auto desktop = quilex::openDesktop(backendReason);
  if (!desktop) {
    std::fputs(
        "quilexhelper: no desktop to play on: neither a Wayland compositor with a layer shell at WAYLAND_DISPLAY, nor "
        "an X server with 24-bit colour at DISPLAY\n",
        stderr);
    return EXIT_FAILURE;
  }
  const Toolkit toolkit = startToolkit(argc, argv, desktop->toolkitPlugin());
  const auto termination = deadline.observe([] { QCoreApplication::quit(); });
  const int status = claimSession(toolkit.sessionBusIsSilent)
                         ? quilex::runAgent(std::move(desktop), std::move(backendReason))
                         : EXIT_SUCCESS;
  // The toolkit's own end may hang, too.
  deadline.begin(status);
  return status;
}
