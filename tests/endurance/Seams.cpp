// Plays clips that count their frames, each repeated by itself for some time, and checks that every frame of every pass
// is drawn once: seams [SECONDS]. Prints a table; the exit status is 1 if a frame was lost or came twice. A busy
// machine loses frames anywhere: run it under chrt -r 10 there.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <vector>

#include "linux/player/MpvPlayer.h"
#include "linux/render/SoftwareRendering.h"

namespace {

using namespace quilex;

// A frame's number stands in black and white columns, the lowest bit first.
constexpr int kBits = 10;
constexpr int kColumn = 8;
constexpr PixelSize kSize{kBits * kColumn, 16};

struct Counts {
  int frames = 0;
  int passes = 0;
  int lost = 0;
  int lostAtSeams = 0;
  int repeated = 0;
  int last = -1;
};

struct Reader : Renderer {
  struct Area : Picture {
    explicit Area(Reader& reader) : owner(reader) {}
    bool draw(mpv_render_context* context) override {
      constexpr std::size_t kStride = softwareStride(kSize.width);
      std::vector<std::uint32_t> pixels(kStride / kPixelBytes * static_cast<std::size_t>(kSize.height));
      drawSoftware(context, kSize, kStride, pixels.data());
      const std::size_t middle = kStride / kPixelBytes * static_cast<std::size_t>(kSize.height / 2);
      int number = 0;
      for (int bit = 0; bit < kBits; ++bit) {
        const std::uint32_t pixel = pixels[middle + static_cast<std::size_t>(bit * kColumn + kColumn / 2)];
        number |= static_cast<int>(pixel >> 15 & 1) << bit;
      }
      owner.count(number);
      return true;
    }
    void show(RenderTarget&, const PixelRect&) override {}
    Reader& owner;
  };
  Reader(Counts& sum, int frames) : counts(sum), length(frames) {}
  MpvRenderContext makeContext(mpv_handle* core) override { return makeSoftwareContext(core); }
  std::unique_ptr<Picture> makePicture(PixelSize) override { return std::make_unique<Area>(*this); }

  void count(int number) {
    ++counts.frames;
    const int skipped = (number - counts.last - 1 + length) % length;
    if (counts.last >= 0 && number == counts.last && length > 1) {
      ++counts.repeated;
    } else if (counts.last >= 0) {
      counts.lost += skipped;
      counts.lostAtSeams += number <= counts.last ? skipped : 0;
    }
    counts.passes += number <= counts.last ? 1 : 0;
    counts.last = number;
  }
  Counts& counts;
  int length;
};

struct Clip {
  const char* name;
  const char* rate;
  int frames;
  const char* container;
  const char* codec;
  const char* timestamps = "";
};

constexpr Clip kClips[] = {
    {"29.97, 2.002 s", "30000/1001", 60, "mp4", "libx264"},
    {"23.976", "24000/1001", 48, "mp4", "libx264"},
    {"25, mkv", "25", 50, "mkv", "libx264"},
    {"30, 300 frames", "30", 300, "mp4", "libx264"},
    {"59.94, webm", "60000/1001", 240, "webm", "libvpx"},
    {"30, 1 frame", "30", 1, "mp4", "libx264"},
    {"30, 9 frames", "30", 9, "mp4", "libx264"},
    {"29.97, ts", "30000/1001", 60, "ts", "libx264"},
    {"variable", "30", 70, "mp4", "libx264", ",settb=1/1000,setpts='N*33+mod(N*17,30)'"},
};

QString make(const QString& folder, const Clip& clip, int index) {
  const QString file = folder + QString::number(index) + '.' + clip.container;
  const QString picture = QString(
                              "color=s=%1x%2:r=%3,geq=lum='if(mod(floor(N/pow(2,floor(X/%4))),2),235,16)':cb=128:"
                              "cr=128%5")
                              .arg(kSize.width)
                              .arg(kSize.height)
                              .arg(clip.rate)
                              .arg(kColumn)
                              .arg(clip.timestamps);
  QStringList arguments{"-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", picture};
  arguments << "-frames:v" << QString::number(clip.frames) << "-fps_mode"
            << "passthrough"
            << "-c:v" << clip.codec << "-pix_fmt"
            << "yuv420p" << file;
  if (QProcess::execute("ffmpeg", arguments) != 0) {
    std::fprintf(stderr, "ffmpeg could not make the clip \"%s\"\n", clip.name);
    std::exit(2);
  }
  return file;
}

struct Trial {
  Trial(const Clip& played, const QString& file)
      : clip(played), output(std::make_unique<Reader>(counts, played.frames)) {
    surface.setTarget(&target);
    player.setRepeating(true);
    player.replaceCurrentItem(file.toStdString());
    player.play();
  }
  const Clip& clip;
  Counts counts;
  VideoOutput output;
  RenderTarget target;
  VideoSurface surface{output, {kSize, {}}, [] {}};
  StatusReport report;
  MpvPlayer player{output, report};
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
  const QTemporaryDir folder;
  std::deque<Trial> trials;
  int index = 0;
  for (const Clip& clip : kClips) {
    trials.emplace_back(clip, make(folder.path() + '/', clip, index++));
  }
  QTimer::singleShot(seconds * 1000, &QCoreApplication::quit);
  QCoreApplication::exec();

  bool whole = true;
  std::printf("%-16s %7s %7s %6s %9s %9s\n", "clip", "frames", "passes", "lost", "at seams", "repeated");
  for (const Trial& trial : trials) {
    const Counts& counts = trial.counts;
    std::printf("%-16s %7d %7d %6d %9d %9d\n", trial.clip.name, counts.frames, counts.passes, counts.lost,
                counts.lostAtSeams, counts.repeated);
    whole = whole && counts.lost == 0 && counts.repeated == 0 && (trial.clip.frames == 1 || counts.passes > 0);
  }
  return whole ? 0 : 1;
}
