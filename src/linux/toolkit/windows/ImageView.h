#pragma once

#include <QIcon>
#include <QWidget>

namespace quilex {

/// Shows an image as large as fits, sharp at every scale of the screen.
class ImageView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QIcon image READ image WRITE setImage)

 public:
  explicit ImageView(QWidget* parent = nullptr) : QWidget(parent) {}

  QIcon image() const { return image_; }
  void setImage(const QIcon& image) {
    image_ = image;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon image_;
};

}  // namespace quilex
