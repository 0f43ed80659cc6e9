#include "linux/toolkit/tray/QtMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QString>
#include <utility>

namespace quilex {

struct QtMenu::Entry {
  /// None for a separator.
  std::shared_ptr<MenuEntry> shown;
  std::unique_ptr<QAction, DeleteLater> action{new QAction};
  std::unique_ptr<QtMenu> submenu;
  std::optional<Disposable> change;
};

QtMenu::QtMenu() : menu_(new QMenu) {}

QtMenu::~QtMenu() = default;

void QtMenu::show(std::shared_ptr<Menu> model) {
  change_.reset();
  model_ = std::move(model);
  if (model_) {
    change_.emplace(model_->observeItems([this] { refill(); }));
  }
  refill();
}

void QtMenu::refill() {
  entries_.clear();
  menu_->clear();
  if (!model_) {
    return;
  }
  menu_->setTitle(QString::fromStdString(model_->title()));
  for (const MenuItem& item : model_->itemArray()) {
    entries_.push_back(makeEntry(item));
    menu_->addAction(entries_.back()->action.get());
  }
}

std::shared_ptr<QtMenu::Entry> QtMenu::makeEntry(const MenuItem& item) {
  auto entry = std::make_shared<Entry>();
  std::shared_ptr<MenuAction> chosen;
  if (const auto* action = std::get_if<std::shared_ptr<MenuAction>>(&item)) {
    entry->shown = chosen = *action;
    if (const std::string& key = chosen->keyEquivalent(); !key.empty()) {
      entry->action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(key)));
    }
  } else if (const auto* menu = std::get_if<std::shared_ptr<Menu>>(&item)) {
    entry->shown = *menu;
    entry->submenu = std::make_unique<QtMenu>();
    entry->submenu->show(*menu);
    entry->action->setMenu(&entry->submenu->widget());
  } else {
    entry->action->setSeparator(true);
    return entry;
  }
  // In a later turn of the run loop: the action may rebuild this menu, which may also be gone by then.
  QObject::connect(
      entry->action.get(), &QAction::triggered, entry->action.get(),
      [weak = std::weak_ptr(entry), chosen] {
        if (chosen) {
          chosen->choose();
        }
        if (const auto present = weak.lock()) {
          // The toolkit has toggled the mark by itself.
          update(*present);
        }
      },
      Qt::QueuedConnection);
  entry->change.emplace(entry->shown->observe([changed = entry.get()] { update(*changed); }));
  update(*entry);
  return entry;
}

void QtMenu::update(const Entry& entry) {
  QString title = QString::fromStdString(entry.shown->title());
  entry.action->setText(title.replace(QLatin1Char('&'), QStringLiteral("&&")));
  entry.action->setEnabled(entry.shown->isEnabled());
  entry.action->setCheckable(entry.shown->mark().has_value());
  entry.action->setChecked(entry.shown->mark().value_or(false));
}

}  // namespace quilex
