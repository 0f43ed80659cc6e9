#pragma once

#include <QObject>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "base/Result.h"
#include "companion/Import.h"
#include "platform/BackgroundWork.h"

namespace quilex {

/// What a person is told after an import.
struct ImportSummary {
  struct Refusal {
    QString file;
    QString reason;
  };
  int added = 0;
  /// In the library already.
  int known = 0;
  /// Known videos that now play from their new places.
  int moved = 0;
  /// The title of the last video.
  QString title;
  std::vector<Refusal> refused;
  bool wasCancelled = false;
  /// Why nothing could be imported at all.
  QString problem;
};

/// Imports files beside the main thread, as the command line does; folders are searched for videos. What is added while
/// an import runs waits for its turn. Main thread.
class VideoImport : public QObject {
  Q_OBJECT

 public:
  /// `work` must outlive the instance.
  explicit VideoImport(BackgroundWork& work);
  ~VideoImport() override;

  /// Absolute paths of files and folders.
  void add(const QStringList& paths);
  /// Ends the import and drops what waits; videos that were added stay.
  void cancel();
  bool isRunning() const { return running_.has_value(); }

 signals:
  /// The file at `index` of `count` is being read.
  void progressed(int index, int count, const QString& file, int percent);
  void finished(const quilex::ImportSummary& summary);

 private:
  class Listener;

  void start();
  void finish();

  BackgroundWork& work_;
  QStringList waiting_;
  std::shared_ptr<Listener> listener_;
  std::optional<Disposable> running_;
};

/// The files among the paths, and the videos in the folders among them, by their names and in order. Any thread.
std::vector<std::string> expandFolders(const QStringList& paths);

}  // namespace quilex
