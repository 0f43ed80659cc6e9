#pragma once

#include <QIcon>
#include <QWidget>

namespace quilex {

/// Shows an icon as large as it fits, drawn anew for each scale of the screen.
class PictureView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QIcon picture READ picture WRITE setPicture)

 public:
  explicit PictureView(QWidget* parent = nullptr) : QWidget(parent) {}

  QIcon picture() const { return icon_; }
  void setPicture(const QIcon& picture) {
    icon_ = picture;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon icon_;
};

}  // namespace quilex
