#pragma once

#include <QFrame>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;
class QToolButton;

namespace quilex {

/// A line with something to know and, often, something to do about it.
class MessageBar : public QFrame {
  Q_OBJECT

 public:
  explicit MessageBar(QWidget* parent = nullptr);

  struct Message {
    QString text;
    /// The label of the button; none if empty.
    QString action;
    std::function<void()> run;
    /// When the message goes by itself; 0 for never.
    int seconds = 0;
    bool canBeClosed = true;
  };

  void showMessage(const Message& message);
  /// With a bar below the text; 0 to 100.
  void setProgress(int percent);
  /// Called when the message goes by itself or is closed, but not when its button is pressed.
  std::function<void()> dismissed;

 private:
  void dismiss();

  QLabel* text_;
  QProgressBar* progress_;
  QPushButton* button_;
  QToolButton* close_;
  QTimer* timer_;
  std::function<void()> run_;
};

}  // namespace quilex
