#include <QCoreApplication>
#include <QLockFile>
#include <QProcess>
#include <array>
#include <limits>

#include "linux/qt/QtRunLoop.h"
#include "linux/settings/JsonSettingsSuite.h"
#include "support/AdapterTest.h"

namespace quilex {

namespace fs = std::filesystem;

class JsonSettingsSuiteTest : public AdapterTest {
 protected:
  std::unique_ptr<JsonSettingsSuite> open() {
    return std::get<std::unique_ptr<JsonSettingsSuite>>(JsonSettingsSuite::open(file, loop));
  }
  std::string stored() const { return nlohmann::ordered_json::parse(readFile(file), nullptr, false).dump(); }
  // As a well-behaved other process does.
  void replaceFile(const std::string& text) const {
    writeFile(folder / "new", text);
    fs::rename(folder / "new", file);
  }

  QtRunLoop loop;
  fs::path file = folder / "group" / "settings.json";
};

TEST_F(JsonSettingsSuiteTest, ReadsOfAnotherTypeAreNeutral) {
  writeFile(file, R"({"i": 7, "whole": 2.0, "f": 1.5, "b": true, "s": "1", "a": [1],
                      "large": 18446744073709551615, "beyond": 1e300})");
  const auto suite = open();
  const std::map<std::string, std::tuple<std::int64_t, float, bool, std::optional<std::string>>> expected{
      {"i", {7, 7.0F, false, {}}},
      {"whole", {2, 2.0F, false, {}}},
      {"f", {0, 1.5F, false, {}}},
      {"b", {0, 0.0F, true, {}}},
      {"s", {0, 0.0F, false, "1"}},
      {"a", {0, 0.0F, false, {}}},
      {"none", {0, 0.0F, false, {}}},
      {"large", {0, 0x1p64F, false, {}}},
      {"beyond", {0, std::numeric_limits<float>::max(), false, {}}}};
  for (const auto& [key, values] : expected) {
    EXPECT_EQ(std::tuple(suite->integer(key), suite->real(key), suite->boolean(key), suite->string(key)), values)
        << key;
    EXPECT_EQ(suite->contains(key), key != "none");
  }
}

TEST_F(JsonSettingsSuiteTest, FloatsAreStoredReadablyAndExactly) {
  for (const float value : {0.1F, 1.0F / 3, 1e-7F, 16777217.0F, std::numeric_limits<float>::denorm_min()}) {
    open()->setReal("Volume", value);  // The end of a suite writes what is pending.
    EXPECT_EQ(open()->real("Volume"), value);
  }
  open()->setReal("Volume", 0.1F);
  EXPECT_EQ(stored(), R"({"Volume":0.1})");
}

TEST_F(JsonSettingsSuiteTest, ChangesOfOthersAreSeenAndAnUnchangedFileIsNotReadAgain) {
  writeFile(file, R"({"n": 10})");
  const auto suite = open();
  // A file that has just changed is read again, until its time stamp can be trusted.
  EXPECT_TRUE(waitFor([&] {
    const std::size_t before = suite->contentReads();
    EXPECT_EQ(suite->integer("n"), 10);
    return suite->contentReads() == before;
  }));
  const std::size_t settled = suite->contentReads();
  for (int count = 0; count < 100; ++count) {
    suite->integer("n");
  }
  EXPECT_EQ(suite->contentReads(), settled);
  for (int value = 11; value < 99; ++value) {
    const std::string text = R"({"n": )" + std::to_string(value) + "}";
    value % 3 == 0 ? replaceFile(text) : writeFile(file, text);
    ASSERT_EQ(suite->integer("n"), value);
  }
}

