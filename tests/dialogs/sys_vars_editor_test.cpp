// The editor of the system variables as a user meets it: opened by its key, driven by clicks and keys.

#include <QLineEdit>
#include <QMenu>

#include "device/device_context.h"
#include "drive.h"
#include "session.h"
#include "shell/actions/command_console.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "ui/table_widget.h"

namespace {

enum HOW { CHOSEN, TYPED };

// A row of the table, what the user makes of it, and what is then in the cell and in the console.
struct VARIABLE_CASE {
  const char* sTitle;
  HOW How;
  const char* sInput;
  const char* sCell;
  const char* sEcho;
};
const VARIABLE_CASE VARIABLES[] = {
    {"Reset Mode", CHOSEN, "Reset & Run", "Reset & Run", "VAR_RESET_MODE, \"Reset & Run\""},
    {"Connection Mode", CHOSEN, "Attach & Halt Program", "Attach & Halt Program",
     "VAR_CONNECT_MODE, \"Attach & Halt Program\""},
    {"Enable / Disable Semihosting IO", CHOSEN, "yes", "yes", "VAR_SEMIHOSTING_ENABLED, \"yes\""},
    {"Enable / Disable RTT", CHOSEN, "yes", "yes", "VAR_RTT_ENABLED, \"yes\""},
    {"Target Interface Speed", CHOSEN, "8 MHz", "8 MHz", "VAR_TIF_SPEED, \"8 MHz\""},
    {"JTAG Scan-Chain Position", CHOSEN, "3", "3", "VAR_TIF_SCAN_CHAIN_POS, \"3\""},
    {"JTAG Scan-Chain Length", TYPED, "0x10", "16", "VAR_TIF_SCAN_CHAIN_LEN, 16"},
    {"SWO CPU Frequency Parameter", TYPED, "2.5 MHz", "2500000 Hz", "VAR_SWO_CPU_SPEED, 2500000"},
    {"SWO Data Transmission Speed", TYPED, "2000000", "2 MHz", "VAR_SWO_SPEED, FREQ_2_MHZ"},
    {"Memory Access Width", CHOSEN, "HalfWord", "HalfWord", "VAR_ACCESS_WIDTH, \"HalfWord\""},
    {"Allowed Breakpoint Implementation Type", CHOSEN, "Hardware", "Hardware", "VAR_BREAKPOINT_TYPE, \"Hardware\""},
    {"Verify Download of Program Images", CHOSEN, "no", "no", "VAR_VERIFY_DOWNLOAD, \"no\""},
    {"Break at this Symbol on Debug Session Start", TYPED, "start_up", "start_up",
     "VAR_BREAK_AT_THIS_SYMBOL, \"start_up\""},
    {"High Speed Sampling Speed", CHOSEN, "max", "max", "VAR_HSS_SPEED, \"max\""},
    {"Trace Source", CHOSEN, "Trace Buffer", "Trace Buffer", "VAR_TRACE_SOURCE, \"Trace Buffer\""},
    {"Trace Port Width", CHOSEN, "1 bit", "1 bit", "VAR_TRACE_PORT_WIDTH, \"1 bit\""},
    {"Trace Port Data Line 0 Delay [ps]", TYPED, "1234", "1200", "VAR_TRACE_PORT_DELAY_0, 1200"},
    {"Trace Port Data Line 1 Delay [ps]", TYPED, "49", "0", "VAR_TRACE_PORT_DELAY_1, 0"},
    {"Trace Port Data Line 2 Delay [ps]", TYPED, "-1", "-50", "VAR_TRACE_PORT_DELAY_2, -50"},
    {"Trace Port Data Line 3 Delay [ps]", TYPED, "100000", "100000", "VAR_TRACE_PORT_DELAY_3, 100000"},
    {"Explicitly initialize trace cache on program attach", CHOSEN, "no", "no", "VAR_TRACE_INIT_ON_ATTACH, \"no\""},
    {"Allow debugging with modified source code", CHOSEN, "yes", "yes", "VAR_ALLOW_DEBUG_MODIFIED_SRC, \"yes\""},
};

CTableWidget* TableOf(QWidget* pDialog) {
  return pDialog->findChild<CTableWidget*>();
}

QTableWidgetItem* FindValue(QWidget* pDialog, const char* sTitle) {
  const QList<QTableWidgetItem*> Found = TableOf(pDialog)->findItems(QLatin1String(sTitle), Qt::MatchExactly);
  return Found.size() == 1 ? TableOf(pDialog)->item(Found.first()->row(), 1) : nullptr;
}

// An entry's text as a menu shows it: a single "&" marks a key.
QString ShownText(const QAction* pEntry) {
  QString sText = pEntry->text();
  return sText.replace(QLatin1String("&&"), QLatin1String("\n"))
      .remove(QLatin1Char('&'))
      .replace(QLatin1Char('\n'), QLatin1Char('&'));
}

void Click(QTableWidgetItem* pItem) {
  QTableWidget* const pTable = pItem->tableWidget();
  pTable->scrollToItem(pItem);
  QTest::mouseClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, pTable->visualItemRect(pItem).center());
}

