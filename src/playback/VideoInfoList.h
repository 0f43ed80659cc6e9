#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "library/VideoDetail.h"

namespace quilex {

struct VideoInfoNode {
  VideoDetail val;
  /// Empty at the tail.
  std::shared_ptr<VideoInfoNode> next;
};

/// The playlist: a singly linked list with a current position. Empty means that head, tail and current are empty;
/// otherwise current is one of the nodes.
class VideoInfoList {
 public:
  VideoInfoList() = default;
  ~VideoInfoList();
  VideoInfoList(const VideoInfoList&) = delete;
  VideoInfoList& operator=(const VideoInfoList&) = delete;

  const VideoInfoNode* current() const { return currentNode_.get(); }
  const VideoInfoNode* head() const { return headNode_.get(); }
  const VideoInfoNode* tail() const { return tailNode_; }
  std::size_t size() const { return count_; }

  void clear();
  /// The first video appended to an empty list becomes the current one.
  void append(VideoDetail&& video);

  bool isAtTail() const { return currentNode_ && !currentNode_->next; }
  void moveToHead() { currentNode_ = headNode_; }
  /// Moves to the next node, from the tail to the head.
  void moveToNext();
  /// Moves to the first node with that sign; false, and no move, when there is none.
  bool moveTo(const std::string& sign);

 private:
  std::shared_ptr<VideoInfoNode> currentNode_;
  std::shared_ptr<VideoInfoNode> headNode_;
  VideoInfoNode* tailNode_ = nullptr;
  std::size_t count_ = 0;
};

}  // namespace quilex
