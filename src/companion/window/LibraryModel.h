#pragma once

#include <QAbstractListModel>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "companion/window/VideoCards.h"

namespace quilex {

/// What the desktop shows, as far as cards show it.
struct ShownVideo {
  std::string sign;
  bool isOpen = false;
  bool isPlaying = false;
  bool operator==(const ShownVideo&) const = default;
};

/// The cards that match the search, in the chosen order. The display role is the title, and the accessible text all
/// that the card shows. A title that is edited is asked for by `renameRequested` and shown at once.
class LibraryModel : public QAbstractListModel {
  Q_OBJECT

 public:
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  /// All cards of the library. Rows keep their persistent indexes by the signs of their videos.
  void setCards(std::vector<VideoCard> cards);
  void setSearch(const QString& search);
  void setOrder(CardOrder order);
  void setShown(const ShownVideo& shown);
  void setMissing(const std::string& sign, bool isMissing);

  const VideoCard& card(const QModelIndex& index) const { return cards_[rows_[static_cast<std::size_t>(index.row())]]; }
  const VideoCard* find(const std::string& sign) const;
  /// Invalid if the search hides the video.
  QModelIndex indexOf(const std::string& sign) const;
  const ShownVideo& shown() const { return shown_; }
  bool isCurrent(const VideoCard& card) const { return card.video.sign == shown_.sign; }
  bool isMissing(const VideoCard& card) const { return missing_.contains(card.video.sign); }
  std::size_t videos() const { return cards_.size(); }
  bool isLoaded() const { return isLoaded_; }
  const QString& search() const { return search_; }
  CardOrder order() const { return order_; }

 signals:
  void renameRequested(const std::string& sign, const QString& title);

 private:
  void rearrange(std::optional<std::vector<VideoCard>> cards = std::nullopt);
  void update(const std::string& sign);

  std::vector<VideoCard> cards_;
  /// Indexes of `cards_`.
  std::vector<std::size_t> rows_;
  QString search_;
  CardOrder order_ = CardOrder::added;
  ShownVideo shown_;
  std::set<std::string> missing_;
  bool isLoaded_ = false;
};

}  // namespace quilex
