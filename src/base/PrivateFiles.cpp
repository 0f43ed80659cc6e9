#include "base/PrivateFiles.h"

namespace quilex {

namespace fs = std::filesystem;

std::error_code createPrivateFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::is_directory(folder, error)) {
    return {};
  }
  if (const fs::path parent = folder.parent_path(); !parent.empty() && parent != folder) {
    if (error = createPrivateFolder(parent); error) {
      return error;
    }
  }
  if (fs::create_directory(folder, error)) {
    fs::permissions(folder, fs::perms::owner_all, error);
  }
  return error;
}

}  // namespace quilex
