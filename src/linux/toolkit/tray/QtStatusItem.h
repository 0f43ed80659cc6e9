#pragma once

#include <QDBusServiceWatcher>
#include <QIcon>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "linux/desktop/EmbeddingTray.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/SignalReceiver.h"
#include "linux/toolkit/tray/QtMenu.h"
#include "platform/RunLoop.h"
#include "platform/StatusItem.h"
#include "platform/StatusReport.h"

namespace quilex {

/// The status item with QSystemTrayIcon: a StatusNotifierItem where a host for those runs, else an embedded icon. It
/// is made once a host of either kind is there, because the toolkit settles on a kind with the first item for good;
/// from then on it comes back with each host of its kind.
class QtStatusItem : public StatusItem {
 public:
  /// `embeddingTray` has no functions on desktops without such trays. The bundle and the run loop must outlive the
  /// item. Which kind of host it was made for is written into `report`, which must outlive it as well. Needs a
  /// QApplication.
  QtStatusItem(const LinuxBundle& bundle, RunLoop& loop, EmbeddingTray embeddingTray, StatusReport& report);

  void setTemplateImage(const std::string& name) override;
  void setMenu(std::shared_ptr<Menu> menu) override;

 private:
  void lookForHost();
  void lookForOlderTray();
  void appear(const char* host);

  const LinuxBundle& images_;
  RunLoop& runLoop_;
  EmbeddingTray olderTray_;
  StatusReport& report_;
  QtMenu menu_;
  QIcon icon_;
  QDBusServiceWatcher watchers_;
  SignalReceiver hostComes_;
  std::optional<Disposable> olderTrayComes_;
  std::optional<Disposable> patience_;
  std::unique_ptr<QSystemTrayIcon> tray_;
};

}  // namespace quilex
