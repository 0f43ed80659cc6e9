#include <QProcess>
#include <limits>
#include <map>
#include <vector>

#include "linux/mpv/MpvPlayer.h"
#include "linux/render/SoftwareRendering.h"
#include "support/AdapterTest.h"

namespace quilex {

namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::ElementsAre;
using enum PlayerItemStatus;

constexpr PixelSize kSize{64, 36};

struct Frame {
  PixelSize size;
  std::vector<std::uint32_t> pixels;

  // r, g or b for a pixel that is plainly of that colour.
  char at(int x, int y) const {
    switch (pixels.at(static_cast<std::size_t>(y * size.width + x)) >> 6 & 0x30303) {
      case 0x30000:
        return 'r';
      case 0x00300:
        return 'g';
      case 0x00003:
        return 'b';
      default:
        return '?';
    }
  }
  char colour() const {
    const char centre = at(size.width / 2, size.height / 2);
    return at(0, 0) == centre && at(size.width - 1, size.height - 1) == centre ? centre : '?';
  }
};

/// A renderer into plain memory that keeps account of what is drawn and shown.
struct Journal {
  std::vector<Frame> drawn;
  std::map<NativeWindow, std::size_t> shown;
  bool busy = false;
  mpv_handle* core = nullptr;

  // The colours in the order in which they were seen.
  std::string colours() const {
    std::string result;
    for (const Frame& frame : drawn) {
      if (result.empty() || result.back() != frame.colour()) {
        result += frame.colour();
      }
    }
    return result;
  }
};

class MemoryRenderer : public Renderer {
 public:
  explicit MemoryRenderer(Journal& account) : journal(account) {}
  MpvRenderContext makeContext(mpv_handle* core) override { return makeSoftwareContext(journal.core = core); }
  std::unique_ptr<Picture> makePicture(PixelSize size) override { return std::make_unique<Memory>(journal, size); }
  void forget(NativeWindow) override {}

 private:
  struct Memory : Picture {
    Memory(Journal& account, PixelSize area) : journal(account), size(area) {}
    bool draw(mpv_render_context* context) override {
      Frame frame{size, std::vector<std::uint32_t>(static_cast<std::size_t>(size.width * size.height))};
      if (journal.busy || !drawSoftware(context, size, static_cast<std::size_t>(size.width) * 4, frame.pixels.data())) {
        return false;
      }
      journal.drawn.push_back(std::move(frame));
      return true;
    }
    void show(NativeWindow window, const PixelRect&) override { ++journal.shown[window]; }

    Journal& journal;
    PixelSize size;
  };

  Journal& journal;
};

struct Stage {
  void play(const fs::path& file) {
    player.replaceCurrentItem(file);
    player.play();
  }
  template <typename T>
  T property(const char* name, mpv_format format) {
    T value{};
    mpv_get_property(journal.core, name, format, &value);
    return value;
  }

  int firstFrames = 0;
  std::vector<PlayerItemStatus> statuses;
  int ends = 0;
  std::function<void()> atEnd = [] {};
  Journal journal;
  VideoOutput output{std::make_unique<MemoryRenderer>(journal)};
  VideoSurface surface{output, 1, kSize, {0, 0, 64, 36}, [this] { ++firstFrames; }};
  MpvPlayer player{output};
  Disposable statusToken = player.observeStatus([this](PlayerItemStatus status) { statuses.push_back(status); });
  Disposable endToken = player.observeItemEnd([this] {
    ++ends;
    atEnd();
  });
  Stage() { surface.setVisible(true); }
};

class MpvPlayerTest : public AdapterTest {
 protected:
  // A silent clip of a picture that ffmpeg's filters describe.
  fs::path clip(const char* name, const char* picture) const {
    const auto file = QString::fromStdString(folder / name);
    EXPECT_EQ(QProcess::execute("ffmpeg", {"-loglevel", "error", "-f", "lavfi", "-i", picture, "-f", "lavfi", "-i",
                                           "anullsrc", "-shortest", "-c:v", "mpeg4", "-q:v", "1", file}),
              0);
    return folder / name;
  }
  fs::path redThenBlue() const {
    return clip("both.mp4", "color=red:s=64x36:r=10:d=0.5[a];color=blue:s=64x36:r=10:d=0.5[b];[a][b]concat");
  }

