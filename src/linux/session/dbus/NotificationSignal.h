#pragma once

namespace quilex {

/// The D-Bus signal that carries a notification, as Posted(s name, s object, a{sv} userInfo).
struct NotificationSignal {
  static constexpr const char* kPath = "/com/dravo/quilex/Notifications";
  static constexpr const char* kInterface = "com.dravo.quilex.Notifications";
  static constexpr const char* kMember = "Posted";
};

}  // namespace quilex
