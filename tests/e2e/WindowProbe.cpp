// Shows a video in wallpaper windows and orders them as standard input says, a command a line: front, back, out.
//   window_probe VIDEO

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "linux/DesktopChoice.h"
#include "linux/player/MpvPlayer.h"
#include "linux/toolkit/loop/QtRunLoop.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  std::string refusal;
  const auto desktop = quilex::openDesktop(refusal);
  if (!desktop || argc != 2) {
    return 1;
  }
  desktop->start(&QCoreApplication::quit);
  quilex::QtRunLoop runLoop;
  quilex::VideoOutput output(desktop->makeCpuRenderer());
  const auto server = desktop->makeWindowServer(output, runLoop);
  quilex::StatusReport report;
  quilex::MpvPlayer player(output, report);
  player.replaceCurrentItem(argv[1]);

  std::vector<std::unique_ptr<quilex::WallpaperWindow>> windows;
  for (const quilex::Screen& screen : server->screens()) {
    windows.push_back(server->makeWallpaperWindow(screen));
    auto view = std::make_unique<quilex::VideoView>(quilex::Rect{0, 0, screen.frame.width, screen.frame.height});
    windows.back()->setContentView(std::move(view), [] {});
  }
  const QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
    std::string command;
    if (!std::getline(std::cin, command)) {
      QCoreApplication::quit();
    }
    for (const auto& window : windows) {
      command == "front" ? window->orderFront() : command == "back" ? window->orderBack() : window->orderOut();
    }
  });
  return QCoreApplication::exec();
}
