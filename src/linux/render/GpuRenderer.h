#pragma once

#include <EGL/egl.h>
#include <mpv/render.h>

#include <map>
#include <memory>

#include "linux/render/Renderer.h"

namespace quilex {

enum class Rasteriser { hardwareOnly, any };

/// The GPU renderer: EGL with OpenGL ES 3. A picture is a texture that libmpv draws into; showing it copies a part of
/// it to the window and swaps without waiting for the display.
class GpuRenderer : public Renderer {
 public:
  /// `platform` and `nativeDisplay` as eglGetPlatformDisplay takes them; the windows' visual is `nativeVisual`.
  /// `displayParameter` is handed to libmpv for hardware decoding and may be of type MPV_RENDER_PARAM_INVALID. Empty
  /// when there is no EGL for that display and visual, or only a software rasteriser and `allowed` asks for hardware.
  static std::unique_ptr<GpuRenderer> make(EGLenum platform, void* nativeDisplay, EGLint nativeVisual,
                                           mpv_render_param displayParameter, Rasteriser allowed);
  ~GpuRenderer() override;

  MpvRenderContext makeContext(mpv_handle* core) override;
  std::unique_ptr<Picture> makePicture(PixelSize size) override;
  void forget(NativeWindow window) override;

 private:
  friend class GpuPicture;

  explicit GpuRenderer(EGLDisplay initialised) : display(initialised) {}
  bool setUp(EGLint nativeVisual, Rasteriser allowed);
  bool chooseConfig(EGLint nativeVisual);
  /// Makes the window's surface current (made at its first use), or none for window 0; false when that fails.
  bool makeCurrent(NativeWindow window);

  EGLDisplay display;
  EGLConfig config = nullptr;
  EGLContext context = EGL_NO_CONTEXT;
  std::map<NativeWindow, EGLSurface> surfaces;
  NativeWindow current = 0;
  mpv_render_param nativeDisplayParameter{MPV_RENDER_PARAM_INVALID, nullptr};
};

}  // namespace quilex
