#include "companion/window/WindowLogic.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "companion/Text.h"
#include "library/FileURL.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "settings/SettingsKeys.h"

namespace quilex {

namespace {

constexpr int kEndMilliseconds = 3000;
constexpr const char* kAuthorOfLoops = "QuilexHelper";

QString told(const std::string& message) {
  QString text = QString::fromStdString(cleanText(message));
  if (!text.isEmpty()) {
    text[0] = text[0].toUpper();
  }
  return text;
}

}  // namespace

WindowLogic::WindowLogic() {
  connect(&settings, &DesktopSettings::changed, this, [this] { followShown(); });
  connect(&agent, &AgentWatcher::changed, this, [this] { followShown(); });
  connect(&settings, &DesktopSettings::noted, this,
          [this](const QString& message) { emit noted(told(message.toStdString())); });
  connect(&model, &LibraryModel::renameRequested, this, [this](const std::string& sign, const QString& title) {
    change<bool>([sign, title = title.toStdString()] { return renameVideo(sign, title).map([] { return true; }); },
                 [](bool /*done*/) {});
  });
  connect(&import, &VideoImport::finished, this, [this] {
    feed_.read();
    settings.refresh();
  });
  followShown();
}

WindowLogic::~WindowLogic() = default;

void WindowLogic::deliver(Result<std::vector<VideoCard>> cards) {
  libraryProblem_ = cards ? QString() : told(cards.error().message);
  if (cards) {
    covers.forgetFailures();
    missing_.expire();
    const auto isLoop = [](const VideoCard& card) { return card.video.author == kAuthorOfLoops; };
    hasOnlyLoops_ = !cards->empty() && std::ranges::all_of(*cards, isLoop);
    model.setCards(*std::move(cards));
  }
  emit libraryRead();
}

void WindowLogic::followShown() {
  if (chosen_) {
    model.setShown({*chosen_, true, true});
    return;
  }
  const bool isOpen = settings.value<bool>(settings::kIsOpenPlayer) && agent.state() != AgentWatcher::State::absent;
  model.setShown(
      {settings.value<std::string>(settings::kCurrentVideoSign), isOpen, settings.value<bool>(settings::kIsPlaying)});
}

template <typename Value>
void WindowLogic::change(std::function<Result<Value>()> job, std::function<void(const Value&)> done) {
  jobs_.run<Result<Value>>(std::move(job), [this, done = std::move(done)](const Result<Value>& result) {
    feed_.read();
    if (result) {
      done(*result);
    } else {
      emit noted(told(result.error().message));
    }
    settings.refresh();
  });
}

void WindowLogic::showNow(std::function<Result<VideoDetail>()> job, std::optional<std::string> sign) {
  chosen_ = std::move(sign);
  followShown();
  jobs_.run<Result<VideoDetail>>(std::move(job), [this, expected = chosen_](const Result<VideoDetail>& shown) {
    if (chosen_ == expected) {
      chosen_.reset();
    }
    settings.refresh();
    followShown();
    if (!shown) {
      missing_.expire();
      emit noted(told(shown.error().message));
    }
  });
}

void WindowLogic::play(const std::string& sign) {
  showNow([sign] { return playVideo(sign); }, sign);
}

void WindowLogic::playNext() {
  showNow([] { return playNextVideo(); }, std::nullopt);
}

void WindowLogic::remove(const std::vector<std::string>& signs) {
  if (!signs.empty()) {
    change<Removal>([signs] { return removeVideos(signs); }, [this](const Removal& removal) { keep(removal); });
  }
}

void WindowLogic::keep(const Removal& removal) {
  const int number = ++lastRemoval_;
  const QString what = removal.rows.size() == 1
                           ? QStringLiteral("“") + shownTitle(removal.rows[0].video.title) + QStringLiteral("”")
                           : QString::number(removal.rows.size());
  removals_.push_back({removal, runLoop_.after(kUndoTime, [this, number] { expire(number); }), number,
                       tr("Removed from the library: %1. The files stay where they are.").arg(what)});
  emit undoChanged();
}

void WindowLogic::expire(int number) {
  std::erase_if(removals_, [number](const Undoable& each) { return each.number == number; });
  if (removals_.empty()) {
    jobs_.run<Outcome>([] { return sweepCovers(); }, [](const Outcome& /*swept*/) {});
  }
  emit undoChanged();
}

void WindowLogic::undo() {
  if (!removals_.empty()) {
    const Removal removal = std::move(removals_.back().removal);
    removals_.pop_back();
    change<bool>([removal] { return restoreVideos(removal).map([] { return true; }); }, [](bool /*done*/) {});
    emit undoChanged();
  }
}

void WindowLogic::reveal(const std::string& sign) {
  const VideoCard* const card = model.find(sign);
  const auto file = card != nullptr ? localPath(card->video.url) : std::nullopt;
  if (!file) {
    return;
  }
  const QUrl address = QUrl::fromLocalFile(QFile::decodeName(file->c_str()));
  // File managers that know this interface also mark the file.
  auto call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  call << QStringList{QString::fromLatin1(address.toEncoded())} << QString();
  auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [answer, address] {
    answer->deleteLater();
    if (answer->isError()) {
      QDesktopServices::openUrl(address.adjusted(QUrl::RemoveFilename));
    }
  });
}

void WindowLogic::startAgent() {
  // Its programs lie where the bundle's folder says.
  const auto programs = LinuxBundle::main().path().parent_path().parent_path() / "bin";
  const QString program = QFile::decodeName((programs / "quilexhelper").c_str());
  if (!QProcess::startDetached(program, {})) {
    emit noted(tr("The wallpaper cannot be started: %1 is missing.").arg(program));
  }
}

bool WindowLogic::isFirstUse() const {
  return hasOnlyLoops_ && !settings.value<bool>(settings::kAlreadyImportVideo);
}

QString WindowLogic::settingsProblem() const {
  return told(settings.problem());
}

void WindowLogic::end() {
  import.cancel();
  if (!removals_.empty()) {
    removals_.clear();
    jobs_.run<Outcome>([] { return sweepCovers(); }, [](const Outcome& /*swept*/) {});
  }
  QElapsedTimer clock;
  clock.start();
  while ((!jobs_.isIdle() || import.isRunning()) && clock.elapsed() < kEndMilliseconds) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents, 100);
  }
}

}  // namespace quilex
