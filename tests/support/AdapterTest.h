#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>

namespace quilex {

/// Runs the event loop until the condition holds; false when it does not within half a minute.
bool waitFor(const std::function<bool()>& condition);

/// Replaces the contents in place, keeping the file's inode; makes missing folders.
void writeFile(const std::filesystem::path& file, const std::string& text);
std::string readFile(const std::filesystem::path& file);

/// A test with a folder of its own.
class AdapterTest : public ::testing::Test {
 private:
  const QTemporaryDir temporary;

 protected:
  const std::filesystem::path folder = temporary.path().toStdString();
};

}  // namespace quilex
