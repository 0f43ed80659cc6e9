#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTimer>
#include <QVariantMap>

#include "platform/StatusReport.h"

namespace quilex {

/// The status report as a read-only object on the session bus (see AgentInterface). Changes are signalled once a turn
/// of the run loop. Without a session bus it does nothing. Main thread.
class AgentObject : public QDBusVirtualObject {
 public:
  /// `report` must outlive the object.
  explicit AgentObject(StatusReport& report);
  ~AgentObject() override;

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusMessage answer(const QDBusMessage& call) const;
  void signalChanges();

  StatusReport& report_;
  QTimer signalling_;
  /// The last values of the properties that are signalled.
  QVariantMap signalled_;
  Disposable changes_;
};

}  // namespace quilex
