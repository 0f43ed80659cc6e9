#include "linux/render/GpuRenderer.h"

#include <EGL/eglext.h>
#include <mpv/render_gl.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FatalError.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

// What cores before 0.37 do by default. Later ones scale in several passes, which takes a multiple of the time and
// gives a black picture with some drivers of OpenGL ES.
constexpr std::array<std::pair<const char*, const char*>, 7> kScaling{{{"scale", "bilinear"},
                                                                       {"dscale", "bilinear"},
                                                                       {"cscale", "bilinear"},
                                                                       {"correct-downscaling", "no"},
                                                                       {"linear-downscaling", "no"},
                                                                       {"sigmoid-upscaling", "no"},
                                                                       {"dither-depth", "no"}}};

bool contains(const char* list, std::string_view word) {
  return list != nullptr && std::string_view(list).find(word) != std::string_view::npos;
}

template <typename Function>
Function eglFunction(const char* name) {
  return reinterpret_cast<Function>(eglGetProcAddress(name));
}

// Asks without starting a driver: starting a software rasteriser would take longer than the whole start of the agent.
bool onlySoftwareDevices() {
  if (!contains(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_EXT_device_")) {
    return false;
  }
  const auto queryDevices = eglFunction<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
  const auto queryString = eglFunction<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
  std::array<EGLDeviceEXT, 16> devices{};
  EGLint count = 0;
  if (queryDevices == nullptr || queryString == nullptr ||
      queryDevices(static_cast<EGLint>(devices.size()), devices.data(), &count) == EGL_FALSE) {
    return false;
  }
  return std::all_of(devices.begin(), devices.begin() + count, [&](EGLDeviceEXT device) {
    return contains(queryString(device, EGL_EXTENSIONS), "EGL_MESA_device_software");
  });
}

// A rasteriser without a name counts as software.
bool isSoftware(const std::string& rasteriser) {
  return rasteriser.empty() || contains(rasteriser.c_str(), "llvmpipe") || contains(rasteriser.c_str(), "softpipe") ||
         contains(rasteriser.c_str(), "SWR");
}

std::string glText(GLenum name) {
  const auto* text = reinterpret_cast<const char*>(glGetString(name));
  return text != nullptr ? text : "";
}

// EGL's last error in brackets, to follow a message; empty when there was none.
std::string lastError() {
  const EGLint error = eglGetError();
  std::ostringstream text;
  text << " (EGL error 0x" << std::hex << error << ")";
  return error == EGL_SUCCESS ? "" : text.str();
}

tl::unexpected<Failure> refused(std::string reason) {
  qCInfo(renderLog, "EGL is not used: %s", reason.c_str());
  return failed(std::move(reason));
}

}  // namespace

class GpuTarget : public RenderTarget {
 public:
  GpuTarget(GpuRenderer& renderer, std::unique_ptr<EglWindow> window)
      : renderer_(renderer), window_(std::move(window)) {
    renderer_.targets_.push_back(this);
  }
  ~GpuTarget() override {
    if (renderer_.current_ == this) {
      renderer_.makeCurrent(nullptr);
      // Also when that fails because the context is lost.
      renderer_.current_ = nullptr;
    }
    std::erase(renderer_.targets_, this);
  }

 private:
  friend class GpuRenderer;

  GpuRenderer& renderer_;
  // The surface is destroyed before the window.
  std::unique_ptr<EglWindow> window_;
  EglSurface surface_;
};

/// A texture of the picture's size in a framebuffer object. A context must be current when it is made.
class GpuPicture : public Picture {
 public:
  GpuPicture(GpuRenderer& renderer, PixelSize size) : renderer_(renderer), size_(size) {
    glBindTexture(GL_TEXTURE_2D, texture_.name());
    glTexStorage2D(GL_TEXTURE_2D, 1, GL_RGBA8, size_.width, size_.height);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture_.name(), 0);
  }
  ~GpuPicture() override { renderer_.makeCurrent(renderer_.current_); }

  bool draw(mpv_render_context* context) override {
    renderer_.makeCurrent(renderer_.current_);
    mpv_opengl_fbo drawn{static_cast<int>(framebuffer_.name()), size_.width, size_.height, 0};
    int flipped = 1;  // OpenGL's rows go upwards
    int wait = 0;
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &drawn},
        mpv_render_param{MPV_RENDER_PARAM_FLIP_Y, &flipped},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    return mpv_render_context_render(context, parameters.data()) >= 0;
  }

  void show(RenderTarget& target, const PixelRect& part) override {
    auto& own = static_cast<GpuTarget&>(target);
    if (!renderer_.prepare(own, {part.width, part.height})) {
      return;
    }
    const GLint bottom = size_.height - part.y - part.height;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_.name());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glDisable(GL_SCISSOR_TEST);
    glBlitFramebuffer(part.x, bottom, part.x + part.width, bottom + part.height, 0, 0, part.width, part.height,
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
    renderer_.swap(own);
  }

 private:
  GpuRenderer& renderer_;
  PixelSize size_;
  GlTexture texture_;
  GlFramebuffer framebuffer_;
};

