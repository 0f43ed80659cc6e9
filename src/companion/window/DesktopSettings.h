#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Disposable.h"
#include "companion/SettingsTable.h"
#include "companion/window/JobQueue.h"
#include "linux/session/settings/JsonSettingsSuite.h"
#include "platform/RunLoop.h"

namespace quilex {

/// The shared settings, followed as other programs change them, and changed as the command line does. Main thread.
class DesktopSettings : public QObject {
  Q_OBJECT

 public:
  /// All must outlive the instance.
  DesktopSettings(RunLoop& runLoop, JobQueue& jobs);

  /// The value of a setting of the table: the one wanted here, until it is stored, else the one in force.
  template <typename Type>
  Type value(const char* key) const {
    return std::get<Type>(current(key));
  }
  /// Of several values that are set in quick succession, the last one counts.
  void set(const char* key, const Setting::Value& value);
  /// Reads the settings now and not in a moment.
  void refresh();
  /// Why the settings cannot be read; empty if they can.
  const std::string& problem() const { return problem_; }

 signals:
  void changed();
  /// A change that was not made, or a note about one that was.
  void noted(const QString& message);

 private:
  struct Wish {
    Setting::Value value;
    /// The value that is being stored.
    Setting::Value sent;
  };

  Setting::Value current(const char* key) const;
  void store(const std::string& key);
  std::vector<Setting::Value> all() const;

  RunLoop& runLoop_;
  JobQueue& jobs_;
  std::unique_ptr<JsonSettingsSuite> suite_;
  std::string problem_;
  std::map<std::string, Wish> wishes_;
  std::vector<Setting::Value> seen_;
  std::optional<Disposable> reading_;
};

}  // namespace quilex
