#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quilex {

/// The text as valid UTF-8 without control characters: each of those becomes a blank, and what is not UTF-8 becomes
/// U+FFFD. Whatever comes from a file name or the library goes through here before it reaches a terminal.
std::string cleanText(std::string_view text);

/// Writes one line to standard output, at once. A failure is kept for `outputError`.
void printLine(std::string_view line);
/// Writes "quilex: " and the message to standard error, without control characters.
void printError(std::string_view message);
/// The first failure to write to standard output. A reader that has gone away (EPIPE) is none.
std::optional<std::string> outputError();

/// A line on standard error that tells how far a long work is, and goes away with it. Where standard error is no
/// terminal it shows nothing.
class Progress {
 public:
  Progress();
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Shows the text in place of the last one.
  void show(const std::string& text);
  /// Makes room for other output.
  void erase();

 private:
  bool visible_;
  std::string shown_;
};

}  // namespace quilex
