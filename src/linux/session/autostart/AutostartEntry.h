#pragma once

#include <filesystem>
#include <string>

#include "base/Result.h"
#include "linux/session/bundle/LinuxBundle.h"

namespace quilex {

/// The desktop entry that starts the agent at login, in the user's folder for them (Desktop Application Autostart
/// Specification 0.5).
///
/// It is the agent's installed entry with the agent's path, and ends with a digest of itself. If the digest does not
/// match, a person or the desktop's settings wrote or edited the entry, and it is neither replaced nor removed. Blocks
/// on the file system.
class AutostartEntry {
 public:
  struct Change {
    enum class State {
      /// The entry is as requested.
      done,
      /// The program runs from a folder without the installed entry, such as a build folder: nothing was changed.
      notInstalled,
      /// There is an entry that is not ours, which stays.
      edited,
    };
    State state = State::done;
    /// Why it is not done, as a clause for the person.
    std::string message{};
  };

  /// The entry in the folder `config`/autostart for the agent that is installed with this bundle.
  AutostartEntry(const LinuxBundle& bundle, const std::filesystem::path& config);
  /// The entry for the running program's installation and user.
  static AutostartEntry main() { return {LinuxBundle::main(), configHome()}; }

  /// Makes, updates or removes the entry.
  Result<Change> set(bool startsAtLogin) const;

 private:
  Result<Change> write() const;

  std::filesystem::path installed_;
  std::filesystem::path agent_;
  std::filesystem::path file_;
};

}  // namespace quilex
