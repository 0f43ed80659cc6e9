#pragma once

#include "platform/Workspace.h"

namespace quilex {

/// The session of a Linux desktop: desktop entries, Qt's dialogs and application state, the login manager's sleep
/// signal. Needs a QApplication.
class LinuxWorkspace : public Workspace {
 public:
  void launchApplication(const std::string& bundleIdentifier) override;
  void openURL(const std::string& url) override;
  void showOpenPanel(const std::vector<std::string>& allowedFileTypes, std::function<void(bool chosen)> done) override;
  void terminate() override;
  [[nodiscard]] Disposable observeWake(std::function<void()> handler) override;
  [[nodiscard]] Disposable observeResignActive(std::function<void()> handler) override;
};

}  // namespace quilex
