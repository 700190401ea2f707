// The editor of the system variables as a user meets it: opened by its key, driven by clicks and keys.

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>

#include "device/device_context.h"
#include "drive.h"
#include "session.h"
#include "shell/actions/command_console.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "ui/table_widget.h"

using namespace Qt::StringLiterals;

namespace {

// A row of the table and what the user chooses for it; or types, and what is then in the cell and in the console. Of
// what is chosen from a menu an entry with an ampersand and one of many.
struct VARIABLE_CASE {
  const char* sTitle;
  const char* sName;
  const char* sInput;
  const char* sCell;
  const char* sEchoed;
};
const VARIABLE_CASE VARIABLES[] = {
    {"Reset Mode", "RESET_MODE", "Reset & Run"},
    {"Target Interface Speed", "TIF_SPEED", "8 MHz"},
    {"JTAG Scan-Chain Length", "TIF_SCAN_CHAIN_LEN", "0x10", "16", "16"},
    {"SWO CPU Frequency Parameter", "SWO_CPU_SPEED", "2.5 MHz", "2500000 Hz", "2500000"},
    {"SWO Data Transmission Speed", "SWO_SPEED", "2000000", "2 MHz", "FREQ_2_MHZ"},
    {"Break at this Symbol on Debug Session Start", "BREAK_AT_THIS_SYMBOL", "start_up", "start_up", "\"start_up\""},
    {"Trace Port Data Line 0 Delay [ps]", "TRACE_PORT_DELAY_0", "1234", "1200", "1200"},
    {"Trace Port Data Line 1 Delay [ps]", "TRACE_PORT_DELAY_1", "49", "0", "0"},
    {"Trace Port Data Line 2 Delay [ps]", "TRACE_PORT_DELAY_2", "-1", "-50", "-50"},
    {"Trace Port Data Line 3 Delay [ps]", "TRACE_PORT_DELAY_3", "100000", "100000", "100000"},
};

QTableWidgetItem* FindValue(QWidget* pDialog, const char* sTitle) {
  const auto* const pTable = pDialog->findChild<CTableWidget*>();
  const QList<QTableWidgetItem*> Found = pTable->findItems(QLatin1String(sTitle), Qt::MatchExactly);
  return Found.size() == 1 ? pTable->item(Found.first()->row(), 1) : nullptr;
}

void Click(QTableWidgetItem* pItem) {
  QTableWidget* const pTable = pItem->tableWidget();
  pTable->scrollToItem(pItem);
  QTest::mouseClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, pTable->visualItemRect(pItem).center());
}

// Menus double the "&" of texts, which would mark a key.
void Choose(QTableWidgetItem* pItem, const QString& sEntry) {
  WhenPopup([&](QWidget* pPopup) {
    QPoint Pos(-1, -1);
    for (QAction* const pEntry : pPopup->actions()) {
      QCOMPARE(pEntry->isChecked(), pEntry->text() == pItem->text().replace('&', "&&"));
      if (pEntry->text() == QString(sEntry).replace('&', "&&"))
        Pos = qobject_cast<QMenu*>(pPopup)->actionGeometry(pEntry).center();
    }
    QTest::mouseClick(pPopup, Qt::LeftButton, Qt::NoModifier, Pos);
  });
  Click(pItem);
}

