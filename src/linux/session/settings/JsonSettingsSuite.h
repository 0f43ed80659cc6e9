#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

#include "base/Disposable.h"
#include "linux/session/settings/SettingsFile.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// A settings suite kept as one JSON object in a file that several processes share.
///
/// Before each read the file is looked at, and parsed again only if it was replaced or changed. A write locks the file
/// against the other processes, reads it afresh, changes its own keys alone and replaces it atomically; while another
/// process holds the lock, or the file cannot be written, the write is tried again from the run loop. A change that
/// waits is dropped when another process stores a value under its key meanwhile. A file that is malformed, no regular
/// file, too large or gone while the program runs leaves the last good values in force; nothing is written over one
/// that holds no settings.
class JsonSettingsSuite : public SettingsSuite {
 public:
  /// What keeps a suite from being opened.
  struct OpenError {
    std::string message;
  };
  /// What keeps changes from being written.
  struct WriteError {
    std::string message;
  };

  /// Opens the suite at `file`, whose folders are created; a file that does not exist is an empty suite. `runLoop`
  /// must outlive the suite.
  static std::variant<std::unique_ptr<JsonSettingsSuite>, OpenError> open(std::filesystem::path file, RunLoop& runLoop);
  /// Writes what is still to be written, waiting a moment for another process's lock if need be.
  ~JsonSettingsSuite() override;

  bool contains(const std::string& key) const override;
  std::int64_t integer(const std::string& key) const override;
  float real(const std::string& key) const override;
  bool boolean(const std::string& key) const override;
  std::optional<std::string> string(const std::string& key) const override;

  void setInteger(const std::string& key, std::int64_t value) override;
  void setReal(const std::string& key, float value) override;
  void setBoolean(const std::string& key, bool value) override;
  void setString(const std::string& key, const std::string& value) override;
  void remove(const std::string& key) override;
  void synchronize() override;
  /// Writes the changes now, blocking for at most about `patience` while another process writes. Nothing when they are
  /// in the file; otherwise none of them is, and they are given up. From any thread, unlike all else.
  std::optional<WriteError> writeNow(std::chrono::milliseconds patience);

  /// How often the file's contents were read; shows that an unchanged file is not.
  std::size_t contentReads() const { return reads_; }

 private:
  using Json = SettingsFile::Json;

  /// An own change that is not in the file yet.
  // NOLINTNEXTLINE(bugprone-exception-escape): the values' move constructor does not throw, it only asserts
  struct Change {
    /// Nothing for a removed key.
    std::optional<Json> value;
    /// What the file held when the change was made; null for nothing.
    Json before;
  };
  enum class Writing { done, locked, failed };

  JsonSettingsSuite(std::filesystem::path location, RunLoop& loop);

  std::optional<SettingsFile::Problem> readFile() const;
  void refresh() const;
  Json stored(const std::string& key) const;
  Json value(const std::string& key) const;
  void change(const std::string& key, std::optional<Json> value);
  Writing write();
  std::string sentence(const std::string& problem) const;
  void complain(const std::string& problem, const char* consequence) const;

  SettingsFile file_;
  RunLoop& runLoop_;
  /// Guards all that follows but `retry`.
  mutable std::timed_mutex mutex_;
  mutable Json values_ = Json::object();
  mutable std::map<std::string, Change> pending_;
  mutable std::optional<SettingsFile::Signature> seen_;
  mutable std::string lastComplaint_;
  mutable std::size_t reads_ = 0;
  std::string writeError_;
  std::chrono::milliseconds lockRetry_;
  std::optional<Disposable> retry_;
};

}  // namespace quilex
