#include "linux/LinuxWorkspace.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QGuiApplication>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <memory>
#include <thread>
#include <utility>

#include "linux/dbus/SleepMonitor.h"
#include "linux/gio/DesktopEntry.h"

namespace quilex {

void LinuxWorkspace::launchApplication(const std::string& bundleIdentifier) {
  // It reads files and asks the session bus, each of which may hang.
  std::thread([bundleIdentifier] { launchDesktopEntry(bundleIdentifier); }).detach();
}

void LinuxWorkspace::openURL(const std::string& url) {
  const QUrl address(QString::fromStdString(url), QUrl::StrictMode);
  if (address.isValid() && !address.isRelative()) {
    QDesktopServices::openUrl(address);
  }
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
