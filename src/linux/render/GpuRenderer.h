#pragma once

#include <EGL/egl.h>
#include <GLES3/gl3.h>
#include <mpv/render.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "linux/render/Renderer.h"

namespace quilex {

enum class Rasteriser { hardwareOnly, any };

/// The window system's windows, as EGL takes them. Main thread.
class EglWindows {
 public:
  virtual ~EglWindows() = default;
  /// The window, at the size of what is about to be drawn into it; 0 when there is no such window.
  virtual EGLNativeWindowType sized(NativeWindow window, PixelSize /*size*/) { return EGLNativeWindowType{window}; }
  /// What was drawn is about to be shown.
  virtual void willShow(NativeWindow /*window*/) {}
  /// It was not shown after all.
  virtual void wasNotShown(NativeWindow /*window*/) {}
  /// EGL is done with the window.
  virtual void forget(NativeWindow /*window*/) {}
};

/// The GPU renderer: EGL with OpenGL ES 3. A picture is a texture that libmpv draws into; showing it copies a part of
/// it to the window and swaps without waiting for the display.
class GpuRenderer : public Renderer {
 public:
  /// `platform` and `nativeDisplay` as eglGetPlatformDisplay takes them; the windows' visual is `nativeVisual`, or any
  /// of 24 bits without transparency where windows have none of their own.
  /// `displayParameter` is handed to libmpv for hardware decoding and may be of type MPV_RENDER_PARAM_INVALID. Empty
  /// when there is no EGL for that display and visual, or only a software rasteriser and `allowed` asks for hardware;
  /// then `refusal` says why.
  static std::unique_ptr<GpuRenderer> make(EGLenum platform, void* nativeDisplay, std::optional<EGLint> nativeVisual,
                                           mpv_render_param displayParameter, Rasteriser allowed, std::string& refusal,
                                           std::unique_ptr<EglWindows> windows = std::make_unique<EglWindows>());
  ~GpuRenderer() override;

  MpvRenderContext makeContext(mpv_handle* core) override;
  bool turnsPictures() const override { return true; }
  std::string device() const override { return driver_; }
  std::unique_ptr<Picture> makePicture(PixelSize size) override;
  void forget(NativeWindow window) override;
  bool isLost() const override { return lost_; }
  bool restore(const std::function<void()>& letGo) override;

 private:
  friend class GpuPicture;

  GpuRenderer(EGLDisplay initialised, std::unique_ptr<EglWindows> nativeWindows)
      : display_(initialised), windows_(std::move(nativeWindows)) {}
  /// Why that was not possible; nothing when it was.
  std::optional<std::string> setUp(std::optional<EGLint> nativeVisual, Rasteriser allowed);
  bool chooseConfig(std::optional<EGLint> nativeVisual);
  bool suits(EGLConfig candidate, std::optional<EGLint> nativeVisual) const;
  EGLContext makeGlContext() const;
  bool use(EGLContext made);
  void destroyGlContext();
  void show(NativeWindow window);
  /// Hands `result` on, and notices a loss by the error that goes with a false one.
  bool checked(EGLBoolean result);
  /// Makes the window's surface current, or none for window 0; a window that has none yet gets one of `native`. False
  /// when that fails.
  bool makeCurrent(NativeWindow window, EGLNativeWindowType native = 0);

  EGLDisplay display_;
  std::unique_ptr<EglWindows> windows_;
  std::string driver_;
  EGLConfig config_ = nullptr;
  EGLContext context_ = EGL_NO_CONTEXT;
  bool lost_ = false;
  /// Of GL_KHR_robustness; null where the driver does not tell of resets.
  GLenum (*resetStatus_)() = nullptr;
  std::map<NativeWindow, EGLSurface> surfaces_;
  NativeWindow current_ = 0;
  mpv_render_param nativeDisplayParameter_{MPV_RENDER_PARAM_INVALID, nullptr};
};

}  // namespace quilex
