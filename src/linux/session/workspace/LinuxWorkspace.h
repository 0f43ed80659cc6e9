#pragma once

#include <memory>
#include <optional>

#include "base/MainThread.h"
#include "platform/BackgroundWork.h"
#include "platform/Workspace.h"

namespace quilex {

/// The session of a Linux desktop, with desktop entries, autostart entries, Qt's dialogs and application state, and the
/// login manager's sleep signal. Needs a QApplication.
class LinuxWorkspace : public Workspace {
 public:
  /// `backgroundWork` must outlive the workspace.
  explicit LinuxWorkspace(BackgroundWork& backgroundWork);

  void launchApplication(const std::string& bundleIdentifier) override;
  void openURL(const std::string& url) override;
  void showOpenPanel(const std::vector<std::string>& allowedFileTypes, std::function<void(bool chosen)> done) override;
  void setStartsAtLogin(bool startsAtLogin) override;
  void terminate() override;
  [[nodiscard]] Disposable observeWake(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeResignActive(std::function<void()> handler) override;

 private:
  struct LoginWish;

  [[no_unique_address]] MainThread mainThread_;
  BackgroundWork& backgroundWork_;
  std::shared_ptr<LoginWish> loginWish_;
  std::optional<Disposable> loginWork_;
  std::optional<Disposable> openWork_;
};

}  // namespace quilex
