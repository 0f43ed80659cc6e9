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
      : text_(std::move(itemTitle)), action_(std::move(itemAction)), keyText_(std::move(key)) {}
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  static std::shared_ptr<MenuItem> separatorItem() {
    auto item = std::make_shared<MenuItem>(std::string());
    item->separator_ = true;
    return item;
  }

  bool isSeparator() const { return separator_; }
  const std::string& title() const { return text_; }
  const std::string& keyEquivalent() const { return keyText_; }
  /// Whether the item bears a check mark, and whether it is one that ever does.
  bool state() const { return on_; }
  bool isCheckable() const { return checkable_; }
  bool isEnabled() const { return enabled_; }
  /// A number for the action's own use.
  int tag() const { return number_; }
  const std::shared_ptr<Menu>& submenu() const { return opened_; }
  bool hasAction() const { return action_ != nullptr; }

  void setTitle(std::string newTitle) { set(text_, std::move(newTitle)); }
  void setState(bool newState) { set(on_, newState); }
  void setEnabled(bool nowEnabled) { set(enabled_, nowEnabled); }
  void setCheckable(bool nowCheckable) { set(checkable_, nowCheckable); }
  void setTag(int newTag) { number_ = newTag; }
  void setSubmenu(std::shared_ptr<Menu> menu) { set(opened_, std::move(menu)); }

  /// The user chose the item; nothing happens while it is disabled.
  void choose() {
    if (enabled_ && action_) {
      // The action may give the item up.
      const Action running = action_;
      running(*this);
    }
  }

  /// Tells each change of what the item shows.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  template <typename Value>
  void set(Value& member, Value newValue) {
    if (member != newValue) {
      member = std::move(newValue);
      observers_.notify();
    }
  }

  std::string text_;
  Action action_;
  std::string keyText_;
  bool separator_ = false;
  bool on_ = false;
  bool checkable_ = false;
  bool enabled_ = true;
  int number_ = 0;
  std::shared_ptr<Menu> opened_;
  ObserverList<> observers_;
};

/// Items in their order, as plain data that can be observed. Main thread.
class Menu {
 public:
  explicit Menu(std::string menuTitle = {}) : text_(std::move(menuTitle)) {}
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;

  const std::string& title() const { return text_; }
  const std::vector<std::shared_ptr<MenuItem>>& itemArray() const { return items_; }

  void addItem(std::shared_ptr<MenuItem> item) {
    items_.push_back(std::move(item));
    observers_.notify();
  }
  void removeAllItems() {
    items_.clear();
    observers_.notify();
  }

  /// Tells each change of the items that the menu holds; what changes in an item, the item tells.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 private:
  std::string text_;
  std::vector<std::shared_ptr<MenuItem>> items_;
  ObserverList<> observers_;
};

}  // namespace quilex
