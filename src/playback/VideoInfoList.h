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

  const VideoInfoNode* current() const { return currentNode.get(); }
  const VideoInfoNode* head() const { return headNode.get(); }
  const VideoInfoNode* tail() const { return tailNode; }
  std::size_t size() const { return count; }

  void clear();
  /// The first video appended to an empty list becomes the current one.
  void append(VideoDetail&& video);

  bool isAtTail() const { return currentNode && !currentNode->next; }
  void moveToHead() { currentNode = headNode; }
  /// Moves to the next node, from the tail to the head.
  void moveToNext();
  /// Moves to the first node with that sign; false, and no move, when there is none.
  bool moveTo(const std::string& sign);

 private:
  std::shared_ptr<VideoInfoNode> currentNode;
  std::shared_ptr<VideoInfoNode> headNode;
  VideoInfoNode* tailNode = nullptr;
  std::size_t count = 0;
};

}  // namespace quilex
