// Paints one of the default loops and has the ffmpeg program encode it:
//   paint_loop NAME OUTPUT.mp4
//
// Every term of a picture depends on the time only through whole multiples of the phase, which
// runs once through 2 pi over the loop, so the frame that would follow the last is the first.
// Pictures are painted at half size with 16 bits a channel: ffmpeg scales them up and dithers,
// which keeps the wide gradients free of bands.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kWidth = 960;
constexpr int kHeight = 540;
constexpr int kRate = 30;
constexpr float kPi = std::numbers::pi_v<float>;

struct Colour {
  float red = 0;
  float green = 0;
  float blue = 0;
};

Colour operator*(Colour colour, float factor) {
  return {colour.red * factor, colour.green * factor, colour.blue * factor};
}

Colour operator+(Colour left, Colour right) {
  return {left.red + right.red, left.green + right.green, left.blue + right.blue};
}

Colour mix(Colour from, Colour to, float share) {
  return from * (1 - share) + to * share;
}

float glow(float distance, float width) {
  const float ratio = distance / width;
  return std::exp(-ratio * ratio);
}

// A painter gives the colour at (x, y), both 0 to 1 with y downwards, at a phase of 0 to 2 pi.
using Painter = Colour (*)(float x, float y, float phase);

// Two curtains of light over a night sky.
Colour aurora(float x, float y, float phase) {
  const Colour sky = mix({0.015F, 0.030F, 0.085F}, {0.020F, 0.105F, 0.140F}, y);
  const float low = y - 0.42F - 0.11F * std::sin(2 * kPi * x + phase) - 0.05F * std::sin(4 * kPi * x - 2 * phase + 1);
  const float high = y - 0.60F - 0.09F * std::sin(2 * kPi * x - phase + 2) - 0.04F * std::sin(6 * kPi * x + phase);
  const float rays = 0.72F + 0.28F * std::sin(10 * kPi * x + 2 * phase + 3 * std::sin(2 * kPi * x - phase));
  return sky + Colour{0.085F, 0.612F, 0.442F} * (glow(low, low < 0 ? 0.20F : 0.10F) * rays) +
         Colour{0.288F, 0.128F, 0.496F} * glow(high, high < 0 ? 0.24F : 0.13F);
}

struct Ridge {
  float base;
  float height;
  float waves;
  float speed;
  float shift;
  Colour colour;
};

// Ridges rolling past below a low sun.
Colour dunes(float x, float y, float phase) {
  static constexpr std::array<Ridge, 4> kRidges{{
      {0.54F, 0.050F, 2, 1, 0.3F, {0.72F, 0.44F, 0.46F}},
      {0.64F, 0.060F, 1, 1, 2.1F, {0.50F, 0.31F, 0.42F}},
      {0.75F, 0.055F, 2, 2, 4.0F, {0.31F, 0.21F, 0.36F}},
      {0.87F, 0.050F, 1, 1, 5.2F, {0.15F, 0.12F, 0.25F}},
  }};
  const float height = std::clamp(1 - y / 0.62F, 0.0F, 1.0F);
  const float aside = (x - 0.64F) * 16 / 9;
  const float below = y - 0.36F - 0.012F * std::sin(phase);
  const float distance = std::hypot(aside, below);
  Colour picture = mix({0.98F, 0.62F, 0.46F}, {0.40F, 0.30F, 0.50F}, std::pow(height, 0.9F));
  picture = picture + Colour{0.30F, 0.24F, 0.10F} * glow(distance, 0.24F);
  picture = mix(picture, {1.0F, 0.90F, 0.72F}, std::clamp((0.075F - distance) * kHeight / 1.5F + 0.5F, 0.0F, 1.0F));
  for (const Ridge& ridge : kRidges) {
    const float crest = ridge.base +
                        ridge.height * std::sin(2 * kPi * ridge.waves * x - ridge.speed * phase + ridge.shift) +
                        0.010F * std::sin(10 * kPi * x - ridge.speed * phase);
    const float depth = y - crest;
    const Colour haze = mix(ridge.colour, {0.90F, 0.58F, 0.50F}, 0.22F * glow(std::max(depth, 0.0F), 0.09F));
    picture = mix(picture, haze, std::clamp(depth * kHeight / 1.5F + 0.5F, 0.0F, 1.0F));
  }
  return picture;
}

// Folds of a cloth that breathes.
Colour silk(float x, float y, float phase) {
  const float warp = 2.4F * x + 0.55F * std::sin(2 * kPi * y + phase) + 0.35F * std::sin(3 * x - 4 * y + 2 * phase);
  const float fold = 0.5F + 0.5F * std::sin(4 * warp + 2 * y + std::sin(5 * y - phase));
  const Colour cloth = mix({0.055F, 0.070F, 0.170F}, {0.130F, 0.330F, 0.560F}, fold);
  return mix(cloth, {0.620F, 0.820F, 0.900F}, 0.75F * std::pow(fold, 5.0F));
}

struct Loop {
  std::string_view name;
  Painter painter;
  int seconds;
};

constexpr std::array<Loop, 3> kLoops{{{"aurora", aurora, 10}, {"dunes", dunes, 10}, {"silk", silk, 8}}};

std::string encoder(const std::string& output) {
  const std::string size = std::to_string(kWidth) + "x" + std::to_string(kHeight);
  return "ffmpeg -nostdin -hide_banner -loglevel error -y -f rawvideo -pixel_format rgb48le -video_size " + size +
         " -framerate " + std::to_string(kRate) +
         " -i pipe:0 -vf 'scale=1920:1080:flags=bicubic:out_color_matrix=bt709:sws_dither=ed,format=yuv420p'"
         " -c:v libx264 -preset medium -crf 20 -profile:v high -colorspace bt709 -color_primaries bt709"
         " -color_trc bt709 -movflags +faststart -f mp4 '" +
         output + "'";
}

std::uint16_t sample(float value) {
  return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 65535.0F));
}

bool paint(const Loop& loop, const std::string& output) {
  using Pipe = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
  Pipe pipe(popen(encoder(output).c_str(), "w"), pclose);
  if (!pipe) {
    return false;
  }
  const int frames = loop.seconds * kRate;
  std::vector<std::uint16_t> picture(static_cast<std::size_t>(kWidth) * kHeight * 3);
  for (int frame = 0; frame < frames; ++frame) {
    const float phase = 2 * kPi * static_cast<float>(frame) / static_cast<float>(frames);
    auto out = picture.begin();
    for (int row = 0; row < kHeight; ++row) {
      for (int column = 0; column < kWidth; ++column) {
        const Colour colour = loop.painter((static_cast<float>(column) + 0.5F) / kWidth,
                                           (static_cast<float>(row) + 0.5F) / kHeight, phase);
        *out++ = sample(colour.red);
        *out++ = sample(colour.green);
        *out++ = sample(colour.blue);
      }
    }
    if (std::fwrite(picture.data(), sizeof(std::uint16_t), picture.size(), pipe.get()) != picture.size()) {
      return false;
    }
  }
  return pclose(pipe.release()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view name = argc == 3 ? argv[1] : "";
  const auto* loop = std::find_if(kLoops.begin(), kLoops.end(), [&](const Loop& each) { return each.name == name; });
  if (loop == kLoops.end()) {
    std::fputs("usage: paint_loop aurora|dunes|silk OUTPUT.mp4\n", stderr);
    return 2;
  }
  if (!paint(*loop, argv[2])) {
    std::fprintf(stderr, "paint_loop: ffmpeg did not encode %s\n", argv[2]);
    return 1;
  }
  return 0;
}
