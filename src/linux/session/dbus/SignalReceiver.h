#pragma once

#include <QObject>
#include <functional>
#include <utility>

namespace quilex {

/// The slots that a bus connection calls. `argument` is the signal's argument if that is a single boolean, else false.
class SignalReceiver : public QObject {
  Q_OBJECT

 public:
  explicit SignalReceiver(std::function<void(bool argument)> handler) : handler_(std::move(handler)) {}

 public slots:  // NOLINT(readability-redundant-access-specifiers): Qt's own
  void received() { received(false); }
  void received(bool argument) {
    // The handler may release the registration and with it this object.
    const auto running = handler_;
    running(argument);
  }

 private:
  std::function<void(bool)> handler_;
};

}  // namespace quilex
