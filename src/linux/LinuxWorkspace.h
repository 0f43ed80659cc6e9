#pragma once

#include <memory>
#include <optional>

#include "platform/BackgroundWork.h"
#include "platform/Workspace.h"

namespace quilex {

/// The session of a Linux desktop: desktop entries, Qt's dialogs and application state, the login manager's sleep
/// signal, autostart entries. Needs a QApplication.
class LinuxWorkspace : public Workspace {
 public:
  /// The background work must outlive the workspace.
  explicit LinuxWorkspace(BackgroundWork& background);

  void launchApplication(const std::string& bundleIdentifier) override;
  void openURL(const std::string& url) override;
  void showOpenPanel(const std::vector<std::string>& allowedFileTypes, std::function<void(bool chosen)> done) override;
  void setStartsAtLogin(bool startsAtLogin) override;
  void terminate() override;
  [[nodiscard]] Disposable observeWake(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeResignActive(std::function<void()> handler) override;

 private:
  struct LoginWish;

  BackgroundWork& backgroundWork;
  std::shared_ptr<LoginWish> loginWish;
  std::optional<Disposable> loginWork;
  std::optional<Disposable> openWork;
};

}  // namespace quilex
