#pragma once

#include <QObject>
#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "companion/Changes.h"
#include "companion/window/AgentWatcher.h"
#include "companion/window/CoverStore.h"
#include "companion/window/DesktopActions.h"
#include "companion/window/DesktopSettings.h"
#include "companion/window/JobQueue.h"
#include "companion/window/LibraryFeed.h"
#include "companion/window/LibraryModel.h"
#include "companion/window/MissingFiles.h"
#include "companion/window/VideoImport.h"
#include "linux/session/dbus/DBusNotificationCenter.h"
#include "linux/session/files/ThreadedFileFinder.h"
#include "linux/toolkit/loop/QtBackgroundWork.h"
#include "linux/toolkit/loop/QtRunLoop.h"

namespace quilex {

/// What the window does, without its widgets. Every change is made beside the main thread by the functions that the
/// command line calls. Main thread.
class WindowLogic : public QObject {
  Q_OBJECT

  // Each part uses some of those before it.
  QtRunLoop runLoop_;
  QtBackgroundWork work_{std::chrono::milliseconds(2000)};
  ThreadedFileFinder finder_{runLoop_};
  DBusNotificationCenter notifications_;
  JobQueue jobs_{work_};

 public:
  static constexpr std::chrono::seconds kUndoTime{10};

  WindowLogic();
  ~WindowLogic() override;

  DesktopSettings settings{runLoop_, jobs_};
  DesktopActions actions{settings, [this] { playNext(); }};
  AgentWatcher agent;
  CoverStore covers{work_};
  LibraryModel model;
  VideoImport import{work_};

  BackgroundWork& work() { return work_; }

  /// Shows the video on the desktop; its card says so at once.
  void play(const std::string& sign);
  void playNext();
  void remove(const std::vector<std::string>& signs);
  bool canUndo() const { return !removals_.empty(); }
  /// What `undo` would take back.
  const QString& undoText() const { return removals_.back().text; }
  /// Takes the last removal back, until its time has passed.
  void undo();
  void reveal(const std::string& sign);
  /// Starts the agent that belongs to this program.
  void startAgent();
  /// Looks again whether the file of a card exists when that is drawn.
  void expireMissing() { missing_.expire(); }
  void cardSeen(const VideoCard& card) { missing_.ask(card.video.sign, card.video.url); }
  /// Whether the library has never been filled by a person.
  bool isFirstUse() const;
  /// Why the settings cannot be read; empty if they can.
  QString settingsProblem() const;
  /// Why the library cannot be read; empty if it can.
  const QString& libraryProblem() const { return libraryProblem_; }
  /// Completes what has been begun, for some seconds at most.
  void end();

 signals:
  /// Something to tell the person.
  void noted(const QString& message);
  /// There is a new removal, or one was taken back, or its time has passed.
  void undoChanged();
  void libraryRead();

 private:
  struct Undoable {
    Removal removal;
    Disposable expiry;
    int number;
    QString text;
  };

  void deliver(Result<std::vector<VideoCard>> cards);
  void followShown();
  /// Runs a change beside the main thread; its failure is told to the person.
  template <typename Value>
  void change(std::function<Result<Value>()> job, std::function<void(const Value&)> done);
  void showNow(std::function<Result<VideoDetail>()> job, std::optional<std::string> sign);
  void keep(const Removal& removal);
  void expire(int number);

  MissingFiles missing_{finder_,
                        [this](const std::string& sign, bool isMissing) { model.setMissing(sign, isMissing); }};
  LibraryFeed feed_{work_, runLoop_, notifications_,
                    [this](Result<std::vector<VideoCard>> cards) { deliver(std::move(cards)); }};
  QString libraryProblem_;
  /// Whether the library holds nothing but the loops that come with the program.
  bool hasOnlyLoops_ = false;
  /// The video that is about to be shown.
  std::optional<std::string> chosen_;
  std::vector<Undoable> removals_;
  int lastRemoval_ = 0;
};

}  // namespace quilex
