#include "linux/player/StreamProtocol.h"

#include <mpv/client.h>

#include "base/FatalError.h"

namespace quilex {

namespace {

constexpr const char* kName = "quilex";

// What the core holds for an open stream.
using Cookie = std::shared_ptr<MediaStream>;

MediaStream& streamOf(void* cookie) {
  return **static_cast<Cookie*>(cookie);
}

}  // namespace

void StreamProtocol::addTo(mpv_handle* core) {
  if (mpv_stream_cb_add_ro(core, kName, this, open) < 0) {
    fatalError("the player library takes no streams");
  }
}

std::string StreamProtocol::offer(const std::shared_ptr<MediaStream>& stream) {
  const std::lock_guard guard(lock_);
  std::erase_if(offered_, [](const auto& each) { return each.expired(); });
  offered_.push_back(stream);
  stream_ = stream;
  address_ = std::string(kName) + "://" + std::to_string(++count_);
  return address_;
}

void StreamProtocol::cancelAll() {
  const std::lock_guard guard(lock_);
  for (const auto& each : offered_) {
    if (const auto stream = each.lock()) {
      stream->cancel();
    }
  }
}

// NOLINTNEXTLINE(readability-non-const-parameter): the type is the library's
int StreamProtocol::open(void* protocol, char* address, mpv_stream_cb_info* info) {
  auto& own = *static_cast<StreamProtocol*>(protocol);
  const std::lock_guard guard(own.lock_);
  if (own.stream_ == nullptr || own.address_ != address) {
    return MPV_ERROR_LOADING_FAILED;
  }
  info->cookie = std::make_unique<Cookie>(own.stream_).release();
  info->read_fn = [](void* cookie, char* buffer, std::uint64_t bytes) { return streamOf(cookie).read(buffer, bytes); };
  info->cancel_fn = [](void* cookie) { streamOf(cookie).cancel(); };
  info->close_fn = [](void* cookie) {
    const std::unique_ptr<Cookie> closed(static_cast<Cookie*>(cookie));
    (*closed)->cancel();
  };
  if (own.stream_->size() >= 0) {
    info->seek_fn = [](void* cookie, std::int64_t offset) -> std::int64_t {
      const std::int64_t place = streamOf(cookie).seek(offset);
      return place < 0 ? std::int64_t{MPV_ERROR_GENERIC} : place;
    };
    info->size_fn = [](void* cookie) { return streamOf(cookie).size(); };
  }
  return 0;
}

}  // namespace quilex
