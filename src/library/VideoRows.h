#pragma once

#include <string>
#include <vector>

#include "library/VideoDetail.h"

struct sqlite3;

namespace quilex {

/// Runs a query for rows of table LocalVideos, with `argument` (null if there is none) bound to its parameter, and
/// appends a video for each row. Columns are read by their names, integers by SQLite's 32-bit conversion; NULL and a
/// missing column read as 0 or "". Returns SQLite's result code: SQLITE_DONE when all rows were read. After a failure
/// `videos` holds the rows before it.
int queryVideos(sqlite3* db, const char* text, const std::string* argument, std::vector<VideoDetail>& videos);

}  // namespace quilex