Result<std::unique_ptr<GpuRenderer>> GpuRenderer::make(const EglPlatform& platform, Rasteriser allowed) {
  if (allowed == Rasteriser::hardwareOnly && onlySoftwareDevices()) {
    return refused("EGL knows only software devices");
  }
  std::unique_ptr<GpuRenderer> renderer(new GpuRenderer(platform));
  if (auto ready = renderer->setUp(allowed); !ready) {
    return refused(std::move(ready.error().message));
  }
  qCInfo(renderLog, "draws with %s", renderer->driver_.c_str());
  return renderer;
}

GpuRenderer::GpuRenderer(const EglPlatform& platform)
    : platform_(platform), display_(eglGetPlatformDisplay(platform.kind, platform.display, nullptr)) {}

GpuRenderer::~GpuRenderer() {
  if (context_) {
    releaseSurfaces();
  }
}

Outcome GpuRenderer::setUp(Rasteriser allowed) {
  if (!display_ || eglInitialize(display_.get(), nullptr, nullptr) == EGL_FALSE) {
    return failed("EGL cannot be started on this display" + lastError());
  }
  if (!contains(eglQueryString(display_.get(), EGL_EXTENSIONS), "EGL_KHR_surfaceless_context")) {
    return failed("EGL lacks contexts without surfaces (EGL_KHR_surfaceless_context)");
  }
  if (eglBindAPI(EGL_OPENGL_ES_API) == EGL_FALSE) {
    return failed("EGL lacks OpenGL ES");
  }
  if (!chooseConfig()) {
    return failed("EGL has no configuration of OpenGL ES 3 for the windows' colours");
  }
  if (!useContext(makeGlContext())) {
    return failed("EGL cannot make a context of OpenGL ES 3" + lastError());
  }
  driver_ = glText(GL_VENDOR) + " " + glText(GL_RENDERER) + ", " + glText(GL_VERSION);
  if (allowed == Rasteriser::hardwareOnly && isSoftware(glText(GL_RENDERER))) {
    return failed("EGL has only a software rasteriser, " + glText(GL_RENDERER));
  }
  return {};
}

bool GpuRenderer::suits(EGLConfig candidate) const {
  const auto has = [&](EGLint attribute, EGLint wanted) {
    EGLint value = 0;
    return eglGetConfigAttrib(display_.get(), candidate, attribute, &value) == EGL_TRUE && value == wanted;
  };
  return platform_.visual ? has(EGL_NATIVE_VISUAL_ID, *platform_.visual)
                          : has(EGL_BUFFER_SIZE, 24) && has(EGL_ALPHA_SIZE, 0);
}

bool GpuRenderer::chooseConfig() {
  constexpr std::array<EGLint, 11> kWanted{EGL_SURFACE_TYPE,
                                           EGL_WINDOW_BIT,
                                           EGL_RENDERABLE_TYPE,
                                           EGL_OPENGL_ES3_BIT,
                                           EGL_RED_SIZE,
                                           8,
                                           EGL_GREEN_SIZE,
                                           8,
                                           EGL_BLUE_SIZE,
                                           8,
                                           EGL_NONE};
  EGLint count = 0;
  eglChooseConfig(display_.get(), kWanted.data(), nullptr, 0, &count);
  std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
  eglChooseConfig(display_.get(), kWanted.data(), configs.data(), count, &count);
  const auto found = std::ranges::find_if(configs, [&](EGLConfig each) { return suits(each); });
  if (found == configs.end()) {
    return false;
  }
  config_ = *found;
  return true;
}

