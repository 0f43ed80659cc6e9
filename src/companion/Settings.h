#pragma once

#include <memory>

#include "linux/session/settings/JsonSettingsSuite.h"
#include "platform/RunLoop.h"

namespace quilex {

/// The settings shared with the agent, for a program that ends once it has written them.
class Settings {
 public:
  static Result<std::unique_ptr<Settings>> open();

  SettingsSuite& suite() { return *store_; }
  /// Writes what was set, all of it at once or nothing.
  Outcome write();

  /// Lets the agent load that video even if the agent once crashed while loading it. True if the agent would have
  /// refused it.
  Result<bool> allowVideo(const std::string& sign);

 private:
  /// Nothing is run later, because every write is explicit.
  struct NoRunLoop : RunLoop {
    Disposable after(std::chrono::milliseconds /*delay*/, std::function<void()> /*action*/) override {
      return Disposable([] {});
    }
    Disposable every(std::chrono::milliseconds /*interval*/, std::function<void()> /*action*/) override {
      return Disposable([] {});
    }
  };

  NoRunLoop runLoop_;
  std::unique_ptr<JsonSettingsSuite> store_;
};

}  // namespace quilex
