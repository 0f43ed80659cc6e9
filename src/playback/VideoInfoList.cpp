#include "playback/VideoInfoList.h"

#include <utility>

namespace quilex {

VideoInfoList::~VideoInfoList() {
  clear();
}

void VideoInfoList::clear() {
  currentNode.reset();
  tailNode = nullptr;
  count = 0;
  // Node by node: letting the head release all others would recurse once for each video.
  while (headNode) {
    headNode = std::exchange(headNode->next, nullptr);
  }
}

void VideoInfoList::append(VideoDetail&& video) {
  auto node = std::make_shared<VideoInfoNode>();
  node->val = std::move(video);
  VideoInfoNode* const added = node.get();
  if (tailNode == nullptr) {
    headNode = std::move(node);
    currentNode = headNode;
  } else {
    tailNode->next = std::move(node);
  }
  tailNode = added;
  ++count;
}

void VideoInfoList::moveToNext() {
  if (currentNode) {
    currentNode = currentNode->next ? currentNode->next : headNode;
  }
}

bool VideoInfoList::moveTo(const std::string& sign) {
  for (auto node = headNode; node; node = node->next) {
    if (node->val.sign == sign) {
      currentNode = node;
      return true;
    }
  }
  return false;
}

}  // namespace quilex
