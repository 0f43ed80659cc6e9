#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/stat.h>

#include <chrono>

#include "library/FileURL.h"
#include "library/LocalVideoDBManager.h"
#include "support/Fakes.h"

namespace quilex::test {

using namespace std::literals;
using Lines = std::vector<std::string>;

TEST(FileURLTest, FileURLsOfThisMachineAndAbsolutePathsNameFilesButNoDirectoriesOrDevices) {
  for (const auto& [url, path] : {std::pair("file:///a%20b/%C3%A9%2f.mp4?x#y", "/a b/\xC3\xA9/.mp4"),
                                  {"FILE://LocalHost/a", "/a"},
                                  {"file:/a", "/a"},
                                  {"/a b%20?#", "/a b%20?#"}}) {
    EXPECT_EQ(localPath(url), path) << url;
  }
  for (const std::string_view url :
       {"http:///a"sv, "file://server/a"sv, "file://localhosts/a"sv, "file://"sv, "file:a"sv, "a"sv, ""sv, "/a\0b"sv,
        "file:///a%00"sv, "file:///a%2"sv, "file:///a%+1"sv, "file:///a%0x"sv, "file:///a b"sv}) {
    EXPECT_EQ(localPath(url), std::nullopt) << url;
  }
  std::string bytes = "/";
  for (int byte = 1; byte < 256; ++byte) {
    bytes.push_back(static_cast<char>(byte));
  }
  EXPECT_EQ(localPath(fileURL(bytes)), bytes);
  const TemporaryFolder folder;
  EXPECT_TRUE(namesExistingFile("file://" + folder.write("video")));
  EXPECT_FALSE(namesExistingFile("file://" + folder.path) || namesExistingFile("file:///dev/null"));
}

struct LocalVideoDBManagerTest : testing::Test {
  void run(const std::string& file, const std::string& sql) {
    SQLite::Database(folder / file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("pragma synchronous=off;" + sql);
  }
  void open() { library.emplace(folder.path, folder / "template.db", console); }
  std::size_t size() { return library->allVideos().value().size(); }
  std::optional<VideoDetail> video(const std::string& sign) { return library->video(sign).value(); }
  bool isUnanswered() { return !library->allVideos(); }
  auto mode() const { return std::filesystem::status(path).permissions(); }
  TemporaryFolder folder;
  FakeConsole console;
  std::optional<LocalVideoDBManager> library;
  const std::string path = folder / "Quilex.db";
  const std::string table = "create table LocalVideos(sign, title);";
};

TEST_F(LocalVideoDBManagerTest, TheTemplateIsCopiedOnlyOnce) {
  const std::string elsewhere = "file:///old/share/quilexhelper/loops/";
  run("template.db",
      "create table LocalVideos(sign, url); insert into LocalVideos values('A', '" + elsewhere + "a%20b.mp4')");
  folder.write("Quilex.db.1.new");
  open();
  run("Quilex.db", "insert into LocalVideos values('B', '" + elsewhere + "b.mp4')");
  open();
  EXPECT_EQ(size(), 2U);
  EXPECT_EQ(video("A")->url, fileURL(folder / "loops/a b.mp4")) << "the template was moved with its loops";
  EXPECT_EQ(video("B")->url, elsewhere + "b.mp4");
  EXPECT_EQ(console.lines, (Lines{path, path}));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 2) << "nothing unfinished is left";
  EXPECT_EQ(mode(), std::filesystem::perms(0600));
  EXPECT_DEATH(LocalVideoDBManager(folder / "other", std::nullopt, console), "no Quilex.db");
}

TEST_F(LocalVideoDBManagerTest, ValuesAreConvertedAsTheDatabaseDoes) {
  run("Quilex.db", "create table LocalVideos(id, SIGN, Down, title)");
  const std::tuple<std::string, std::int64_t, std::string> cases[] = {
      {"null", 0, ""}, {"2147483648", -2147483648, "2147483648"}, {"'12abc'", 12, "12abc"}, {"2.5", 2, "2.5"}};
  for (const auto& [value, number, text] : cases) {
    run("Quilex.db", "delete from LocalVideos; insert into LocalVideos values(1, 'A', " + value + "," + value + ")");
    open();
    const auto found = video("A").value();
    EXPECT_EQ(std::tie(found.id, found.down, found.title), std::make_tuple(0, number, text));
  }
  // A table made anew meanwhile is read by its new columns.
  run("Quilex.db",
      "drop table LocalVideos; create table LocalVideos(title, Vid, sign);"
      "insert into LocalVideos values('two', 7, 'B')");
  const auto found = video("B").value();
  EXPECT_EQ(std::tie(found.id, found.title), std::make_tuple(7, "two"));
}

TEST_F(LocalVideoDBManagerTest, SignsAreMatchedLiterallyAndTheLastRowWins) {
  run("Quilex.db", table + "insert into LocalVideos values('A', 'one'), ('A', 'two'), ('o''clock', 'three')");
  open();
  EXPECT_EQ(video("A")->title, "two");
  EXPECT_EQ(video("o'clock")->title, "three");
  EXPECT_EQ(video("' or ''='"), std::nullopt);
  library->deleteVideo("' or ''='");
  library->deleteVideo("A");
  EXPECT_EQ(size(), 1U);
  EXPECT_EQ(console.lines, (Lines{path, "delete ' or ''=' true", "delete A true"}));
}

TEST_F(LocalVideoDBManagerTest, WhatCannotBeReadIsEmptyAndUnanswered) {
  const std::tuple<std::function<void()>, Lines> cases[] = {
      {[] {}, {path + ": No such file or directory", path, "delete A false"}},
      {[&] { run("Quilex.db", "create table Other(sign)"); }, {path, "delete A false"}},
      {[&] { folder.write("Quilex.db"); }, {path, "delete A false"}},
      {[&] { std::filesystem::create_directory(path); }, {path, "db open failure", "delete A false"}}};
  for (const auto& [prepare, lines] : cases) {
    std::filesystem::remove(path);
    prepare();
    console.lines.clear();
    open();
    EXPECT_TRUE(isUnanswered());
    library->deleteVideo("A");
    EXPECT_EQ(console.lines, lines);
    if (lines.front() != path) {
      EXPECT_EQ(mode(), std::filesystem::perms(0600)) << "made by the database";
    }
  }
}

TEST_F(LocalVideoDBManagerTest, AnotherDatabaseAtItsPlaceIsSeenAndAMissingOneIsNotMade) {
  run("Quilex.db", table + "insert into LocalVideos values('A', 'one')");
  open();
  run("other.db", table + "insert into LocalVideos values('B', 'two'), ('C', 'three')");
  std::filesystem::rename(folder / "other.db", path);
  EXPECT_EQ(video("B")->title, "two");
  library->deleteVideo("B");
  EXPECT_EQ(size(), 1U);
  std::filesystem::remove(path);
  EXPECT_TRUE(isUnanswered());
  library->deleteVideo("C");
  EXPECT_FALSE(std::filesystem::exists(path));
  // Nobody will ever write to it.
  mkfifo(path.c_str(), S_IRUSR);
  EXPECT_TRUE(isUnanswered());
  std::filesystem::remove(path);
  run("Quilex.db", table + "insert into LocalVideos values('D', 'four')");
  EXPECT_EQ(size(), 1U);
  mkfifo((path + "-journal").c_str(), S_IRUSR);
  EXPECT_TRUE(isUnanswered());
  EXPECT_EQ(console.lines, (Lines{path, "delete B true", "delete C false"}));
}

TEST_F(LocalVideoDBManagerTest, ALockedLibraryIsUnansweredAtOnce) {
  run("Quilex.db", table + "insert into LocalVideos values('A', 'one')");
  open();
  std::optional<SQLite::Database> other(std::in_place, path, SQLite::OPEN_READWRITE);
  other->exec("begin exclusive");
  const auto start = std::chrono::steady_clock::now();
  for (int time = 0; time < 20; ++time) {
    EXPECT_TRUE(isUnanswered());
    EXPECT_FALSE(library->video("A"));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 20s) << "not waited for";
  library->deleteVideo("A");
  EXPECT_EQ(console.lines.back(), "delete A false");
  other.reset();
  EXPECT_EQ(size(), 1U);
}

}  // namespace quilex::test
