#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Disposable.h"
#include "base/ObserverList.h"

namespace quilex {

class Menu;

/// An entry of a menu, as plain data that can be observed. An item may stand in several menus, one after another.
/// Main thread.
class MenuItem {
 public:
  /// What choosing the item does; it is handed the item.
  using Action = std::function<void(MenuItem& sender)>;

  /// An item without an action only shows its title or opens its submenu. `keyEquivalent` is one character, or empty.
  explicit MenuItem(std::string itemTitle, Action itemAction = {}, std::string key = {})
      : text(std::move(itemTitle)), action(std::move(itemAction)), keyText(std::move(key)) {}
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  static std::shared_ptr<MenuItem> separatorItem() {
    auto item = std::make_shared<MenuItem>(std::string());
    item->separator = true;
    return item;
  }

  bool isSeparator() const { return separator; }
  const std::string& title() const { return text; }
  const std::string& keyEquivalent() const { return keyText; }
  /// Whether the item bears a check mark, and whether it is one that ever does.
  bool state() const { return on; }
  bool isCheckable() const { return checkable; }
  bool isEnabled() const { return enabled; }
  /// A number for the action's own use.
  int tag() const { return number; }
  const std::shared_ptr<Menu>& submenu() const { return opened; }
  bool hasAction() const { return action != nullptr; }

  void setTitle(std::string newTitle) { set(text, std::move(newTitle)); }
  void setState(bool newState) { set(on, newState); }
  void setEnabled(bool nowEnabled) { set(enabled, nowEnabled); }
  void setCheckable(bool nowCheckable) { set(checkable, nowCheckable); }
  void setTag(int newTag) { number = newTag; }
  void setSubmenu(std::shared_ptr<Menu> menu) { set(opened, std::move(menu)); }

  /// The user chose the item; nothing happens while it is disabled.
  void choose() {
    if (enabled && action) {
      // The action may give the item up.
      const Action running = action;
      running(*this);
    }
  }

  /// Tells each change of what the item shows.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers.add(std::move(handler)); }

 private:
  template <typename Value>
  void set(Value& member, Value newValue) {
    if (member != newValue) {
      member = std::move(newValue);
      observers.notify();
    }
  }

  std::string text;
  Action action;
  std::string keyText;
  bool separator = false;
  bool on = false;
  bool checkable = false;
  bool enabled = true;
  int number = 0;
  std::shared_ptr<Menu> opened;
  ObserverList<> observers;
};

/// Items in their order, as plain data that can be observed. Main thread.
class Menu {
 public:
  explicit Menu(std::string menuTitle = {}) : text(std::move(menuTitle)) {}
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;

  const std::string& title() const { return text; }
  const std::vector<std::shared_ptr<MenuItem>>& itemArray() const { return items; }

  void addItem(std::shared_ptr<MenuItem> item) {
    items.push_back(std::move(item));
    observers.notify();
  }
  void removeAllItems() {
    items.clear();
    observers.notify();
  }

  /// Tells each change of the items that the menu holds; what changes in an item, the item tells.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers.add(std::move(handler)); }

 private:
  std::string text;
  std::vector<std::shared_ptr<MenuItem>> items;
  ObserverList<> observers;
};

}  // namespace quilex
