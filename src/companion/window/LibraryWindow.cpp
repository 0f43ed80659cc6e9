#include "companion/window/LibraryWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

#include "companion/window/CardDelegate.h"
#include "companion/window/DesktopPanel.h"

namespace quilex {

namespace {

constexpr int kSearchMilliseconds = 120;
constexpr int kLookingMilliseconds = 5000;
constexpr int kStartingMilliseconds = 8000;
constexpr int kNoteSeconds = 12;

}  // namespace

LibraryWindow::LibraryWindow(WindowLogic& logic)
    : logic_(logic),
      view_(new LibraryView),
      search_(new QLineEdit),
      order_(new QComboBox),
      size_(new QSlider(Qt::Horizontal)),
      agentBar_(new MessageBar),
      greeting_(new MessageBar),
      note_(new MessageBar),
      undoBar_(new MessageBar),
      importBar_(new MessageBar) {
  setWindowTitle(QStringLiteral("Quilex"));
  setWindowIcon(QIcon::fromTheme(QStringLiteral("com.dravo.quilex")));
  view_->setModel(&logic_.model);
  view_->setItemDelegate(new CardDelegate(
      logic_.covers, [this](const VideoCard& card) { logic_.cardSeen(card); }, this));
  makeLibraryMenu();
  makeVideoMenu();
  makeViewMenu();
  makeDesktopMenu();
  makeLayout();
  connectParts();
  setOrder(memory_.order());
  setCoverWidth(memory_.coverWidth());
  panelAction_->setChecked(memory_.showsPanel());
  resize(1060, 700);
  restoreGeometry(memory_.geometry());
  followAgent();
  followLibrary();
  followVideoActions();
  view_->setFocus();
}

QWidget* LibraryWindow::makeToolLine() {
  auto* const add = new QPushButton(QIcon::fromTheme(QStringLiteral("list-add")), tr("Add videos…"));
  connect(add, &QPushButton::clicked, this, [this] { addVideos(); });
  search_->setPlaceholderText(tr("Search"));
  search_->setAccessibleName(tr("Search"));
  search_->setClearButtonEnabled(true);
  if (auto* const clear = search_->findChild<QToolButton*>()) {
    clear->setAccessibleName(tr("Clear the search"));
  }
  search_->setMaximumWidth(320);
  search_->installEventFilter(this);
  order_->setAccessibleName(tr("Order of the videos"));
  order_->addItems({tr("By title"), tr("Newest first"), tr("Longest first"), tr("Largest picture first")});
  size_->setRange(LibraryView::kSmallestCover, LibraryView::kLargestCover);
  size_->setPageStep(40);
  size_->setMaximumWidth(120);
  size_->setAccessibleName(tr("Size of the covers"));
  size_->setToolTip(tr("Size of the covers"));
  auto* const line = new QWidget;
  auto* const parts = new QHBoxLayout(line);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->addWidget(add);
  parts->addWidget(search_, 1);
  parts->addStretch();
  parts->addWidget(order_);
  parts->addWidget(size_);
  return line;
}

void LibraryWindow::makeLayout() {
  auto* const panel =
      new DesktopPanel({logic_.settings, logic_.actions, logic_.agent, logic_.model, logic_.work()}, nullptr);
  auto* const scrolled = new QScrollArea;
  scrolled->setWidget(panel);
  scrolled->setWidgetResizable(true);
  scrolled->setFrameShape(QFrame::NoFrame);
  scrolled->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scrolled->setFixedWidth(290);
  panel_ = scrolled;
  auto* const left = new QVBoxLayout;
  left->addWidget(makeToolLine());
  left->addWidget(view_, 1);
  auto* const columns = new QHBoxLayout;
  columns->addLayout(left, 1);
  columns->addWidget(panel_);
  auto* const whole = new QWidget;
  auto* const lines = new QVBoxLayout(whole);
  for (MessageBar* const bar : {agentBar_, greeting_, note_}) {
    lines->addWidget(bar);
  }
  lines->addLayout(columns, 1);
  for (MessageBar* const bar : {importBar_, undoBar_}) {
    lines->addWidget(bar);
  }
  setCentralWidget(whole);
  setMinimumSize(560, 420);
}

void LibraryWindow::connectParts() {
  connect(view_, &QAbstractItemView::activated, this,
          [this](const QModelIndex& index) { logic_.play(logic_.model.card(index).video.sign); });
  connect(view_, &LibraryView::filesDropped, this, [this](const QStringList& files) { addFiles(files); });
  connect(view_, &LibraryView::coverWidthRequested, this, [this](int width) { setCoverWidth(width); });
  connect(view_, &LibraryView::typed, this, [this](const QString& text) {
    search_->setFocus();
    search_->insert(text);
  });
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { followVideoActions(); });
  connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { followVideoActions(); });
  connect(&logic_.model, &LibraryModel::dataChanged, this, [this] { followVideoActions(); });
  connect(&logic_.covers, &CoverStore::loaded, view_, [this](const std::string& sign) {
    if (const QModelIndex index = logic_.model.indexOf(sign); index.isValid()) {
      view_->update(index);
    }
  });
  searching_.setSingleShot(true);
  searching_.setInterval(kSearchMilliseconds);
  connect(search_, &QLineEdit::textChanged, &searching_, qOverload<>(&QTimer::start));
  connect(&searching_, &QTimer::timeout, this, [this] {
    logic_.model.setSearch(search_->text());
    followLibrary();
  });
  connect(order_, &QComboBox::activated, this, [this](int order) { setOrder(order); });
  connect(size_, &QSlider::valueChanged, this, [this](int width) { setCoverWidth(width); });
  looking_.setInterval(kLookingMilliseconds);
  connect(&looking_, &QTimer::timeout, this, [this] {
    if (isVisible() && !isMinimized()) {
      logic_.expireMissing();
      view_->viewport()->update();
    }
  });
  looking_.start();
  starting_.setSingleShot(true);
  starting_.setInterval(kStartingMilliseconds);
  connect(&starting_, &QTimer::timeout, this, [this] { followAgent(); });

  connect(&logic_.agent, &AgentWatcher::changed, this, [this] { followAgent(); });
  connect(&logic_, &WindowLogic::libraryRead, this, [this] { followLibrary(); });
  connect(&logic_.settings, &DesktopSettings::changed, this, [this] { followLibrary(); });
  connect(&logic_, &WindowLogic::noted, this, [this](const QString& text) {
    note_->showMessage({text, {}, {}, kNoteSeconds});
  });
  connect(&logic_, &WindowLogic::undoChanged, this, [this] { followUndo(); });
  connect(&logic_.import, &VideoImport::progressed, this, &LibraryWindow::showImport);
  connect(&logic_.import, &VideoImport::finished, this, &LibraryWindow::showSummary);
}

