#include <atomic>
#include <semaphore>

#include "linux/session/files/ThreadedFileFinder.h"
#include "linux/toolkit/loop/QtRunLoop.h"
#include "support/AdapterTest.h"

using namespace quilex;
using namespace std::chrono_literals;

struct FileFinderTest : AdapterTest {
  FileFinderTest() { std::filesystem::create_directory(dead); }
  // "N" is the file that was found, "?" that none was and not every file system answered, "-" that none was.
  void ask(const std::vector<std::filesystem::path>& files) {
    tokens.push_back(finder->findFirst(files, [this](const FileFinder::Answer& answer) {
      answers += answer.found ? std::to_string(*answer.found) : answer.someUnanswered ? "?" : "-";
    }));
  }
  const std::string dead = folder + "dead/";
  QtRunLoop loop;
  std::string answers;
  std::vector<Disposable> tokens;
  std::optional<ThreadedFileFinder> finder{std::in_place, loop};
};

TEST_F(FileFinderTest, AnswersWithTheFirstRegularFileFromTheLoop) {
  write(folder + "a", "");
  ask({folder + "missing", folder, "/dev/null", folder + "a", folder + "a"});
  ask({folder + "missing"});
  ask({folder + "a"});
  tokens.pop_back();
  EXPECT_EQ(answers, "");
  EXPECT_TRUE(waitFor([&] { return answers.size() == 2; }));
  EXPECT_TRUE(answers == "3-" || answers == "-3") << answers;
}

TEST_F(FileFinderTest, AFileSystemThatHangsHoldsUpNothingElse) {
  struct Shared {
    std::atomic<int> looks;
    std::counting_semaphore<> revival{0};
  };
  const auto shared = std::make_shared<Shared>();
  finder.emplace(loop, [=, hung = dead](const std::filesystem::path& file) {
    if (file.native().starts_with(hung) && ++shared->looks > 0) {
      shared->revival.acquire();
    }
    return ThreadedFileFinder::isRegularFile(file);
  });
  write(folder + "a", "");
  const auto begin = std::chrono::steady_clock::now();
  ask({folder + "missing", dead + "x", folder + "a"});
  EXPECT_TRUE(waitFor([&] { return shared->looks == 1; }));
  ask({folder + "a"});
  EXPECT_TRUE(waitFor([&] { return answers == "02"; }));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, FileFinder::kPatience);
  for (int count = 0; count < 9; ++count) {
    ask({dead + "y", folder + "missing"});
  }
  EXPECT_TRUE(waitFor([&] { return answers == "02?????????"; }));
  EXPECT_EQ(shared->looks, 1) << "what hangs is left alone";
  shared->revival.release(99);
  write(dead + "y", "");
  EXPECT_TRUE(waitFor([&] { return (ask({dead + "y"}), answers.ends_with('0')); })) << "until it answers again";
}

TEST_F(FileFinderTest, NothingWaitsForAThreadThatHangs) {
  const auto revival = std::make_shared<std::counting_semaphore<>>(0);
  finder.emplace(loop, [revival](const std::filesystem::path&) { return (revival->acquire(), true); });
  ask({dead + "x"});
  ask({dead + "y"});
  tokens.pop_back();
  finder.reset();
  tokens.clear();
  revival->release(2);
}
