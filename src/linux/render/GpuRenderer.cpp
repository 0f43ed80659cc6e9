#include "linux/render/GpuRenderer.h"

#include <EGL/eglext.h>
#include <GLES3/gl3.h>
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

// Asks without starting a driver, which for a software rasteriser would cost more than the whole start of the agent.
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

// A rasteriser that does not say what it is counts as one of software.
bool isSoftware(const std::string& rasteriser) {
  return rasteriser.empty() || contains(rasteriser.c_str(), "llvmpipe") || contains(rasteriser.c_str(), "softpipe") ||
         contains(rasteriser.c_str(), "SWR");
}

std::string glText(GLenum name) {
  const auto* text = reinterpret_cast<const char*>(glGetString(name));
  return text != nullptr ? text : "";
}

// What EGL says of its last failure, to be put behind a sentence; nothing where there was none.
std::string lastError() {
  const EGLint error = eglGetError();
  std::ostringstream text;
  text << " (EGL error 0x" << std::hex << error << ")";
  return error == EGL_SUCCESS ? "" : text.str();
}

}  // namespace

/// A texture of the picture's size in a framebuffer object.
class GpuPicture : public Picture {
 public:
  GpuPicture(GpuRenderer& owner, PixelSize extent) : renderer_(owner), size_(extent) {
    renderer_.makeCurrent(renderer_.current_);
    glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    glTexStorage2D(GL_TEXTURE_2D, 1, GL_RGBA8, size_.width, size_.height);
    glGenFramebuffers(1, &framebuffer_);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture_, 0);
  }
  ~GpuPicture() override {
    renderer_.makeCurrent(renderer_.current_);
    glDeleteFramebuffers(1, &framebuffer_);
    glDeleteTextures(1, &texture_);
  }

  bool draw(mpv_render_context* context) override {
    renderer_.makeCurrent(renderer_.current_);
    mpv_opengl_fbo target{static_cast<int>(framebuffer_), size_.width, size_.height, 0};
    int flipped = 1;  // OpenGL's rows go upwards
    int wait = 0;
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &target},
        mpv_render_param{MPV_RENDER_PARAM_FLIP_Y, &flipped},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    return mpv_render_context_render(context, parameters.data()) >= 0;
  }

  void show(NativeWindow window, const PixelRect& part) override {
    const EGLNativeWindowType native = renderer_.windows_->sized(window, {part.width, part.height});
    if (native == 0 || !renderer_.makeCurrent(window, native)) {
      return;
    }
    const GLint bottom = size_.height - part.y - part.height;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glDisable(GL_SCISSOR_TEST);
    glBlitFramebuffer(part.x, bottom, part.x + part.width, bottom + part.height, 0, 0, part.width, part.height,
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
    renderer_.show(window);
  }

 private:
  GpuRenderer& renderer_;
  PixelSize size_;
  GLuint texture_ = 0;
  GLuint framebuffer_ = 0;
};

std::unique_ptr<GpuRenderer> GpuRenderer::make(EGLenum platform, void* nativeDisplay,
                                               std::optional<EGLint> nativeVisual, mpv_render_param displayParameter,
                                               Rasteriser allowed, std::string& refusal,
                                               std::unique_ptr<EglWindows> windows) {
  const auto refuse = [&refusal](std::string why) {
    refusal = std::move(why);
    qCInfo(renderLog, "EGL is not used: %s", refusal.c_str());
    return nullptr;
  };
  if (allowed == Rasteriser::hardwareOnly && onlySoftwareDevices()) {
    return refuse("EGL knows only software devices");
  }
  const EGLDisplay display = eglGetPlatformDisplay(platform, nativeDisplay, nullptr);
  if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
    return refuse("EGL cannot be started on this display" + lastError());
  }
  std::unique_ptr<GpuRenderer> renderer(new GpuRenderer(display, std::move(windows)));
  renderer->nativeDisplayParameter_ = displayParameter;
  if (auto failure = renderer->setUp(nativeVisual, allowed)) {
    return refuse(*std::move(failure));
  }
  qCInfo(renderLog, "draws with %s", renderer->driver_.c_str());
  return renderer;
}

bool GpuRenderer::suits(EGLConfig candidate, std::optional<EGLint> nativeVisual) const {
  const auto has = [&](EGLint attribute, EGLint wanted) {
    EGLint value = 0;
    return eglGetConfigAttrib(display_, candidate, attribute, &value) == EGL_TRUE && value == wanted;
  };
  return nativeVisual ? has(EGL_NATIVE_VISUAL_ID, *nativeVisual) : has(EGL_BUFFER_SIZE, 24) && has(EGL_ALPHA_SIZE, 0);
}

bool GpuRenderer::chooseConfig(std::optional<EGLint> nativeVisual) {
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
  eglChooseConfig(display_, kWanted.data(), nullptr, 0, &count);
  std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
  eglChooseConfig(display_, kWanted.data(), configs.data(), count, &count);
  const auto found =
      std::find_if(configs.begin(), configs.end(), [&](EGLConfig each) { return suits(each, nativeVisual); });
  if (found == configs.end()) {
    return false;
  }
  config_ = *found;
  return true;
}

