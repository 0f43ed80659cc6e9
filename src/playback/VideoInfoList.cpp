#include "playback/VideoInfoList.h"

#include <utility>

namespace quilex {

VideoInfoList::~VideoInfoList() {
  clear();
}

void VideoInfoList::clear() {
  currentNode_.reset();
  tailNode_ = nullptr;
  count_ = 0;
  // Node by node: letting the head release all others would recurse once for each video.
  while (headNode_) {
    headNode_ = std::exchange(headNode_->next, nullptr);
  }
}

void VideoInfoList::append(VideoDetail&& video) {
  auto node = std::make_shared<VideoInfoNode>();
  node->val = std::move(video);
  VideoInfoNode* const added = node.get();
  if (tailNode_ == nullptr) {
    headNode_ = std::move(node);
    currentNode_ = headNode_;
  } else {
    tailNode_->next = std::move(node);
  }
  tailNode_ = added;
  ++count_;
}

void VideoInfoList::moveToNext() {
  if (currentNode_) {
    currentNode_ = currentNode_->next ? currentNode_->next : headNode_;
  }
}

bool VideoInfoList::moveTo(const std::string& sign) {
  for (auto node = headNode_; node; node = node->next) {
    if (node->val.sign == sign) {
      currentNode_ = node;
      return true;
    }
  }
  return false;
}

}  // namespace quilex
