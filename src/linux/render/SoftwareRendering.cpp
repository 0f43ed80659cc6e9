#include "linux/render/SoftwareRendering.h"

#include <array>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "base/FatalError.h"

namespace quilex {

#if defined(__x86_64__)
namespace {

// Makes the conversion of a frame a third faster. The converter uses SSE instructions. While the upper halves of the
// vector registers are in use, as other libraries leave them, each of these waits for the last one that wrote to the
// same register (Intel 64 and IA-32 Architectures Optimization Reference Manual, on mixing AVX code with SSE code).
[[gnu::target("avx")]] void clearUpperHalves() {
  _mm256_zeroupper();
}

}  // namespace
#endif

MpvRenderContext makeSoftwareContext(mpv_handle* core) {
  // The converter's fast paths save a third of the cost of a frame that needs no scaling, with no visible difference.
  mpv_set_option_string(core, "sws-fast", "yes");
  mpv_set_option_string(core, "sws-allow-zimg", "no");
  // For a picture across two monitors the default scaler takes longer than a frame lasts, and looks no better.
  mpv_set_option_string(core, "sws-scaler", "bilinear");
  std::array parameters{
      mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
      mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
  };
  mpv_render_context* context = nullptr;
  if (mpv_render_context_create(&context, core, parameters.data()) < 0) {
    fatalError("the player library has no software renderer");
  }
  return MpvRenderContext(context);
}

bool drawSoftware(mpv_render_context* context, PixelSize size, std::size_t stride, void* pixels) {
  std::array extent{size.width, size.height};
  int wait = 0;
  std::array parameters{
      mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, extent.data()},
      mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, const_cast<char*>("bgr0")},
      mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &stride},
      mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, pixels},
      mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
      mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
  };
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx") != 0) {
    clearUpperHalves();
  }
#endif
  return mpv_render_context_render(context, parameters.data()) >= 0;
}

}  // namespace quilex
