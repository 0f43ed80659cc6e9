#include "linux/toolkit/windows/InterfaceFiles.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QUiLoader>
#include <cstdio>
#include <utility>

#include "linux/toolkit/windows/Buttons.h"
#include "linux/toolkit/windows/ImageView.h"
#include "linux/toolkit/windows/QtInterfaceWindow.h"

namespace quilex {

namespace {

class Loader : public QUiLoader {
 public:
  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    QWidget* made = nullptr;
    if (className == QLatin1String("ButtonWithPointCursor")) {
      made = new ButtonWithPointCursor(parent);
    } else if (className == QLatin1String("ButtonWithHoverBackGround")) {
      made = new ButtonWithHoverBackGround(parent);
    } else if (className == QLatin1String("ImageView")) {
      made = new ImageView(parent);
    } else {
      return QUiLoader::createWidget(className, parent, name);
    }
    made->setObjectName(name);
    return made;
  }
};

std::unique_ptr<InterfaceWindow> failed(const std::string& name, const char* why) {
  std::fprintf(stderr, "quilexhelper: a window cannot be shown: the interface file %s.ui %s\n", name.c_str(), why);
  return nullptr;
}

}  // namespace

std::unique_ptr<InterfaceWindow> loadInterfaceFile(const LinuxBundle& bundle, const std::string& name) {
  const auto path = bundle.resource(name, "ui");
  QFile file(path ? QString::fromStdString(path->string()) : QString());
  if (!path || !file.open(QIODevice::ReadOnly)) {
    return failed(name, "is missing from the bundle");
  }
  Loader loader;
  loader.clearPluginPaths();
  loader.setWorkingDirectory(QDir(QString::fromStdString(path->parent_path().string())));
  std::unique_ptr<QWidget> widget(loader.load(&file));
  if (qobject_cast<QDialog*>(widget.get()) == nullptr) {
    return failed(name, "describes no window");
  }
  std::unique_ptr<QDialog, DeleteLater> dialog(static_cast<QDialog*>(widget.release()));
  return std::make_unique<QtInterfaceWindow>(bundle, std::move(dialog));
}

}  // namespace quilex
