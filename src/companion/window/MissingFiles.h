#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "base/Disposable.h"
#include "platform/FileFinder.h"

namespace quilex {

/// Finds out which videos have lost their files, a few at a time. Main thread.
class MissingFiles {
 public:
  using Report = std::function<void(const std::string& sign, bool isMissing)>;

  /// `finder` must outlive the instance. `report` is called for each answer.
  MissingFiles(FileFinder& finder, Report report) : finder_(finder), report_(std::move(report)) {}

  /// Looks for the file of that address, unless that was done a moment ago.
  void ask(const std::string& sign, const std::string& url);
  /// Forgets when it looked: the next question is answered by looking again.
  void expire() { asked_.clear(); }

 private:
  struct Question {
    std::string sign;
    std::string url;
  };
  void startWaiting();

  FileFinder& finder_;
  Report report_;
  /// What was asked for, since the last `expire`.
  std::set<std::string> asked_;
  std::deque<Question> waiting_;
  std::map<std::string, Disposable> running_;
};

}  // namespace quilex
