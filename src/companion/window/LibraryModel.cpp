#include "companion/window/LibraryModel.h"

#include <QStringList>
#include <algorithm>
#include <map>
#include <utility>

namespace quilex {

int LibraryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant LibraryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) {
    return {};
  }
  const VideoCard& shownCard = card(index);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole:
      return shownCard.title;
    case Qt::AccessibleTextRole: {
      QStringList parts{shownCard.title, durationText(shownCard.video.time), sizeText(shownCard.video)};
      if (isCurrent(shownCard)) {
        parts << (!shown_.isOpen     ? tr("chosen")
                  : shown_.isPlaying ? tr("playing on the desktop")
                                     : tr("paused on the desktop"));
      }
      if (isMissing(shownCard)) {
        parts << tr("file missing");
      }
      parts.removeAll(QString());
      return parts.join(QStringLiteral(", "));
    }
    default:
      return {};
  }
}

bool LibraryModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const QString title = shownTitle(value.toString().toStdString());
  if (!index.isValid() || role != Qt::EditRole || title.isEmpty() || title == card(index).title) {
    return false;
  }
  VideoCard& changed = cards_[rows_[static_cast<std::size_t>(index.row())]];
  changed.title = title;
  changed.video.title = title.toStdString();
  emit dataChanged(index, index);
  emit renameRequested(changed.video.sign, title);
  return true;
}

Qt::ItemFlags LibraryModel::flags(const QModelIndex& index) const {
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemNeverHasChildren
                         : Qt::NoItemFlags;
}

void LibraryModel::setCards(std::vector<VideoCard> cards) {
  isLoaded_ = true;
  rearrange(std::move(cards));
}

void LibraryModel::setSearch(const QString& search) {
  if (search != search_) {
    search_ = search;
    rearrange();
  }
}

void LibraryModel::setOrder(CardOrder order) {
  if (order != order_) {
    order_ = order;
    rearrange();
  }
}

// One change of the layout, whatever it consists of: a row for each insertion and removal would keep the view busy for
// seconds in a large library.
void LibraryModel::rearrange(std::optional<std::vector<VideoCard>> cards) {
  emit layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  std::vector<std::string> signs;
  for (const QModelIndex& index : before) {
    signs.push_back(card(index).video.sign);
  }
  if (cards) {
    cards_ = *std::move(cards);
  }
  rows_ = arrange(cards_, search_, order_);
  std::map<std::string, int> places;
  if (!before.isEmpty()) {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      places[cards_[rows_[row]].video.sign] = static_cast<int>(row);
    }
  }
  QModelIndexList after;
  for (const std::string& sign : signs) {
    const auto place = places.find(sign);
    after << (place != places.end() ? index(place->second) : QModelIndex());
  }
  changePersistentIndexList(before, after);
  emit layoutChanged();
}

void LibraryModel::setShown(const ShownVideo& shown) {
  if (shown == shown_) {
    return;
  }
  const std::string before = std::exchange(shown_, shown).sign;
  update(before);
  update(shown_.sign);
}

void LibraryModel::setMissing(const std::string& sign, bool isMissing) {
  const bool changed = isMissing ? missing_.insert(sign).second : missing_.erase(sign) > 0;
  if (changed) {
    update(sign);
  }
}

const VideoCard* LibraryModel::find(const std::string& sign) const {
  const auto found = std::ranges::find_if(cards_, [&](const VideoCard& each) { return each.video.sign == sign; });
  return found != cards_.end() ? &*found : nullptr;
}

QModelIndex LibraryModel::indexOf(const std::string& sign) const {
  const auto row =
      std::ranges::find_if(rows_, [&](std::size_t each) { return cards_[each].video.sign == sign; }) - rows_.begin();
  return row < rowCount() ? index(static_cast<int>(row)) : QModelIndex();
}

void LibraryModel::update(const std::string& sign) {
  if (const QModelIndex changed = indexOf(sign); changed.isValid()) {
    emit dataChanged(changed, changed);
  }
}

}  // namespace quilex
