#pragma once

#include <filesystem>
#include <string>

#include "linux/session/bundle/LinuxBundle.h"

namespace quilex {

/// The desktop entry that starts the agent at login, in the user's folder for them (Desktop Application Autostart
/// Specification 0.5).
///
/// It is the agent's installed entry with the agent's path, and ends with a digest of itself. An entry whose digest
/// does not match was written or edited by a person or a desktop's settings: it is theirs, and is neither replaced nor
/// removed. Blocks on the file system.
class AutostartEntry {
 public:
  struct Outcome {
    enum class State {
      /// The entry is as it was asked for.
      done,
      /// The program runs from a folder without the installed entry, such as a build folder: nothing was changed.
      notInstalled,
      /// There is an entry that is not ours, which stays.
      edited,
      failed,
    };
    State state;
    /// A clause for the person; empty when done.
    std::string message;
  };

  /// The entry for the agent of an installation, which its bundle shows, in the folder `config`/autostart.
  AutostartEntry(const LinuxBundle& bundle, const std::filesystem::path& config);
  /// That of the running program and its user.
  static AutostartEntry main() { return {LinuxBundle::main(), configHome()}; }

  /// Makes, or brings up to date, or removes the entry.
  Outcome set(bool startsAtLogin) const;

 private:
  Outcome write() const;

  std::filesystem::path installed_;
  std::filesystem::path agent_;
  std::filesystem::path file_;
};

}  // namespace quilex
