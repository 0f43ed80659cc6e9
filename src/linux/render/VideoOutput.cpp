#include "linux/render/VideoOutput.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

constexpr std::chrono::milliseconds kRestoreRetry{1000};

}  // namespace

VideoOutput::VideoOutput(std::unique_ptr<Renderer> theRenderer)
    : renderer_(std::move(theRenderer)), wakeup_([this] { frameArrived(); }) {}

VideoOutput::~VideoOutput() {
  detach();
}

void VideoOutput::attach(mpv_handle* core, std::function<void()> restored) {
  source_ = core;
  rendererRestored_ = std::move(restored);
  connect();
}

void VideoOutput::connect() {
  context_ = renderer_->makeContext(source_);
  mpv_render_context_set_update_callback(
      context_.get(), [](void* output) { static_cast<VideoOutput*>(output)->wakeup_.signal(); }, this);
}

void VideoOutput::detach() {
  hasFrame_ = false;
  if (context_) {
    mpv_render_context_set_update_callback(context_.get(), nullptr, nullptr);
    context_.reset();
  }
}

void VideoOutput::frameArrived() {
  if (!context_ || (mpv_render_context_update(context_.get()) & MPV_RENDER_UPDATE_FRAME) == 0) {
    return;
  }
  mpv_render_frame_info info = {};
  mpv_render_context_get_info(context_.get(), {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info});
  const bool present = (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0;
  const bool redraw = (info.flags & MPV_RENDER_FRAME_INFO_REDRAW) != 0;
  // A redraw brings nothing that is not shown already; and between two files it is one of nothing, which would be
  // black.
  if (!present || redraw || renderer_->isLost()) {
    dropFrame();
    return;
  }
  const bool first = !std::exchange(hasFrame_, true);
  ++frameNumber_;
  bool taken = false;
  bool wanted = false;
  for (VideoSurface* surface : surfaces_) {
    if (!surface->visible_) {
      continue;
    }
    wanted = true;
    Drawn& drawn = drawnAt(surface->size_);
    if (drawn.frame != frameNumber_ && drawn.picture->draw(context_.get())) {
      drawn.frame = frameNumber_;
      taken = true;
    }
    if (drawn.frame == frameNumber_) {
      surface->shownFrame_ = frameNumber_;
      drawn.picture->show(surface->window_, surface->shown_);
    }
  }
  if (taken) {
    shown_.add(MinuteCounter::Time::clock::now());
  } else {
    dropFrame();
    if (wanted) {
      framesDropped(1);
    }
  }
  if (first) {
    const auto waiting = surfaces_;
    for (VideoSurface* surface : waiting) {
      surface->becameReady_();
    }
  }
  discardUnusedPictures();
  checkLost();
}

void VideoOutput::checkLost() {
  if (renderer_->isLost() && !restoration_) {
    qCWarning(renderLog, "the driver has lost all that was drawn");
    // Not in the midst of drawing.
    restoration_ = runLoop_.after(std::chrono::milliseconds(0), [this] { restore(); });
  }
}

void VideoOutput::restore() {
  restoration_.reset();
  const bool wasAttached = context_ != nullptr;
  const bool restored = renderer_->restore([this] {
    pictures_.clear();
    detach();
  });
  qCInfo(renderLog, restored ? "drawing works again" : "drawing does not work yet");
  if (!restored) {
    restoration_ = runLoop_.after(kRestoreRetry, [this] { restore(); });
  } else if (wasAttached) {
    connect();
    rendererRestored_();
  }
}

// Tells the core that the frame was dealt with; it would wait for that.
void VideoOutput::dropFrame() {
  int skip = 1;
  int wait = 0;
  std::array parameters{
      mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
      mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
      mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
  };
  mpv_render_context_render(context_.get(), parameters.data());
}

VideoOutput::Drawn& VideoOutput::drawnAt(PixelSize size) {
  Drawn& drawn = pictures_[size];
  if (!drawn.picture) {
    drawn.picture = renderer_->makePicture(size);
  }
  return drawn;
}

bool VideoOutput::canShow(PixelSize size) const {
  const auto drawn = pictures_.find(size);
  return hasFrame_ || (drawn != pictures_.end() && drawn->second.frame != 0);
}

// Not when a surface goes: a new layout often brings one of the same size in the same turn of the run loop.
void VideoOutput::discardUnusedPictures() {
  std::erase_if(pictures_, [&](const auto& entry) {
    return std::none_of(surfaces_.begin(), surfaces_.end(),
                        [&](const VideoSurface* surface) { return surface->size_ == entry.first; });
  });
}

VideoSurface::VideoSurface(VideoOutput& videoOutput, NativeWindow nativeWindow, PixelSize picture, PixelRect part,
                           std::function<void()> ready)
    : output_(videoOutput), window_(nativeWindow), size_(picture), shown_(part), becameReady_(std::move(ready)) {
  output_.surfaces_.push_back(this);
}

VideoSurface::~VideoSurface() {
  std::erase(output_.surfaces_, this);
}

bool VideoSurface::isReady() const {
  return output_.canShow(size_);
}

void VideoSurface::repaint() {
  if (!visible_ || !isReady()) {
    return;
  }
  VideoOutput::Drawn& drawn = output_.drawnAt(size_);
  if (drawn.frame != output_.frameNumber_ && output_.hasFrame_ && drawn.picture->draw(output_.context_.get())) {
    drawn.frame = output_.frameNumber_;
  }
  if (drawn.frame != 0) {
    shownFrame_ = drawn.frame;
    drawn.picture->show(window_, shown_);
  }
  output_.checkLost();
}

void VideoSurface::catchUp() {
  if (shownFrame_ != output_.frameNumber_) {
    repaint();
  }
}

}  // namespace quilex
