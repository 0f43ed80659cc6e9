#include "linux/toolkit/tray/QtMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QString>
#include <utility>

namespace quilex {

struct QtMenu::Entry {
  std::shared_ptr<MenuItem> item;
  std::unique_ptr<QAction, LaterDeleter> action;
  std::unique_ptr<QtMenu> submenu;
  std::optional<Disposable> change;
};

QtMenu::QtMenu() : menu_(new QMenu) {}

QtMenu::~QtMenu() = default;

void QtMenu::show(std::shared_ptr<Menu> newModel) {
  change_.reset();
  model_ = std::move(newModel);
  if (model_) {
    change_.emplace(model_->observe([this] { refill(); }));
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
  for (const auto& item : model_->itemArray()) {
    auto entry = std::make_shared<Entry>();
    entry->item = item;
    if (item->submenu()) {
      entry->submenu = std::make_unique<QtMenu>();
      entry->submenu->show(item->submenu());
    }
    entry->action.reset(new QAction);
    entry->action->setSeparator(item->isSeparator());
    entry->action->setMenu(entry->submenu ? &entry->submenu->widget() : nullptr);
    if (!item->keyEquivalent().empty()) {
      entry->action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(item->keyEquivalent())));
    }
    // In a later turn of the run loop: the action may rebuild this menu, which may also be gone by then.
    QObject::connect(
        entry->action.get(), &QAction::triggered, entry->action.get(),
        [chosen = std::weak_ptr(entry), each = item] {
          each->choose();
          if (const auto present = chosen.lock()) {
            // The toolkit has turned the mark over by itself.
            update(*present);
          }
        },
        Qt::QueuedConnection);
    entry->change.emplace(item->observe([changed = entry.get()] { update(*changed); }));
    update(*entry);
    menu_->addAction(entry->action.get());
    entries_.push_back(std::move(entry));
  }
}

void QtMenu::update(const Entry& entry) {
  QString title = QString::fromStdString(entry.item->title());
  entry.action->setText(title.replace(QLatin1Char('&'), QStringLiteral("&&")));
  entry.action->setEnabled(entry.item->isEnabled());
  entry.action->setCheckable(entry.item->isCheckable());
  entry.action->setChecked(entry.item->state());
}

}  // namespace quilex
