#include "library/LibraryFile.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <random>
#include <system_error>

#include "base/PrivateFiles.h"
#include "library/FileURL.h"

namespace quilex {

namespace fs = std::filesystem;

namespace {

// Removes the copies that killed programs have left behind. One that another program is still making is not needed
// either.
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

// The template names the loops by the paths where they were installed first. The installation may have been moved
// since.
void nameLoopsBeside(const fs::path& templateFile, const fs::path& copy) {
  try {
    SQLite::Database database(copy, SQLite::OPEN_READWRITE);
    database.exec("pragma journal_mode = memory");
    SQLite::Statement statement(database,
                                "update LocalVideos set url = ?1 || substr(url, instr(url, ?2) + length(?2)) "
                                "where instr(url, ?2) > 0 and instr(url, ?1) != 1");
    statement.bind(1, fileURL(templateFile.parent_path() / "loops") + "/");
    statement.bind(2, "/share/quilexhelper/loops/");
    statement.exec();
  } catch (const SQLite::Exception&) {
    // Not a template of ours.
  }
}

}  // namespace

std::string libraryFile(const fs::path& supportDirectory) {
  return supportDirectory.string() + "/Quilex.db";
}

Outcome placeLibrary(const fs::path& templateFile, const fs::path& library) {
  // Each process copies under a name of its own. With a shared name one could write into the copy that the other has
  // just made the library.
  fs::path unfinished = library;
  unfinished += "." + std::to_string(std::random_device()()) + ".new";
  std::error_code error;
  std::error_code ignored;
  fs::copy_file(templateFile, unfinished, error);
  if (!error) {
    fs::permissions(unfinished, kPrivateFile, error);
    nameLoopsBeside(templateFile, unfinished);
    // A link never replaces a file, as a rename would.
    fs::create_hard_link(unfinished, library, error);
    if (error && !fs::exists(library, ignored)) {
      // No hard links on this file system.
      fs::rename(unfinished, library, error);
    }
  }
  if (!fs::exists(library, ignored)) {
    fs::remove(unfinished, ignored);
    return failed(error.message());
  }
  removeUnfinished(library);
  return {};
}

}  // namespace quilex
