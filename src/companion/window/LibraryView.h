#pragma once

#include <QListView>
#include <QStringList>

class QMimeData;

namespace quilex {

/// The grid of cards. Its columns fill the width; covers are at least as wide as `coverWidth`.
class LibraryView : public QListView {
  Q_OBJECT

 public:
  static constexpr int kSmallestCover = 120;
  static constexpr int kLargestCover = 480;

  explicit LibraryView(QWidget* parent = nullptr);

  int coverWidth() const { return coverWidth_; }
  void setCoverWidth(int width);
  /// What is shown in place of cards while there are none: a heading and a line below it.
  void setEmptyText(const QString& heading, const QString& text);

  /// The local files of what is dropped or pasted.
  static QStringList localFiles(const QMimeData* data);

 signals:
  void coverWidthRequested(int width);
  void filesDropped(const QStringList& files);
  /// A character that is not a command was typed.
  void typed(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyboardSearch(const QString& text) override;

 private:
  void layOutGrid();
  void showDropTarget(bool shown);

  int coverWidth_ = 220;
  bool isDropTarget_ = false;
  QString heading_;
  QString text_;
};

}  // namespace quilex
