#pragma once

#include <QObject>
#include <functional>
#include <utility>

namespace quilex {

/// The slot that a bus connection calls.
class SignalReceiver : public QObject {
  Q_OBJECT

 public:
  explicit SignalReceiver(std::function<void()> action) : handler(std::move(action)) {}

 public slots:  // NOLINT(readability-redundant-access-specifiers): Qt's own
  void received() {
    // The handler may release the registration and with it this object.
    const auto running = handler;
    running();
  }

 private:
  std::function<void()> handler;
};

}  // namespace quilex
