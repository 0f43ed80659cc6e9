#include "companion/window/MessageBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

namespace quilex {

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent),
      text_(new QLabel),
      progress_(new QProgressBar),
      button_(new QPushButton),
      close_(new QToolButton),
      timer_(new QTimer(this)) {
  setFrameShape(StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::AlternateBase);
  text_->setWordWrap(true);
  text_->setTextFormat(Qt::PlainText);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  progress_->setMaximumWidth(180);
  progress_->setTextVisible(false);
  progress_->setAccessibleName(tr("Progress"));
  close_->setAutoRaise(true);
  close_->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close_->setAccessibleName(tr("Close"));
  close_->setToolTip(tr("Close"));
  close_->setFocusPolicy(Qt::TabFocus);
  auto* const line = new QHBoxLayout(this);
  line->setContentsMargins(10, 6, 6, 6);
  line->addWidget(text_, 1);
  line->addWidget(progress_);
  line->addWidget(button_);
  line->addWidget(close_);
  timer_->setSingleShot(true);
  connect(timer_, &QTimer::timeout, this, [this] { dismiss(); });
  connect(close_, &QToolButton::clicked, this, [this] { dismiss(); });
  connect(button_, &QPushButton::clicked, this, [this] {
    timer_->stop();
    const auto run = run_;
    hide();
    run();
  });
  hide();
}

void MessageBar::showMessage(const Message& message) {
  text_->setText(message.text);
  setAccessibleName(message.text);
  button_->setText(message.action);
  button_->setVisible(!message.action.isEmpty());
  close_->setVisible(message.canBeClosed);
  progress_->hide();
  run_ = message.run;
  if (message.seconds > 0) {
    timer_->start(message.seconds * 1000);
  } else {
    timer_->stop();
  }
  setVisible(true);
}

void MessageBar::setProgress(int percent) {
  progress_->setValue(percent);
  progress_->show();
}

void MessageBar::dismiss() {
  timer_->stop();
  hide();
  if (dismissed) {
    dismissed();
  }
}

}  // namespace quilex
