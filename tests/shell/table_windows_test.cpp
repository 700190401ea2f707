// The tables of the program's contents in the running main window, over real programs.

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QTemporaryDir>

#include "device/breakpoints/breakpoint_manager.h"
#include "frame.h"
#include "program/database/elfapi.h"
#include "program/windows/functions_window.h"
#include "program/windows/source_files_window.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/table_windows.h"
#include "ui/table/filter_header_view.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"
#include "ui/table/tree_view.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

namespace {

const QString EXAMPLES = QStringLiteral(VEXOR_SOURCE_DIR "/examples/");

// The cells of the row whose first cell is this.
QStringList CellsOf(const CModelViewWindow& Window, const QString& sFirst) {
  for (const QString& sLine : Window.DumpText().split(u'\n')) {
    if (sLine.section(u'\t', 0, 0) == sFirst) return sLine.split(u'\t').mid(1);
  }
  return {};
}

}  // namespace

class CTableWindowsTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pMain = StartFrame());
    m_pFunctions = m_pMain->findChild<CFunctionsWindow*>();
    m_pFiles = m_pMain->findChild<CSourceFilesWindow*>();
    QVERIFY(m_pFunctions && m_pFiles);
    for (CModelViewWindow* const pWindow :
         {static_cast<CModelViewWindow*>(m_pFunctions), static_cast<CModelViewWindow*>(m_pFiles)}) {
      new QAbstractItemModelTester(pWindow->Model(), this);
      new QAbstractItemModelTester(pWindow->Proxy(), this);
    }
    PerformAction(ACTION_WINDOW_SHOW, u"Source Files"_s);
    PerformAction(ACTION_WINDOW_SHOW, u"Functions"_s);
    for (const char* const sFolder : {"traffic_light", "weather_station", "common"}) Copy(QLatin1String(sFolder));
  }
  void init() { Open(u"traffic_light"_s); }

  void functionsAsTheProgramFileHasThem() {
    QCOMPARE(CellsOf(*m_pFunctions, u"checksum"_s),
             (QStringList{u"0000\u200802C4"_s, u"64"_s, u"22"_s, QString(), u"statistics.c:49"_s}));
    QCOMPARE(CellsOf(*m_pFunctions, u"SysTick_Start"_s),
             (QStringList{QString(), QString(), QString(), QString(), u"systick.h:12"_s}));
    m_pFunctions->ExpandAll();
    QCOMPARE(CellsOf(*m_pFunctions, u"  inlined in:  main"_s),
             (QStringList{u"0000\u20080160"_s, u"18"_s, u"7"_s, QString(), u"main.c:42"_s}));
    Open(u"weather_station"_s);
    QCOMPARE(CellsOf(*m_pFunctions, u"station::Station::poll"_s).value(3), u"station::Station"_s);
    PerformAction(ACTION_EDIT_PREFERENCE, u"PREF_PREPEND_FUNC_CLASS_NAMES"_s, 0);
    QCOMPARE(CellsOf(*m_pFunctions, u"poll"_s).value(3), u"station::Station"_s);
    PerformAction(ACTION_EDIT_PREFERENCE, u"PREF_PREPEND_FUNC_CLASS_NAMES"_s, 1);
  }

  void aFunctionLeadsToItsSourceAndTakesBreakpoints() {
    Select(*m_pFunctions, u"checksum"_s);
    QTest::keyClick(m_pFunctions->View(), Qt::Key_Return);
    QCOMPARE(QFileInfo(m_pMain->Source().ActiveFile()).fileName(), u"statistics.c"_s);
    QCOMPARE(m_pMain->Source().CursorLine(), 49);
    m_pFunctions->setFocus();
    QVERIFY(IconOf(*m_pFunctions, u"checksum"_s).isNull());
    QTest::keyClick(m_pFunctions->View(), Qt::Key_F9);
    QTRY_VERIFY(!IconOf(*m_pFunctions, u"checksum"_s).isNull());
    QVERIFY(IconOf(*m_pFunctions, u"main"_s).isNull());
    BP Entry;
    QTRY_VERIFY(CBreakpointManager::Get().GetAt(0x2C4, Entry));
    PerformAction(ACTION_BREAK_SET, 0x2D0);
    QTRY_COMPARE(CBreakpointManager::Get().Rows().size(), 2);
    QTest::keyClick(m_pFunctions->View(), Qt::Key_F9);
    QTRY_VERIFY(CBreakpointManager::Get().IsEmpty());
    QTRY_VERIFY(IconOf(*m_pFunctions, u"checksum"_s).isNull());
  }

  void filesAsTheProgramNamesThem() {
    QCOMPARE(CellsOf(*m_pFiles, u"main.c"_s),
             (QStringList{u"compiled"_s, u"302 bytes"_s, u"103"_s, m_Dir.filePath(u"traffic_light/src/main.c"_s)}));
    QCOMPARE(CellsOf(*m_pFiles, u"traffic.h"_s).mid(0, 3), (QStringList{u"included"_s, QString(), QString()}));
    Select(*m_pFiles, u"traffic.c"_s);
    m_pMain->Source().CloseAll();
    QTest::keyClick(m_pFiles->View(), Qt::Key_Space);
    QCOMPARE(m_pMain->Source().ActiveFile(), m_Dir.filePath(u"traffic_light/src/traffic.c"_s));
  }

  void aMissingFileIsFoundByItsNewPath() {
    const QString sHome = m_Dir.filePath(u"traffic_light/src/traffic.c"_s), sMoved = m_Dir.filePath(u"moved.c"_s);
    QVERIFY(QFile::rename(sHome, sMoved));
    Open(u"traffic_light"_s);
    CToolTip::PAIRS Pairs;
    QCOMPARE(m_pFiles->GetItemTooltip(Find(*m_pFiles, u"traffic.c"_s), Pairs), u"traffic.c"_s);
    QVERIFY(Pairs.contains(qMakePair(u"Status"_s, u"missing"_s)));
    QSignalSpy Changed(m_pFiles->Model(), &QAbstractItemModel::dataChanged);
    const QModelIndex Path = Find(*m_pFiles, u"traffic.c"_s).siblingAtColumn(4);
    QVERIFY(!m_pFiles->Model()->setData(Path, Path.data()));
    QVERIFY(m_pFiles->Model()->setData(Path, sMoved));
    QVERIFY(!Changed.isEmpty());
    QCOMPARE(CellsOf(*m_pFiles, u"traffic.c"_s).value(3), sMoved);
    Pairs.clear();
    m_pFiles->GetItemTooltip(Find(*m_pFiles, u"traffic.c"_s), Pairs);
    QVERIFY(Pairs.contains(qMakePair(u"Status"_s, u"compiled"_s)));
    QVERIFY(QFile::rename(sMoved, sHome));
  }

  // Selection and expansion outlive a reload; another program has its own.
  void aReloadKeepsWhatTheUserChose() {
    m_pFunctions->CollapseAll();
    m_pFunctions->View()->expand(m_pFunctions->Proxy()->mapFromSource(Find(*m_pFunctions, u"SysTick_Start"_s)));
    Select(*m_pFunctions, u"sort"_s);
    for (const bool bOther : {false, true}) {
      if (bOther) {
        PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"weather_station/weather_station.elf"_s));
        QVERIFY(!Find(*m_pFunctions, u"checksum"_s).isValid());
      }
      PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"traffic_light/traffic_light.elf"_s));
      QCOMPARE(m_pFunctions->GetCurrentItem().data().toString(), u"sort"_s);
      QVERIFY(m_pFunctions->DumpText().contains(u"  inlined in:  main"_s));
    }
  }

  void columnsComeBackWithTheProjectAndWithTheSettings() {
    CTableHeader& Header = *m_pFunctions->Header();
    Header.resizeSection(0, 177);
    Header.moveSection(Header.visualIndex(5), 1);
    Header.SetSectionVisible(4, false);
    Header.setSortIndicator(2, Qt::DescendingOrder);
    const TABLE_HEADER_RECORD Wanted = m_pFunctions->GetHeaderRecord();
    const QString sFirst = m_pFunctions->DumpText().section(u'\n', 1, 1);
    const QString sUserFile = m_Dir.filePath(u"layout.user"_s);
    StoreTableHeaders(m_pMain->GetWindowList());
    m_pMain->SaveUserFile(sUserFile);
    Disturb(Header);
    m_pMain->LoadUserFile(sUserFile);
    QCOMPARE(m_pFunctions->GetHeaderRecord().VisibleCols, Wanted.VisibleCols);
    QCOMPARE(m_pFunctions->GetHeaderRecord().ColWidths.value(0), 177);
    QCOMPARE(m_pFunctions->DumpText().section(u'\n', 1, 1), sFirst);
    Disturb(Header);
    LoadTableHeaders(m_pMain->GetWindowList());
    QCOMPARE(m_pFunctions->GetHeaderRecord().VisibleCols, Wanted.VisibleCols);
    QCOMPARE(m_pFunctions->DumpText().section(u'\n', 1, 1), sFirst);
  }

  void withoutAProgramTheTablesAreEmpty() {
    QVERIFY(m_pFunctions->FilterBar()->isVisible());
    PerformAction(ACTION_FILE_NEW_PROJECT);
    QTRY_VERIFY(m_pFunctions->IsEmpty() && m_pFiles->IsEmpty());
    QVERIFY(!m_pFunctions->FilterBar()->isVisible() && !m_pFunctions->View()->isVisible());
  }