void Choose(QTableWidgetItem* pItem, const QString& sEntry) {
  WhenPopup([&](QWidget* pPopup) {
    auto* const pMenu = qobject_cast<QMenu*>(pPopup);
    QVERIFY(pMenu);
    for (QAction* const pEntry : pMenu->actions()) {
      QCOMPARE(pEntry->isChecked(), ShownText(pEntry) == pItem->text());
    }
    for (QAction* const pEntry : pMenu->actions()) {
      if (ShownText(pEntry) != sEntry) continue;
      QTest::mouseClick(pMenu, Qt::LeftButton, Qt::NoModifier, pMenu->actionGeometry(pEntry).center());
      return;
    }
    QFAIL("no such entry");
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
  void init();
  void listsAllVariablesByName();
  void everyVariableIsChosenOrTyped();
  void wrongTextsAreRefused();
  void keysAloneAreEnough();
  void showsWhatCommandsChangeMeanwhile();
  void speedAndScanChainAreTheDevices();
  void cleanupTestCase() { m_Session.End(); }

private:
  void InDialog(const std::function<void(QWidget*)>& Drive) { m_Session.RunDialog(Qt::Key_V, Drive); }
  void CheckVariable(QWidget* pDialog, const VARIABLE_CASE& Case);

  CSession m_Session;
};

void CSysVarsEditorTest::init() {
  ResetVars();
  m_Session.ClearConsole();
}

void CSysVarsEditorTest::listsAllVariablesByName() {
  InDialog([](QWidget* pDialog) {
    const CTableWidget* const pTable = TableOf(pDialog);
    QCOMPARE(pTable->rowCount(), 22);
    for (int Row = 1; Row < pTable->rowCount(); ++Row) {
      QVERIFY(pTable->item(Row - 1, 0)->text().compare(pTable->item(Row, 0)->text(), Qt::CaseInsensitive) < 0);
    }
    QCOMPARE(FindValue(pDialog, "Break at this Symbol on Debug Session Start")->text(), QStringLiteral("main"));
    QCOMPARE(FindValue(pDialog, "High Speed Sampling Speed")->text(), QStringLiteral("1 kHz"));
    QVERIFY2(pDialog->width() >= pTable->columnWidth(0) + pTable->columnWidth(1), "the columns are cut off");
  });
}

void CSysVarsEditorTest::CheckVariable(QWidget* pDialog, const VARIABLE_CASE& Case) {
  QTableWidgetItem* const pValue = FindValue(pDialog, Case.sTitle);
  QVERIFY(pValue);
  const QString sEcho = QStringLiteral("Edit.SysVar (%1);").arg(QLatin1String(Case.sEcho));
  const QString sBefore = pValue->text();
  QVERIFY2(sBefore != QLatin1String(Case.sCell), "nothing to change");
  if (Case.How == CHOSEN) {
    Choose(pValue, QLatin1String(Case.sInput));
  } else {
    Type(pValue, QLatin1String(Case.sInput));
  }
  QCOMPARE(pValue->text(), QLatin1String(Case.sCell));
  QCOMPARE(m_Session.LastLine(), sEcho);
  // The echo does the same again, and the editor shows it.
  const QString sName = QLatin1String(Case.sEcho).left(QString(QLatin1String(Case.sEcho)).indexOf(QLatin1Char(',')));
  QCOMPARE(GetVarText(FindVar(sName)), QLatin1String(Case.sCell));
  QVERIFY(SetVarFromText(FindVar(sName), sBefore, 0) >= 0);
  ExecuteCommand(sEcho);
  QCOMPARE(GetVarText(FindVar(sName)), QLatin1String(Case.sCell));
  QCOMPARE(m_Session.LastLine(), sEcho);
}

void CSysVarsEditorTest::everyVariableIsChosenOrTyped() {
  QCOMPARE(std::size(VARIABLES), size_t{FIRST_PREFERENCE});
  InDialog([this](QWidget* pDialog) {
    for (const VARIABLE_CASE& Case : VARIABLES) {
      CheckVariable(pDialog, Case);
      if (QTest::currentTestFailed()) return qWarning("%s", Case.sTitle);
    }
  });
}

void CSysVarsEditorTest::wrongTextsAreRefused() {
  struct WRONG_CASE {
    const char* sTitle;
    QString sInput;
    const char* sName;
  };
  const WRONG_CASE aCases[] = {
      {"JTAG Scan-Chain Length", QStringLiteral("1000000001"), "VAR_TIF_SCAN_CHAIN_LEN"},
      {"JTAG Scan-Chain Length", QStringLiteral("-1"), "VAR_TIF_SCAN_CHAIN_LEN"},
      {"SWO Data Transmission Speed", QStringLiteral("fast"), "VAR_SWO_SPEED"},
      {"SWO Data Transmission Speed", QStringLiteral("3 GHz"), "VAR_SWO_SPEED"},
      {"Trace Port Data Line 0 Delay [ps]", QStringLiteral("-100001"), "VAR_TRACE_PORT_DELAY_0"},
      {"Break at this Symbol on Debug Session Start", QString(101, QLatin1Char('x')), "VAR_BREAK_AT_THIS_SYMBOL"},
  };
  InDialog([&](QWidget* pDialog) {
    for (const WRONG_CASE& Case : aCases) {
      QTableWidgetItem* const pValue = FindValue(pDialog, Case.sTitle);
      const QString sBefore = pValue->text();
      Type(pValue, Case.sInput);
      QCOMPARE(pValue->text(), sBefore);
      QCOMPARE(GetVarText(FindVar(QLatin1String(Case.sName))), sBefore);
      const QString sLine = m_Session.LastLine();
      QVERIFY2(sLine.startsWith(QStringLiteral("Edit.SysVar (%1").arg(QLatin1String(Case.sName))), qPrintable(sLine));
      QVERIFY2(sLine.endsWith(QStringLiteral("invalid parameter: \"%1\"").arg(Case.sInput)), qPrintable(sLine));
    }
  });
}

void CSysVarsEditorTest::keysAloneAreEnough() {
  InDialog([this](QWidget* pDialog) {
    CTableWidget* const pTable = TableOf(pDialog);
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
    QCOMPARE(pWidth->text(), QStringLiteral("2 bit"));
    QVERIFY2(pDialog->isVisible(), "Return edits and doesn't close");
    QTest::keyClick(pDialog, Qt::Key_Escape);
    QVERIFY(!pDialog->isVisible());
  });
}

void CSysVarsEditorTest::showsWhatCommandsChangeMeanwhile() {
  InDialog([](QWidget* pDialog) {
    ExecuteCommand(QStringLiteral("Edit.SysVar (VAR_TRACE_SOURCE, SWO)"));
    QCOMPARE(FindValue(pDialog, "Trace Source")->text(), QStringLiteral("SWO"));
    // A speed that the list of entries doesn't have.
    ExecuteCommand(QStringLiteral("Project.SetTIFSpeed (\"1500 kHz\")"));
    ExecuteCommand(QStringLiteral("Edit.SysVar (VAR_TRACE_SOURCE, None)"));
    QCOMPARE(FindValue(pDialog, "Target Interface Speed")->text(), QStringLiteral("1500000"));
  });
}

void CSysVarsEditorTest::speedAndScanChainAreTheDevices() {
  const CDeviceConfig& Config = CDevice::Get().Context().Config;
  ExecuteCommand(QStringLiteral("Edit.SysVar (VAR_TIF_SCAN_CHAIN_POS, 5)"));
  ExecuteCommand(QStringLiteral("Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 9)"));
  ExecuteCommand(QStringLiteral("Edit.SysVar (VAR_TIF_SPEED, \"2 MHz\")"));
  QCOMPARE(Config.Value(DCP_DR_PRE), 5);
  QCOMPARE(Config.Value(DCP_IR_PRE), 9);
  QCOMPARE(Config.Value(DCP_SPEED), 2'000'000);
}

QTEST_MAIN(CSysVarsEditorTest)
#include "sys_vars_editor_test.moc"
