#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace quilex::test {

/// A folder for one test, removed with all it holds.
struct TemporaryFolder {
  std::string path = (std::filesystem::temp_directory_path() / "quilex-test-XXXXXX").string();

  TemporaryFolder() { path = mkdtemp(path.data()); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path); }

  std::string operator/(const std::string& name) const { return path + "/" + name; }
  std::string write(const std::string& name) const {
    std::ofstream(*this / name) << "no video and no database";
    return *this / name;
  }
};

}  // namespace quilex::test
