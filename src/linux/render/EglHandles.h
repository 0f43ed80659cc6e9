#pragma once

#include <EGL/egl.h>
#include <GLES3/gl3.h>

#include <memory>

namespace quilex {

struct EglTerminator {
  void operator()(EGLDisplay display) const { eglTerminate(display); }
};

template <auto destroy>
struct EglDestroyer {
  EGLDisplay display = EGL_NO_DISPLAY;
  void operator()(void* object) const { destroy(display, object); }
};

/// Own EGL's objects. A display must outlive its contexts and surfaces.
using EglDisplay = std::unique_ptr<void, EglTerminator>;
using EglContext = std::unique_ptr<void, EglDestroyer<eglDestroyContext>>;
using EglSurface = std::unique_ptr<void, EglDestroyer<eglDestroySurface>>;

/// Makes and owns an object of the OpenGL context that is current at both ends of its life.
template <auto generate, auto destroy>
class GlObject {
 public:
  GlObject() { generate(1, &name_); }
  ~GlObject() { destroy(1, &name_); }
  GlObject(const GlObject&) = delete;
  GlObject& operator=(const GlObject&) = delete;

  GLuint name() const { return name_; }

 private:
  GLuint name_ = 0;
};

using GlTexture = GlObject<glGenTextures, glDeleteTextures>;
using GlFramebuffer = GlObject<glGenFramebuffers, glDeleteFramebuffers>;

}  // namespace quilex
