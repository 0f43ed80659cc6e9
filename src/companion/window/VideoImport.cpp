#include "companion/window/VideoImport.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <atomic>
#include <mutex>
#include <utility>

#include "companion/Text.h"

namespace quilex {

namespace {

QString readable(const std::string& text) {
  return QString::fromStdString(cleanText(text));
}

bool looksLikeVideo(const QString& file) {
  static const QMimeDatabase types;
  const QString type = types.mimeTypeForFile(file, QMimeDatabase::MatchExtension).name();
  return type.startsWith(QStringLiteral("video/")) || type == QStringLiteral("image/gif") ||
         type == QStringLiteral("image/apng") || type == QStringLiteral("application/mxf") ||
         type == QStringLiteral("application/vnd.rn-realmedia");
}

}  // namespace

/// Keeps the summary, and tells the import of progress; lives as long as its thread.
class VideoImport::Listener : public ImportListener {
 public:
  explicit Listener(VideoImport& owner) : owner_(&owner) {}

  void begin(std::size_t count) { count_ = static_cast<int>(count); }
  void cancel() { isCancelled_ = true; }
  /// The owner hears nothing more.
  void leave() {
    const std::lock_guard guard(lock_);
    owner_ = nullptr;
  }

  void reading(std::size_t index, const std::string& file, unsigned percent) override {
    const auto place = std::pair(static_cast<int>(index), static_cast<int>(percent));
    if (std::exchange(place_, place) != place) {
      report(place.first, QFileInfo(readable(file)).fileName(), place.second);
    }
  }
  void imported(const std::string& /*file*/, const VideoDetail& video, VideoLibrary::Addition how) override {
    (how == VideoLibrary::Addition::added   ? summary.added
     : how == VideoLibrary::Addition::known ? summary.known
                                            : summary.moved) += 1;
    summary.title = readable(video.title);
  }
  void refused(const std::string& file, const std::string& reason) override {
    summary.refused.push_back({readable(file), readable(reason)});
  }
  bool isInterrupted() override { return isCancelled_; }

  /// For the main thread once the import has ended.
  ImportSummary summary;

 private:
  void report(int index, const QString& file, int percent) {
    const std::lock_guard guard(lock_);
    if (VideoImport* const owner = owner_) {
      QMetaObject::invokeMethod(
          owner, [=, count = count_] { emit owner->progressed(index, count, file, percent); }, Qt::QueuedConnection);
    }
  }

  std::atomic<bool> isCancelled_ = false;
  std::mutex lock_;
  VideoImport* owner_;
  int count_ = 0;
  std::pair<int, int> place_{-1, -1};
};

VideoImport::VideoImport(BackgroundWork& work) : work_(work) {}

VideoImport::~VideoImport() {
  cancel();
  if (listener_) {
    listener_->leave();
  }
}

void VideoImport::add(const QStringList& paths) {
  waiting_ += paths;
  if (!running_ && !waiting_.isEmpty()) {
    start();
  }
}

void VideoImport::cancel() {
  waiting_.clear();
  if (listener_) {
    listener_->cancel();
  }
}

void VideoImport::start() {
  listener_ = std::make_shared<Listener>(*this);
  const auto work = [listener = listener_, paths = std::exchange(waiting_, {})](const std::stop_token& /*stop*/) {
    const auto files = expandFolders(paths);
    listener->begin(files.size());
    const auto count = importVideos(files, *listener);
    listener->summary.wasCancelled = listener->isInterrupted();
    if (!count) {
      listener->summary.problem = readable(count.error().message);
    }
  };
  running_.emplace(work_.run(work, [this] { finish(); }));
}

void VideoImport::finish() {
  const Disposable ended = *std::move(running_);
  running_.reset();
  listener_->leave();
  const ImportSummary summary = std::exchange(listener_, nullptr)->summary;
  if (!waiting_.isEmpty()) {
    start();
  }
  emit finished(summary);
}

std::vector<std::string> expandFolders(const QStringList& paths) {
  std::vector<std::string> files;
  const auto addFile = [&](const QString& path) { files.push_back(QFile::encodeName(path).toStdString()); };
  for (const QString& path : paths) {
    if (!QFileInfo(path).isDir()) {
      addFile(path);
      continue;
    }
    QStringList found;
    QDirIterator entries(path, QDir::Files | QDir::Readable, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      if (const QString file = entries.next(); looksLikeVideo(file)) {
        found << file;
      }
    }
    found.sort();
    for (const QString& file : std::as_const(found)) {
      addFile(file);
    }
  }
  return files;
}

}  // namespace quilex
