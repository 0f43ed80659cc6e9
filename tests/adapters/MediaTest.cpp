#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QProcess>
#include <cmath>

#include "library/MediaFormats.h"
#include "linux/media/MediaStream.h"
#include "linux/media/Remuxer.h"
#include "support/AdapterTest.h"

using namespace quilex;

struct MediaTest : AdapterTest {
  static QByteArray run(const std::string& program, const std::string& arguments) {
    QProcess process;
    process.start(QString::fromStdString(program), QString::fromStdString(arguments).split(' '));
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0)
        << arguments << process.readAllStandardError().data();
    return process.readAllStandardOutput();
  }
  static QByteArray ffmpeg(const std::string& arguments) { return run("ffmpeg", "-nostdin -v error -y " + arguments); }
  std::string clip(const std::string& name, const std::string& picture, const std::string& coding) const {
    ffmpeg("-f lavfi -i " + picture + " -f lavfi -i sine=f=500:r=48000 " + coding + " " + folder + name);
    return folder + name;
  }
  static std::string refusal(const std::string& file) {
    const auto opened = MediaInput::open(file, [] { return false; });
    return opened ? "" : opened.error().message;
  }
  // Three passes of the file; empty where its packets cannot be repeated.
  std::string remuxed(const std::string& file) const {
    const std::string to = file + ".nut";
    std::ofstream out(to);
    const auto remuxer = Remuxer::make(MediaInput::open(file, [] { return false; }).value(), [&](auto bytes) {
      out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
      return true;
    });
    for (int pass = 0; remuxer && pass < 3; ++pass) {
      EXPECT_TRUE(remuxer->writePass()) << file;
    }
    return remuxer ? to : "";
  }
  static QByteArray frames(const std::string& file) {
    QByteArray hashes;
    for (const QByteArray& line : ffmpeg("-i " + file + " -map 0:v -fps_mode passthrough -f framemd5 -").split('\n')) {
      hashes += line.isEmpty() || line.startsWith('#') ? QByteArray() : line.mid(line.lastIndexOf(',') + 1) + '\n';
    }
    return hashes;
  }
  // As the player decodes it.
  static std::vector<std::int16_t> samples(const std::string& file) {
    const std::string to = file + ".pcm";
    run("mpv",
        "--no-config --really-quiet --no-video --ao=pcm --ao-pcm-waveheader=no --audio-format=s16 "
        "--audio-channels=mono --demuxer=lavf --demuxer-lavf-format=nut --demuxer-lavf-probe-info=no --ao-pcm-file=" +
            to + " " + file);
    const std::string raw = read(to);
    std::vector<std::int16_t> values(raw.size() / 2);
    std::memcpy(values.data(), raw.data(), 2 * values.size());
    return values;
  }
};

TEST_F(MediaTest, PassesFollowEachOtherFrameByFrameAndSampleBySample) {
  struct Case {
    std::string name, rate, coding;
    int samples;     // of a pass
    int difference;  // at most, between samples of two passes; beyond any where each pass begins elsewhere in a packet
  };
  for (const auto& [name, rate, coding, count, difference] :
       std::vector<Case>{{"a.mp4", "30000/1001", "-t 2.002 -c:v libx264 -bf 3 -c:a aac", 96096, 64},
                         {"b.mkv", "25", "-t 2 -c:v libx264 -c:a libopus", 96000, 0},
                         {"c.webm", "24", "-t 1.5 -c:v libvpx-vp9 -c:a libvorbis", 72000, 0},
                         {"d.mov", "30", "-t 0.3 -c:v libx264 -qp 1 -c:a pcm_s16le", 14400, 0},
                         {"e.avi", "30", "-t 2 -c:v mpeg4 -bf 2 -c:a libmp3lame", 96000, 1 << 16},
                         {"f.ts", "25", "-t 2 -c:v libx264 -c:a aac", 96000, 1 << 16},
                         {"g.mpg", "25", "-t 2 -c:v mpeg2video -c:a mp2", 96000, 1 << 16},
                         {"h.mkv", "50", "-t 1 -c:v libx265 -x265-params log-level=none -c:a flac", 48000, 0}}) {
    // One of them is larger than what is kept in memory.
    const std::string size = name == "d.mov" ? "640x360" : "64x36";
    const std::string file = clip(name, "testsrc2=s=" + size + ":r=" + rate, coding), looped = remuxed(file);
    ASSERT_NE(looped, "") << name;
    const QByteArray once = frames(file);
    EXPECT_EQ(frames(looped), once + once + once) << name;
    const auto sound = samples(looped);
    // Some versions of the player leave out a packet where the first pass begins; FLAC has the largest.
    ASSERT_NEAR(static_cast<double>(sound.size()), 3 * count, name == "h.mkv" ? 4608 : 1024) << name;
    int largest = 0;
    for (std::size_t at = sound.size() - static_cast<std::size_t>(count); at < sound.size(); ++at) {
      largest = std::max(largest, std::abs(sound[at] - sound[at - static_cast<std::size_t>(count)]));
    }
    EXPECT_LE(largest, difference) << name;
  }
}

TEST_F(MediaTest, ALongerSoundProlongsThePassAndWhatHasNoTimestampsIsNotRemuxed) {
  const std::string still =
      clip("still.mp4", "color=red:s=16x16:r=10:d=0.2", "-t 2 -c:v libx264 -c:a pcm_s16le -f mov");
  EXPECT_NEAR(static_cast<double>(samples(remuxed(still)).size()), 3 * 96000, 1024);
  EXPECT_EQ(remuxed(clip("raw.h264", "testsrc2=s=64x36", "-map 0:v -t 1")), "");
  // The first second is there for the decoder's sake only.
  clip("whole.mp4", "testsrc2=s=64x36:r=25", "-t 3 -c:v libx264 -g 250 -c:a aac");
  ffmpeg("-ss 1 -i " + folder + "whole.mp4 -c copy " + folder + "cut.mp4");
  EXPECT_EQ(remuxed(folder + "cut.mp4"), "");
}

TEST_F(MediaTest, OnlyRegularFilesOfVideoFormatsWithinTheLimitsAreOpened) {
  EXPECT_EQ(refusal(clip("fits.mkv", "color=s=64x36:d=0.1", "-c:v mjpeg -shortest")), "");
  mkfifo((folder + "pipe").c_str(), 0600);
  for (const std::string& name : {folder, folder + "pipe", std::string("/dev/zero")}) {
    EXPECT_EQ(refusal(name), "is not a regular file");
  }
  const auto gif = [&](int width, int height) {
    std::string bytes = "GIF89a";
    for (const int side : {width, height}) {
      bytes += {static_cast<char>(side), static_cast<char>(side >> 8)};
    }
    bytes.append("\x80\0\0\0\0\0\1\1\1\x2c\0\0\0\0\1\0\1\0\0\2\2\x44\1\0\x3b", 25);
    write(folder + "large.gif", bytes);
    return refusal(folder + "large.gif");
  };
  EXPECT_EQ(gif(16384, 4096), "");
  EXPECT_EQ(gif(16384, 4097),
            "is too large: 16384x4097 pixels, where at most 8192x8192 are played, or as many in "
            "another shape");
  for (const char* text : {"# mpv EDL v0\n", "ffconcat version 1.0\nfile ", "#EXTM3U\n"}) {
    write(folder + "list.mp4", text + folder + "fits.mkv\n");
    EXPECT_THAT(refusal(folder + "list.mp4"), testing::StartsWith("is not ")) << text;
  }
}
