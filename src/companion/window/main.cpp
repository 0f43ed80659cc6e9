#include <wayland-client.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QEvent>
#include <QLocale>
#include <QStringList>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "companion/window/ColourScheme.h"
#include "companion/window/LibraryWindow.h"
#include "companion/window/SingleWindow.h"
#include "companion/window/WindowLogic.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/BusConnection.h"
#include "linux/toolkit/language/Translations.h"
#include "linux/toolkit/loop/EndDeadline.h"

namespace {

using namespace quilex;

// As for a command line that is wrong: without a display, `quilex` lacks its command.
constexpr int kNoDisplay = 2;

constexpr const char* kPluginVariable = "QT_QPA_PLATFORM";

// The toolkit's plugins for the display that is there, or null if there is none: the toolkit itself would end the
// process with a message of its own.
const char* displayPlugins() {
  if (std::getenv("WAYLAND_DISPLAY") != nullptr) {
    if (wl_display* const wayland = wl_display_connect(nullptr)) {
      wl_display_disconnect(wayland);
      return "wayland;xcb";
    }
  }
  xcb_connection_t* const x11 = xcb_connect(nullptr, nullptr);
  const bool isConnected = xcb_connection_has_error(x11) == 0;
  xcb_disconnect(x11);
  return isConnected ? "xcb" : nullptr;
}

int run() {
  installTranslations(QLocale::system().uiLanguages(), LinuxBundle::main().path() / "translations");
  std::optional<LibraryWindow> window;
  SingleWindow single([&window] {
    if (window) {
      window->comeForward();
    }
  });
  if (!single.claim()) {
    return EXIT_SUCCESS;
  }
  const ColourScheme colours;
  WindowLogic logic;
  window.emplace(logic);
  window->show();
  const int status = QApplication::exec();
  window->hide();
  logic.end();
  EndDeadline::shared().begin(status);
  window.reset();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const bool isChosen = std::getenv(kPluginVariable) != nullptr;
  if (!isChosen) {
    const char* const plugins = displayPlugins();
    if (plugins == nullptr) {
      std::fputs(
          "quilex: there is no display for the window, neither at WAYLAND_DISPLAY nor at DISPLAY; for what can be done "
          "without one, see quilex --help\n",
          stderr);
      return kNoDisplay;
    }
    qputenv(kPluginVariable, plugins);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::optional<Disposable> silentBuses = hideSilentBuses(std::chrono::milliseconds(2000), [](BusKind) {});
  const QApplication application(argc, argv);
  if (!isChosen) {
    // The programs that the window starts choose for themselves.
    qunsetenv(kPluginVariable);
  }
  QApplication::setApplicationName(QStringLiteral("quilex"));
  QApplication::setApplicationDisplayName(QStringLiteral("Quilex"));
  QGuiApplication::setDesktopFileName(QStringLiteral("com.dravo.quilex.macOS"));
  silentBuses.reset();
  const auto termination = EndDeadline::shared().observe([] { QCoreApplication::quit(); });
  const int status = run();
  // What was left for the event loop to delete, which has ended.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  return status;
}
