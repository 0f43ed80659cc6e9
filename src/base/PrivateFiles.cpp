#include "base/PrivateFiles.h"

#include <system_error>

namespace quilex {

namespace fs = std::filesystem;

Outcome createPrivateFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::is_directory(folder, error)) {
    return {};
  }
  if (const fs::path parent = folder.parent_path(); !parent.empty() && parent != folder) {
    if (auto above = createPrivateFolder(parent); !above) {
      return above;
    }
  }
  if (fs::create_directory(folder, error)) {
    fs::permissions(folder, fs::perms::owner_all, error);
  }
  return error ? failed(error.message()) : Outcome();
}

}  // namespace quilex