// A driver reports a reset only to a context that asks for reports; without one it may end the process.
EglContext GpuRenderer::makeGlContext() const {
  std::vector<EGLint> attributes{EGL_CONTEXT_CLIENT_VERSION, 3};
  if (contains(eglQueryString(display_.get(), EGL_EXTENSIONS), "EGL_EXT_create_context_robustness")) {
    attributes.insert(attributes.end(),
                      {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT, EGL_LOSE_CONTEXT_ON_RESET_EXT});
  }
  attributes.push_back(EGL_NONE);
  return {eglCreateContext(display_.get(), config_, EGL_NO_CONTEXT, attributes.data()), {display_.get()}};
}

bool GpuRenderer::useContext(EglContext context) {
  context_ = std::move(context);
  resetStatus_ = nullptr;
  if (!context_ || !makeCurrent(nullptr)) {
    return false;
  }
  const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
  const bool known = contains(extensions, "GL_KHR_robustness");
  if (known || contains(extensions, "GL_EXT_robustness")) {
    resetStatus_ = eglFunction<GLenum (*)()>(known ? "glGetGraphicsResetStatusKHR" : "glGetGraphicsResetStatusEXT");
  }
  return true;
}

void GpuRenderer::releaseSurfaces() {
  eglMakeCurrent(display_.get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  current_ = nullptr;
  for (GpuTarget* target : targets_) {
    target->surface_.reset();
  }
}

bool GpuRenderer::restore(const std::function<void()>& letGo) {
  EglContext context = makeGlContext();
  if (!context || eglMakeCurrent(display_.get(), EGL_NO_SURFACE, EGL_NO_SURFACE, context.get()) == EGL_FALSE) {
    return false;
  }
  letGo();
  releaseSurfaces();
  lost_ = false;
  useContext(std::move(context));
  return true;
}

bool GpuRenderer::checked(EGLBoolean result) {
  if (result == EGL_FALSE && eglGetError() == EGL_CONTEXT_LOST) {
    lost_ = true;
  }
  return result == EGL_TRUE;
}

bool GpuRenderer::prepare(GpuTarget& target, PixelSize size) {
  const EGLNativeWindowType window = target.window_->sized(size);
  if (!target.surface_) {
    target.surface_ = {eglCreateWindowSurface(display_.get(), config_, window, nullptr), {display_.get()}};
  }
  return target.surface_ && makeCurrent(&target);
}

bool GpuRenderer::makeCurrent(GpuTarget* target) {
  const EGLSurface surface = target != nullptr ? target->surface_.get() : EGL_NO_SURFACE;
  if (!checked(eglMakeCurrent(display_.get(), surface, surface, context_.get()))) {
    return false;
  }
  if (current_ != target) {
    current_ = target;
    eglSwapInterval(display_.get(), 0);
  }
  return true;
}

void GpuRenderer::swap(GpuTarget& target) {
  target.window_->willShow();
  if (!checked(eglSwapBuffers(display_.get(), target.surface_.get()))) {
    target.window_->wasNotShown();
  }
  if (resetStatus_ != nullptr && resetStatus_() != GL_NO_ERROR) {
    lost_ = true;
  }
}

std::unique_ptr<RenderTarget> GpuRenderer::makeTarget(std::unique_ptr<EglWindow> window) {
  return std::make_unique<GpuTarget>(*this, std::move(window));
}

std::unique_ptr<Picture> GpuRenderer::makePicture(PixelSize size) {
  makeCurrent(current_);
  return std::make_unique<GpuPicture>(*this, size);
}

MpvRenderContext GpuRenderer::makeContext(mpv_handle* core) {
  mpv_set_option_string(core, "hwdec", "auto-safe");
  for (const auto& [name, value] : kScaling) {
    mpv_set_option_string(core, name, value);
  }
  makeCurrent(current_);
  mpv_opengl_init_params functions{};
  functions.get_proc_address = [](void*, const char* name) { return reinterpret_cast<void*>(eglGetProcAddress(name)); };
  std::array parameters{
      mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
      mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions},
      platform_.forPlayer,
      mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
  };
  mpv_render_context* made = nullptr;
  if (mpv_render_context_create(&made, core, parameters.data()) < 0) {
    fatalError("the player library has no OpenGL renderer");
  }
  return MpvRenderContext(made);
}

}  // namespace quilex
