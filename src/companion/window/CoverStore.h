#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "library/VideoDetail.h"
#include "platform/BackgroundWork.h"

namespace quilex {

/// The covers that are visible and some more, loaded beside the main thread at the size in which they are shown. A
/// video without a cover gets a picture of itself. Main thread.
class CoverStore : public QObject {
  Q_OBJECT

 public:
  /// `work` must outlive the store.
  explicit CoverStore(BackgroundWork& work);
  ~CoverStore() override;

  /// A picture that fills `size`, which is in device pixels, or one of another size while that is being loaded; null
  /// while there is none. What was asked for last is loaded first.
  QPixmap cover(const VideoDetail& video, QSize size);
  /// Keeps pictures of about that many bytes.
  void setBudget(std::size_t bytes);
  /// Tries again to load what could not be loaded.
  void forgetFailures() { failures_.clear(); }

 signals:
  void loaded(const std::string& sign);

 private:
  struct Request {
    std::string sign;
    std::string cover;
    std::string file;
    QSize size;
  };
  struct Entry {
    QPixmap picture;
    QSize asked;
    std::string cover;
  };

  bool mayStart() const;
  void startWaiting();
  void finish(int slot, const Request& request, const QImage& image);

  [[no_unique_address]] MainThread mainThread_;
  BackgroundWork& work_;
  /// By sign; a cost is in KiB.
  QCache<QByteArray, Entry> pictures_;
  std::vector<Request> waiting_;
  /// Signs with the sizes that are being loaded.
  std::map<std::string, QSize> loading_;
  /// Signs with the addresses of their covers.
  std::map<std::string, std::string> failures_;
  struct Load {
    std::chrono::steady_clock::time_point begun;
    Disposable work;
  };
  std::map<int, Load> running_;
  int lastSlot_ = 0;
};

/// The picture in the file at that size: scaled to fill it, and cut. Null if the file holds no picture. Any thread.
QImage loadPicture(const std::string& file, QSize size);

}  // namespace quilex
