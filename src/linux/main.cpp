#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <variant>

#include "app/AppDelegate.h"
#include "linux/Composition.h"
#include "linux/dbus/DBusNotificationCenter.h"
#include "linux/qt/TerminationSignals.h"

int main(int argc, char** argv) {
  using quilex::Composition;

  // Standard output may be a pipe whose reader has gone; the wallpaper plays on.
  std::signal(SIGPIPE, SIG_IGN);
  const QCoreApplication application(argc, argv);

  const auto termination = quilex::observeTerminationSignals([] { QCoreApplication::quit(); });

  switch (quilex::claimInstanceName()) {
    case quilex::InstanceState::first:
      break;
    case quilex::InstanceState::another:
      std::fputs("quilexhelper: already running in this session\n", stderr);
      return EXIT_SUCCESS;
    case quilex::InstanceState::noBus:
      std::fputs(
          "quilexhelper: no D-Bus session bus: changes of the library are not noticed, and a second start is not "
          "prevented\n",
          stderr);
      break;
  }

  int status = EXIT_SUCCESS;
  auto made = Composition::make([&status] {
    std::fputs("quilexhelper: the X server is gone\n", stderr);
    status = EXIT_FAILURE;
    QCoreApplication::quit();
  });
  if (const auto* failure = std::get_if<Composition::Failure>(&made)) {
    std::fprintf(stderr, "quilexhelper: %s\n", failure->message.c_str());
    return EXIT_FAILURE;
  }
  const auto composition = std::get<std::unique_ptr<Composition>>(std::move(made));

  quilex::AppDelegate delegate({[]() -> quilex::VideoPlayerManager& { return quilex::VideoPlayerManager::shared(); },
                                composition->notificationCenter()});
  const auto screens =
      composition->windowServer().observeScreens([&] { delegate.applicationDidChangeScreenParameters(); });
  delegate.applicationDidFinishLaunching();
  QCoreApplication::exec();
  delegate.applicationWillTerminate();
  return status;
}
