#include "linux/session/settings/JsonSettingsSuite.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include "base/JSONCoding.h"
#include "base/PrivateFiles.h"
#include "linux/toolkit/loop/Log.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockRetry = 10ms;
constexpr std::chrono::milliseconds kFailureRetry = 1000ms;
constexpr auto kPatienceAtExit = 1000ms;
constexpr const char* kLocked = "is locked by another program";

// The shortest decimal text that reads back as the same float, so that 0.1 is not written as 0.10000000149.
double readable(float value) {
  char text[32];
  const auto written = std::to_chars(text, text + sizeof text, value);
  double result = value;
  std::from_chars(text, written.ptr, result);
  return result;
}

}  // namespace

Result<std::unique_ptr<JsonSettingsSuite>> JsonSettingsSuite::open(fs::path file, RunLoop& runLoop) {
  // If the folder cannot be made, reading or writing the file reports it.
  createPrivateFolder(file.parent_path());
  std::unique_ptr<JsonSettingsSuite> suite(new JsonSettingsSuite(std::move(file), runLoop));
  if (const auto read = suite->readFile(); !read) {
    return failed(suite->sentence(read.error().message));
  }
  return suite;
}

JsonSettingsSuite::JsonSettingsSuite(fs::path file, RunLoop& runLoop)
    : file_(std::move(file)), runLoop_(runLoop), lockRetry_(kLockRetry) {}

JsonSettingsSuite::~JsonSettingsSuite() {
  try {
    if (const auto written = writeNow(kPatienceAtExit); !written) {
      std::fprintf(stderr, "%s\n", written.error().message.c_str());
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", sentence(std::string("was not written: ") + error.what()).c_str());
  }
}

std::string JsonSettingsSuite::sentence(const std::string& problem) const {
  return "the settings file " + file_.path.string() + " " + problem;
}

// Replaces the values by the file's. If it holds none, the last good ones stay.
Outcome JsonSettingsSuite::readFile() const {
  ++reads_;
  SettingsFile::Contents contents = file_.read();
  seen_ = contents.signature;
  qCDebug(settingsLog, "reads %s", file_.path.c_str());
  if (!contents.object) {
    return failed(std::move(contents.object).error());
  }
  if (std::optional<Json>& object = *contents.object) {
    values_ = *std::move(object);
    // What another process has stored since is newer than a change that still waits.
    std::erase_if(pending_, [this](const auto& entry) { return stored(entry.first) != entry.second.before; });
  }
  return {};
}

void JsonSettingsSuite::refresh() const {
  const auto now = file_.signature();
  if (!now || now == seen_) {
    return;
  }
  if (const auto read = readFile(); !read) {
    complain(read.error().message, "keeping the last good values");
  } else {
    lastComplaint_.clear();
  }
}

// Reports each problem once, however often it comes up.
void JsonSettingsSuite::complain(const std::string& problem, const char* consequence) const {
  if (problem != lastComplaint_) {
    lastComplaint_ = problem;
    qCWarning(settingsLog, "%s", sentence(problem).c_str());
    std::fprintf(stderr, "%s; %s\n", sentence(problem).c_str(), consequence);
  }
}

// Null when there is none.
JsonSettingsSuite::Json JsonSettingsSuite::stored(const std::string& key) const {
  const auto entry = values_.find(key);
  return entry != values_.end() ? *entry : Json();
}

JsonSettingsSuite::Json JsonSettingsSuite::value(const std::string& key) const {
  const std::lock_guard guard(mutex_);
  refresh();
  const auto change = pending_.find(key);
  return change != pending_.end() ? change->second.value.value_or(Json()) : stored(key);
}

bool JsonSettingsSuite::contains(const std::string& key) const {
  return !value(key).is_null();
}

std::int64_t JsonSettingsSuite::integer(const std::string& key) const {
  return json::wholeNumber(value(key)).value_or(0);
}

float JsonSettingsSuite::real(const std::string& key) const {
  const Json json = value(key);
  if (!json.is_number()) {
    return 0;
  }
  constexpr double kLargest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(json.get<double>(), -kLargest, kLargest));
}

bool JsonSettingsSuite::boolean(const std::string& key) const {
  const Json json = value(key);
  return json.is_boolean() && json.get<bool>();
}

std::optional<std::string> JsonSettingsSuite::string(const std::string& key) const {
  const Json json = value(key);
  return json.is_string() ? std::optional(json.get<std::string>()) : std::nullopt;
}

void JsonSettingsSuite::setInteger(const std::string& key, std::int64_t value) {
  change(key, value);
}
void JsonSettingsSuite::setReal(const std::string& key, float value) {
  change(key, readable(value));
}
void JsonSettingsSuite::setBoolean(const std::string& key, bool value) {
  change(key, value);
}
void JsonSettingsSuite::setString(const std::string& key, const std::string& value) {
  change(key, value);
}
void JsonSettingsSuite::remove(const std::string& key) {
  change(key, std::nullopt);
}

void JsonSettingsSuite::change(const std::string& key, std::optional<Json> value) {
  const std::lock_guard guard(mutex_);
  refresh();
  pending_[key] = {std::move(value), stored(key)};
  if (!retry_) {
    retry_ = runLoop_.after(0ms, [this] { synchronize(); });
  }
}

void JsonSettingsSuite::synchronize() {
  const std::lock_guard guard(mutex_);
  retry_.reset();
  refresh();
  const auto written = write();
  if (written == Writing::done) {
    lockRetry_ = kLockRetry;
    return;
  }
  // A lock is usually free in a moment, but a process that is stopped may hold one for as long as it likes.
  const auto delay = written ? std::exchange(lockRetry_, std::min(2 * lockRetry_, kFailureRetry)) : kFailureRetry;
  if (delay == kFailureRetry) {
    complain(written ? kLocked : written.error().message, "trying again");
  }
  retry_ = runLoop_.after(delay, [this] { synchronize(); });
}

Outcome JsonSettingsSuite::writeNow(std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const std::unique_lock guard(mutex_, deadline);
  if (!guard) {
    return failed(sentence("is in use by another thread"));
  }
  for (auto written = write(); written != Writing::done; written = write()) {
    if (!written || std::chrono::steady_clock::now() >= deadline) {
      pending_.clear();
      return failed(sentence(written ? kLocked : written.error().message));
    }
    std::this_thread::sleep_for(kLockRetry);
  }
  return {};
}

// Writes the pending changes to the file. If that fails they stay pending.
Result<JsonSettingsSuite::Writing> JsonSettingsSuite::write() {
  if (pending_.empty()) {
    return Writing::done;
  }
  const auto lock = file_.lock();
  if (!lock) {
    return failed(lock.error());
  }
  if (!lock->has_value()) {
    return Writing::locked;
  }
  if (auto read = readFile(); !read) {
    return failed(std::move(read).error());
  }
  Json changed = values_;
  for (const auto& [key, change] : pending_) {
    if (change.value) {
      changed[key] = *change.value;
    } else {
      changed.erase(key);
    }
  }
  if (auto replaced = file_.replace(changed); !replaced) {
    return failed(std::move(replaced).error());
  }
  values_ = std::move(changed);
  pending_.clear();
  lastComplaint_.clear();
  // Another process may have replaced the file again, so the next read parses it in any case.
  seen_.reset();
  return Writing::done;
}

}  // namespace quilex
