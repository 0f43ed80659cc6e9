// Scrolls through the user's library in the companion's window, and prints the milliseconds of the longest turn of its
// event loop, which is how long it kept a person waiting.

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QThread>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>

#include "companion/window/LibraryView.h"
#include "companion/window/LibraryWindow.h"
#include "companion/window/WindowLogic.h"

namespace {

constexpr int kStepMilliseconds = 16;
constexpr int kWheelSteps = 200;
constexpr int kJumps = 60;

// Returns the nanoseconds of the longest turn.
qint64 runFor(int milliseconds) {
  QElapsedTimer clock;
  QElapsedTimer turn;
  qint64 longest = 0;
  clock.start();
  while (clock.elapsed() < milliseconds) {
    turn.start();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    longest = std::max(longest, turn.nsecsElapsed());
    QThread::msleep(1);
  }
  return longest;
}

qint64 scroll(quilex::LibraryView& view) {
  qint64 longest = 0;
  const QPointF middle = view.viewport()->rect().center();
  for (int step = 0; step < kWheelSteps; ++step) {
    QWheelEvent wheel(middle, view.viewport()->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::postEvent(view.viewport(), wheel.clone());
    longest = std::max(longest, runFor(kStepMilliseconds));
  }
  QScrollBar& bar = *view.verticalScrollBar();
  for (int jump = 0; jump < kJumps; ++jump) {
    // To and fro, so that hardly a cover is there already.
    bar.setValue(bar.maximum() * (jump % 2 == 0 ? jump : kJumps - jump) / kJumps);
    longest = std::max(longest, runFor(2 * kStepMilliseconds));
  }
  return longest;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  quilex::WindowLogic logic;
  quilex::LibraryWindow window(logic);
  window.showMaximized();
  while (!logic.model.isLoaded()) {
    runFor(kStepMilliseconds);
  }
  runFor(1000);
  const qint64 longest = scroll(*window.findChild<quilex::LibraryView*>());
  std::printf("%.1f\n", static_cast<double>(longest) / 1e6);
  logic.end();
}
