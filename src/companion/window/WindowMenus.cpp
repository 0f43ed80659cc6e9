// The menus of LibraryWindow, and what their entries do.

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QStandardPaths>

#include "companion/window/LibraryWindow.h"
#include "library/MediaFormats.h"

namespace quilex {

namespace {

QString videosFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
}

}  // namespace

QAction* LibraryWindow::addAction(QMenu& menu, const QString& text, const QKeySequence& key,
                                  std::function<void()> run) {
  auto* const action = menu.addAction(text);
  action->setShortcut(key);
  connect(action, &QAction::triggered, this, std::move(run));
  return action;
}

QAction* LibraryWindow::addVideoAction(QMenu& menu, const QString& text, const QKeySequence& key,
                                       std::function<void()> run) {
  auto* const action = addAction(menu, text, key, std::move(run));
  // Where texts are typed, these keys have other meanings.
  action->setShortcutContext(Qt::WidgetShortcut);
  view_->addAction(action);
  videoActions_.push_back(action);
  return action;
}

void LibraryWindow::makeLibraryMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Library"));
  addAction(menu, tr("Add videos…"), QKeySequence::Open, [this] { addVideos(); });
  addAction(menu, tr("Add a folder…"), QStringLiteral("Ctrl+Shift+O"), [this] { addFolder(); });
  addAction(menu, tr("Paste files"), QKeySequence::Paste, [this] { paste(); });
  undoAction_ = addAction(menu, tr("Undo the removal"), QKeySequence::Undo, [this] { logic_.undo(); });
  undoAction_->setEnabled(false);
  menu.addSeparator();
  addAction(menu, tr("Close"), QKeySequence::Close, [this] { close(); });
  addAction(menu, tr("Quit"), QStringLiteral("Ctrl+Q"), [this] { close(); });
}

void LibraryWindow::makeVideoMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Video"));
  addVideoAction(menu, tr("Show on the desktop"), Qt::Key_Return, [this] { logic_.play(currentSign()); });
  addVideoAction(menu, tr("Rename"), Qt::Key_F2, [this] { view_->edit(view_->currentIndex()); });
  addVideoAction(menu, tr("Show in the file manager"), QStringLiteral("Ctrl+E"),
                 [this] { logic_.reveal(currentSign()); });
  findAgain_ = addVideoAction(menu, tr("Find the file again…"), {}, [this] { findAgain(); });
  addVideoAction(menu, tr("Remove from the library"), QKeySequence::Delete, [this] { logic_.remove(selectedSigns()); });
}

void LibraryWindow::makeViewMenu() {
  constexpr int kStep = 40;
  QMenu& menu = *menuBar()->addMenu(tr("V&iew"));
  addAction(menu, tr("Search"), QKeySequence::Find, [this] { search_->setFocus(); });
  addAction(menu, tr("Larger covers"), QKeySequence::ZoomIn, [this] { setCoverWidth(view_->coverWidth() + kStep); });
  addAction(menu, tr("Smaller covers"), QKeySequence::ZoomOut, [this] { setCoverWidth(view_->coverWidth() - kStep); });
  menu.addSeparator();
  orders_ = new QActionGroup(this);
  int order = 0;
  for (const QString& text : {tr("By title"), tr("Newest first"), tr("Longest first"), tr("Largest picture first")}) {
    auto* const action = addAction(menu, text, {}, [this, order] { setOrder(order); });
    action->setCheckable(true);
    orders_->addAction(action);
    ++order;
  }
  menu.addSeparator();
  panelAction_ = menu.addAction(tr("Desktop"));
  panelAction_->setShortcut(Qt::Key_F9);
  panelAction_->setCheckable(true);
  panelAction_->setChecked(true);
  connect(panelAction_, &QAction::toggled, this, [this](bool shown) { panel_->setVisible(shown); });
}

void LibraryWindow::makeDesktopMenu() {
  DesktopActions& actions = logic_.actions;
  QMenu& menu = *menuBar()->addMenu(tr("&Desktop"));
  menu.addActions({&actions.playPause, &actions.next, &actions.openClose, &actions.mute});
  menu.addSeparator();
  menu.addActions(actions.arrangements.actions());
  menu.addSeparator();
  menu.addActions(actions.modes.actions());
  menu.addSeparator();
  menu.addAction(&actions.startAtLogin);
}

void LibraryWindow::addFiles(const QStringList& files) {
  if (!files.isEmpty()) {
    importBar_->showMessage({tr("Looking for videos…"), tr("Cancel"), [this] { logic_.import.cancel(); }, 0, false});
    logic_.import.add(files);
  }
}

void LibraryWindow::addVideos() {
  addFiles(QFileDialog::getOpenFileNames(this, tr("Add videos"), videosFolder()));
}

void LibraryWindow::addFolder() {
  const QString folder = QFileDialog::getExistingDirectory(this, tr("Add a folder of videos"), videosFolder());
  addFiles(folder.isEmpty() ? QStringList() : QStringList{folder});
}

void LibraryWindow::findAgain() {
  // The same contents are the same video, which then plays from its new place.
  const QString file = QFileDialog::getOpenFileName(this, tr("Where is the file now?"), videosFolder());
  addFiles(file.isEmpty() ? QStringList() : QStringList{file});
}

void LibraryWindow::paste() {
  const QMimeData* const copied = QApplication::clipboard()->mimeData();
  QStringList files = LibraryView::localFiles(copied);
  if (files.isEmpty() && copied != nullptr) {
    const QStringList lines = copied->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
      if (line.startsWith(QLatin1Char('/'))) {
        files << line.trimmed();
      }
    }
  }
  if (files.isEmpty()) {
    note_->showMessage({tr("There are no files in the clipboard."), {}, {}, 5});
  }
  addFiles(files);
}

}  // namespace quilex
