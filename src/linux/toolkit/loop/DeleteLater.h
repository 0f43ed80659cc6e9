#pragma once

#include <QObject>

namespace quilex {

/// A deleter for objects that may be given up inside one of their own signals.
struct DeleteLater {
  void operator()(QObject* object) const { object->deleteLater(); }
};

}  // namespace quilex
