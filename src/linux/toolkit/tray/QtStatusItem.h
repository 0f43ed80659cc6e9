#pragma once

#include <QDBusServiceWatcher>
#include <QIcon>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Disposable.h"
#include "base/MainThread.h"
#include "linux/desktop/EmbeddingTray.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/SignalReceiver.h"
#include "linux/toolkit/tray/QtMenu.h"
#include "platform/RunLoop.h"
#include "platform/StatusItem.h"
#include "platform/StatusReport.h"

namespace quilex {

/// The status item with QSystemTrayIcon: a StatusNotifierItem if a host for those runs, else an embedded icon. The icon
/// is made when the first host appears, because the toolkit chooses the kind with the first icon, for good. From then
/// on it comes back with each host of its kind.
class QtStatusItem : public StatusItem {
 public:
  /// `olderTray` has no functions on desktops without such trays. The kind of host goes into `report`. All references
  /// must outlive the item. Needs a QApplication.
  QtStatusItem(const LinuxBundle& bundle, RunLoop& runLoop, EmbeddingTray olderTray, StatusReport& report);

  void setTemplateImage(const std::string& name) override;
  void setMenu(std::shared_ptr<Menu> menu) override;

 private:
  void lookForHost();
  void lookForOlderTray();
  void appear(const char* host);

  [[no_unique_address]] MainThread mainThread_;
  const LinuxBundle& bundle_;
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
