#include "library/LibraryFile.h"

#include <random>

#include "app/PrivateFiles.h"

namespace quilex {

namespace fs = std::filesystem;

namespace {

// The copies of programs that were killed meanwhile; one still being made is not needed any more either.
void removeUnfinished(const fs::path& library) {
  const std::string prefix = library.filename().string() + ".";
  std::error_code ignored;
  fs::directory_iterator entries(library.parent_path(), ignored);
  for (; entries != fs::directory_iterator(); entries.increment(ignored)) {
    const std::string name = entries->path().filename().string();
    if (name.starts_with(prefix) && name.ends_with(".new")) {
      fs::remove(entries->path(), ignored);
    }
  }
}

}  // namespace

std::string libraryFile(const fs::path& supportDirectory) {
  return supportDirectory.string() + "/Quilex.db";
}

std::error_code placeLibrary(const fs::path& templateFile, const fs::path& library) {
  // Under a name of its own: a name that two processes shared would let the one copy into what the other has just
  // made the library.
  fs::path unfinished = library;
  unfinished += "." + std::to_string(std::random_device()()) + ".new";
  std::error_code error;
  std::error_code ignored;
  fs::copy_file(templateFile, unfinished, error);
  if (!error) {
    fs::permissions(unfinished, kPrivateFile, error);
    // Unlike a renaming, a link never replaces what is there.
    fs::create_hard_link(unfinished, library, error);
    if (error && !fs::exists(library, ignored)) {
      // No hard links on this file system.
      fs::rename(unfinished, library, error);
    }
  }
  if (fs::exists(library, ignored)) {
    error.clear();
    removeUnfinished(library);
  } else {
    fs::remove(unfinished, ignored);
  }
  return error;
}

}  // namespace quilex
