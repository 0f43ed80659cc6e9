#include "linux/session/workspace/LinuxWorkspace.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>

#include "linux/session/autostart/AutostartEntry.h"
#include "linux/session/dbus/SleepMonitor.h"
#include "linux/session/gio/DesktopEntry.h"

namespace quilex {

namespace {

/// If the service manager runs the agent, starts the command in a unit of its own; in the agent's it would share the
/// agent's memory limit. False if it did nothing.
bool startInScope(const QStringList& command) {
  if (qEnvironmentVariable("SYSTEMD_EXEC_PID") != QString::number(QCoreApplication::applicationPid()) ||
      QStandardPaths::findExecutable(command.front()).isEmpty()) {
    return false;
  }
  const QStringList scope{QStringLiteral("--user"), QStringLiteral("--scope"), QStringLiteral("--quiet"),
                          QStringLiteral("--")};
  return QProcess::startDetached(QStringLiteral("systemd-run"), scope + command);
}

void launch(const std::string& id) {
  const auto file = desktopEntryFile(id);
  const QStringList command{QStringLiteral("gio"), QStringLiteral("launch"),
                            QString::fromLocal8Bit(file.value_or("").c_str())};
  if (!file || !startInScope(command)) {
    launchDesktopEntry(id);
  }
}

}  // namespace

/// The latest wish. Work that starts late reads it too, so that no older wish is carried out after it.
struct LinuxWorkspace::LoginWish {
  std::mutex writing;
  std::atomic<bool> startsAtLogin = false;
};

LinuxWorkspace::LinuxWorkspace(BackgroundWork& backgroundWork)
    : backgroundWork_(backgroundWork), loginWish_(std::make_shared<LoginWish>()) {}

void LinuxWorkspace::launchApplication(const std::string& bundleIdentifier) {
  mainThread_.check();
  // Reads files and asks the session bus, and may hang at either.
  std::thread([bundleIdentifier] { launch(bundleIdentifier); }).detach();
}

void LinuxWorkspace::openURL(const std::string& url) {
  mainThread_.check();
  const QUrl address(QString::fromStdString(url), QUrl::StrictMode);
  const QString encoded = QString::fromLatin1(address.toEncoded());
  if (!address.isValid() || address.isRelative()) {
    return;
  }
  // The program is looked for in folders that may not answer; the toolkit opens addresses on the main thread only.
  const auto started = std::make_shared<bool>(false);
  const auto work = [started, encoded](const std::stop_token& /*stop*/) {
    *started = startInScope({QStringLiteral("xdg-open"), encoded});
  };
  openWork_.emplace(backgroundWork_.run(work, [started, address] {
    if (!*started) {
      QDesktopServices::openUrl(address);
    }
  }));
}

void LinuxWorkspace::showOpenPanel(const std::vector<std::string>& allowedFileTypes,
                                   std::function<void(bool chosen)> done) {
  QStringList patterns;
  for (const std::string& type : allowedFileTypes) {
    patterns << QStringLiteral("*.") + QString::fromStdString(type);
  }
  auto* panel = new QFileDialog;
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setFileMode(QFileDialog::ExistingFile);
  panel->setNameFilter(patterns.join(QLatin1Char(' ')));
  QObject::connect(panel, &QDialog::finished, panel,
                   [answer = std::move(done)](int result) { answer(result == QDialog::Accepted); });
  panel->open();
}

void LinuxWorkspace::setStartsAtLogin(bool startsAtLogin) {
  mainThread_.check();
  loginWish_->startsAtLogin = startsAtLogin;
  const auto work = [wish = loginWish_](const std::stop_token& /*stop*/) {
    const std::lock_guard guard(wish->writing);
    const bool starts = wish->startsAtLogin;
    const auto change = AutostartEntry::main().set(starts);
    if (!change || (change->state == AutostartEntry::Change::State::edited && !starts)) {
      std::fprintf(stderr, "quilexhelper: %s\n", (change ? change->message : change.error().message).c_str());
    }
  };
  loginWork_.emplace(backgroundWork_.run(work, [] {}));
}

void LinuxWorkspace::terminate() {
  QCoreApplication::quit();
}

Disposable LinuxWorkspace::observeWake(std::function<void()> handler) {
  return observeWakeFromSleep(std::move(handler));
}

Disposable LinuxWorkspace::observeResignActive(std::function<void()> handler) {
  const auto receiver = std::make_shared<QObject>();
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, receiver.get(),
                   [run = std::move(handler), wasActive = false](Qt::ApplicationState state) mutable {
                     const bool active = state == Qt::ApplicationActive;
                     if (std::exchange(wasActive, active) && !active) {
                       run();
                     }
                   });
  return Disposable([receiver] {});
}

}  // namespace quilex