void Type(QTableWidgetItem* pItem, const QString& sText) {
  Click(pItem);
  auto* const pInput = pItem->tableWidget()->viewport()->findChild<QLineEdit*>();
  QVERIFY(pInput);
  TypeOver(pInput, sText);
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

class CSysVarsEditorTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }
  void init() {
    ResetVars();
    m_Session.ClearConsole();
  }

  void everyVariableIsChosenOrTyped() {
    InDialog([this](QWidget* pDialog) {
      const CTableWidget* const pTable = pDialog->findChild<CTableWidget*>();
      QStringList Titles;
      for (int Row = 0; Row < pTable->rowCount(); ++Row) Titles << pTable->item(Row, 0)->text().toLower();
      QVERIFY(Titles.size() == 22 && std::ranges::is_sorted(Titles));
      QVERIFY2(pDialog->width() >= pTable->columnWidth(0) + pTable->columnWidth(1), "the columns are cut off");
      for (const VARIABLE_CASE& Case : VARIABLES) {
        CheckVariable(FindValue(pDialog, Case.sTitle), Case);
        if (QTest::currentTestFailed()) return qWarning("%s", Case.sTitle);
      }
    });
  }

  void aWrongTextIsRefused() {
    InDialog([this](QWidget* pDialog) {
      QTableWidgetItem* const pValue = FindValue(pDialog, "JTAG Scan-Chain Length");
      const QString sBefore = pValue->text();
      Type(pValue, "1000000001");
      QCOMPARE(pValue->text(), sBefore);
      QCOMPARE(GetVarText(GetVarInfo(VAR_TIF_SCAN_CHAIN_LEN)), sBefore);
      QCOMPARE(m_Session.LastLine(),
               "Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 1000000001): invalid parameter: \"1000000001\"");
    });
  }

  void columnsStayAsTheUserLeftThem() {
    const SETTING_GROUP Group = {u"AppData"_s, u"SysVarsEditor"_s};
    const auto Header = [](QWidget* pDialog) {
      QApplication::processEvents();
      return pDialog->findChild<CTableWidget*>()->horizontalHeader();
    };
    InDialog([&](QWidget* pDialog) { Header(pDialog); });
    QVERIFY2(!HasSetting(Group, u"TableHeader"_s), "nobody changed a column yet");
    InDialog([&](QWidget* pDialog) { Header(pDialog)->resizeSection(0, 333); });
    InDialog([&](QWidget* pDialog) { QCOMPARE(Header(pDialog)->sectionSize(0), 333); });
  }

  void keysAloneAreEnough() {
    InDialog([](QWidget* pDialog) {
      CTableWidget* const pTable = pDialog->findChild<CTableWidget*>();
      QTRY_VERIFY2(pTable->hasFocus(), "the table has the focus at the start");
      const QTableWidgetItem* const pWidth = FindValue(pDialog, "Trace Port Width");
      for (int i = 0; i < 22 && pTable->currentRow() != pWidth->row(); ++i) QTest::keyClick(pTable, Qt::Key_Down);
      QCOMPARE(pTable->currentRow(), pWidth->row());
      WhenPopup([](QWidget* pMenu) {
        QTRY_VERIFY(qobject_cast<QMenu*>(pMenu)->activeAction());
        QTest::keyClick(pMenu, Qt::Key_Up);
        QTest::keyClick(pMenu, Qt::Key_Return);
      });
      QTest::keyClick(pTable, Qt::Key_Return);
      QCOMPARE(pWidth->text(), "2 bit");
      QVERIFY2(pDialog->isVisible(), "Return edits and doesn't close");
    });
  }

  void commandsReachTheEditorAndTheDevice() {
    InDialog([](QWidget* pDialog) {
      // A speed that the list of entries doesn't have.
      ExecuteCommand("Project.SetTIFSpeed (\"1500 kHz\")");
      ExecuteCommand("Edit.SysVar (VAR_TRACE_SOURCE, SWO)");
      QCOMPARE(FindValue(pDialog, "Trace Source")->text(), "SWO");
      QCOMPARE(FindValue(pDialog, "Target Interface Speed")->text(), "1500000");
    });
    ExecuteCommand("Edit.SysVar (VAR_TIF_SCAN_CHAIN_POS, 5)");
    ExecuteCommand("Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 9)");
    ExecuteCommand("Edit.SysVar (VAR_TIF_SPEED, \"2 MHz\")");
    const CDeviceConfig& Config = CDevice::Get().Context().Config;
    const QList<I64> Values = {Config.Value(DCP_DR_PRE), Config.Value(DCP_IR_PRE), Config.Value(DCP_SPEED)};
    QCOMPARE(Values, (QList<I64>{5, 9, 2'000'000}));
  }

private:
  void InDialog(const std::function<void(QWidget*)>& Drive) { m_Session.RunDialog(Qt::Key_V, Drive); }

  void CheckVariable(QTableWidgetItem* pValue, const VARIABLE_CASE& Case) {
    QVERIFY(pValue);
    const bool bChosen = Case.sCell == nullptr;
    const QString sCell = bChosen ? Case.sInput : Case.sCell;
    const QString sName = u"VAR_"_s + Case.sName;
    QVERIFY2(pValue->text() != sCell, "nothing to change");
    (bChosen ? Choose : Type)(pValue, Case.sInput);
    QCOMPARE(pValue->text(), sCell);
    const QString sEchoed = bChosen ? u'"' + sCell + u'"' : Case.sEchoed;
    QCOMPARE(m_Session.LastLine(), u"Edit.SysVar (%1, %2);"_s.arg(sName, sEchoed));
    QCOMPARE(GetVarText(FindVar(sName)), sCell);
  }

  CSession m_Session;
};

QTEST_MAIN(CSysVarsEditorTest)
#include "sys_vars_editor_test.moc"
