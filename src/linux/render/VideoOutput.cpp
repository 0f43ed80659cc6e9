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
    : renderer(std::move(theRenderer)), wakeup([this] { frameArrived(); }) {}

VideoOutput::~VideoOutput() {
  detach();
}

void VideoOutput::attach(mpv_handle* core, std::function<void()> restored) {
  source = core;
  rendererRestored = std::move(restored);
  connect();
}

void VideoOutput::connect() {
  context = renderer->makeContext(source);
  mpv_render_context_set_update_callback(
      context.get(), [](void* output) { static_cast<VideoOutput*>(output)->wakeup.signal(); }, this);
}

void VideoOutput::detach() {
  hasFrame = false;
  if (context) {
    mpv_render_context_set_update_callback(context.get(), nullptr, nullptr);
    context.reset();
  }
}

void VideoOutput::frameArrived() {
  if (!context || (mpv_render_context_update(context.get()) & MPV_RENDER_UPDATE_FRAME) == 0) {
    return;
  }
  mpv_render_frame_info info = {};
  mpv_render_context_get_info(context.get(), {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info});
  const bool present = (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0;
  const bool redraw = (info.flags & MPV_RENDER_FRAME_INFO_REDRAW) != 0;
  // A redraw brings nothing that is not shown already; and between two files it is one of nothing, which would be
  // black.
  if (!present || redraw || renderer->isLost()) {
    dropFrame();
    return;
  }
  const bool first = !std::exchange(hasFrame, true);
  ++frameNumber;
  bool taken = false;
  bool wanted = false;
  for (VideoSurface* surface : surfaces) {
    if (!surface->visible) {
      continue;
    }
    wanted = true;
    Drawn& drawn = drawnAt(surface->size);
    if (drawn.frame != frameNumber && drawn.picture->draw(context.get())) {
      drawn.frame = frameNumber;
      taken = true;
    }
    if (drawn.frame == frameNumber) {
      surface->shownFrame = frameNumber;
      drawn.picture->show(surface->window, surface->shown);
    }
  }
  if (taken) {
    shown.add(MinuteCounter::Time::clock::now());
  } else {
    dropFrame();
    if (wanted) {
      framesDropped(1);
    }
  }
  if (first) {
    const auto waiting = surfaces;
    for (VideoSurface* surface : waiting) {
      surface->becameReady();
    }
  }
  discardUnusedPictures();
  checkLost();
}

void VideoOutput::checkLost() {
  if (renderer->isLost() && !restoration) {
    qCWarning(renderLog, "the driver has lost all that was drawn");
    // Not in the midst of drawing.
    restoration = runLoop.after(std::chrono::milliseconds(0), [this] { restore(); });
  }
}

void VideoOutput::restore() {
  restoration.reset();
  const bool wasAttached = context != nullptr;
  const bool restored = renderer->restore([this] {
    pictures.clear();
    detach();
  });
  qCInfo(renderLog, restored ? "drawing works again" : "drawing does not work yet");
  if (!restored) {
    restoration = runLoop.after(kRestoreRetry, [this] { restore(); });
  } else if (wasAttached) {
    connect();
    rendererRestored();
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
  mpv_render_context_render(context.get(), parameters.data());
}

VideoOutput::Drawn& VideoOutput::drawnAt(PixelSize size) {
  Drawn& drawn = pictures[size];
  if (!drawn.picture) {
    drawn.picture = renderer->makePicture(size);
  }
  return drawn;
}

bool VideoOutput::canShow(PixelSize size) const {
  const auto drawn = pictures.find(size);
  return hasFrame || (drawn != pictures.end() && drawn->second.frame != 0);
}

// Not when a surface goes: a new layout often brings one of the same size in the same turn of the run loop.
void VideoOutput::discardUnusedPictures() {
  std::erase_if(pictures, [&](const auto& entry) {
    return std::none_of(surfaces.begin(), surfaces.end(),
                        [&](const VideoSurface* surface) { return surface->size == entry.first; });
  });
}

VideoSurface::VideoSurface(VideoOutput& videoOutput, NativeWindow nativeWindow, PixelSize picture, PixelRect part,
                           std::function<void()> ready)
    : output(videoOutput), window(nativeWindow), size(picture), shown(part), becameReady(std::move(ready)) {
  output.surfaces.push_back(this);
}

VideoSurface::~VideoSurface() {
  std::erase(output.surfaces, this);
}

bool VideoSurface::isReady() const {
  return output.canShow(size);
}

void VideoSurface::repaint() {
  if (!visible || !isReady()) {
    return;
  }
  VideoOutput::Drawn& drawn = output.drawnAt(size);
  if (drawn.frame != output.frameNumber && output.hasFrame && drawn.picture->draw(output.context.get())) {
    drawn.frame = output.frameNumber;
  }
  if (drawn.frame != 0) {
    shownFrame = drawn.frame;
    drawn.picture->show(window, shown);
  }
  output.checkLost();
}

void VideoSurface::catchUp() {
  if (shownFrame != output.frameNumber) {
    repaint();
  }
}

}  // namespace quilex
