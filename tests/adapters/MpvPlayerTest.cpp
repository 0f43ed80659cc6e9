#include <gmock/gmock.h>

#include <QProcess>

#include "linux/player/MpvPlayer.h"
#include "linux/render/SoftwareRendering.h"
#include "support/AdapterTest.h"

using namespace quilex;
using Statuses = std::vector<PlayerItemStatus>;

const Statuses kReady{PlayerItemStatus::readyToPlay}, kFailed{PlayerItemStatus::failed};

// Draws into plain memory and keeps an account of it.
struct Canvas : Renderer {
  struct Area : Picture {
    Area(Canvas& target, PixelSize extent) : canvas(target), size(extent) {}
    bool draw(mpv_render_context* context) override {
      std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.width * size.height));
      EXPECT_TRUE(drawSoftware(context, size, static_cast<std::size_t>(size.width) * 4, pixels.data()));
      const auto all = [&](std::uint32_t rgb) {
        return std::ranges::all_of(pixels, [&](std::uint32_t each) { return (each >> 7 & 0x10101) == rgb; });
      };
      const char colour = all(0x10000) ? 'r' : all(1) ? 'b' : all(0x100) ? 'g' : '?';
      const auto reds = [&](std::size_t at) { return (pixels[at] >> 23 & 1) != 0 ? 'r' : 'b'; };
      canvas.corners = {reds(0), reds(pixels.size() - 1)};
      canvas.colours += canvas.colours.ends_with(colour) ? "" : std::string(1, colour);
      return ++canvas.draws > 0;
    }
    void show(RenderTarget& window, const PixelRect&) override { ++canvas.shown[&window]; }
    Canvas& canvas;
    PixelSize size;
  };
  MpvRenderContext makeContext(mpv_handle* core) override { return makeSoftwareContext(core); }
  std::unique_ptr<Picture> makePicture(PixelSize size) override { return std::make_unique<Area>(*this, size); }
  int draws = 0;
  std::string corners;  // of the last picture: its first and its last pixel
  std::string colours;  // of the pictures, without repetitions; a question mark where not all of it is of one
  std::map<RenderTarget*, int> shown;
};

