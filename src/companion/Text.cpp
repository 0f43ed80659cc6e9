#include "companion/Text.h"

#include <unistd.h>

#include <QString>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace quilex {

namespace {

int writeErrno = 0;

}  // namespace

std::string cleanText(std::string_view text) {
  QString clean = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  for (QChar& character : clean) {
    if (character.category() == QChar::Other_Control) {
      character = QLatin1Char(' ');
    }
  }
  return clean.toStdString();
}

void printLine(std::string_view line) {
  const bool written = std::fwrite(line.data(), 1, line.size(), stdout) == line.size() &&
                       std::fputc('\n', stdout) != EOF && std::fflush(stdout) == 0;
  if (!written && writeErrno == 0) {
    writeErrno = errno;
  }
}

void printError(std::string_view message) {
  std::fprintf(stderr, "quilex: %s\n", cleanText(message).c_str());
}

Outcome checkOutput() {
  if (writeErrno == 0 || writeErrno == EPIPE) {
    return {};
  }
  return failed(std::string("the output cannot be written: ") + std::strerror(writeErrno));
}

Progress::Progress() : visible_(isatty(STDERR_FILENO) == 1) {}

void Progress::show(const std::string& text) {
  if (visible_ && text != shown_) {
    shown_ = text;
    std::fprintf(stderr, "\r%s\033[K", text.c_str());
    std::fflush(stderr);
  }
}

void Progress::erase() {
  if (!shown_.empty()) {
    shown_.clear();
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
  }
}

}  // namespace quilex
