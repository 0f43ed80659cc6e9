#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "linux/session/settings/SettingsFile.h"
#include "platform/RunLoop.h"
#include "platform/SettingsSuite.h"

namespace quilex {

/// A settings suite kept as one JSON object in a file that several processes share.
///
/// Each read checks whether the file was replaced or changed, and parses it again only then. A write locks the file
/// against the other processes, reads it again, changes only its own keys and replaces the file atomically. While
/// another process holds the lock, or the file cannot be written, the run loop tries again. A change that waits is
/// dropped when another process stores a value under its key meanwhile. While the file is malformed, not a regular
/// file, too large or missing, the last good values stay in force, and a file that holds no settings is never
/// overwritten.
class JsonSettingsSuite : public SettingsSuite {
 public:
  /// Opens the suite at `file`, whose folders are created; a file that does not exist is an empty suite. `runLoop`
  /// must outlive the suite.
  static Result<std::unique_ptr<JsonSettingsSuite>> open(std::filesystem::path file, RunLoop& runLoop);
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
  /// Writes all changes now, or gives them all up when it fails. Blocks for about `patience` at most while another
  /// process writes. Any thread, unlike everything else here.
  Outcome writeNow(std::chrono::milliseconds patience);

  /// How often the file's contents were read, for the test that an unchanged file is not read again.
  std::size_t contentReads() const { return reads_; }

 private:
  using Json = SettingsFile::Json;

  /// A change of ours that is not in the file yet.
  // NOLINTNEXTLINE(bugprone-exception-escape): the values' move constructor does not throw, it only asserts
  struct Change {
    /// Nothing for a removed key.
    std::optional<Json> value;
    /// What the file held when the change was made; null for nothing.
    Json before;
  };
  enum class Writing { done, locked };

  JsonSettingsSuite(std::filesystem::path file, RunLoop& runLoop);

  Outcome readFile() const;
  void refresh() const;
  Json stored(const std::string& key) const;
  Json value(const std::string& key) const;
  void change(const std::string& key, std::optional<Json> value);
  Result<Writing> write();
  std::string sentence(const std::string& problem) const;
  void complain(const std::string& problem, const char* consequence) const;

  SettingsFile file_;
  RunLoop& runLoop_;
  /// Guards all that follows but `retry_`.
  mutable std::timed_mutex mutex_;
  mutable Json values_ = Json::object();
  mutable std::map<std::string, Change> pending_;
  mutable std::optional<SettingsFile::Signature> seen_;
  mutable std::string lastComplaint_;
  mutable std::size_t reads_ = 0;
  std::chrono::milliseconds lockRetry_;
  std::optional<Disposable> retry_;
};

}  // namespace quilex
