#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <optional>

#include "platform/AgentStatus.h"

namespace quilex {

/// Follows the session's agent over its object on the session bus, without waiting for it. Main thread.
class AgentWatcher : public QObject {
  Q_OBJECT

 public:
  enum class State { unknown, running, absent, noBus };

  AgentWatcher();

  State state() const { return state_; }
  /// What a running agent says of itself; the neutral values of another one.
  const AgentStatus& status() const { return status_; }

 signals:
  void changed();

 private slots:  // NOLINT(readability-redundant-access-specifiers): Qt's own
  void propertiesChanged(const QDBusMessage& message);

 private:
  void ask();
  void apply(const QVariantMap& values);
  void setState(State state);

  State state_ = State::unknown;
  AgentStatus status_;
  std::optional<QDBusServiceWatcher> owners_;
};

}  // namespace quilex