std::optional<std::string> GpuRenderer::setUp(std::optional<EGLint> nativeVisual, Rasteriser allowed) {
  if (!contains(eglQueryString(display_, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context")) {
    return "EGL lacks contexts without surfaces (EGL_KHR_surfaceless_context)";
  }
  if (eglBindAPI(EGL_OPENGL_ES_API) == EGL_FALSE) {
    return "EGL lacks OpenGL ES";
  }
  if (!chooseConfig(nativeVisual)) {
    return "EGL has no configuration of OpenGL ES 3 for the windows' colours";
  }
  if (!use(makeGlContext())) {
    return "EGL cannot make a context of OpenGL ES 3" + lastError();
  }
  driver_ = glText(GL_VENDOR) + " " + glText(GL_RENDERER) + ", " + glText(GL_VERSION);
  if (allowed == Rasteriser::hardwareOnly && isSoftware(glText(GL_RENDERER))) {
    return "EGL has only a software rasteriser, " + glText(GL_RENDERER);
  }
  return std::nullopt;
}

// A driver tells of resets only in a context that asks for it; it may end the process otherwise.
EGLContext GpuRenderer::makeGlContext() const {
  std::vector<EGLint> attributes{EGL_CONTEXT_CLIENT_VERSION, 3};
  if (contains(eglQueryString(display_, EGL_EXTENSIONS), "EGL_EXT_create_context_robustness")) {
    attributes.insert(attributes.end(),
                      {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT, EGL_LOSE_CONTEXT_ON_RESET_EXT});
  }
  attributes.push_back(EGL_NONE);
  return eglCreateContext(display_, config_, EGL_NO_CONTEXT, attributes.data());
}

bool GpuRenderer::use(EGLContext made) {
  context_ = made;
  if (context_ == EGL_NO_CONTEXT || !makeCurrent(0)) {
    return false;
  }
  const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
  const bool known = contains(extensions, "GL_KHR_robustness");
  if (known || contains(extensions, "GL_EXT_robustness")) {
    resetStatus_ = eglFunction<GLenum (*)()>(known ? "glGetGraphicsResetStatusKHR" : "glGetGraphicsResetStatusEXT");
  }
  return true;
}

void GpuRenderer::destroyGlContext() {
  eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  current_ = 0;
  for (const auto& [window, surface] : surfaces_) {
    eglDestroySurface(display_, surface);
  }
  surfaces_.clear();
  if (context_ != EGL_NO_CONTEXT) {
    eglDestroyContext(display_, std::exchange(context_, EGL_NO_CONTEXT));
  }
  resetStatus_ = nullptr;
}

bool GpuRenderer::restore(const std::function<void()>& letGo) {
  const EGLContext made = makeGlContext();
  if (made == EGL_NO_CONTEXT) {
    return false;
  }
  if (eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, made) == EGL_FALSE) {
    eglDestroyContext(display_, made);
    return false;
  }
  letGo();
  destroyGlContext();
  lost_ = false;
  use(made);
  return true;
}

bool GpuRenderer::checked(EGLBoolean result) {
  if (result == EGL_FALSE && eglGetError() == EGL_CONTEXT_LOST) {
    lost_ = true;
  }
  return result == EGL_TRUE;
}

void GpuRenderer::show(NativeWindow window) {
  windows_->willShow(window);
  if (!checked(eglSwapBuffers(display_, surfaces_[window]))) {
    windows_->wasNotShown(window);
  }
  if (resetStatus_ != nullptr && resetStatus_() != GL_NO_ERROR) {
    lost_ = true;
  }
}

GpuRenderer::~GpuRenderer() {
  destroyGlContext();
  eglTerminate(display_);
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
      nativeDisplayParameter_,
      mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
  };
  mpv_render_context* made = nullptr;
  if (mpv_render_context_create(&made, core, parameters.data()) < 0) {
    fatalError("the player library has no OpenGL renderer");
  }
  return MpvRenderContext(made);
}

std::unique_ptr<Picture> GpuRenderer::makePicture(PixelSize size) {
  return std::make_unique<GpuPicture>(*this, size);
}

bool GpuRenderer::makeCurrent(NativeWindow window, EGLNativeWindowType native) {
  EGLSurface surface = EGL_NO_SURFACE;
  if (window != 0) {
    const auto known = surfaces_.find(window);
    surface = known != surfaces_.end() ? known->second : eglCreateWindowSurface(display_, config_, native, nullptr);
    if (surface == EGL_NO_SURFACE) {
      return false;
    }
    surfaces_[window] = surface;
  }
  if (!checked(eglMakeCurrent(display_, surface, surface, context_))) {
    return false;
  }
  if (current_ != window) {
    current_ = window;
    eglSwapInterval(display_, 0);
  }
  return true;
}

void GpuRenderer::forget(NativeWindow window) {
  if (const auto known = surfaces_.find(window); known != surfaces_.end()) {
    if (current_ == window) {
      makeCurrent(0);
    }
    eglDestroySurface(display_, known->second);
    surfaces_.erase(known);
  }
  // Also where EGL could make nothing of the window.
  windows_->forget(window);
}

}  // namespace quilex
