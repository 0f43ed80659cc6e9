#pragma once

#include <QSettings>

namespace quilex {

/// What the window remembers of itself, in a file of its own beside the settings that are shared.
class WindowMemory {
 public:
  WindowMemory();

  QByteArray geometry() const { return file_.value("geometry").toByteArray(); }
  void setGeometry(const QByteArray& geometry) { file_.setValue("geometry", geometry); }
  int coverWidth() const { return file_.value("coverWidth", 220).toInt(); }
  void setCoverWidth(int width) { file_.setValue("coverWidth", width); }
  int order() const { return file_.value("order", 1).toInt(); }
  void setOrder(int order) { file_.setValue("order", order); }
  bool showsPanel() const { return file_.value("panel", true).toBool(); }
  void setShowsPanel(bool shown) { file_.setValue("panel", shown); }
  bool greetingClosed() const { return file_.value("greetingClosed", false).toBool(); }
  void setGreetingClosed() { file_.setValue("greetingClosed", true); }

 private:
  QSettings file_;
};

}  // namespace quilex
