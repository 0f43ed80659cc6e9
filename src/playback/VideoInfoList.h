#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "library/VideoDetail.h"

namespace quilex {

/// Videos in the order in which they are played, with a current one; after the tail comes the head again. In an empty
/// list head, tail and current are null.
class VideoInfoList {
 public:
  const VideoDetail* current() const { return videos_.empty() ? nullptr : &videos_[current_]; }
  const VideoDetail* head() const { return videos_.empty() ? nullptr : &videos_.front(); }
  const VideoDetail* tail() const { return videos_.empty() ? nullptr : &videos_.back(); }
  std::size_t size() const { return videos_.size(); }
  /// The video that many steps after the current one, in a list that is not empty.
  const VideoDetail& after(std::size_t steps) const { return videos_[(current_ + steps) % size()]; }

  /// Replaces all videos; the first one is current.
  void assign(std::vector<VideoDetail> videos) {
    videos_ = std::move(videos);
    current_ = 0;
  }

  bool isAtTail() const { return current_ + 1 == size(); }
  void moveToHead() { current_ = 0; }
  /// In an empty list nothing happens.
  void moveOn(std::size_t steps = 1) { current_ = videos_.empty() ? 0 : (current_ + steps) % size(); }
  /// Makes the first video with that sign current; false, and no move, if there is none.
  bool moveTo(const std::string& sign) {
    const auto found = std::ranges::find(videos_, sign, &VideoDetail::sign);
    if (found != videos_.end()) {
      current_ = static_cast<std::size_t>(found - videos_.begin());
    }
    return found != videos_.end();
  }

 private:
  std::vector<VideoDetail> videos_;
  std::size_t current_ = 0;
};

}  // namespace quilex
