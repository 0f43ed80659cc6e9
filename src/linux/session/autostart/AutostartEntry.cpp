#include "linux/session/autostart/AutostartEntry.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>

#include "base/PrivateFiles.h"

namespace quilex {

namespace {

namespace fs = std::filesystem;
using Change = AutostartEntry::Change;
using State = Change::State;

constexpr const char* kName = "com.dravo.quilex.QuilexHelper.desktop";
constexpr std::string_view kDigestKey = "X-Quilex-Digest=";
constexpr std::uintmax_t kLargestEntry = 65'536;

std::optional<std::string> read(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  return stream.is_open() && !stream.bad() ? std::optional(std::move(text)) : std::nullopt;
}

std::string digest(std::string_view text) {
  const QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
  return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString();
}

bool isOurs(const std::string& text) {
  const auto place = text.rfind(kDigestKey);
  return place != std::string::npos &&
         std::string_view(text).substr(place + kDigestKey.size()) == digest(text.substr(0, place)) + "\n";
}

std::string escaped(const std::string& text, std::string_view special, const char* with) {
  std::string result;
  for (const char character : text) {
    if (special.find(character) != std::string_view::npos) {
      result += with;
    }
    result += character;
  }
  return result;
}

// Desktop Entry Specification 1.5: the argument stands in double quotes, with its special characters escaped; then
// every "%" is doubled; and then, as in any value, every backslash.
std::string execValue(const std::string& path) {
  std::string value = "\"" + escaped(path, "\"`$\\", "\\") + "\"";
  return escaped(escaped(value, "%", "%"), "\\", "\\");
}

std::string entryFor(const std::string& installed, const fs::path& agent) {
  std::string entry;
  std::istringstream lines(installed);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Exec=")) {
      line = "Exec=" + execValue(agent.string());
    } else if (line.starts_with("TryExec=")) {
      line = "TryExec=" + escaped(agent.string(), "\\", "\\");
    }
    entry += line + "\n";
  }
  return entry + std::string(kDigestKey) + digest(entry) + "\n";
}

auto failedTo(const char* participle, const fs::path& file, const std::string& reason) {
  return failed("the autostart entry " + file.string() + " cannot be " + participle + ": " + reason);
}

}  // namespace

AutostartEntry::AutostartEntry(const LinuxBundle& bundle, const fs::path& config)
    : installed_(bundle.path().parent_path() / "applications" / kName),
      agent_(bundle.path().parent_path().parent_path() / "bin" / "quilexhelper"),
      file_(config / "autostart" / kName) {}

Result<Change> AutostartEntry::set(bool startsAtLogin) const {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(file_, error);
  if (status.type() == fs::file_type::none) {
    return failedTo("looked at", file_, error.message());
  }
  if (status.type() == fs::file_type::not_found) {
    return startsAtLogin ? write() : Change{};
  }
  // A link is not ours either: some people keep their settings elsewhere.
  const bool isPlain = fs::is_regular_file(status) && fs::file_size(file_, error) <= kLargestEntry;
  const auto text = isPlain ? read(file_) : std::nullopt;
  if (isPlain && !text) {
    return failedTo("read", file_, "permission denied");
  }
  if (!isPlain || !isOurs(*text)) {
    return Change{State::edited,
                  "the autostart entry " + file_.string() + " was not made by this program, or was edited; it stays"};
  }
  if (startsAtLogin) {
    return write();
  }
  fs::remove(file_, error);
  if (error) {
    return failedTo("removed", file_, error.message());
  }
  return {};
}

Result<Change> AutostartEntry::write() const {
  const auto original = read(installed_);
  if (!original) {
    return Change{State::notInstalled,
                  "only an agent that is installed is started at login; there is no " + installed_.string()};
  }
  const std::string entry = entryFor(*original, agent_);
  if (read(file_) == entry) {
    return {};
  }
  if (const Outcome made = createPrivateFolder(file_.parent_path()); !made) {
    return failedTo("written", file_, made.error().message);
  }
  QSaveFile target(QFile::decodeName(file_.c_str()));
  const auto size = static_cast<qint64>(entry.size());
  if (!target.open(QIODevice::WriteOnly) || !target.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
      target.write(entry.data(), size) != size || !target.flush() || !target.commit()) {
    return failedTo("written", file_, target.errorString().toStdString());
  }
  return {};
}

}  // namespace quilex
