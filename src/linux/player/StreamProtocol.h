#pragma once

#include <mpv/stream_cb.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "linux/media/MediaStream.h"

namespace quilex {

/// The protocol under which a core opens our streams: the one that was offered last, and nothing else. The core opens
/// them in threads of its own; everything else belongs to the main thread.
class StreamProtocol {
 public:
  /// Adds the protocol to the core, once. The object must outlive the core. A core that cannot have it stops the
  /// process.
  void addTo(mpv_handle* core);
  /// Returns the address under which the core can open the stream until another one is offered.
  std::string offer(const std::shared_ptr<MediaStream>& stream);
  /// Cancels all streams that the core may still read, so that no thread of the core waits for one.
  void cancelAll();

 private:
  static int open(void* protocol, char* address, mpv_stream_cb_info* info);

  std::mutex lock_;
  std::uint64_t count_ = 0;
  std::string address_;
  std::shared_ptr<MediaStream> stream_;
  std::vector<std::weak_ptr<MediaStream>> offered_;
};

}  // namespace quilex
