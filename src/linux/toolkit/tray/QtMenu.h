#pragma once

#include <QMenu>
#include <memory>
#include <optional>
#include <vector>

#include "base/Disposable.h"
#include "linux/toolkit/loop/DeleteLater.h"
#include "platform/Menu.h"

namespace quilex {

/// Draws a menu with a QMenu and follows its changes, also while it is open. Main thread.
class QtMenu {
 public:
  QtMenu();
  ~QtMenu();
  QtMenu(const QtMenu&) = delete;
  QtMenu& operator=(const QtMenu&) = delete;

  QMenu& widget() { return *menu_; }
  /// Shows these items from now on; without a model, none.
  void show(std::shared_ptr<Menu> model);

 private:
  struct Entry;

  void refill();
  static std::shared_ptr<Entry> makeEntry(const MenuItem& item);
  static void update(const Entry& entry);

  std::unique_ptr<QMenu, DeleteLater> menu_;
  std::shared_ptr<Menu> model_;
  std::vector<std::shared_ptr<Entry>> entries_;
  std::optional<Disposable> change_;
};

}  // namespace quilex
