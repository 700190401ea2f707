// A table window over a tree, by mouse and keys.

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "device/device_data_provider.h"
#include "sample_model.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/var_ids.h"
#include "ui/table/filter_header_dialog.h"
#include "ui/table/filter_header_view.h"
#include "ui/table/model_view_window.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"
#include "ui/table/tree_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int STATE_ID = 7;

class CSampleWindow : public CModelViewWindow {
public:
  CSampleWindow() : CModelViewWindow(nullptr, u"Sample"_s, new CSampleModel) {
    Init();
    SetFlag(WF_FILTER_BAR, true);
  }
  CSampleModel& Sample() { return *static_cast<CSampleModel*>(pModel); }
  void OnItemDoubleClicked(const QModelIndex& Index) override { Opened << Index.data().toString(); }
  void OnItemAboutToExpand(const QModelIndex& Index) override { Asked << Index.data().toString(); }
  using CModelViewWindow::AddCommonEntries;

  QStringList Opened;
  QStringList Asked;
};

}  // namespace

class CTableWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    CDeviceDataProvider::Get();
  }
  void init() {
    m_pWindow = std::make_unique<CSampleWindow>();
    m_pTester = std::make_unique<QAbstractItemModelTester>(m_pWindow->Proxy());
    m_pWindow->Sample().Fill(u"pear=3[q=2,p=1],Apple=16,fig=3,cherry=255[z=1[zz=1]]"_s);
    m_pWindow->resize(600, 300);
    m_pWindow->show();
    m_pWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));
    QTRY_VERIFY(!Cell(0)->geometry().isEmpty());
  }
  void cleanup() {
    m_pTester.reset();
    m_pWindow.reset();
  }

  void aFilterIsAppliedWhenTheEditEnds() {
    Type(0, "e");
    QCOMPARE(Rows(), u"pear Apple fig cherry"_s);
    QTest::keyClick(Cell(0), Qt::Key_Return);
    QCOMPARE(Rows(), u"pear Apple cherry"_s);
    Type(1, "< 100");
    QTest::keyClick(Cell(1), Qt::Key_Tab);
    QCOMPARE(Rows(), u"pear Apple"_s);
    Type(1, "7");
    QTest::keyClick(Cell(1), Qt::Key_Escape);
    QCOMPARE(Cell(1)->text(), u"< 100"_s);
    QCOMPARE(Rows(), u"pear Apple"_s);
    m_pWindow->FilterBar()->OnActionClearAllFiltersTriggered();
    QVERIFY(Cell(0)->text().isEmpty() && Cell(1)->text().isEmpty());
    QCOMPARE(Rows(), u"pear Apple fig cherry"_s);
  }

  void theArrowKeysLeadIntoTheBarAndBack() {
    ClickItem(u"Apple"_s, 1);
    QTest::keyClick(m_pWindow->View(), Qt::Key_Up);
    QVERIFY(m_pWindow->View()->hasFocus());
    QTest::keyClick(m_pWindow->View(), Qt::Key_Up);
    QVERIFY(Cell(1)->hasFocus());
    QTest::keyClicks(Cell(1), u">3"_s);
    QTest::keyClick(Cell(1), Qt::Key_Down);
    QVERIFY(m_pWindow->View()->hasFocus());
    QCOMPARE(m_pWindow->View()->currentIndex(), m_pWindow->Proxy()->index(0, 1));
    QCOMPARE(Rows(), u"Apple cherry"_s);
  }

  void cellsStandAboveTheirColumns() {
    m_pWindow->Header()->resizeSection(0, 150);
    m_pWindow->Header()->moveSection(2, 0);
    m_pWindow->Header()->SetSectionVisible(1, false);
    for (const int Column : {0, 2}) {
      QTRY_COMPARE(Cell(Column)->geometry().left(), m_pWindow->Header()->sectionViewportPosition(Column));
      QCOMPARE(Cell(Column)->width(), m_pWindow->Header()->sectionSize(Column));
    }
    QVERIFY(!Cell(1)->isVisible());
  }

  // Also those that a filter has hidden meanwhile.
  void expansionAndSelectionSurvive() {
    ClickBranch(u"pear"_s);
    ClickBranch(u"cherry"_s);
    QCOMPARE(m_pWindow->Asked, (QStringList{u"pear"_s, u"cherry"_s}));
    ClickItem(u"p"_s);
    ClickHeader(0);
    QCOMPARE(Rows(), u"Apple cherry( z) fig pear( p q)"_s);
    QCOMPARE(m_pWindow->GetCurrentItem().data().toString(), u"p"_s);
    SetFilter(0, "a");
    QCOMPARE(Rows(), u"Apple pear( p q)"_s);
    QCOMPARE(m_pWindow->GetCurrentItem().data().toString(), u"p"_s);
    SetFilter(0, "fig");
    QVERIFY(!m_pWindow->GetCurrentItem().isValid() && m_pWindow->View()->selectionModel()->selection().isEmpty());
    SetFilter(0, "");
    QCOMPARE(Rows(), u"Apple cherry( z) fig pear( p q)"_s);
    QCOMPARE(m_pWindow->GetCurrentItem().data().toString(), u"p"_s);
    QVERIFY(m_pWindow->View()->selectionModel()->isSelected(m_pWindow->View()->currentIndex()));
    ClickBranch(u"pear"_s);
    SetFilter(0, "fig");
    SetFilter(0, "");
    QCOMPARE(Rows(), u"Apple cherry( z) fig pear"_s);
  }

  void theCurrentRowStaysInItsPlace() {
    QString sRows;
    for (int i = 0; i < 500; ++i) sRows += u"r%1=%2,"_s.arg(i, 3, 10, QLatin1Char('0')).arg((i * 7) % 500);
    m_pWindow->Sample().Fill(sRows);
    m_pWindow->View()->LayOutNow();
    m_pWindow->View()->verticalScrollBar()->setValue(300);
    ClickItem(u"r305"_s);
    const int Top = TopOf(u"r305"_s);
    ClickHeader(1);
    QCOMPARE(TopOf(u"r305"_s), Top);
    SetFilter(0, "5");
    QCOMPARE(TopOf(u"r305"_s), Top);
    SetFilter(0, "");
    QCOMPARE(TopOf(u"r305"_s), Top);
  }

  void theHeaderMenuHidesAColumn() {
    QMenu Menu;
    m_pWindow->Header()->AddColumnEntries(&Menu);
    QStringList Titles;
    for (const QAction* const pEntry : Menu.actions()) Titles << pEntry->text();
    QCOMPARE(Titles, (QStringList{u"Count"_s, u"Addr"_s}));
    SetFilter(1, "3");
    Menu.actions().constFirst()->trigger();
    QVERIFY(m_pWindow->Header()->isSectionHidden(1));
    QCOMPARE(Rows(), u"pear Apple fig cherry"_s);
    Menu.actions().constFirst()->trigger();
    QVERIFY(!m_pWindow->Header()->isSectionHidden(1));
  }

  void damagedRecordsLeaveAColumn() {
    // Titles that are gone, too few widths and a header without columns do no harm.
    for (const char* const sRecord :
         {"VisibleCols=[\"Gone\"], ColWidths=[5]", "VisibleCols=[\"Name\";\"Count\"], ColWidths=[40]",
          "SortCol=\"Gone\", VisibleCols=[], ColWidths=[]"}) {
      m_pWindow->SetHeaderRecord(
          ParseUserFile(u"TableHeader=\"Sample\", "_s + QLatin1String(sRecord)).TableHeaders.value(0));
      QVERIFY(m_pWindow->Header()->count() - m_pWindow->Header()->hiddenSectionCount() > 0);
    }
  }

  void theBarIsShownWhereItHelps() {
    CFilterHeaderView* const pBar = m_pWindow->FilterBar();
    QVERIFY(pBar->isVisible());
    SetFilter(0, "nothing is called so");
    QVERIFY(pBar->isVisible());
    m_pWindow->OnActionToggleFilterBarTriggered();
    QVERIFY(!pBar->isVisible());
    QCOMPARE(Rows(), u"pear Apple fig cherry"_s);
    m_pWindow->OnActionToggleFilterBarTriggered();
    m_pWindow->SetPreference(PREF_FILTER_BARS_DISABLED, 1);
    QVERIFY(!pBar->isVisible());
    m_pWindow->hide();
    m_pWindow->show();
    QVERIFY(!pBar->isVisible());
    m_pWindow->SetPreference(PREF_FILTER_BARS_DISABLED, 0);
    QVERIFY(pBar->isVisible());
    m_pWindow->Sample().Fill(QString());
    QVERIFY(!pBar->isVisible() && !m_pWindow->View()->isVisible() && m_pWindow->IsEmpty());
    m_pWindow->Sample().Fill(u"a=1"_s);
    QVERIFY(pBar->isVisible() && m_pWindow->View()->isVisible());
  }

  void statesComeBackByKey() {
    ClickBranch(u"cherry"_s);
    ClickBranch(u"z"_s);
    ClickItem(u"fig"_s);
    ClickHeader(1);
    m_pWindow->BackupState(STATE_ID);
    m_pWindow->Sample().Fill(u"new=1,cherry=2[z=1[zz=1],y=0],pear=1[q=1]"_s);
    ClickHeader(0);
    m_pWindow->RestoreState(STATE_ID, RESTORE_NO_HEADER);
    QCOMPARE(Rows(), u"cherry( y z( zz)) new pear"_s);
    QVERIFY(!m_pWindow->GetCurrentItem().isValid());
    m_pWindow->Sample().Fill(u"fig=1,Apple=2"_s);
    m_pWindow->RestoreState(STATE_ID, 0);
    QCOMPARE(Rows(), u"fig Apple"_s);
    QCOMPARE(m_pWindow->GetCurrentItem().data().toString(), u"fig"_s);
    m_pWindow->ClearStateBackup();
    ClickHeader(0);
    m_pWindow->RestoreState(STATE_ID, 0);
    QCOMPARE(Rows(), u"Apple fig"_s);
  }

  void keysOfTheTree() {
    ClickItem(u"cherry"_s);
    const std::tuple<Qt::Key, const char*, const char*> STEPS[] = {
        {Qt::Key_Plus, "pear Apple fig cherry( z)", "cherry"},  {Qt::Key_Minus, "pear Apple fig cherry", "cherry"},
        {Qt::Key_Right, "pear Apple fig cherry( z)", "cherry"}, {Qt::Key_Right, "pear Apple fig cherry( z)", "z"},
        {Qt::Key_Right, "pear Apple fig cherry( z( zz))", "z"}, {Qt::Key_Left, "pear Apple fig cherry( z)", "z"},
        {Qt::Key_Left, "pear Apple fig cherry( z)", "cherry"},  {Qt::Key_Left, "pear Apple fig cherry", "cherry"},
    };
    for (const auto& [Key, sRows, sCurrent] : STEPS) {
      QTest::keyClick(m_pWindow->View(), Key);
      QCOMPARE(Rows(), QLatin1String(sRows));
      QCOMPARE(m_pWindow->GetCurrentItem().data().toString(), QLatin1String(sCurrent));
    }
    QTest::keyClick(m_pWindow->View(), Qt::Key_Return);
    DoubleClickItem(u"Apple"_s, 0);
    QCOMPARE(m_pWindow->Opened, (QStringList{u"cherry"_s, u"Apple"_s}));
    m_pWindow->ExpandAll();
    QCOMPARE(Rows(), u"pear( q p) Apple fig cherry( z( zz))"_s);
    m_pWindow->CollapseAll();
    QCOMPARE(Rows(), u"pear Apple fig cherry"_s);
  }

  void anEditorTakesReturnAndNotEscape() {
    for (const bool bKeep : {false, true}) {
      bKeep ? DoubleClickItem(u"fig"_s, 1) : ClickItem(u"fig"_s, 1);
      if (!bKeep) QTest::keyClick(m_pWindow->View(), Qt::Key_Return);
      auto* const pEditor = m_pWindow->View()->viewport()->findChild<QLineEdit*>();
      QVERIFY(pEditor && m_pWindow->Opened.isEmpty());
      QTest::keyClicks(pEditor, u"99"_s);
      QTest::keyClick(pEditor, bKeep ? Qt::Key_Return : Qt::Key_Escape);
      QTRY_COMPARE(m_pWindow->Sample().Find(u"fig"_s).siblingAtColumn(1).data().toString(), bKeep ? u"99"_s : u"3"_s);
      QTRY_VERIFY(!m_pWindow->View()->viewport()->findChild<QLineEdit*>());
    }
    m_pWindow->SetActive(false);
    QVERIFY(!(m_pWindow->View()->currentIndex().siblingAtColumn(1).flags() & Qt::ItemIsEditable));
  }

  void rangesOfTheDialog() {
    // A filter, the ends of its range, and the filter that they make.
    const std::tuple<const char*, const char*, const char*, const char*> ROWS[] = {{"*", "", "", "*"},
                                                                                   {"10 - 20", "10", "20", "10 - 20"},
                                                                                   {">= 5", "5", "", ">= 5"},
                                                                                   {"<= -5", "", "-5", "<= -5"},
                                                                                   {"7", "7", "7", "7 - 7"},
                                                                                   {"nonsense", "", "", "*"},
                                                                                   {"20 - 10", "20", "10", "20 - 10"}};
    for (const auto& [sFilter, sMin, sMax, sMade] : ROWS) {
      CFilterHeaderDialog Dialog(nullptr, u"Count"_s, COLUMN_INTEGER);
      Dialog.SetFilter(QLatin1String(sFilter));
      const QList<QLineEdit*> Fields = Dialog.findChildren<QLineEdit*>();
      QCOMPARE(Fields.value(0)->text(), QLatin1String(sMin));
      QCOMPARE(Fields.value(1)->text(), QLatin1String(sMax));
      QCOMPARE(Dialog.GetFilter(), QLatin1String(sMade));
      QPushButton* const pOk = Dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
      QCOMPARE(pOk->isEnabled(), qstrcmp(sMin, "20") != 0);
      QTest::keyClicks(Fields[0], u"x"_s);
      QVERIFY(!pOk->isEnabled());
    }
  }

