#include "linux/session/files/ThreadedFileFinder.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <system_error>
#include <utility>

namespace quilex {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// How far a thread is. Shared with the thread, which may hang for longer than the finder lives.
struct ThreadedFileFinder::Progress {
  std::mutex lock;
  std::size_t index;
  Clock::time_point since = Clock::now();
  /// Set when the thread is given up; it then looks at no further file.
  bool isAbandoned = false;
  /// Set when the thread has finished; `found` is its result.
  bool isDone = false;
  std::optional<std::size_t> found;

  /// Begins with the file of that index. False if the thread was given up.
  bool begin(std::size_t next) {
    const std::lock_guard guard(lock);
    index = next;
    since = Clock::now();
    return !isAbandoned;
  }
  void finish(std::optional<std::size_t> result) {
    const std::lock_guard guard(lock);
    found = result;
    isDone = true;
  }
};

ThreadedFileFinder::ThreadedFileFinder(RunLoop& runLoop, Look look)
    : runLoop_(runLoop), look_(std::move(look)), questions_(std::make_shared<Questions>()) {}

ThreadedFileFinder::~ThreadedFileFinder() = default;

bool ThreadedFileFinder::isRegularFile(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored);
}

Disposable ThreadedFileFinder::findFirst(std::vector<fs::path> files, std::function<void(Answer)> reply) {
  const std::uint64_t id = ++lastQuestion_;
  Question& question = (*questions_)[id];
  question.files = std::move(files);
  question.reply = std::move(reply);
  search(id, 0);
  return Disposable([id, weak = std::weak_ptr(questions_)] {
    const auto questions = weak.lock();
    if (questions && questions->contains(id)) {
      // The thread is still watched until it ends, so that its folder is known if it hangs.
      questions->at(id).reply = nullptr;
    }
  });
}

// Starts a thread that looks at the files from that index on.
void ThreadedFileFinder::search(std::uint64_t id, std::size_t from) {
  Question& question = questions_->at(id);
  // Folders in which a thread hangs are skipped.
  std::vector<std::pair<std::size_t, fs::path>> places;
  for (std::size_t index = from; index < question.files.size(); ++index) {
    if (hangs(question.files[index])) {
      question.someUnanswered = true;
    } else {
      places.emplace_back(index, question.files[index]);
    }
  }
  const auto progress = std::make_shared<Progress>();
  progress->index = places.empty() ? question.files.size() : places.front().first;
  question.progress = progress;
  question.deadline = runLoop_.after(kPatience, [this, id] { watch(id); });
  auto work = [progress, look = look_, places = std::move(places)](const std::stop_token& stop) {
    std::optional<std::size_t> found;
    for (const auto& [index, file] : places) {
      if (stop.stop_requested() || !progress->begin(index)) {
        break;
      }
      if (look(file)) {
        found = index;
        break;
      }
    }
    progress->finish(found);
  };
  try {
    question.thread.emplace(work_.run(std::move(work), [this, id, progress] { collect(id, progress); }));
  } catch (const std::system_error&) {
    // No thread could be started; the deadline answers.
    progress->index = question.files.size();
  }
}

// Gives up a thread that has been looking at one file for too long.
void ThreadedFileFinder::watch(std::uint64_t id) {
  Question& question = questions_->at(id);
  std::size_t index = 0;
  {
    const std::lock_guard guard(question.progress->lock);
    if (question.progress->isDone) {
      // The run loop is about to collect its result.
      return;
    }
    const auto passed = Clock::now() - question.progress->since;
    if (passed < kPatience) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(kPatience - passed);
      question.deadline = runLoop_.after(left, [this, id] { watch(id); });
      return;
    }
    index = question.progress->index;
    question.progress->isAbandoned = true;
  }
  question.someUnanswered = true;
  if (question.thread) {
    const fs::path file = index < question.files.size() ? question.files[index] : fs::path();
    hanging_.emplace(question.progress, Hanging{file.parent_path(), *std::move(question.thread)});
    question.thread.reset();
  }
  if (!question.reply || index + 1 >= question.files.size()) {
    answer(id, std::nullopt);
  } else {
    search(id, index + 1);
  }
}

// Takes the result of a thread, unless it was given up.
void ThreadedFileFinder::collect(std::uint64_t id, const std::shared_ptr<Progress>& progress) {
  if (hanging_.erase(progress) == 0) {
    answer(id, progress->found);
  }
}

bool ThreadedFileFinder::hangs(const fs::path& file) const {
  return std::ranges::any_of(hanging_,
                             [folder = file.parent_path()](const auto& each) { return each.second.folder == folder; });
}

void ThreadedFileFinder::answer(std::uint64_t id, std::optional<std::size_t> found) {
  const Question question = std::move(questions_->extract(id).mapped());
  if (question.reply) {
    question.reply({found, question.someUnanswered});
  }
}

}  // namespace quilex
