#pragma once

#include <string>
#include <string_view>

#include "base/Result.h"

namespace quilex {

/// The text as valid UTF-8 without control characters: each of those becomes a blank, and what is not UTF-8 becomes
/// U+FFFD. Anything from a file name or the library must pass through here before it reaches a terminal.
std::string cleanText(std::string_view text);

/// Writes one line to standard output, unbuffered. A failure is kept for `checkOutput`.
void printLine(std::string_view line);
/// Writes "quilex: " and the message to standard error, without control characters.
void printError(std::string_view message);
/// Fails if a line could not be written to standard output. A reader that has gone away (EPIPE) is no failure.
Outcome checkOutput();

/// A line on standard error that shows the progress of long work and disappears with it. If standard error is not a
/// terminal, nothing is shown.
class Progress {
 public:
  Progress();
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Replaces the text that is shown.
  void show(const std::string& text);
  /// Makes room for other output.
  void erase();

 private:
  bool visible_;
  std::string shown_;
};

}  // namespace quilex
