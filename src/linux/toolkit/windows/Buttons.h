#pragma once

#include <QColor>
#include <QIcon>
#include <QPushButton>
#include <QRect>

#include "ui/ButtonLook.h"

namespace quilex {

/// A push button that turns the pointer into a pointing hand.
class ButtonWithPointCursor : public QPushButton {
  Q_OBJECT

 public:
  explicit ButtonWithPointCursor(QWidget* parent = nullptr);
};

/// A push button with a background of its own, whose colour and image follow the pointer by the rules of ButtonLook. An
/// invalid colour or a null image stands for none. The pointer counts as inside within the area that the button had
/// when it was first shown.
class ButtonWithHoverBackGround : public ButtonWithPointCursor {
  Q_OBJECT
  Q_PROPERTY(QIcon hoverImage READ hoverImage WRITE setHoverImage)
  Q_PROPERTY(QIcon normalImage READ normalImage WRITE setNormalImage)
  Q_PROPERTY(QColor hoverColor READ hoverColor WRITE setHoverColor)
  Q_PROPERTY(QColor normalColor READ normalColor WRITE setNormalColor)
  Q_PROPERTY(QColor pressedColor READ pressedColor WRITE setPressedColor)
  Q_PROPERTY(QColor titleColor READ titleColor WRITE setTitleColor)
  Q_PROPERTY(bool isCustomBorder READ isCustomBorder WRITE setCustomBorder)
  Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius)

 public:
  explicit ButtonWithHoverBackGround(QWidget* parent = nullptr);

  QIcon hoverImage() const;
  void setHoverImage(const QIcon& image);
  QIcon normalImage() const;
  void setNormalImage(const QIcon& image);
  QColor hoverColor() const;
  void setHoverColor(const QColor& color);
  QColor normalColor() const;
  void setNormalColor(const QColor& color);
  QColor pressedColor() const;
  void setPressedColor(const QColor& color);
  QColor titleColor() const;
  void setTitleColor(const QColor& color);
  bool isCustomBorder() const;
  void setCustomBorder(bool custom);
  double cornerRadius() const;
  void setCornerRadius(double radius);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void setInside(bool nowInside);
  void endPress(bool pointerInside);
  void showLook();

  ButtonLook look_;
  /// Null until the button is first shown.
  QRect trackingArea_;
  bool inside_ = false;
  bool held_ = false;
};

}  // namespace quilex
