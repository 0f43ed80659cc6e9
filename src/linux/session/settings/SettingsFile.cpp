#include "linux/session/settings/SettingsFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QSaveFile>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <utility>

#include "base/JSONCoding.h"

namespace quilex {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kLargestFile = 1'000'000;
constexpr std::size_t kBlock = 65'536;
// A file changed this recently may change again without its time stamp moving.
constexpr auto kTimestampGranularity = 100ms;
// A FIFO is opened at once, even if nobody is at its other end.
constexpr int kNeverWait = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

std::int64_t nanoseconds(const timespec& time) {
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

SettingsFile::Signature signatureOf(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

bool mayChangeUnnoticed(const SettingsFile::Signature& signature) {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return std::chrono::nanoseconds(nanoseconds(now) - signature.changed) < kTimestampGranularity;
}

Result<SettingsFile::Json> parse(int descriptor) {
  std::string text;
  while (text.size() <= kLargestFile) {
    const std::size_t size = text.size();
    text.resize(size + kBlock);
    const ssize_t count = read(descriptor, text.data() + size, kBlock);
    if (count < 0 && errno != EINTR) {
      return failed(std::string("cannot be read: ") + std::strerror(errno));
    }
    text.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) {
      auto json = json::parse(text);
      if (!json || !json->is_object()) {
        return failed("is not a JSON object");
      }
      return *std::move(json);
    }
  }
  return failed("is larger than 1 MB");
}

// One line for each key: indenting nested values could multiply the size of the file.
std::string format(const SettingsFile::Json& object) {
  const auto dump = [](const SettingsFile::Json& json) {
    return json.dump(-1, ' ', false, SettingsFile::Json::error_handler_t::replace);
  };
  std::string text = "{";
  for (const auto& [key, value] : object.items()) {
    text += (text.size() == 1 ? "\n  " : ",\n  ") + dump(key) + ": " + dump(value);
  }
  return text + "\n}\n";
}

}  // namespace

std::optional<SettingsFile::Signature> SettingsFile::signature() const {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? std::optional(signatureOf(status)) : std::nullopt;
}

SettingsFile::Contents SettingsFile::read() const {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | kNeverWait));
  struct stat status = {};
  if (!file.isOpen() || fstat(file.get(), &status) != 0) {
    if (errno == ENOENT) {
      return {std::nullopt, std::nullopt};
    }
    const std::string reason = std::strerror(errno);
    return {signature(), failed("cannot be read: " + reason)};
  }
  const Signature found = signatureOf(status);
  Contents contents{mayChangeUnnoticed(found) ? std::nullopt : std::optional(found), failed("is not a regular file")};
  if (S_ISREG(status.st_mode)) {
    contents.object = parse(file.get());
  }
  return contents;
}

Result<std::optional<FileDescriptor>> SettingsFile::lock() const {
  const std::string name = path.string() + ".lock";
  const auto problem = [&](const char* reason) {
    return failed("cannot be locked for writing: " + name + ": " + reason);
  };
  FileDescriptor file(open(name.c_str(), O_RDWR | O_CREAT | kNeverWait, S_IRUSR | S_IWUSR));
  struct stat status = {};
  if (!file.isOpen() || fstat(file.get(), &status) != 0) {
    return problem(std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    return problem("not a regular file");
  }
  if (flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
    return std::optional(std::move(file));
  }
  if (errno == EWOULDBLOCK) {
    return std::nullopt;
  }
  return problem(std::strerror(errno));
}

Outcome SettingsFile::replace(const Json& object) const {
  const std::string text = format(object);
  if (text.size() > kLargestFile) {
    return failed("would be larger than 1 MB");
  }
  const QString name = QFile::decodeName(path.c_str());
  const bool isNew = !QFile::exists(name);
  QSaveFile file(name);
  const auto size = static_cast<qint64>(text.size());
  const bool opened = file.open(QIODevice::WriteOnly) &&
                      (!isNew || file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner));
  // Flushed first, because QSaveFile would also commit a file that a full disk has cut short.
  if (!opened || file.write(text.data(), size) != size || !file.flush() || !file.commit()) {
    const bool named = file.error() != QFileDevice::NoError;
    return failed("cannot be written: " + (named ? file.errorString().toStdString() : "the disk may be full"));
  }
  return {};
}

}  // namespace quilex
