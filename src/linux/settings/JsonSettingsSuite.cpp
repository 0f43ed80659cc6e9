#include "linux/settings/JsonSettingsSuite.h"

#include <sys/stat.h>

#include <QFile>
#include <QLockFile>
#include <QSaveFile>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace quilex {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// A file changed this recently may change again without its time stamp moving, so it is read once more later.
constexpr auto kTimestampGranularity = 100ms;
constexpr auto kLockRetry = 10ms;
constexpr auto kFailureRetry = 1000ms;
constexpr auto kPatienceAtExit = 1000ms;

std::int64_t nanoseconds(const timespec& time) {
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

// The shortest decimal text that reads back as the same float, so that 0.1 is not written as 0.10000000149.
double readable(float value) {
  char text[32];
  const auto written = std::to_chars(text, text + sizeof text, value);
  double result = value;
  std::from_chars(text, written.ptr, result);
  return result;
}

}  // namespace

std::variant<std::unique_ptr<JsonSettingsSuite>, JsonSettingsSuite::OpenError> JsonSettingsSuite::open(
    fs::path file, RunLoop& runLoop) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  std::unique_ptr<JsonSettingsSuite> suite(new JsonSettingsSuite(std::move(file), runLoop));
  switch (suite->readFile()) {
    case Reading::good:
    case Reading::missing:
      return suite;
    case Reading::unreadable:
      return OpenError{"cannot read the settings file " + suite->path.string() + ": " + suite->readError};
    case Reading::malformed:
      break;
  }
  return OpenError{"the settings file " + suite->path.string() + " is not a JSON object"};
}

JsonSettingsSuite::JsonSettingsSuite(fs::path file, RunLoop& loop) : path(std::move(file)), runLoop(loop) {}

JsonSettingsSuite::~JsonSettingsSuite() {
  try {
    if (const auto error = writeNow(kPatienceAtExit)) {
      std::fprintf(stderr, "%s\n", error->message.c_str());
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "the settings file %s was not written: %s\n", path.c_str(), error.what());
  }
}

std::optional<JsonSettingsSuite::Signature> JsonSettingsSuite::signatureOf(const fs::path& file) {
  struct stat status = {};
  if (stat(file.c_str(), &status) != 0) {
    return std::nullopt;
  }
  return Signature{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
                   nanoseconds(status.st_ctim)};
}

// Reads the file into `values` if it holds a JSON object, and leaves them alone otherwise.
JsonSettingsSuite::Reading JsonSettingsSuite::readFile() const {
  seen = signatureOf(path);
  if (!seen) {
    readError = std::strerror(errno);
    return state = errno == ENOENT ? Reading::missing : Reading::unreadable;
  }
  timespec now = {};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  const auto age = std::chrono::nanoseconds(nanoseconds(now) - seen->changed);
  if (age < kTimestampGranularity) {
    seen->size = -1;  // never equal to a later look
  }
  ++reads;
  QFile file(QFile::decodeName(path.c_str()));
  const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  if (file.error() != QFileDevice::NoError) {
    readError = file.errorString().toStdString();
    return state = Reading::unreadable;
  }
  Json parsed = Json::parse(text.begin(), text.end(), nullptr, false);
  if (!parsed.is_object()) {
    return state = Reading::malformed;
  }
  values = std::move(parsed);
  return state = Reading::good;
}

void JsonSettingsSuite::refresh() const {
  const auto now = signatureOf(path);
  if (!now || now == seen) {
    return;
  }
  switch (readFile()) {
    case Reading::good:
      lastComplaint.clear();
      break;
    case Reading::missing:
      break;
    case Reading::unreadable:
      complain("cannot be read; keeping the last good values");
      break;
    case Reading::malformed:
      complain("is not a JSON object; keeping the last good values until it is one again");
      break;
  }
}

// Once for each problem, however often it is met.
void JsonSettingsSuite::complain(const std::string& problem) const {
  if (problem != lastComplaint) {
    lastComplaint = problem;
    std::fprintf(stderr, "the settings file %s %s\n", path.c_str(), problem.c_str());
  }
}

