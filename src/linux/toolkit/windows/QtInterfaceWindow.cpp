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

// In bytes. The toolkit takes quadratic time for nested HTML, and a second to lay out some megabytes of text; these
// limits keep both to some hundredths of a second.
constexpr std::size_t kMostHTML = 4096;
constexpr std::size_t kMostText = 16384;

/// A document that loads nothing: no images, no style sheets, no files.
struct SecludedDocument : QTextDocument {
  using QTextDocument::QTextDocument;
  QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

/// Without characters that move, hide or reverse the text beside them.
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
  explicit LabelField(QLabel& shown) : label(shown) { label.setTextFormat(Qt::PlainText); }
  void setStringValue(const std::string& text) override { label.setText(printable(text)); }
  bool appendHTML(const std::string& /*html*/) override { return false; }
  QLabel& label;
};

struct TextViewField : TextField {
  explicit TextViewField(QTextEdit& shown) : view(shown) {
    auto* document = new SecludedDocument(&view);
    QTextOption option = document->defaultTextOption();
    // Interface files cannot set this property.
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
    // As plain text, without its tables: the time to lay out nested ones has no bound.
    QTextCursor end(view.document());
    end.movePosition(QTextCursor::End);
    end.insertText(parsed.toPlainText());
    return true;
  }
  QTextEdit& view;
};

struct WidgetButton : PushButton {
  explicit WidgetButton(QPushButton& shown) : button(shown) {}
  void setAction(std::function<void()> action) override {
    QObject::disconnect(connection);
    connection = QObject::connect(&button, &QPushButton::clicked, &button, std::move(action));
  }
  QPushButton& button;
  QMetaObject::Connection connection;
};

}  // namespace

QtInterfaceWindow::QtInterfaceWindow(const LinuxBundle& bundle, std::unique_ptr<QDialog, DeleteLater> dialog)
    : bundle_(bundle), dialog_(std::move(dialog)) {
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
  if (const auto file = bundle_.resource(imageName, "svg")) {
    contents_ = QIcon(QString::fromStdString(file->string()));
  }
}

void QtInterfaceWindow::show(Keyboard keyboard) {
  mainThread_.check();
  // Hidden and shown again, the window is in front, on the visible workspace, and has the keyboard also on desktops
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
    handleDialogEvent(event);
    return false;
  }
  // Not before this event: the request carries the display server's last time stamp, and window managers ignore one
  // that looks old.
  if (event->type() == QEvent::Expose && dialog_->windowHandle()->isExposed() && std::exchange(activates_, false)) {
    dialog_->activateWindow();
  }
  return false;
}

void QtInterfaceWindow::handleDialogEvent(QEvent* event) {
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
      // A panel without a title bar is moved by its background.
      if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
          dialog_->windowFlags().testFlag(Qt::FramelessWindowHint)) {
        dialog_->windowHandle()->startSystemMove();
      }
      break;
    default:
      break;
  }
}

// Desktops that do not blend windows would show black where the background image is transparent.
void QtInterfaceWindow::maskToContents() {
  if (!contents_.isNull()) {
    QPixmap drawn(dialog_->size());
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    // Several times, so that the half-transparent edge becomes opaque and counts as well.
    for (int pass = 0; pass < 8; ++pass) {
      contents_.paint(&painter, drawn.rect());
    }
    painter.end();
    dialog_->setMask(QBitmap::fromImage(drawn.toImage().createAlphaMask()));
  }
}

}  // namespace quilex
