#include <gmock/gmock.h>

#include <QProcess>

#include "linux/media/MediaStream.h"
#include "linux/media/Remuxer.h"
#include "support/AdapterTest.h"

using namespace quilex;

struct MediaTest : AdapterTest {
  static QByteArray ffmpeg(const std::string& arguments) {
    QProcess process;
    process.start("ffmpeg", QString::fromStdString("-nostdin -v error -y " + arguments).split(' '));
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << arguments << process.readAllStandardError().data();
    return process.readAllStandardOutput();
  }
  static auto openInput(const std::string& file) { return MediaInput::open(file, [] { return false; }); }
  // The file's packets, three times over.
  bool remux(const std::string& file, const std::string& to, int passes) const {
    std::ofstream out(to);
    auto input = openInput(file);
    const auto remuxer = Remuxer::make(std::get<MediaInput>(std::move(input)), [&](auto bytes) {
      out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
      return true;
    });
    for (int pass = 0; remuxer && pass < passes; ++pass) {
      EXPECT_TRUE(remuxer->writePass());
    }
    return remuxer != nullptr;
  }
  static QByteArray frames(const std::string& file) {
    QByteArray hashes;
    for (const QByteArray& line : ffmpeg("-i " + file + " -map 0:v -fps_mode passthrough -f framemd5 -").split('\n')) {
      hashes += line.isEmpty() || line.startsWith('#') ? "" : line.mid(line.lastIndexOf(',') + 1) + '\n';
    }
    return hashes;
  }
  static std::vector<double> samples(const std::string& file) {
    const QByteArray raw = ffmpeg("-i " + file + " -map 0:a -ac 1 -f s16le -");
    const auto* first = reinterpret_cast<const std::int16_t*>(raw.data());
    return {first, first + raw.size() / 2};
  }
};

TEST_F(MediaTest, PassesFollowEachOtherFrameByFrameAndSampleBySample) {
  const std::string sources = "-f lavfi -i testsrc2=s=64x36:r=";
  for (const auto& [rate, seconds, coding, name] : std::vector<std::array<std::string, 4>>{
           {"30000/1001", "2.002", "-c:v libx264 -c:a aac", "a.mp4"},
           {"25", "2", "-c:v libx264 -c:a libopus", "b.mkv"},
           {"24", "1.5", "-c:v libvpx-vp9 -c:a libvorbis", "c.webm"},
           {"30", "0.3", "-c:v libx264 -bf 3 -c:a pcm_s16le", "d.mov"},
           {"30", "2", "-c:v mpeg4 -bf 2 -c:a libmp3lame", "e.avi"},
           {"25", "2", "-c:v libx264 -c:a aac", "f.ts"},
           {"25", "2", "-c:v mpeg2video -c:a mp2", "g.mpg"},
           {"50", "1", "-c:v libx265 -x265-params log-level=none -c:a flac", "h.mkv"}}) {
    const std::string file = folder + name, looped = folder + name + ".nut";
    ffmpeg(sources + rate + " -f lavfi -i sine=f=500:r=48000 -t " + seconds + " " + coding + " " + file);
    ASSERT_TRUE(remux(file, looped, 3)) << name;
    if (getenv("KEEP")) std::filesystem::copy_file(looped, std::string("/tmp/t/") + name + ".nut", std::filesystem::copy_options::overwrite_existing);
    const QByteArray once = frames(file), thrice = frames(looped);
    EXPECT_EQ(thrice, once + once + once) << name << once.count('\n') << ' ' << thrice.count('\n');
    const auto sound = samples(looped), original = samples(file);
    std::printf("%s original %zu\n", name.c_str(), original.size());
    int differing = 0; std::size_t firstd = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
      const std::size_t j = i % (sound.size() / 3);
      if (j < original.size() && std::abs(sound[i] - original[j]) > 2) { if (!differing) firstd = i; ++differing; }
    }
    std::printf("differing %d first %zu\n", differing, firstd);
    const double second = 48000;
    std::printf("%s: %zu samples, expected %f\n", name.c_str(), sound.size(), 3 * std::stod(seconds) * second);
    double largest = 0; std::size_t where = 0;
    for (std::size_t i = 2; i < sound.size(); ++i) {
      const double bend = std::abs(sound[i] - 2 * sound[i - 1] + sound[i - 2]);
      if (i > 4000 && bend > largest) { largest = bend; where = i; }
    }
    { auto ideal = original; ideal.resize(sound.size()/3); const auto n = ideal.size(); double l=0; for (std::size_t i = n-10; i < n+10; ++i) l = std::max(l, std::abs(ideal[i%n]-2*ideal[(i+n-1)%n]+ideal[(i+n-2)%n])); std::printf("   ideal %f\n", l); double m=0; for (std::size_t i=n;i<n+12000 && i<2*n;++i) m=std::max(m, std::abs(sound[i]-ideal[i-n])); std::printf("   greatest difference after seam %f\n", m);}
    std::printf("   largest bend %f at %f s\n", largest, static_cast<double>(where) / second);
  }
}
