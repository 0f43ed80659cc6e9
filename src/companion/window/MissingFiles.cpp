#include "companion/window/MissingFiles.h"

#include <utility>

#include "library/FileURL.h"

namespace quilex {

namespace {

constexpr std::size_t kMostQuestions = 4;

}  // namespace

void MissingFiles::ask(const std::string& sign, const std::string& url) {
  if (asked_.insert(sign + '\n' + url).second) {
    waiting_.push_back({sign, url});
    startWaiting();
  }
}

void MissingFiles::startWaiting() {
  while (running_.size() < kMostQuestions && !waiting_.empty()) {
    const Question question = std::move(waiting_.front());
    waiting_.pop_front();
    const auto file = localPath(question.url);
    if (!file) {
      // An address that names no file of this machine.
      report_(question.sign, true);
      continue;
    }
    const std::string sign = question.sign;
    running_.insert_or_assign(sign, finder_.findFirst({*file}, [this, sign](const FileFinder::Answer& answer) {
      const Disposable finished = std::move(running_.at(sign));
      running_.erase(sign);
      report_(sign, !answer.found);
      startWaiting();
    }));
  }
}

}  // namespace quilex
