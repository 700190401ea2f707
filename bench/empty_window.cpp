// The peer of the start and idle benchmarks: nothing but a main window with docks, each with an empty view.
//   empty_window NUMBER_OF_DOCKS

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QTreeView>
#include <cstdio>
#include <cstdlib>

namespace {

QElapsedTimer& SinceStart() {
  static QElapsedTimer Timer;
  return Timer;
}

class CEmptyWindow : public QMainWindow {
protected:
  void paintEvent(QPaintEvent* pEvent) override {
    QMainWindow::paintEvent(pEvent);
    if (m_bPainted) return;
    m_bPainted = true;
    std::printf("First paint after %lld ms\n", SinceStart().elapsed());
    std::fflush(stdout);
  }

private:
  bool m_bPainted = false;
};

}  // namespace

int main(int argc, char** argv) {
  SinceStart().start();
  QApplication Application(argc, argv);
  CEmptyWindow Window;
  Window.resize(1024, 768);
  Window.setCentralWidget(new QPlainTextEdit);
  for (int i = argc > 1 ? std::atoi(argv[1]) : 1; i > 0; --i) {
    auto* const pDock = new QDockWidget(QStringLiteral("Dock %1").arg(i));
    pDock->setWidget(new QTreeView);
    Window.addDockWidget(Qt::BottomDockWidgetArea, pDock);
  }
  Window.show();
  return QApplication::exec();
}