private:
  void Copy(const QString& sFolder) {
    QVERIFY(QDir(m_Dir.path()).mkpath(sFolder + u"/src"_s));
    for (const QString& sPart : {QString(), u"src/"_s}) {
      const QDir From(EXAMPLES + sFolder + u'/' + sPart);
      for (const QString& sName : From.entryList(QDir::Files)) {
        QVERIFY(QFile::copy(From.filePath(sName), m_Dir.filePath(sFolder + u'/' + sPart + sName)));
      }
    }
  }
  void Open(const QString& sName) {
    PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(sName + u'/' + sName + u".vdebug"_s));
    QTRY_VERIFY(m_pMain->IsIdle() && ELFAPI_GetFilePath() == m_Dir.filePath(sName + u'/' + sName + u".elf"_s));
  }
  static void Disturb(CTableHeader& Header) {
    Header.SetSectionVisible(4, true);
    Header.moveSection(0, 3);
    Header.resizeSection(0, 50);
    Header.setSortIndicator(-1, Qt::AscendingOrder);
  }
  static QModelIndex Find(const CModelViewWindow& Window, const QString& sName) {
    return Window.Model()->match(Window.Model()->index(0, 0), Qt::DisplayRole, sName, 1, Qt::MatchExactly).value(0);
  }
  static QIcon IconOf(const CModelViewWindow& Window, const QString& sName) {
    return Find(Window, sName).data(Qt::DecorationRole).value<QIcon>();
  }
  static void Select(CModelViewWindow& Window, const QString& sName) {
    Window.setFocus();
    Window.SelectItem(Find(Window, sName));
  }

  CMainWindow* m_pMain = nullptr;
  CFunctionsWindow* m_pFunctions = nullptr;
  CSourceFilesWindow* m_pFiles = nullptr;
  QTemporaryDir m_Dir;
};

QTEST_MAIN(CTableWindowsTest)
#include "table_windows_test.moc"
