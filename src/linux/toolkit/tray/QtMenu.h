#pragma once

#include <QMenu>
#include <memory>
#include <optional>
#include <vector>

#include "base/Disposable.h"
#include "platform/Menu.h"

namespace quilex {

/// Draws a menu of the model with a QMenu and keeps it in step with it, also while it is open.
class QtMenu {
 public:
  QtMenu();
  ~QtMenu();
  QtMenu(const QtMenu&) = delete;
  QtMenu& operator=(const QtMenu&) = delete;

  QMenu& widget() { return *menu_; }
  /// Shows these items from now on; without a model, none.
  void show(std::shared_ptr<Menu> newModel);

 private:
  struct Entry;

  void refill();
  static void update(const Entry& entry);

  struct LaterDeleter {
    void operator()(QObject* object) const { object->deleteLater(); }
  };

  std::unique_ptr<QMenu, LaterDeleter> menu_;
  std::shared_ptr<Menu> model_;
  std::vector<std::shared_ptr<Entry>> entries_;
  std::optional<Disposable> change_;
};

}  // namespace quilex
