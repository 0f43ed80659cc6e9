#pragma once

#include <QMainWindow>
#include <QTimer>
#include <string>
#include <vector>

#include "companion/window/LibraryView.h"
#include "companion/window/MessageBar.h"
#include "companion/window/WindowLogic.h"
#include "companion/window/WindowMemory.h"

class QComboBox;
class QLineEdit;
class QSlider;

namespace quilex {

/// The main window: the library, what can be done with it, and the desktop at a glance. Main thread.
class LibraryWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// `logic` must outlive the window.
  explicit LibraryWindow(WindowLogic& logic);

  /// Shows it in front of other windows.
  void comeForward();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeLibraryMenu();
  void makeVideoMenu();
  void makeViewMenu();
  void makeDesktopMenu();
  QAction* addAction(QMenu& menu, const QString& text, const QKeySequence& key, std::function<void()> run);
  /// For the video that has the focus; also in the menu of the card.
  QAction* addVideoAction(QMenu& menu, const QString& text, const QKeySequence& key, std::function<void()> run);
  QWidget* makeToolLine();
  void makeLayout();
  void connectParts();

  std::vector<std::string> selectedSigns() const;
  std::string currentSign() const;
  void addVideos();
  void addFolder();
  void findAgain();
  void paste();
  void addFiles(const QStringList& files);
  void setCoverWidth(int width);
  void setOrder(int order);
  void focusFirstCard();

  void followAgent();
  void followLibrary();
  void followVideoActions();
  void followUndo();
  void showImport(int index, int count, const QString& file, int percent);
  void showSummary(const ImportSummary& summary);
  void showRefused(const ImportSummary& summary);
  void greet();

  WindowLogic& logic_;
  WindowMemory memory_;
  LibraryView* view_;
  QWidget* panel_ = nullptr;
  QLineEdit* search_;
  QComboBox* order_;
  QSlider* size_;
  MessageBar* agentBar_;
  MessageBar* greeting_;
  MessageBar* note_;
  MessageBar* undoBar_;
  MessageBar* importBar_;
  QAction* undoAction_ = nullptr;
  QAction* panelAction_ = nullptr;
  QAction* findAgain_ = nullptr;
  QActionGroup* orders_ = nullptr;
  std::vector<QAction*> videoActions_;
  QString shownProblem_;
  QTimer searching_;
  QTimer looking_;
  QTimer starting_;
};

}  // namespace quilex
