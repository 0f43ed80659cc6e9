// A window from which files can be dragged, as from a file manager: drag_source FILE...

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

class Source : public QWidget {
 public:
  explicit Source(QList<QUrl> files) : files_(std::move(files)) {
    setWindowTitle(QStringLiteral("drag_source"));
    setWindowFlag(Qt::FramelessWindowHint);
    setGeometry(0, 0, 100, 100);
  }

 protected:
  void mouseMoveEvent(QMouseEvent* /*event*/) override {
    auto* const dragged = new QMimeData;
    dragged->setUrls(files_);
    auto* const drag = new QDrag(this);
    drag->setMimeData(dragged);
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
  }

 private:
  QList<QUrl> files_;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QList<QUrl> files;
  for (int index = 1; index < argc; ++index) {
    files << QUrl::fromLocalFile(QString::fromLocal8Bit(argv[index]));
  }
  Source source(files);
  source.show();
  return QApplication::exec();
}
