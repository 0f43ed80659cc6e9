#include "companion/window/VideoCards.h"

#include <QCollator>
#include <QStringList>
#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "companion/Text.h"
#include "library/FileURL.h"

namespace quilex {

namespace {

constexpr qsizetype kLongestTitle = 300;

QString searchable(const QString& text) {
  QString plain;
  for (const QChar character : text.normalized(QString::NormalizationForm_KD)) {
    if (!character.isMark()) {
      plain += character;
    }
  }
  return plain.toCaseFolded();
}

// A video without a title has the name of its file.
QString cardTitle(const VideoDetail& video) {
  const QString title = shownTitle(video.title);
  const auto file = title.isEmpty() ? localPath(video.url) : std::nullopt;
  return file ? shownTitle(file->stem().string()) : title;
}

}  // namespace

QString shownTitle(const std::string& title) {
  QString shown;
  for (const QChar character : QString::fromStdString(cleanText(title.substr(0, 4 * kLongestTitle)))) {
    // Formatting characters would turn the text that follows, or hide it.
    if (character.category() != QChar::Other_Format || character == QChar(0x200d)) {
      shown += character;
    }
  }
  return shown.left(kLongestTitle).simplified();
}

std::vector<VideoCard> makeCards(const std::vector<VideoDetail>& videos) {
  QCollator collator;
  collator.setNumericMode(true);
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  std::vector<VideoCard> cards;
  cards.reserve(videos.size());
  std::map<std::string, std::size_t> places;
  for (const VideoDetail& video : videos) {
    const QString title = cardTitle(video);
    VideoCard card{video, title, searchable(title), collator.sortKey(title)};
    const auto [known, isNew] = places.emplace(video.sign, cards.size());
    if (isNew) {
      cards.push_back(std::move(card));
    } else {
      cards[known->second] = std::move(card);
    }
  }
  return cards;
}

std::vector<std::size_t> arrange(const std::vector<VideoCard>& cards, const QString& search, CardOrder order) {
  const QStringList words = searchable(search).split(QLatin1Char(' '), Qt::SkipEmptyParts);
  std::vector<std::size_t> indexes;
  for (std::size_t index = 0; index < cards.size(); ++index) {
    if (std::ranges::all_of(words, [&](const QString& word) { return cards[index].searchedTitle.contains(word); })) {
      indexes.push_back(index);
    }
  }
  const auto amount = [&](std::size_t index) {
    const VideoDetail& video = cards[index].video;
    switch (order) {
      case CardOrder::duration:
        return video.time;
      case CardOrder::size:
        return video.width * video.height;
      default:
        return video.id;
    }
  };
  std::ranges::stable_sort(indexes, [&](std::size_t left, std::size_t right) {
    if (order != CardOrder::title && amount(left) != amount(right)) {
      return amount(left) > amount(right);
    }
    const int titles = cards[left].titleOrder.compare(cards[right].titleOrder);
    return order == CardOrder::added ? left > right : titles < 0;
  });
  return indexes;
}

QString durationText(std::int64_t given) {
  const std::int64_t seconds = std::max(given, std::int64_t{0});
  const auto twoDigits = [](std::int64_t number) {
    return QString::number(number).rightJustified(2, QLatin1Char('0'));
  };
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  const QString beginning =
      hours > 0 ? QString::number(hours) + QLatin1Char(':') + twoDigits(minutes) : QString::number(minutes);
  return beginning + QLatin1Char(':') + twoDigits(seconds % 60);
}

QString sizeText(const VideoDetail& video) {
  if (video.width <= 0 || video.height <= 0) {
    return {};
  }
  return QString::number(video.width) + QStringLiteral(" × ") + QString::number(video.height);
}

}  // namespace quilex
