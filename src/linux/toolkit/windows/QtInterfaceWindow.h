#pragma once

#include <QDialog>
#include <QIcon>
#include <map>
#include <memory>
#include <string>

#include "base/MainThread.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/toolkit/loop/DeleteLater.h"
#include "platform/InterfaceWindow.h"

namespace quilex {

/// An interface window over a QDialog. Its texts are QLabels and QTextEdits, its buttons QPushButtons.
class QtInterfaceWindow : public QObject, public InterfaceWindow {
  Q_OBJECT

 public:
  /// The bundle must outlive the window.
  QtInterfaceWindow(const LinuxBundle& bundle, std::unique_ptr<QDialog, DeleteLater> dialog);
  ~QtInterfaceWindow() override;
  QtInterfaceWindow(const QtInterfaceWindow&) = delete;
  QtInterfaceWindow& operator=(const QtInterfaceWindow&) = delete;

  TextField* textField(const std::string& name) override;
  PushButton* button(const std::string& name) override;
  void hideStandardButton(StandardWindowButton button) override;
  void setClearBackground() override;
  void setContents(const std::string& imageName) override;
  void show(Keyboard keyboard) override;
  void close() override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void handleDialogEvent(QEvent* event);
  void maskToContents();

  [[no_unique_address]] MainThread mainThread_;
  const LinuxBundle& bundle_;
  std::unique_ptr<QDialog, DeleteLater> dialog_;
  std::map<std::string, std::unique_ptr<TextField>> texts_;
  std::map<std::string, std::unique_ptr<PushButton>> buttons_;
  QIcon contents_;
  bool activates_ = false;
};

}  // namespace quilex
