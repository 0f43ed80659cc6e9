// What LibraryWindow tells the person.

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "companion/window/LibraryWindow.h"

namespace quilex {

namespace {

constexpr int kSummarySeconds = 12;

QString quoted(const QString& title) {
  return QStringLiteral("“") + shownTitle(title.toStdString()) + QStringLiteral("”");
}

}  // namespace

void LibraryWindow::followAgent() {
  const auto state = logic_.agent.state();
  if (state == AgentWatcher::State::absent && !starting_.isActive()) {
    agentBar_->showMessage({tr("The wallpaper is not running."), tr("Start"),
                            [this] {
                              starting_.start();
                              logic_.startAgent();
                            },
                            0, false});
  } else if (state == AgentWatcher::State::noBus) {
    agentBar_->showMessage({tr("There is no session bus, so it is not known whether the wallpaper runs."), {}, {}});
  } else {
    agentBar_->hide();
  }
}

void LibraryWindow::followLibrary() {
  const LibraryModel& model = logic_.model;
  const bool isReadable = logic_.libraryProblem().isEmpty();
  const QString problem = isReadable ? logic_.settingsProblem() : logic_.libraryProblem();
  if (problem != shownProblem_) {
    shownProblem_ = problem;
    if (problem.isEmpty()) {
      note_->hide();
    } else {
      note_->showMessage({problem, {}, {}});
    }
  }
  if (!isReadable) {
    view_->setEmptyText(tr("The library cannot be read"), logic_.libraryProblem());
  } else if (!model.isLoaded()) {
    view_->setEmptyText({}, {});
  } else if (model.videos() == 0) {
    view_->setEmptyText(tr("The library is empty"), tr("Drop videos or folders here, or choose “Add videos…”."));
  } else {
    view_->setEmptyText(tr("Nothing found"), tr("No title contains “%1”.").arg(model.search()));
  }
  greet();
}

void LibraryWindow::greet() {
  const bool isWanted = logic_.model.isLoaded() && logic_.isFirstUse() && !memory_.greetingClosed();
  if (isWanted && !greeting_->isVisible()) {
    greeting_->dismissed = [this] { memory_.setGreetingClosed(); };
    greeting_->showMessage(
        {tr("These loops come with Quilex; double-click one to show it on the desktop. For more, drop "
            "videos or a folder of them here, such as your Videos folder."),
         {},
         {}});
  } else if (!isWanted) {
    greeting_->hide();
  }
}

void LibraryWindow::followVideoActions() {
  const QModelIndex current = view_->currentIndex();
  const bool isChosen = current.isValid();
  for (QAction* const each : videoActions_) {
    each->setEnabled(isChosen);
  }
  findAgain_->setEnabled(isChosen && logic_.model.isMissing(logic_.model.card(current)));
}

void LibraryWindow::followUndo() {
  undoAction_->setEnabled(logic_.canUndo());
  if (logic_.canUndo()) {
    undoBar_->showMessage({logic_.undoText(), tr("Undo"), [this] { logic_.undo(); }, 0, false});
  } else {
    undoBar_->hide();
  }
}

void LibraryWindow::showImport(int index, int count, const QString& file, int percent) {
  if (logic_.import.isRunning() && !importBar_->isHidden()) {
    importBar_->showMessage({tr("Adding %1 of %2: %3").arg(QString::number(index + 1), QString::number(count), file),
                             tr("Cancel"), [this] { logic_.import.cancel(); }, 0, false});
    importBar_->setProgress((100 * index + percent) / std::max(count, 1));
  }
}

void LibraryWindow::showSummary(const ImportSummary& summary) {
  importBar_->hide();
  QStringList parts;
  const int all = summary.added + summary.known + summary.moved + static_cast<int>(summary.refused.size());
  if (!summary.problem.isEmpty()) {
    parts << summary.problem;
  } else if (all == 0 && !summary.wasCancelled) {
    parts << tr("No videos were found there.");
  } else if (all == 1 && summary.known == 1) {
    parts << tr("%1 is in the library already.").arg(quoted(summary.title));
  } else if (all == 1 && summary.moved == 1) {
    parts << tr("%1 was found again.").arg(quoted(summary.title));
  } else {
    const std::pair<int, QString> counts[] = {
        {summary.added, tr("Added: %1.")},
        {summary.known, tr("In the library already: %1.")},
        {summary.moved, tr("Found again: %1.")},
        {static_cast<int>(summary.refused.size()), tr("Cannot be played: %1.")},
    };
    for (const auto& [number, text] : counts) {
      if (number > 0) {
        parts << text.arg(number);
      }
    }
  }
  if (summary.wasCancelled) {
    parts << tr("The rest was cancelled.");
  }
  if (all == 1 && summary.refused.size() == 1) {
    const auto& [file, reason] = summary.refused.front();
    parts = {QFileInfo(file).fileName() + QStringLiteral(": ") + reason};
  }
  const bool hasList = all > 1 && !summary.refused.empty();
  note_->showMessage({parts.join(QLatin1Char(' ')), hasList ? tr("Show why") : QString(),
                      [this, summary] { showRefused(summary); }, summary.refused.empty() ? kSummarySeconds : 0});
  if (summary.added > 0) {
    greeting_->hide();
  }
}

void LibraryWindow::showRefused(const ImportSummary& summary) {
  auto* const dialog = new QDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Files that cannot be played"));
  auto* const list = new QTreeWidget;
  list->setAccessibleName(dialog->windowTitle());
  list->setHeaderLabels({tr("File"), tr("Reason")});
  list->setRootIsDecorated(false);
  for (const auto& [file, reason] : summary.refused) {
    auto* const line = new QTreeWidgetItem(list, {QFileInfo(file).fileName(), reason});
    line->setToolTip(0, file);
    line->setToolTip(1, reason);
  }
  list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  auto* const lines = new QVBoxLayout(dialog);
  lines->addWidget(list);
  lines->addWidget(buttons);
  dialog->resize(640, 360);
  dialog->show();
}

}  // namespace quilex