struct MpvPlayerTest : AdapterTest {
  MpvPlayerTest() { surface.setTarget(&window); }
  // A clip of a picture that ffmpeg's filters describe.
  std::string clip(const std::string& name, const char* picture) const {
    const auto file = QString::fromStdString(folder + name);
    EXPECT_EQ(QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", picture, "-c:v", "mpeg4", file}), 0);
    return folder + name;
  }
  void play(const std::string& file) {
    statuses.clear();
    player.replaceCurrentItem(file);
    player.play();
  }
  Statuses statusesOf(const std::string& name, const std::string& contents) {
    write(folder + name, contents);
    play(folder + name);
    EXPECT_TRUE(waitFor([&] { return !statuses.empty(); })) << name;
    return statuses;
  }
  const std::string red = clip("red.mp4", "color=red:s=64x36:d=0.5");
  int ends = 0;
  Statuses statuses;
  std::function<void()> atEnd = [] {};
  std::unique_ptr<Canvas> made = std::make_unique<Canvas>();
  Canvas& canvas = *made;
  VideoOutput output{std::move(made)};
  RenderTarget window, other;
  VideoSurface surface{output, {{64, 36}, {}}, [] {}};
  StatusReport report;
  MpvPlayer player{output, report};
  Disposable status = player.observeStatus([this](PlayerItemStatus each) { statuses.push_back(each); });
  Disposable end = player.observeItemEnd([this] { (++ends, atEnd()); });
};

TEST_F(MpvPlayerTest, EachRunRaisesTheEndOnceAndSeekingToZeroStartsAnother) {
  const char* picture = "color=red:s=64x36:d=0.2[a];color=blue:s=64x36:d=0.2[b];[a][b]concat";
  testing::internal::CaptureStderr();
  // The last one has no timestamps.
  for (const std::string& file : {clip("a;b,%5%c:#\n.mp4", picture), clip("raw.m4v", picture)}) {
    ends = 0;
    canvas.colours.clear();
    atEnd = [&] { (ends == 3 ? player.pause() : void(), player.seekToZero()); };
    play(file);
    ASSERT_TRUE(waitFor([&] { return ends == 3 && canvas.colours == "rbrbrbr"; })) << file << ends << canvas.colours;
    EXPECT_EQ(statuses, kReady) << file;
    // Repeating, it goes on by itself, and ends no more until it is not to be repeated.
    atEnd = [] {};
    canvas.colours.clear();
    player.setRepeating(true);
    play(file);
    ASSERT_TRUE(waitFor([&] { return canvas.colours.size() >= 7; })) << file;
    EXPECT_THAT(canvas.colours, testing::StartsWith("rbrbrbr"));
    EXPECT_EQ(ends, 3) << file;
    player.setRepeating(false);
    ASSERT_TRUE(waitFor([&] { return ends == 4; })) << file;
    EXPECT_EQ(canvas.colours.back(), 'b');
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the player takes what it is given";
}

TEST_F(MpvPlayerTest, AHeldPlayerDecodesNothingAndGoesOnWhereItWas) {
  player.setHeld(true);
  play(red);
  QTest::qWait(200);  // for a player that decodes nevertheless
  EXPECT_EQ(std::pair(statuses, canvas.draws), std::pair(Statuses{}, 0));
  player.setHeld(false);
  EXPECT_TRUE(waitFor([&] { return ends == 1; }));
  EXPECT_EQ(statuses, kReady);

  canvas.colours.clear();
  play(clip("long.mp4", "color=red:s=64x36:d=0.2[a];color=blue:s=64x36:d=60[b];[a][b]concat"));
  EXPECT_TRUE(waitFor([&] { return canvas.colours == "rb"; })) << canvas.colours;
  for (const bool isPaused : {false, true}) {
    player.setHeld(true);
    isPaused ? player.pause() : player.play();
    QTest::qWait(200);  // for what was decoded already
    const int before = canvas.draws;
    QTest::qWait(200);
    EXPECT_EQ(canvas.draws, before);
    player.setHeld(false);
    if (!isPaused) {
      EXPECT_TRUE(waitFor([&] { return canvas.draws > before + 3; }));
    }
  }
  QTest::qWait(200);
  const int before = canvas.draws;
  QTest::qWait(200);
  EXPECT_EQ(canvas.draws, before) << "paused, it stays so";
  EXPECT_EQ(canvas.colours, "rb") << "it does not start again";
}

TEST_F(MpvPlayerTest, APictureThatIsTurnedStandsUpright) {
  // The left half red, the right half blue; turned to the right, red is on top.
  const auto halves = clip("halves.mp4", "color=red:s=36x64:d=0.5[a];color=blue:s=36x64:d=0.5[b];[a][b]hstack");
  const std::string whole = read(halves);
  // What the track's header says of the display: the first four numbers of its matrix (ISO 14496-12, 8.3.2).
  const std::size_t matrix = whole.find("tkhd") + 44;
  const std::string one{0, 1, 0, 0}, minusOne{-1, -1, 0, 0}, zero(4, '\0');
  for (const auto& [numbers, corners] : {std::pair(std::array{zero, one, minusOne, zero}, "rb"),
                                         {std::array{zero, minusOne, one, zero}, "br"},
                                         {std::array{minusOne, zero, zero, minusOne}, "br"}}) {
    std::string turned = whole;
    for (std::size_t index = 0; index < 4; ++index) {
      turned.replace(matrix + index / 2 * 12 + index % 2 * 4, 4, numbers[index]);
    }
    write(folder + "turned.mp4", turned);
    canvas.corners.clear();
    play(folder + "turned.mp4");
    EXPECT_TRUE(waitFor([&] { return canvas.corners.size() == 2; }));
    EXPECT_EQ(canvas.corners, corners);
  }
}

TEST_F(MpvPlayerTest, ASinglePictureThatIsRepeatedStays) {
  player.setRepeating(true);
  play(clip("one.mp4", "color=red:s=64x36:r=25:d=0.04"));
  EXPECT_TRUE(waitFor([&] { return canvas.colours == "r"; }));
  player.setRepeating(false);
  EXPECT_TRUE(waitFor([&] { return ends == 1; }));
  EXPECT_EQ(canvas.draws, 1);
}

TEST_F(MpvPlayerTest, WhatIsToBeRepeatedIsTriedAgainWhenItCouldNotBePlayed) {
  player.setRepeating(true);
  play(folder + "away.mp4");
  EXPECT_TRUE(waitFor([&] { return statuses == kFailed; }));
  std::filesystem::copy(red, folder + "away.mp4");
  EXPECT_TRUE(waitFor([&] { return statuses.back() == PlayerItemStatus::readyToPlay; }));
  EXPECT_EQ(canvas.colours, "r");
}

TEST_F(MpvPlayerTest, SoundIsHeardAtItsLinearAmplitudeAndADeviceIsOpenedOnlyForIt) {
  // A device that writes what it plays, as 32-bit floating point numbers, to a file (the ALSA library's "file" plugin).
  const std::string device = folder + "heard";
  write(folder + "alsa", "pcm.!default { type file file \"" + device + "\" format raw slave.pcm { type null } }\n");
  setenv("ALSA_CONFIG_PATH", (folder + "alsa").c_str(), 1);
  std::size_t heardBefore = 0;
  // Of what was played since the last look; -1 for nothing, which is not silence.
  const auto loudest = [&] {
    const std::string bytes = std::filesystem::exists(device) ? read(device) : "";
    std::vector<float> samples((bytes.size() - heardBefore) / sizeof(float));
    heardBefore = bytes.size();
    if (samples.empty()) {
      return -1.F;
    }
    std::memcpy(samples.data(), bytes.data() + bytes.size() - samples.size() * sizeof(float),
                samples.size() * sizeof(float));
    return *std::ranges::max_element(samples);
  };
  const auto file = QString::fromStdString(folder + "sound.mkv");
  ASSERT_EQ(QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "color=red:s=64x36:d=0.5", "-f", "lavfi",
                                         "-i", "sine=d=0.5,volume=4", "-c:v", "mpeg4", "-c:a", "pcm_f32le", file}),
            0);
  const auto heard = [&](float volume, bool muted) {
    player.setVolume(volume);
    player.setMuted(muted);
    const int before = ends;
    play(file.toStdString());
    EXPECT_TRUE(waitFor([&] { return ends == before + 1; }));
    return loudest();
  };
  EXPECT_EQ(heard(1, true), -1);
  EXPECT_NEAR(heard(0.5F, false), 0.25, 0.02);
  EXPECT_NEAR(heard(1, false), 0.5, 0.02);
  heard(0, false);  // the device writes what is left when it is closed
  EXPECT_EQ(heard(0, false), -1);
  unsetenv("ALSA_CONFIG_PATH");
}

