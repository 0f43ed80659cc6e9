#pragma once

#include <QCollatorSortKey>
#include <QString>
#include <string>
#include <vector>

#include "library/VideoDetail.h"

namespace quilex {

/// A video as the window shows it.
struct VideoCard {
  VideoDetail video;
  /// The title, or the name of the file if there is none: on one line, without characters that would change the text
  /// around it, and of a length that can be drawn.
  QString title;
  /// The title as the search compares it: without case, accents and differences of width.
  QString searchedTitle;
  QCollatorSortKey titleOrder;
};

enum class CardOrder { title, added, duration, size };

/// The cards of a library, in its order; of several rows with one sign, the last one describes the video. Slow for
/// large libraries; any thread.
std::vector<VideoCard> makeCards(const std::vector<VideoDetail>& videos);

/// The indexes of the cards whose titles contain all words of `search`, in that order: titles as the language sorts
/// them, the others from the newest, longest or largest on.
std::vector<std::size_t> arrange(const std::vector<VideoCard>& cards, const QString& search, CardOrder order);

/// A title as `VideoCard::title` has it.
QString shownTitle(const std::string& title);

/// "1:05", "1:00:05"; "0:00" for less than nothing.
QString durationText(std::int64_t given);
/// "3840 × 2160"; empty if the size is not known.
QString sizeText(const VideoDetail& video);

}  // namespace quilex
