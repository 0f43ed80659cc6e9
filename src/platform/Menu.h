#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/Disposable.h"
#include "base/ObserverList.h"

namespace quilex {

/// What a menu shows of an action or a submenu, as plain data that can be observed. Main thread.
class MenuEntry {
 public:
  MenuEntry(const MenuEntry&) = delete;
  MenuEntry& operator=(const MenuEntry&) = delete;

  const std::string& title() const { return title_; }
  /// A check mark that is on or off; nothing for an entry that never has one.
  std::optional<bool> mark() const { return mark_; }
  bool isEnabled() const { return enabled_; }

  void setTitle(std::string title) { set(title_, std::move(title)); }
  void setMark(bool on) { set(mark_, std::optional(on)); }
  void setEnabled(bool enabled) { set(enabled_, enabled); }

  /// Notifies of each change of what the entry shows.
  [[nodiscard]] Disposable observe(std::function<void()> handler) { return observers_.add(std::move(handler)); }

 protected:
  explicit MenuEntry(std::string title) : title_(std::move(title)) {}
  ~MenuEntry() = default;

 private:
  template <typename Value>
  void set(Value& member, Value value) {
    if (member != value) {
      member = std::move(value);
      observers_.notify();
    }
  }

  std::string title_;
  std::optional<bool> mark_;
  bool enabled_ = true;
  ObserverList<> observers_;
};

/// An entry that does something when it is chosen.
class MenuAction : public MenuEntry {
 public:
  /// `key` is the one character of the shortcut, or empty. An action without `run` only shows its title.
  explicit MenuAction(std::string title, std::function<void()> run = {}, std::string key = {})
      : MenuEntry(std::move(title)), run_(std::move(run)), key_(std::move(key)) {}

  const std::string& keyEquivalent() const { return key_; }

  /// The user chose the action; nothing happens while it is disabled.
  void choose() const {
    if (isEnabled() && run_) {
      // Running it may destroy this action.
      const auto running = run_;
      running();
    }
  }

 private:
  std::function<void()> run_;
  std::string key_;
};

class Menu;
struct MenuSeparator {};

/// A menu shows actions, submenus and separators. An action or a submenu may be in several menus, one after another.
using MenuItem = std::variant<std::shared_ptr<MenuAction>, std::shared_ptr<Menu>, MenuSeparator>;

/// Items in their order. As an item of another menu it is an entry too, which opens it.
class Menu : public MenuEntry {
 public:
  explicit Menu(std::string title = {}, std::vector<MenuItem> items = {})
      : MenuEntry(std::move(title)), items_(std::move(items)) {}

  const std::vector<MenuItem>& itemArray() const { return items_; }
  void setItems(std::vector<MenuItem> items) {
    items_ = std::move(items);
    itemsObservers_.notify();
  }

  /// Notifies of each change of the list of items. Changes within an entry are notified by that entry.
  [[nodiscard]] Disposable observeItems(std::function<void()> handler) {
    return itemsObservers_.add(std::move(handler));
  }

 private:
  std::vector<MenuItem> items_;
  ObserverList<> itemsObservers_;
};

}  // namespace quilex
