#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "library/FileURL.h"
#include "library/LocalVideoDBManager.h"
#include "support/Fakes.h"
#include "support/TemporaryFolder.h"

namespace quilex {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using testing::ElementsAre;

TEST(FileURLTest, OnlyFileURLsOfThisMachineAndAbsolutePathsNameFiles) {
  const std::pair<const char*, const char*> cases[] = {{"file:///a%20b/%C3%A9%2f.mp4?x#y", "/a b/\xC3\xA9/.mp4"},
                                                       {"FILE://LocalHost/a", "/a"},
                                                       {"file:/a", "/a"},
                                                       {"/a b%20?#", "/a b%20?#"}};
  for (const auto& [url, path] : cases) {
    EXPECT_EQ(localPath(url), path) << url;
  }
  for (const std::string_view url :
       {"http:///a"sv, "file://server/a"sv, "file://"sv, "file:a"sv, "a"sv, ""sv, "/a\0b"sv, "file:///a%00"sv,
        "file:///a%2"sv, "file:///a%+1"sv, "file:///a%0x"sv, "file:///a b"sv}) {
    EXPECT_EQ(localPath(url), std::nullopt) << url;
  }
}

TEST(FileURLTest, DirectoriesAndDevicesAreNoFiles) {
  const test::TemporaryFolder folder;
  EXPECT_TRUE(namesExistingFile("file://" + folder.write("video")));
  EXPECT_TRUE(namesExistingFile(folder / "video"));
  EXPECT_FALSE(namesExistingFile(folder / "missing"));
  EXPECT_FALSE(namesExistingFile("file://" + folder.path));
  EXPECT_FALSE(namesExistingFile("file:///dev/null"));
}

constexpr const char* kVideo =
    R"({"id":1,"sign":"a","preurl":"b","title":"c","url":"d","description":"e","time":2,"size":3,"imgurl":"f",)"
    R"("imgsize":4,"tags":"g","ratio":"h","width":5,"height":6,"frame":7,"rate":8,"audio":9,"uptime":"i","down":10,)"
    R"("view":11,"author":"j","avatar":"k","avatarsize":12,"hp":"l","upcount":13})";

TEST(VideoDetailTest, KeepsEveryFieldInItsOrder) {
  const auto video = std::get<VideoDetail>(VideoDetail::fromJSON(nlohmann::json::parse(kVideo)));
  EXPECT_EQ(video.toJSON().dump(), kVideo);
  EXPECT_THAT((std::vector{video.width, video.height, video.frame, video.rate}), ElementsAre(5, 6, 7, 8));
}

TEST(VideoDetailTest, EveryKeyIsRequiredAndOfItsType) {
  const auto decoded = [](const std::string& key, const char* value) {
    auto object = nlohmann::json::parse(kVideo);
    object.erase(key);
    object.update(nlohmann::json::parse(value));
    return VideoDetail::fromJSON(object);
  };
  using json::DecodingError;
  EXPECT_EQ(std::get<1>(decoded("hp", "{}")), (DecodingError{DecodingError::Kind::keyNotFound, "hp"}));
  EXPECT_EQ(std::get<1>(decoded("hp", R"({"hp":null})")), (DecodingError{DecodingError::Kind::valueNotFound, "hp"}));
  for (const char* value : {"1.5", "9223372036854775808", "9223372036854775808.0", "\"12\"", "true"}) {
    const auto error = std::get<1>(decoded("view", ("{\"view\":" + std::string(value) + "}").c_str()));
    EXPECT_EQ(error, (DecodingError{DecodingError::Kind::typeMismatch, "view"})) << value;
  }
  EXPECT_EQ(std::get<0>(decoded("view", R"({"view":3.0,"another":[]})")).view, 3);
  EXPECT_EQ(std::get<0>(decoded("view", R"({"view":1e2})")).view, 100);
}

class LocalVideoDBManagerTest : public testing::Test {
 protected:
  void run(const std::string& file, const std::string& sql) {
    SQLite::Database(folder / file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("pragma synchronous=off;" + sql);
  }
  void open() { library.emplace(folder.path, folder / "template.db", console); }
  std::string titles() {
    std::string all;
    for (const VideoDetail& video : library->allVideos()) {
      all += video.title + " ";
    }
    return all;
  }

  test::TemporaryFolder folder;
  test::FakeConsole console;
  std::optional<LocalVideoDBManager> library;
  const std::string path = folder / "Quilex.db";
  const std::string table = "create table LocalVideos(sign, title);";
};

TEST_F(LocalVideoDBManagerTest, TheTemplateIsCopiedOnlyOnce) {
  run("template.db", table + "insert into LocalVideos values('A', 'one')");
  open();
  EXPECT_EQ(titles(), "one ");
  run("Quilex.db", "insert into LocalVideos values('B', 'two')");
  open();
  EXPECT_EQ(titles(), "one two ");
  EXPECT_THAT(console.lines, ElementsAre(path, path));
  EXPECT_FALSE(fs::exists(path + ".new"));
  EXPECT_DEATH(LocalVideoDBManager(folder / "other", std::nullopt, console), "no Quilex.db");
}

TEST_F(LocalVideoDBManagerTest, ValuesAreConvertedAsTheDatabaseDoes) {
  run("Quilex.db", "create table LocalVideos(id, SIGN, Down, title)");
  const std::tuple<std::string, std::int64_t, std::string> cases[] = {{"null", 0, ""},
                                                                      {"-1", -1, "-1"},
                                                                      {"4294967301", 5, "4294967301"},
                                                                      {"2147483648", -2147483648, "2147483648"},
                                                                      {"'12abc'", 12, "12abc"},
                                                                      {"2.5", 2, "2.5"}};
  for (const auto& [value, number, text] : cases) {
    run("Quilex.db", "delete from LocalVideos; insert into LocalVideos values(1, 'A', " + value + "," + value + ")");
    open();
    const auto video = library->video("A").value();
    EXPECT_EQ(std::tie(video.id, video.down, video.title), std::make_tuple(0, number, text));
  }
  run("Quilex.db", "alter table LocalVideos add column Vid default 7");
  open();
  EXPECT_EQ(library->video("A")->id, 7);
}

TEST_F(LocalVideoDBManagerTest, SignsAreMatchedLiterallyAndTheLastRowWins) {
  run("Quilex.db", table + "insert into LocalVideos values('A', 'one'), ('A', 'two'), ('o''clock', 'three')");
  open();
  EXPECT_EQ(library->video("A")->title, "two");
  EXPECT_EQ(library->video("o'clock")->title, "three");
  EXPECT_EQ(library->video("' or ''='"), std::nullopt);
  library->deleteVideo("' or ''='");
  EXPECT_EQ(titles(), "one two three ");
  library->deleteVideo("A");
  EXPECT_EQ(titles(), "three ");
  EXPECT_THAT(console.lines, ElementsAre(path, "delete ' or ''=' true", "delete A true"));
}

TEST_F(LocalVideoDBManagerTest, WhatCannotBeReadIsEmptyAndUnanswered) {
  const std::tuple<std::function<void()>, std::vector<std::string>> cases[] = {
      {[] {}, {path + ": No such file or directory", path, "delete A false"}},
      {[&] { run("Quilex.db", "create table Other(sign)"); }, {path, "delete A false"}},
      {[&] { folder.write("Quilex.db"); }, {path, "delete A false"}},
      {[&] { fs::create_directory(path); }, {path, "db open failure", "delete A false"}}};
  for (const auto& [prepare, lines] : cases) {
    fs::remove(path);
    prepare();
    console.lines.clear();
    open();
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(library->answered());
    EXPECT_EQ(library->video("A"), std::nullopt);
    library->deleteVideo("A");
    EXPECT_EQ(console.lines, lines);
  }
}

TEST_F(LocalVideoDBManagerTest, ALibraryLockedForTooLongIsUnanswered) {
  run("Quilex.db", table);
  open();
  {
    SQLite::Database other(path, SQLite::OPEN_READWRITE);
    other.exec("begin exclusive");
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(library->answered());
  }
  EXPECT_EQ(titles(), "");
  EXPECT_TRUE(library->answered());
}

}  // namespace
}  // namespace quilex
