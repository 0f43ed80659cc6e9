#include "linux/session/files/ThreadedFileFinder.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace quilex {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// Where the threads leave what they have found; outlives the finder as long as a thread hangs.
struct ThreadedFileFinder::Mailbox {
  struct Letter {
    std::uint64_t question;
    std::shared_ptr<Progress> progress;
    std::optional<std::size_t> found;
  };
  std::mutex lock;
  /// Empty once the finder is gone.
  const Wakeup* wakeup;
  std::vector<Letter> letters;
};

/// How far a thread is.
struct ThreadedFileFinder::Progress {
  std::mutex lock;
  std::size_t index;
  Clock::time_point since = Clock::now();
  /// Set when the thread is left behind; it then looks at nothing more.
  bool isAbandoned = false;
  /// Set when it has looked at all there is to look at.
  bool isDone = false;
};

ThreadedFileFinder::ThreadedFileFinder(RunLoop& runLoop, Look look)
    : loop_(runLoop), lookAt_(std::move(look)), wakeup_([this] { collect(); }), mailbox_(std::make_shared<Mailbox>()) {
  mailbox_->wakeup = &wakeup_;
}

ThreadedFileFinder::~ThreadedFileFinder() {
  for (const auto& [id, question] : questions_) {
    const std::lock_guard lock(question.progress->lock);
    question.progress->isAbandoned = true;
  }
  const std::lock_guard lock(mailbox_->lock);
  mailbox_->wakeup = nullptr;
}

bool ThreadedFileFinder::isRegularFile(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored);
}

Disposable ThreadedFileFinder::findFirst(std::vector<fs::path> files, std::function<void(Answer)> reply) {
  const std::uint64_t id = ++lastQuestion_;
  questions_[id] = {std::move(files), std::move(reply), false, nullptr, std::nullopt};
  look(id, 0);
  return Disposable([this, id, box = mailbox_] {
    {
      const std::lock_guard lock(box->lock);
      if (box->wakeup == nullptr) {
        return;
      }
    }
    if (const auto entry = questions_.find(id); entry != questions_.end()) {
      // The thread is watched to its end all the same, so that its folder is known if it hangs.
      entry->second.reply = nullptr;
    }
  });
}

// Starts a thread for the files from that one on.
void ThreadedFileFinder::look(std::uint64_t id, std::size_t from) {
  Question& question = questions_.at(id);
  // What hangs is not asked again.
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
  question.deadline = loop_.after(kPatience, [this, id] { watch(id); });
  auto work = [id, progress, box = mailbox_, look = lookAt_, places = std::move(places)] {
    std::optional<std::size_t> found;
    for (const auto& [index, file] : places) {
      {
        const std::lock_guard lock(progress->lock);
        if (progress->isAbandoned) {
          break;
        }
        progress->index = index;
        progress->since = Clock::now();
      }
      if (look(file)) {
        found = index;
        break;
      }
    }
    {
      const std::lock_guard lock(progress->lock);
      progress->isDone = true;
    }
    const std::lock_guard lock(box->lock);
    if (box->wakeup != nullptr) {
      box->letters.push_back({id, progress, found});
      box->wakeup->signal();
    }
  };
  try {
    std::thread(std::move(work)).detach();
  } catch (const std::system_error&) {
    // No thread is to be had; the deadline answers.
    progress->index = question.files.size();
  }
}

// Leaves a thread behind that has been at one file for too long.
void ThreadedFileFinder::watch(std::uint64_t id) {
  Question& question = questions_.at(id);
  std::size_t index = 0;
  {
    const std::lock_guard lock(question.progress->lock);
    if (question.progress->isDone) {
      // Its letter is on the way.
      return;
    }
    const auto passed = Clock::now() - question.progress->since;
    if (passed < kPatience) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(kPatience - passed);
      question.deadline = loop_.after(left, [this, id] { watch(id); });
      return;
    }
    index = question.progress->index;
    question.progress->isAbandoned = true;
  }
  question.someUnanswered = true;
  if (index < question.files.size()) {
    hanging_[question.progress] = question.files[index].parent_path();
  }
  if (!question.reply || index + 1 >= question.files.size()) {
    answer(id, std::nullopt);
  } else {
    look(id, index + 1);
  }
}

void ThreadedFileFinder::collect() {
  std::vector<Mailbox::Letter> letters;
  {
    const std::lock_guard lock(mailbox_->lock);
    letters.swap(mailbox_->letters);
  }
  for (const auto& [id, progress, found] : letters) {
    hanging_.erase(progress);
    const auto entry = questions_.find(id);
    if (entry != questions_.end() && entry->second.progress == progress) {
      answer(id, found);
    }
  }
}

bool ThreadedFileFinder::hangs(const fs::path& file) const {
  return std::ranges::any_of(hanging_,
                             [folder = file.parent_path()](const auto& each) { return each.second == folder; });
}

void ThreadedFileFinder::answer(std::uint64_t id, std::optional<std::size_t> found) {
  const auto entry = questions_.find(id);
  Question question = std::move(entry->second);
  questions_.erase(entry);
  if (question.reply) {
    question.reply({found, question.someUnanswered});
  }
}

}  // namespace quilex