TEST_F(MpvPlayerTest, NothingIsShownBetweenTwoItems) {
  const auto blue = clip("blue.mkv", "color=blue:s=48x48:d=0.5");  // of another shape
  for (const std::string expected : {"r", "rb", "rbr", "rbrb"}) {
    play(expected.ends_with('r') ? red : blue);
    ASSERT_TRUE(waitFor([&] { return canvas.colours == expected; })) << canvas.colours;
  }
  atEnd = [&] { play(canvas.colours == "rbrb" ? red : folder); };
  player.seekToZero();
  EXPECT_TRUE(waitFor([&] { return statuses == kFailed; }));
  surface.repaint();
  EXPECT_EQ(canvas.colours, "rbrbr");
}

TEST_F(MpvPlayerTest, WhatIsNoVideoFailsAndAnyFileNameIsJustAName) {
  const std::string whole = read(red);
  EXPECT_EQ(statusesOf("cut.mp4", whole.substr(0, whole.size() / 2)), kFailed);
  EXPECT_EQ(statusesOf("list.m3u", red), kFailed);
  for (const char* text : {"", "text", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nred.mp4\n",
                           "ffconcat version 1.0\nfile red.mp4\n", "# mpv EDL v0\nred.mp4\n"}) {
    EXPECT_EQ(statusesOf("text.mp4", text), kFailed) << text;
  }
  EXPECT_EQ(canvas.draws, 0);
  // What follows a list is what is played, whatever the list names.
  const auto stream = read(clip("stream.ts", "color=blue:s=64x36:d=0.3"));
  player.setRepeating(true);
  EXPECT_EQ(statusesOf("list.ts", "# mpv EDL v0\n" + red + "\n" + stream + stream), kReady);
  EXPECT_TRUE(waitFor([&] { return canvas.draws > 30; }));
  EXPECT_EQ(canvas.colours, "b");
  player.setRepeating(false);
  play(folder + "text.mp4");  // replaced before it fails, which its successor must not be blamed for
  for (const char* name :
       {"a:b.mp4", "50%20 %d.mp4", "\xff\xfe.mp4", "#?&=;,[]{}.mp4", "line\nbreak.mp4", "clip.m3u"}) {
    EXPECT_EQ(statusesOf(name, whole), kReady) << name;
  }
}

TEST_F(MpvPlayerTest, AFrameIsDrawnOnceForEachSizeThatIsSeen) {
  VideoSurface twin(output, {{64, 36}, {}}, [] {});
  VideoSurface wide(output, {{192, 108}, {}}, [] {});
  twin.setTarget(&other);
  play(red);
  EXPECT_TRUE(waitFor([&] { return ends == 1; }));
  const int draws = canvas.draws;
  EXPECT_EQ(canvas.shown, (std::map<RenderTarget*, int>{{&window, draws}, {&other, draws}}));
  // A player that nobody sees plays on, and what it shows is there for whoever looks.
  twin.setTarget(nullptr);
  surface.setTarget(nullptr);
  player.seekToZero();
  EXPECT_TRUE(waitFor([&] { return ends == 2; }));
  RenderTarget third;
  wide.setTarget(&third);
  wide.repaint();
  EXPECT_EQ(std::tuple(canvas.draws, canvas.shown[&third], canvas.colours), std::tuple(draws + 1, 1, "r"));
}

TEST(CubicVolumeTest, IsTheCubeRootOfTheAmplitude) {
  EXPECT_DOUBLE_EQ(cubicVolume(0.125F), 50);
  EXPECT_DOUBLE_EQ(cubicVolume(2), 100);
  EXPECT_EQ(cubicVolume(0) + cubicVolume(-1) + cubicVolume(NAN), 0);
}
