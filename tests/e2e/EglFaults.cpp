// Preloaded into the agent: makes EGL fail as the file at QUILEX_EGL_FAULT says.
//   lost        the context is lost, as after a reset of the GPU, until another one is made; the file is removed
//   hang        the thread that shows a picture never returns; the file is removed
//   surface     no window surface can be made while the file is there, which standard error tells

#include <EGL/egl.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

bool lost = false;
EGLint error = EGL_SUCCESS;

template <typename Function>
Function* original(Function* /*own*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isAskedFor(const std::string& fault) {
  const char* const file = std::getenv("QUILEX_EGL_FAULT");
  std::string asked;
  return file != nullptr && std::ifstream(file) >> asked && asked == fault;
}

EGLBoolean failed(EGLint code) {
  error = code;
  return EGL_FALSE;
}

}  // namespace

#define ORIGINAL(function) original(function, #function)

extern "C" {

EGLBoolean eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
  const bool hangs = isAskedFor("hang");
  if (hangs || isAskedFor("lost")) {
    lost = true;
    unlink(std::getenv("QUILEX_EGL_FAULT"));
  }
  while (hangs) {
    pause();
  }
  return lost ? failed(EGL_CONTEXT_LOST) : ORIGINAL(eglSwapBuffers)(display, surface);
}

EGLBoolean eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read, EGLContext context) {
  return lost && context != EGL_NO_CONTEXT ? failed(EGL_CONTEXT_LOST)
                                           : ORIGINAL(eglMakeCurrent)(display, draw, read, context);
}

EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext shared, const EGLint* attributes) {
  // The first attempt after a loss fails, as while the GPU is still being reset.
  static bool again = false;
  if (lost && !again) {
    again = true;
    return EGL_NO_CONTEXT;
  }
  lost = again = false;
  return ORIGINAL(eglCreateContext)(display, config, shared, attributes);
}

EGLSurface eglCreateWindowSurface(EGLDisplay display, EGLConfig config, EGLNativeWindowType window,
                                  const EGLint* attributes) {
  if (isAskedFor("surface")) {
    std::cerr << "no surface" << std::endl;
    error = EGL_BAD_ALLOC;
    return EGL_NO_SURFACE;
  }
  return ORIGINAL(eglCreateWindowSurface)(display, config, window, attributes);
}

EGLint eglGetError() {
  const EGLint own = error;
  error = EGL_SUCCESS;
  return own != EGL_SUCCESS ? own : ORIGINAL(eglGetError)();
}
}
