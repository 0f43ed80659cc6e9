#pragma once

#include <string>
#include <vector>

#include "library/VideoDetail.h"

struct sqlite3;

namespace quilex {

/// Runs a query that yields rows of table LocalVideos, with `argument` bound to its parameter if it has one, and
/// appends a video for each row, read by the names of the columns: integers as SQLite's own 32-bit conversion gives
/// them, NULL as 0 or "", a missing column as if it were NULL. Answers SQLite's result code, SQLITE_DONE when all rows
/// were read; otherwise those read before the failure are in `videos`.
int queryVideos(sqlite3* db, const char* text, const std::string* argument, std::vector<VideoDetail>& videos);

}  // namespace quilex