TEST_F(JsonSettingsSuiteTest, AWriteChangesItsOwnKeysAlone) {
  writeFile(file, R"({"zebra": 1, "Volume": 0.5, "gone": 0, "apple": {"x": [1, null]}})");
  const auto suite = open();
  suite->setReal("Volume", 0.25F);
  suite->remove("gone");
  suite->setString("own", "ä\xff");  // a byte that is no UTF-8 must not keep the rest from being written
  EXPECT_EQ(suite->real("Volume"), 0.25F);
  EXPECT_FALSE(suite->contains("gone"));
  replaceFile(R"({"new": true, "zebra": 2, "Volume": 0.75, "gone": 1, "apple": {"x": [1, null]}})");
  // Without `synchronize` the event loop brings the changes into the file.
  EXPECT_TRUE(waitFor([&] { return stored().find("own") != std::string::npos; }));
  EXPECT_EQ(stored(), R"({"new":true,"zebra":2,"Volume":0.25,"apple":{"x":[1,null]},"own":"ä�"})");
}

TEST_F(JsonSettingsSuiteTest, WhatIsNoJsonObjectCannotBeOpenedAndStaysAsItIs) {
  const auto message = [&] {
    const auto opened = JsonSettingsSuite::open(file, loop);
    const auto* error = std::get_if<JsonSettingsSuite::OpenError>(&opened);
    return error != nullptr ? error->message : "opened";
  };
  for (const char* text : {"", "{\"a\": 1", "[1]", "{} {}"}) {
    writeFile(file, text);
    EXPECT_THAT(message(), ::testing::HasSubstr(file.string())) << text;
    EXPECT_EQ(readFile(file), text);
  }
  fs::remove(file);
  fs::create_directory(file);
  EXPECT_THAT(message(), ::testing::HasSubstr(file.string()));
}

TEST_F(JsonSettingsSuiteTest, AMalformedOrMissingFileLeavesTheLastGoodValuesInForce) {
  writeFile(file, R"({"a": 1})");
  const auto suite = open();
  writeFile(file, "{\"a\": ");
  EXPECT_EQ(suite->integer("a"), 1);
  suite->setInteger("b", 2);
  suite->synchronize();
  EXPECT_EQ(suite->integer("b"), 2);
  EXPECT_EQ(readFile(file), "{\"a\": ");
  writeFile(file, R"({"a": 3})");
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":3,"b":2})"; }));

  fs::remove(file);
  EXPECT_EQ(suite->integer("a"), 3);
  suite->setInteger("b", 4);
  suite->synchronize();
  EXPECT_EQ(stored(), R"({"a":3,"b":4})");
}

TEST_F(JsonSettingsSuiteTest, AWriteWaitsForTheLockOfAnotherProcess) {
  const auto suite = open();
  QLockFile lock(QString::fromStdString(file.string() + ".lock"));
  ASSERT_TRUE(lock.lock());
  suite->setInteger("a", 1);
  suite->synchronize();
  EXPECT_EQ(suite->integer("a"), 1);
  EXPECT_FALSE(fs::exists(file));
  lock.unlock();
  EXPECT_TRUE(waitFor([&] { return stored() == R"({"a":1})"; }));
}

TEST_F(JsonSettingsSuiteTest, ProcessesThatWriteAtOnceLoseNothingOfEachOther) {
  constexpr int kKeys = 25;
  if (qEnvironmentVariableIsSet("QUILEX_TEST_WRITES")) {  // in one of the processes started below
    file = qgetenv("QUILEX_TEST_WRITES").toStdString();
    const auto suite = open();
    for (int count = 0; count < kKeys; ++count) {
      const auto key = QString("%1/%2").arg(QCoreApplication::applicationPid()).arg(count).toStdString();
      suite->setInteger(key, count);
      ASSERT_TRUE(waitFor([&] { return stored().find('"' + key + '"') != std::string::npos; }));
    }
    return;
  }
  qputenv("QUILEX_TEST_WRITES", file.c_str());
  std::array<QProcess, 4> processes;
  for (QProcess& each : processes) {
    each.start(QCoreApplication::applicationFilePath(),
               {"--gtest_filter=JsonSettingsSuiteTest.ProcessesThatWriteAtOnceLoseNothingOfEachOther"});
  }
  qunsetenv("QUILEX_TEST_WRITES");
  for (QProcess& each : processes) {
    EXPECT_TRUE(each.waitForFinished(60'000) && each.exitCode() == 0) << each.readAllStandardOutput().toStdString();
  }
  EXPECT_EQ(nlohmann::json::parse(readFile(file)).size(), processes.size() * kKeys);
}

}  // namespace quilex