std::string LibraryWindow::currentSign() const {
  const QModelIndex current = view_->currentIndex();
  return current.isValid() ? logic_.model.card(current).video.sign : std::string();
}

std::vector<std::string> LibraryWindow::selectedSigns() const {
  std::vector<std::string> signs;
  const auto selected = view_->selectionModel()->selectedIndexes();
  for (const QModelIndex& each : selected) {
    signs.push_back(logic_.model.card(each).video.sign);
  }
  return signs;
}

void LibraryWindow::setCoverWidth(int width) {
  view_->setCoverWidth(width);
  size_->setValue(view_->coverWidth());
}

void LibraryWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  // What is visible three times over, so that scrolling back is immediate.
  const QSizeF visible = QSizeF(size()) * devicePixelRatioF();
  constexpr double kBytesOfPixel = 4;
  logic_.covers.setBudget(static_cast<std::size_t>(visible.width() * visible.height() * kBytesOfPixel * 3));
}

void LibraryWindow::setOrder(int order) {
  const int valid = std::clamp(order, 0, order_->count() - 1);
  logic_.model.setOrder(static_cast<CardOrder>(valid));
  order_->setCurrentIndex(valid);
  orders_->actions().at(valid)->setChecked(true);
}

void LibraryWindow::focusFirstCard() {
  searching_.stop();
  logic_.model.setSearch(search_->text());
  followLibrary();
  if (logic_.model.rowCount() > 0) {
    view_->setFocus();
    view_->setCurrentIndex(logic_.model.index(0));
  }
}

bool LibraryWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == search_ && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Escape:
        search_->clear();
        view_->setFocus();
        return true;
      case Qt::Key_Return:
      case Qt::Key_Enter:
      case Qt::Key_Down:
        focusFirstCard();
        return true;
      default:
        break;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void LibraryWindow::comeForward() {
  if (isMinimized()) {
    showNormal();
  }
  show();
  raise();
  activateWindow();
}

void LibraryWindow::closeEvent(QCloseEvent* event) {
  memory_.setGeometry(saveGeometry());
  memory_.setCoverWidth(view_->coverWidth());
  memory_.setOrder(order_->currentIndex());
  memory_.setShowsPanel(panelAction_->isChecked());
  event->accept();
}

}  // namespace quilex
