// A missing source is shown by the user, and the rest of its tree follows.

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTemporaryDir>

#include "../dialogs/drive.h"
#include "frame.h"
#include "program/database/file_finder.h"
#include "tests/common/write_file.h"
#include "ui/windows/locate_file.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

class CLocateFileTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QDir(m_Dir.path()).mkpath(u"moved/src/drivers"_s);
    for (const char* const sName : {"src/main", "src/drivers/uart", "other"}) {
      WriteFile(m_Dir.filePath(u"moved/%1.c"_s.arg(QLatin1String(sName))), sName);
    }
    QVERIFY(m_pWindow = StartFrame());
  }

  void init() {
    CFileFinder::Get()->Clear();
    m_pWindow->Source().CloseAll();
    m_pWindow->Console().Clear();
    m_pWindow->Source().Open(u"/build/agent/src/drivers/uart.c"_s);
    m_pWindow->Source().Open(u"/build/agent/src/main.c"_s);
    QVERIFY(Shown().startsWith(u"File not found"_s));
  }

  void oneShownFileLeadsToTheOthers() {
    WhenPopup([](QWidget* pMenu) {
      static_cast<QMenu*>(pMenu)->setActiveAction(pMenu->actions().last());
      QTest::keyClick(pMenu, Qt::Key_Return);
    });
    WhenModal([this](QWidget* pModal) {
      auto* const pDialog = qobject_cast<QFileDialog*>(pModal);
      QVERIFY(pDialog);
      QCOMPARE(pDialog->windowTitle(), u"Locate File"_s);
      QCOMPARE(pDialog->nameFilters(), (QStringList{u"Source Files (*.c)"_s, u"All Files (*)"_s}));
      pDialog->findChild<QLineEdit*>()->setText(Path("moved/src/main.c"));
      QTest::keyClick(pDialog->findChild<QLineEdit*>(), Qt::Key_Return);
    });
    QWidget* const pText = Editor().viewport();
    QContextMenuEvent Event(QContextMenuEvent::Mouse, QPoint(50, 50), pText->mapToGlobal(QPoint(50, 50)));
    QCoreApplication::sendEvent(pText, &Event);
    QCOMPARE(Shown(), u"src/main"_s);
    m_pWindow->Source().ShowNextDocument();
    QCOMPARE(Shown(), u"src/drivers/uart"_s);
    const QString sEcho = u"Project.AddPathSubstitute (\"/build/agent/\", \"%1/\");"_s.arg(Path("moved"));
    QVERIFY2(ConsoleText(*m_pWindow).contains(sEcho), qPrintable(ConsoleText(*m_pWindow)));
  }

  void onlyTheFileItselfIsTaken() {
    for (const auto& [sChosen, sError] : {std::pair("moved/other.c", u"file names do not match"_s),
                                          std::pair("moved/none/main.c", u"file not found"_s)}) {
      QVERIFY(!TakeLocatedFile(u"/build/agent/src/main.c"_s, Path(sChosen)));
      QVERIFY(ConsoleText(*m_pWindow).contains(sError));
      QVERIFY(Shown().startsWith(u"File not found"_s));
    }
  }

private:
  QString Path(const char* sName) const { return m_Dir.filePath(QLatin1String(sName)); }
  CSourceEditor& Editor() { return *m_pWindow->Source().findChild<CSourceEditor*>(); }
  QString Shown() {
    Editor().SelectAll();
    return Editor().SelectedText();
  }

  QTemporaryDir m_Dir;
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CLocateFileTest)
#include "locate_file_test.moc"
