#include "companion/window/CoverStore.h"

#include <QImageReader>
#include <algorithm>
#include <utility>

#include "companion/MediaFile.h"
#include "library/FileURL.h"

namespace quilex {

namespace {

constexpr std::ptrdiff_t kMostLoads = 2;
// A load that takes longer hangs in a file system that does not answer, and holds the others up no longer.
constexpr auto kPatience = std::chrono::seconds(5);
constexpr std::size_t kMostHanging = 8;
// What was asked for before has usually been scrolled away.
constexpr std::size_t kMostWaiting = 80;
constexpr int kLeastBudget = 32 * 1024;
constexpr int kLargestPictureMegabytes = 128;

QImage fill(const QImage& image, QSize size) {
  if (image.isNull()) {
    return image;
  }
  const QImage scaled = image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  const QPoint corner((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2);
  return scaled.copy(QRect(corner, size)).convertToFormat(QImage::Format_RGB32);
}

QImage load(QImageReader& reader, QSize size) {
  reader.setAutoTransform(true);
  QImageReader::setAllocationLimit(kLargestPictureMegabytes);
  if (const QSize whole = reader.size(); whole.isValid()) {
    // The decoder leaves out what is not needed.
    reader.setScaledSize(whole.scaled(size, Qt::KeepAspectRatioByExpanding));
  }
  return fill(reader.read(), size);
}

QImage pictureOf(const std::string& video, QSize size, const std::stop_token& stop) {
  auto media = MediaFile::open(video, [stop] { return stop.stop_requested(); });
  const auto cover = media ? media->cover() : failed("");
  return cover ? fill(QImage::fromData(QByteArray::fromStdString(*cover)), size) : QImage();
}

}  // namespace

QImage loadPicture(const std::string& file, QSize size) {
  QImageReader reader(QString::fromStdString(file));
  reader.setDecideFormatFromContent(true);
  return load(reader, size);
}

CoverStore::CoverStore(BackgroundWork& work) : work_(work), pictures_(kLeastBudget) {}

CoverStore::~CoverStore() = default;

void CoverStore::setBudget(std::size_t bytes) {
  pictures_.setMaxCost(std::max(kLeastBudget, static_cast<int>(bytes / 1024)));
}

QPixmap CoverStore::cover(const VideoDetail& video, QSize size) {
  mainThread_.check();
  const Entry* const entry = pictures_.object(QByteArray::fromStdString(video.sign));
  const bool isFresh = entry != nullptr && entry->cover == video.imgurl;
  const auto failure = failures_.find(video.sign);
  const bool hasFailed = failure != failures_.end() && failure->second == video.imgurl;
  const auto loading = loading_.find(video.sign);
  const bool isComing = loading != loading_.end() && loading->second == size;
  if (!(isFresh && entry->asked == size) && !isComing && !hasFailed && !size.isEmpty()) {
    std::erase_if(waiting_, [&](const Request& each) { return each.sign == video.sign; });
    waiting_.push_back({video.sign, video.imgurl, video.url, size});
    if (waiting_.size() > kMostWaiting) {
      waiting_.erase(waiting_.begin());
    }
    startWaiting();
  }
  return isFresh ? entry->picture : QPixmap();
}

bool CoverStore::mayStart() const {
  const auto now = std::chrono::steady_clock::now();
  const auto answers = [now](const auto& load) { return now - load.second.begun < kPatience; };
  return running_.size() < kMostHanging && std::ranges::count_if(running_, answers) < kMostLoads;
}

void CoverStore::startWaiting() {
  while (mayStart()) {
    const auto next = std::find_if(waiting_.rbegin(), waiting_.rend(),
                                   [&](const Request& each) { return !loading_.contains(each.sign); });
    if (next == waiting_.rend()) {
      return;
    }
    const Request request = std::move(*next);
    waiting_.erase(std::next(next).base());
    loading_.emplace(request.sign, request.size);
    const auto image = std::make_shared<QImage>();
    const int slot = ++lastSlot_;
    const auto work = [image, request](const std::stop_token& stop) {
      if (const auto cover = localPath(request.cover)) {
        *image = loadPicture(cover->string(), request.size);
      }
      const auto file = localPath(request.file);
      if (image->isNull() && file) {
        *image = pictureOf(file->string(), request.size, stop);
      }
    };
    const auto done = [this, slot, request, image] { finish(slot, request, *image); };
    running_.emplace(slot, Load{std::chrono::steady_clock::now(), work_.run(work, done)});
  }
}

void CoverStore::finish(int slot, const Request& request, const QImage& image) {
  loading_.erase(request.sign);
  if (image.isNull()) {
    failures_[request.sign] = request.cover;
  } else {
    const auto kilobytes = static_cast<int>(image.sizeInBytes() / 1024) + 1;
    pictures_.insert(QByteArray::fromStdString(request.sign),
                     new Entry{QPixmap::fromImage(image), request.size, request.cover}, kilobytes);
  }
  running_.erase(slot);
  emit loaded(request.sign);
  startWaiting();
}

}  // namespace quilex