JsonSettingsSuite::Json JsonSettingsSuite::value(const std::string& key) const {
  const std::lock_guard guard(mutex);
  if (const auto change = pending.find(key); change != pending.end()) {
    return change->second.value_or(Json());
  }
  refresh();
  const auto entry = values.find(key);
  return entry != values.end() ? *entry : Json();
}

bool JsonSettingsSuite::contains(const std::string& key) const {
  return !value(key).is_null();
}

std::int64_t JsonSettingsSuite::integer(const std::string& key) const {
  const Json json = value(key);
  if (json.is_number_unsigned()) {
    const auto number = json.get<std::uint64_t>();
    return number <= std::uint64_t{std::numeric_limits<std::int64_t>::max()} ? static_cast<std::int64_t>(number) : 0;
  }
  if (json.is_number_integer()) {
    return json.get<std::int64_t>();
  }
  if (json.is_number_float()) {
    // JSON does not tell 1.0 from 1.
    const double number = json.get<double>();
    return std::trunc(number) == number && std::abs(number) < 0x1p63 ? static_cast<std::int64_t>(number) : 0;
  }
  return 0;
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
  const std::lock_guard guard(mutex);
  pending[key] = std::move(value);
  if (!retry) {
    retry = runLoop.after(0ms, [this] { synchronize(); });
  }
}

void JsonSettingsSuite::synchronize() {
  const std::lock_guard guard(mutex);
  retry.reset();
  refresh();
  if (pending.empty()) {
    return;
  }
  switch (write()) {
    case Writing::done:
      break;
    case Writing::locked:
      retry = runLoop.after(kLockRetry, [this] { synchronize(); });
      break;
    case Writing::failed:
      complain(writeError + "; trying again");
      retry = runLoop.after(kFailureRetry, [this] { synchronize(); });
      break;
  }
}

std::optional<JsonSettingsSuite::WriteError> JsonSettingsSuite::writeNow(std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const std::unique_lock guard(mutex, deadline);
  if (!guard) {
    return WriteError{"the settings file " + path.string() + " is in use by another thread"};
  }
  while (!pending.empty()) {
    const Writing outcome = write();
    if (outcome == Writing::failed || (outcome == Writing::locked && std::chrono::steady_clock::now() >= deadline)) {
      pending.clear();
      return WriteError{"the settings file " + path.string() + " " + writeError};
    }
    if (outcome == Writing::locked) {
      // At this pace rather than at the lock's own, which slows down the longer it waits.
      std::this_thread::sleep_for(kLockRetry);
    }
  }
  return std::nullopt;
}

// Brings the pending changes into the file. Where that cannot be done they stay pending, and `writeError` says why.
JsonSettingsSuite::Writing JsonSettingsSuite::write() {
  const QString name = QFile::decodeName(path.c_str());
  QLockFile lock(name + QStringLiteral(".lock"));
  lock.setStaleLockTime(10s);
  if (!lock.tryLock(0)) {
    if (lock.error() == QLockFile::LockFailedError) {
      writeError = "is locked by another program";
      return Writing::locked;
    }
    writeError = "cannot be locked for writing";
    return Writing::failed;
  }
  switch (readFile()) {
    case Reading::good:
    case Reading::missing:
      break;
    case Reading::unreadable:
      writeError = "cannot be read (" + readError + ")";
      return Writing::failed;
    case Reading::malformed:
      writeError = "is not a JSON object";
      return Writing::failed;
  }
  Json changed = values;
  for (const auto& [key, value] : pending) {
    if (value) {
      changed[key] = *value;
    } else {
      changed.erase(key);
    }
  }
  QSaveFile file(name);
  const std::string text = changed.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  const auto size = static_cast<qint64>(text.size());
  // QSaveFile itself would put a file in place of which a full disk took only a part.
  if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), size) != size || !file.flush() || !file.commit()) {
    const bool named = file.error() != QFileDevice::NoError;
    writeError = "cannot be written (" + (named ? file.errorString().toStdString() : "the disk may be full") + ")";
    return Writing::failed;
  }
  values = std::move(changed);
  pending.clear();
  lastComplaint.clear();
  // Another process may have replaced the file since, so the next look reads it in any case.
  seen.reset();
  return Writing::done;
}

}  // namespace quilex
