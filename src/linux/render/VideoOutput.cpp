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

VideoOutput::VideoOutput(std::unique_ptr<Renderer> renderer)
    : renderer_(std::move(renderer)), wakeup_([this] { frameArrived(); }) {}

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
  if (!hasNewFrame() || renderer_->isLost()) {
    dropFrame();
    return;
  }
  const bool isFirst = !std::exchange(hasFrame_, true);
  ++frameNumber_;
  showFrame();
  if (isFirst) {
    const auto waiting = surfaces_;
    for (VideoSurface* surface : waiting) {
      surface->becameReady_();
    }
  }
  discardUnusedPictures();
  checkLost();
}

// Whether the core has a frame that was not shown yet. A redraw brings nothing new, and between two files it would be
// black.
bool VideoOutput::hasNewFrame() const {
  mpv_render_frame_info info = {};
  mpv_render_context_get_info(context_.get(), {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info});
  return (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 && (info.flags & MPV_RENDER_FRAME_INFO_REDRAW) == 0;
}

void VideoOutput::showFrame() {
  bool isDrawn = false;
  bool isWanted = false;
  for (VideoSurface* surface : surfaces_) {
    if (surface->target_ == nullptr) {
      continue;
    }
    isWanted = true;
    const Drawn& drawn = drawnAt(surface->shown_.picture);
    if (drawn.frame == frameNumber_) {
      isDrawn = true;
      surface->shownFrame_ = frameNumber_;
      drawn.picture->show(*surface->target_, surface->shown_.part);
    }
  }
  if (isDrawn) {
    shown_.add(MinuteCounter::Time::clock::now());
  } else {
    dropFrame();
    if (isWanted) {
      framesDropped(1);
    }
  }
}

void VideoOutput::checkLost() {
  if (renderer_->isLost() && !restoration_) {
    qCWarning(renderLog, "the driver has lost all that was drawn");
    // Not now: a picture that is in use would be destroyed.
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

// The core waits until each frame was either drawn or skipped.
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
  if (drawn.frame != frameNumber_ && hasFrame_ && drawn.picture->draw(context_.get())) {
    drawn.frame = frameNumber_;
  }
  return drawn;
}

bool VideoOutput::canShow(PixelSize size) const {
  const auto drawn = pictures_.find(size);
  return hasFrame_ || (drawn != pictures_.end() && drawn->second.frame != 0);
}

// Called with the next frame rather than when a surface goes: a new layout often brings a surface of the same size in
// the same turn of the run loop.
void VideoOutput::discardUnusedPictures() {
  std::erase_if(pictures_, [&](const auto& entry) {
    return std::none_of(surfaces_.begin(), surfaces_.end(),
                        [&](const VideoSurface* surface) { return surface->shown_.picture == entry.first; });
  });
}

VideoSurface::VideoSurface(VideoOutput& output, const PicturePart& shown, std::function<void()> ready)
    : output_(output), shown_(shown), becameReady_(std::move(ready)) {
  output_.surfaces_.push_back(this);
}

VideoSurface::~VideoSurface() {
  std::erase(output_.surfaces_, this);
}

bool VideoSurface::isReady() const {
  return output_.canShow(shown_.picture);
}

void VideoSurface::repaint() {
  if (target_ == nullptr || !isReady()) {
    return;
  }
  const VideoOutput::Drawn& drawn = output_.drawnAt(shown_.picture);
  if (drawn.frame != 0) {
    shownFrame_ = drawn.frame;
    drawn.picture->show(*target_, shown_.part);
  }
  output_.checkLost();
}

void VideoSurface::catchUp() {
  if (shownFrame_ != output_.frameNumber_) {
    repaint();
  }
}

}  // namespace quilex
