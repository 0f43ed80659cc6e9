#include "linux/toolkit/windows/QtInterfaceWindow.h"

#include <QBitmap>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QVariant>
#include <QWindow>
#include <algorithm>
#include <cstddef>
#include <utility>

namespace quilex {

namespace {

// The toolkit reads nested HTML in the square of its length, and lays texts out at some megabytes a second: these take
// some hundredths of a second at worst.
constexpr std::size_t kMostHTML = 4096;
constexpr std::size_t kMostText = 16384;

/// A document that loads nothing: neither pictures and style sheets of the network nor files.
struct SecludedDocument : QTextDocument {
  using QTextDocument::QTextDocument;
  QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

/// Nothing that moves, hides or turns round the text beside it.
QString printable(const std::string& text) {
  QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(text.size(), kMostText)));
  for (QChar& character : result) {
    const auto category = character.category();
    if (category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Separator_Line ||
        category == QChar::Separator_Paragraph) {
      character = QChar::ReplacementCharacter;
    }
  }
  return result;
}

struct LabelField : TextField {
  explicit LabelField(QLabel& its) : label(its) { label.setTextFormat(Qt::PlainText); }
  void setStringValue(const std::string& text) override { label.setText(printable(text)); }
  bool appendHTML(const std::string& /*html*/) override { return false; }
  QLabel& label;
};

struct TextViewField : TextField {
  explicit TextViewField(QTextEdit& its) : view(its) {
    auto* document = new SecludedDocument(&view);
    QTextOption option = document->defaultTextOption();
    // The loader of interface files does not know this property.
    option.setAlignment(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document->setDefaultTextOption(option);
    document->setDefaultFont(view.font());
    document->setDocumentMargin(0);
    view.setDocument(document);
  }
  void setStringValue(const std::string& text) override { view.setPlainText(printable(text)); }
  bool appendHTML(const std::string& html) override {
    SecludedDocument parsed;
    parsed.setHtml(QString::fromUtf8(html.data(), static_cast<qsizetype>(std::min(html.size(), kMostHTML))));
    if (parsed.isEmpty()) {
      return false;
    }
    // Without its tables, which take time to lay out that grows without bounds when they are nested.
    QTextCursor end(view.document());
    end.movePosition(QTextCursor::End);
    end.insertText(parsed.toPlainText());
    return true;
  }
  QTextEdit& view;
};

struct WidgetButton : PushButton {
  explicit WidgetButton(QPushButton& its) : button(its) {}
  void setAction(std::function<void()> action) override {
    QObject::disconnect(connection);
    connection = QObject::connect(&button, &QPushButton::clicked, &button, std::move(action));
  }
  QPushButton& button;
  QMetaObject::Connection connection;
};

}  // namespace

QtInterfaceWindow::QtInterfaceWindow(const LinuxBundle& bundle, std::unique_ptr<QDialog, DeleteLater> theDialog)
    : images_(bundle), dialog_(std::move(theDialog)) {
  dialog_->installEventFilter(this);
}

QtInterfaceWindow::~QtInterfaceWindow() {
  dialog_->hide();
}

TextField* QtInterfaceWindow::textField(const std::string& name) {
  auto& field = texts_[name];
  const QString object = QString::fromStdString(name);
  if (!field) {
    if (auto* label = dialog_->findChild<QLabel*>(object)) {
      field = std::make_unique<LabelField>(*label);
    } else if (auto* view = dialog_->findChild<QTextEdit*>(object)) {
      field = std::make_unique<TextViewField>(*view);
    }
  }
  return field.get();
}

PushButton* QtInterfaceWindow::button(const std::string& name) {
  auto& wrapped = buttons_[name];
  if (auto* found = dialog_->findChild<QPushButton*>(QString::fromStdString(name)); !wrapped && found != nullptr) {
    wrapped = std::make_unique<WidgetButton>(*found);
  }
  return wrapped.get();
}

void QtInterfaceWindow::hideStandardButton(StandardWindowButton button) {
  dialog_->setWindowFlag(Qt::CustomizeWindowHint);
  dialog_->setWindowFlag(Qt::WindowTitleHint);
  dialog_->setWindowFlag(Qt::WindowCloseButtonHint);
  switch (button) {
    case StandardWindowButton::miniaturize:
      dialog_->setWindowFlag(Qt::WindowMinimizeButtonHint, false);
      break;
    case StandardWindowButton::zoom:
      dialog_->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
      break;
    case StandardWindowButton::fullScreen:
      dialog_->setWindowFlag(Qt::WindowFullscreenButtonHint, false);
      break;
  }
}

void QtInterfaceWindow::setClearBackground() {
  dialog_->setWindowFlag(Qt::FramelessWindowHint);
  dialog_->setAttribute(Qt::WA_TranslucentBackground);
}

void QtInterfaceWindow::setContents(const std::string& imageName) {
  if (const auto file = images_.resource(imageName, "svg")) {
    contents_ = QIcon(QString::fromStdString(file->string()));
  }
}

void QtInterfaceWindow::show(Keyboard keyboard) {
  // A window that appears anew is in front, on the workspace that the user sees, and gets the keyboard from desktops
  // that give it to new windows only.
  dialog_->hide();
  activates_ = keyboard == Keyboard::comes;
  dialog_->setAttribute(Qt::WA_ShowWithoutActivating, !activates_);
  dialog_->winId();
  dialog_->windowHandle()->installEventFilter(this);
  dialog_->show();
  dialog_->raise();
}

void QtInterfaceWindow::close() {
  dialog_->hide();
}

bool QtInterfaceWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == dialog_.get()) {
    return handleOfDialog(event);
  }
  // Only now has the toolkit heard from the display server what time it is, without which window managers take the
  // request for one of long ago.
  if (event->type() == QEvent::Expose && dialog_->windowHandle()->isExposed() && std::exchange(activates_, false)) {
    dialog_->activateWindow();
  }
  return false;
}

bool QtInterfaceWindow::handleOfDialog(QEvent* event) {
  switch (event->type()) {
    case QEvent::Paint:
      if (!contents_.isNull()) {
        QPainter painter(dialog_.get());
        contents_.paint(&painter, dialog_->rect());
      }
      break;
    case QEvent::Resize:
      maskToContents();
      break;
    case QEvent::MouseButtonPress:
      // Without a title bar, the panel is moved by its picture.
      if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
          dialog_->windowFlags().testFlag(Qt::FramelessWindowHint)) {
        dialog_->windowHandle()->startSystemMove();
      }
      break;
    default:
      break;
  }
  return false;
}

// Desktops that do not blend windows would show black where the picture is clear.
void QtInterfaceWindow::maskToContents() {
  if (!contents_.isNull()) {
    QPixmap picture(dialog_->size());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    // Over and over, so that the half-clear rim counts as well.
    for (int pass = 0; pass < 8; ++pass) {
      contents_.paint(&painter, picture.rect());
    }
    painter.end();
    dialog_->setMask(QBitmap::fromImage(picture.toImage().createAlphaMask()));
  }
}

}  // namespace quilex
