#include "linux/session/programs/RunningPrograms.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace quilex {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kInterval{3};
// TASK_COMM_LEN without the end (proc(5)).
constexpr std::size_t kLongestName = 15;

bool isProcess(const std::string& name) {
  return !name.empty() && std::ranges::all_of(name, [](unsigned char letter) { return std::isdigit(letter) != 0; });
}

// A program that has ended is listed until its parent asks how (the state Z in proc(5), after the name in brackets).
bool hasEnded(const fs::path& process) {
  std::string line;
  std::getline(std::ifstream(process / "stat"), line);
  const std::size_t end = line.rfind(')');
  return end == std::string::npos || end + 2 >= line.size() || line[end + 2] == 'Z' || line[end + 2] == 'X';
}

// `names` are as long as the kernel's at most.
bool isAnyRunning(const std::vector<std::string>& names, const std::stop_token& stop) {
  std::error_code failure;
  for (fs::directory_iterator each("/proc", failure), end; !failure && each != end; each.increment(failure)) {
    if (stop.stop_requested()) {
      return false;
    }
    if (!isProcess(each->path().filename())) {
      continue;
    }
    std::string name;
    if (std::getline(std::ifstream(each->path() / "comm"), name) && std::ranges::count(names, name) > 0 &&
        !hasEnded(each->path())) {
      return true;
    }
  }
  return false;
}

class Search {
 public:
  Search(std::vector<std::string> names, BackgroundWork& backgroundWork, RunLoop& loop,
         StandstillReason::Handler handler)
      : names_(std::move(names)), backgroundWork_(backgroundWork), runLoop_(loop), handler_(std::move(handler)) {
    look();
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

 private:
  void look() {
    const auto found = std::make_shared<bool>(false);
    step_ = backgroundWork_.run(
        [names = names_, found](const std::stop_token& stop) { *found = isAnyRunning(names, stop); },
        [this, found] { looked(*found); });
  }

  void looked(bool isRunning) {
    step_ = runLoop_.after(kInterval, [this] { look(); });
    if (std::exchange(isRunning_, isRunning) != isRunning) {
      // The handler may release the token and with it this object.
      const auto running = handler_;
      running(isRunning);
    }
  }

  std::vector<std::string> names_;
  BackgroundWork& backgroundWork_;
  RunLoop& runLoop_;
  StandstillReason::Handler handler_;
  bool isRunning_ = false;
  /// The look or the pause that is under way.
  std::optional<Disposable> step_;
};

}  // namespace

Disposable watchPrograms(const std::vector<std::string>& names, BackgroundWork& backgroundWork, RunLoop& loop,
                         StandstillReason::Handler handler) {
  std::vector<std::string> shortened;
  shortened.reserve(names.size());
  for (const std::string& name : names) {
    shortened.push_back(name.substr(0, kLongestName));
  }
  auto search = std::make_shared<Search>(std::move(shortened), backgroundWork, loop, std::move(handler));
  return Disposable([search = std::move(search)]() mutable { search.reset(); });
}

}  // namespace quilex