  Stage stage;
  MpvPlayer& player = stage.player;
  Journal& journal = stage.journal;
};

TEST_F(MpvPlayerTest, TheFirstFrameFillsTheViewWithoutBarsOrDistortion) {
  const VideoSurface wide(stage.output, 2, {192, 108}, {0, 0, 192, 108}, [] {});
  const_cast<VideoSurface&>(wide).setVisible(true);
  stage.surface.setVisible(false);
  player.replaceCurrentItem(clip("4x3.mp4", "color=blue:s=160x120:d=1,drawbox=c=red:t=24"));
  ASSERT_TRUE(waitFor([&] { return !journal.drawn.empty() && !stage.statuses.empty(); }));
  EXPECT_THAT(stage.statuses, ElementsAre(readyToPlay));
  // Scaled by 1.2, the border is 29 pixels wide, and 18 of its rows are cut off above and below.
  const Frame& frame = journal.drawn.front();
  for (const auto& [x, y, colour] : {std::tuple(0, 0, 'r'),
                                     {191, 107, 'r'},
                                     {0, 54, 'r'},
                                     {191, 54, 'r'},
                                     {96, 0, 'r'},
                                     {96, 8, 'r'},
                                     {96, 14, 'b'},
                                     {96, 93, 'b'},
                                     {96, 99, 'r'},
                                     {26, 54, 'r'},
                                     {32, 54, 'b'},
                                     {159, 54, 'b'},
                                     {165, 54, 'r'}}) {
    EXPECT_EQ(frame.at(x, y), colour) << x << ' ' << y;
  }
}

TEST_F(MpvPlayerTest, EachRunRaisesTheEndOnceAndSeekingToZeroStartsAnother) {
  stage.atEnd = [&] {
    if (stage.ends == 3) {
      player.pause();
    }
    player.seekToZero();
  };
  stage.play(redThenBlue());
  EXPECT_TRUE(waitFor([&] { return journal.colours() == "rbrbrbr"; })) << journal.colours();
  EXPECT_EQ(stage.ends, 3);
  EXPECT_THAT(stage.statuses, ElementsAre(readyToPlay));
  // An item of one frame is at its end as soon as it is shown.
  stage.play(clip("short.mp4", "color=lime:s=64x36:r=10:d=0.1"));
  EXPECT_TRUE(waitFor([&] { return stage.ends == 8; }));
}

TEST_F(MpvPlayerTest, ReplacingTheItemShowsNothingBetweenTheTwo) {
  const auto red = clip("red.mp4", "color=red:s=64x36:r=25:d=0.5");
  const auto blue = clip("blue.mkv", "color=blue:s=48x48:r=25:d=0.5");  // of another shape
  std::string expected;
  for (int count = 0; count < 6; ++count) {
    expected += count % 2 == 0 ? 'r' : 'b';
    stage.play(count % 2 == 0 ? red : blue);
    ASSERT_TRUE(waitFor([&] { return journal.colours().size() >= expected.size(); }));
    stage.surface.repaint();
  }
  stage.atEnd = [&] { player.replaceCurrentItem(stage.ends % 2 == 0 ? blue : red); };
  EXPECT_TRUE(waitFor([&] { return stage.ends == 4; }));
  expected += "rbrb";
  // A failing item leaves the last picture in place, too.
  stage.atEnd = [] {};
  stage.statuses.clear();
  stage.play(folder / "missing.mp4");
  EXPECT_TRUE(waitFor([&] { return stage.statuses == std::vector{failed}; }));
  stage.surface.repaint();
  stage.play(red);
  EXPECT_TRUE(waitFor([&] { return stage.ends == 5; }));
  EXPECT_EQ(journal.colours(), expected.substr(0, 9) + "r") << "or one more b";
}

TEST_F(MpvPlayerTest, WhatIsNoVideoFails) {
  const auto red = clip("red.mp4", "color=red:s=64x36:d=0.5");
  const std::string whole = readFile(red);
  const std::map<std::string, std::string> files{
      {"text.mp4", "some text\n"},
      {"empty.mp4", ""},
      {"truncated.mp4", whole.substr(0, whole.size() / 2)},
      {"list.m3u", red.string() + "\n"},
      {"list.mp4", "#EXTM3U\n" + red.string() + "\n"},
      {"hls.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nred.mp4\n#EXT-X-ENDLIST\n"},
      {"concat.mp4", "ffconcat version 1.0\nfile red.mp4\n"},
      {"edl.mp4", "# mpv EDL v0\nred.mp4\n"},
      {"list.pls", "[playlist]\nFile1=" + red.string() + "\nNumberOfEntries=1\n"},
      {"sheet.cue", "FILE \"red.mp4\" MP4\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"},
      {"folder.mp4/red.mp4", whole}};
  for (const auto& [name, contents] : files) {
    writeFile(folder / name, contents);
    stage.statuses.clear();
    stage.play(folder / name.substr(0, name.find('/')));
    EXPECT_TRUE(waitFor([&] { return !stage.statuses.empty(); })) << name;
    EXPECT_THAT(stage.statuses, ElementsAre(failed)) << name;
  }
  EXPECT_EQ(stage.ends, 0);
  EXPECT_TRUE(journal.drawn.empty());
  // The failure of an item that was replaced at once is not told of its successor.
  stage.statuses.clear();
  stage.play(folder / "text.mp4");
  stage.play(red);
  EXPECT_TRUE(waitFor([&] { return stage.ends == 1; }));
  EXPECT_THAT(stage.statuses, ElementsAre(readyToPlay));
}

TEST_F(MpvPlayerTest, AnyFileNameIsJustAName) {
  const auto red = clip("red.mp4", "color=red:s=64x36:d=0.5");
  for (const char* name : {"a:b.mp4", "50%20 %d.mp4", "\xff\xfe.mp4", "-start.mp4", "#?&=;,[]{}.mp4", "line\nbreak.mp4",
                           " .mp4", "list.m3u"}) {
    fs::copy_file(red, folder / name);
    stage.statuses.clear();
    player.replaceCurrentItem(folder / name);
    EXPECT_TRUE(waitFor([&] { return !stage.statuses.empty(); })) << name;
    EXPECT_THAT(stage.statuses, ElementsAre(readyToPlay)) << name;
  }
}

TEST_F(MpvPlayerTest, APausedPlayerDrawsOnlyWhatIsAskedFor) {
  Stage clock;  // Plays on meanwhile, to show that there was time for a frame.
  const auto run = [&, file = redThenBlue()] {
    const int before = clock.ends;
    clock.play(file);
    EXPECT_TRUE(waitFor([&] { return clock.ends > before; }));
  };
  player.replaceCurrentItem(clip("long.mp4", "color=lime:s=64x36:r=25:d=60"));
  EXPECT_TRUE(waitFor([&] { return !journal.drawn.empty(); }));
  run();
  EXPECT_EQ(journal.drawn.size(), 1U);
  player.play();
  EXPECT_TRUE(waitFor([&] { return journal.drawn.size() > 5; }));
  player.pause();
  run();
  const std::size_t settled = journal.drawn.size();
  run();
  EXPECT_EQ(journal.drawn.size(), settled);

  VideoSurface wide(stage.output, 2, {192, 108}, {0, 0, 192, 108}, [] {});
  wide.repaint();
  EXPECT_EQ(journal.drawn.size(), settled);
  wide.setVisible(true);
  wide.repaint();
  wide.repaint();
  ASSERT_EQ(journal.drawn.size(), settled + 1);
  EXPECT_EQ(journal.drawn.back().size, PixelSize(192, 108));
  EXPECT_EQ(journal.drawn.back().colour(), 'g');
  EXPECT_EQ(journal.shown[2], 2U);
}

TEST_F(MpvPlayerTest, AFrameIsDrawnOnceForEachSizeThatIsSeen) {
  int hiddenReady = 0;
  VideoSurface twin(stage.output, 2, kSize, {32, 0, 32, 36}, [] {});
  VideoSurface hidden(stage.output, 3, {32, 18}, {0, 0, 32, 18}, [&] { ++hiddenReady; });
  twin.setVisible(true);
  stage.play(redThenBlue());
  EXPECT_TRUE(waitFor([&] { return stage.ends == 1; }));
  const std::size_t frames = journal.drawn.size();
  EXPECT_GT(frames, 1U);
  EXPECT_EQ(journal.colours(), "rb");
  EXPECT_EQ(journal.shown, (std::map<NativeWindow, std::size_t>{{1, frames}, {2, frames}}));
  EXPECT_EQ(stage.firstFrames, 1);
  EXPECT_EQ(hiddenReady, 1);
  // Neither invisible surfaces nor a display that takes no frame hold the player up.
  twin.setVisible(false);
  stage.surface.setVisible(false);
  player.seekToZero();
  EXPECT_TRUE(waitFor([&] { return stage.ends == 2; }));
  stage.surface.setVisible(true);
  journal.busy = true;
  player.seekToZero();
  EXPECT_TRUE(waitFor([&] { return stage.ends == 3; }));
  EXPECT_EQ(journal.drawn.size(), frames);
  EXPECT_EQ(journal.shown[1], frames);
}

TEST_F(MpvPlayerTest, VolumeIsTheCubeRootOfTheAmplitude) {
  for (const auto& [amplitude, percent] : {std::pair(0.0F, 0.0),
                                           {0.125F, 50.0},
                                           {1.0F, 100.0},
                                           {-1.0F, 0.0},
                                           {2.0F, 100.0},
                                           {std::numeric_limits<float>::quiet_NaN(), 0.0}}) {
    EXPECT_DOUBLE_EQ(cubicVolume(amplitude), percent) << amplitude;
  }
  player.setVolume(0.125F);
  player.setMuted(true);
  EXPECT_TRUE(waitFor([&] {
    return stage.property<double>("volume", MPV_FORMAT_DOUBLE) == 50 &&
           stage.property<int>("mute", MPV_FORMAT_FLAG) == 1;
  }));
}

}  // namespace quilex