private:
  QLineEdit* Cell(int Column) const { return m_pWindow->FilterBar()->Cell(Column); }
  void Type(int Column, const char* sText) {
    QTest::mouseClick(Cell(Column), Qt::LeftButton);
    Cell(Column)->selectAll();
    QTest::keyClicks(Cell(Column), QLatin1String(sText));
  }
  void SetFilter(int Column, const char* sText) { m_pWindow->SetFilter(Column, QLatin1String(sText)); }
  void ClickHeader(int Column) {
    CTableHeader* const pHeader = m_pWindow->Header();
    QTest::mouseClick(
        pHeader->viewport(), Qt::LeftButton, {},
        QPoint(pHeader->sectionViewportPosition(Column) + pHeader->sectionSize(Column) / 2, pHeader->height() / 2));
  }
  QModelIndex Shown(const QString& sName, int Column = 0) {
    return m_pWindow->Proxy()->mapFromSource(m_pWindow->Sample().Find(sName)).siblingAtColumn(Column);
  }
  QPoint CenterOf(const QString& sName, int Column) {
    return m_pWindow->View()->visualRect(Shown(sName, Column)).center();
  }
  int TopOf(const QString& sName) { return m_pWindow->View()->visualRect(Shown(sName)).top(); }
  void ClickItem(const QString& sName, int Column = 0) {
    QTest::mouseClick(m_pWindow->View()->viewport(), Qt::LeftButton, {}, CenterOf(sName, Column));
  }
  void DoubleClickItem(const QString& sName, int Column) {
    ClickItem(sName, Column);
    QTest::mouseDClick(m_pWindow->View()->viewport(), Qt::LeftButton, {}, CenterOf(sName, Column));
  }
  void ClickBranch(const QString& sName) {
    const QRect Rect = m_pWindow->View()->visualRect(Shown(sName));
    QTest::mouseClick(m_pWindow->View()->viewport(), Qt::LeftButton, {},
                      QPoint(Rect.left() - m_pWindow->View()->indentation() / 2, Rect.center().y()));
  }
  // The names that can be seen, children between brackets.
  QString Rows(const QModelIndex& Parent = QModelIndex()) const {
    QStringList Names;
    for (int Row = 0; Row < m_pWindow->Proxy()->rowCount(Parent); ++Row) {
      const QModelIndex Item = m_pWindow->Proxy()->index(Row, 0, Parent);
      Names << Item.data().toString() + (m_pWindow->View()->isExpanded(Item) ? u"( "_s + Rows(Item) + u')' : QString());
    }
    return Names.join(u' ');
  }

  std::unique_ptr<CSampleWindow> m_pWindow;
  std::unique_ptr<QAbstractItemModelTester> m_pTester;
};

QTEST_MAIN(CTableWindowTest)
#include "table_window_test.moc"
