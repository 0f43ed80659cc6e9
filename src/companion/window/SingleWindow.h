#pragma once

#include <QDBusVirtualObject>
#include <functional>

namespace quilex {

/// Keeps the session to one window: the first one owns a name on the session bus, where later ones ask it to come
/// forward (org.freedesktop.Application of the Desktop Entry Specification 1.5). Without a bus each start has its own
/// window. Main thread.
class SingleWindow : public QDBusVirtualObject {
 public:
  static constexpr const char* kService = "com.dravo.quilex.macOS";
  static constexpr const char* kPath = "/com/dravo/quilex/macOS";

  /// `activated` is called when another start asks for the window.
  explicit SingleWindow(std::function<void()> activated);
  ~SingleWindow() override;

  /// False if another process has the window; it was asked to come forward then.
  bool claim();

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  std::function<void()> activated_;
};

}  // namespace quilex
