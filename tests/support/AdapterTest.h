#pragma once

#include <QtCore/qtestsupport_core.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace quilex {

/// Runs the event loop until the condition holds; false when it does not within half a minute.
inline constexpr auto waitFor = [](auto condition) { return QTest::qWaitFor(condition, 30'000); };

/// A test with a folder of its own.
struct AdapterTest : ::testing::Test {
  ~AdapterTest() override { std::filesystem::remove_all(folder); }
  static void write(const std::string& file, const std::string& text) { std::ofstream(file) << text; }
  static std::string read(std::string file) { return {std::istreambuf_iterator(std::ifstream(file).rdbuf()), {}}; }
  const std::string folder = std::string(mkdtemp(std::string("/tmp/quilex-XXXXXX").data())) + '/';
};

}  // namespace quilex
