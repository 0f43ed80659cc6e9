#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Result.h"
#include "linux/render/EglHandles.h"
#include "linux/render/Renderer.h"

namespace quilex {

enum class Rasteriser { hardwareOnly, any };

/// A window system's display.
struct EglPlatform {
  /// As eglGetPlatformDisplay takes them.
  EGLenum kind;
  void* display;
  /// The visual of the windows. Where windows have none, their configuration is one of 24 bits without transparency.
  std::optional<EGLint> visual;
  /// Given to libmpv for hardware decoding; may be of type MPV_RENDER_PARAM_INVALID.
  mpv_render_param forPlayer;
};

/// A window as EGL takes it. Main thread.
class EglWindow {
 public:
  virtual ~EglWindow() = default;
  /// The native window, made as large as what is about to be drawn into it. Always the same one.
  virtual EGLNativeWindowType sized(PixelSize size) = 0;
  /// Called right before what was drawn is shown.
  virtual void willShow() {}
  /// Called when it could not be shown after all.
  virtual void wasNotShown() {}
};

class GpuTarget;

/// The GPU renderer: EGL with OpenGL ES 3. A picture is a texture that libmpv draws into; showing it copies a part of
/// it to the window and swaps without waiting for the display.
class GpuRenderer : public Renderer {
 public:
  /// Fails when there is no EGL for that display and its windows, or only a software rasteriser and `allowed` asks for
  /// hardware.
  static Result<std::unique_ptr<GpuRenderer>> make(const EglPlatform& platform, Rasteriser allowed);
  ~GpuRenderer() override;

  /// The target has no EGL surface before something is shown in it.
  std::unique_ptr<RenderTarget> makeTarget(std::unique_ptr<EglWindow> window);
  MpvRenderContext makeContext(mpv_handle* core) override;
  bool turnsPictures() const override { return true; }
  std::string device() const override { return driver_; }
  std::unique_ptr<Picture> makePicture(PixelSize size) override;
  bool isLost() const override { return lost_; }
  bool restore(const std::function<void()>& letGo) override;

 private:
  friend class GpuPicture;
  friend class GpuTarget;

  explicit GpuRenderer(const EglPlatform& platform);
  Outcome setUp(Rasteriser allowed);
  bool chooseConfig();
  bool suits(EGLConfig candidate) const;
  EglContext makeGlContext() const;
  bool useContext(EglContext context);
  /// Destroys the surfaces of all targets, and leaves no context current.
  void releaseSurfaces();
  /// False when the target has no surface and cannot get one, or the context is lost.
  bool prepare(GpuTarget& target, PixelSize size);
  /// Makes the context current with the surface of the target, which must have one; or without a surface.
  bool makeCurrent(GpuTarget* target);
  void swap(GpuTarget& target);
  /// Returns whether an EGL call succeeded, and notices a loss by the error of one that did not.
  bool checked(EGLBoolean result);

  EglPlatform platform_;
  EglDisplay display_;
  std::string driver_;
  EGLConfig config_ = nullptr;
  EglContext context_;
  bool lost_ = false;
  /// From GL_KHR_robustness or GL_EXT_robustness; null where the driver does not report resets.
  GLenum (*resetStatus_)() = nullptr;
  std::vector<GpuTarget*> targets_;
  /// The target whose surface is current; null for none.
  GpuTarget* current_ = nullptr;
};

}  // namespace quilex
