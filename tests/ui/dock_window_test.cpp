#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "device/device.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/actions/command_console.h"
#include "shell/settings/settings_cache.h"
#include "ui/dock_window.h"
#include "ui/message_box.h"
#include "ui/window.h"

using namespace Qt::StringLiterals;

namespace {

// A window that counts what it is told.
class CCountingWindow : public CWindow {
public:
  CCountingWindow(QWidget* pParent, const char* sName) : CWindow(pParent, QLatin1String(sName)) {
    auto* const pInput = new QLineEdit(this);
    setCentralWidget(pInput);
    setFocusProxy(pInput);
    pInput->installEventFilter(this);
  }
  void Clear() override {
    ++NumClears;
    CWindow::Clear();
  }
  void Update(U32 NewPC) override { PCs << NewPC; }
  void OnTooltipRequested(const QPoint& Pos) override { TipPos = Pos; }
  void SetActionStyle(U32 ActionID, QAction* pAction) override { pAction->setText(QString::number(ActionID)); }
  bool IsEmpty() const override { return bEmpty; }

  int NumClears = 0;
  QList<U32> PCs;
  QPoint TipPos;
  bool bEmpty = false;
};

}  // namespace

// Two docks in a main window, as the shell makes them.
class CDockWindowTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }

  void init() {
    m_pMain = std::make_unique<QMainWindow>();
    m_pMain->setCentralWidget(new QWidget);
    const auto Add = [this](const char* sName) {
      auto* const pDock = new CDockWindow(QLatin1String(sName), QLatin1String(sName), m_pMain.get());
      m_pMain->addDockWidget(Qt::BottomDockWidgetArea, pDock);
      auto* const pWindow = new CCountingWindow(pDock, "Inner");
      QObject::connect(pDock, &QDockWidget::visibilityChanged, pWindow, &CWindow::VisibilityChanged);
      return pWindow;
    };
    m_pFirst = Add("First");
    m_pSecond = Add("Second");
    QVERIFY(m_pFirst->GetDock()->isHidden());
    m_pFirst->GetDock()->show();
    m_pSecond->GetDock()->show();
    m_pMain->resize(800, 600);
    m_pMain->show();
    m_pMain->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pMain.get()));
    QTest::qWait(0);
    for (CCountingWindow* const pWindow : {m_pFirst, m_pSecond}) {
      pWindow->NumClears = 0;
      pWindow->PCs.clear();
    }
  }

  void cleanup() {
    UnregisterActionHandler(ACTION_WINDOW_CLOSE);
    UnregisterActionHandler(ACTION_WINDOW_CLEAR);
    UnregisterActionHandler(ACTION_WIN_SET_DISPLAY_FORMAT);
    CMessageBox::SetResponder(nullptr);
    m_pMain.reset();
  }

  void theCloseButtonAsksForTheCommand() {
    QStringList Args;
    RegisterActionHandler(ACTION_WINDOW_CLOSE, [&Args] { Args << GetActionArgs(ACTION_WINDOW_CLOSE); });
    First().GetDock()->close();
    QCOMPARE(Args, QStringList{u"First"_s});
    QVERIFY(First().IsVisible());
  }

  void theTitleTellsTheFocus() {
    First().setFocus();
    QVERIFY(First().HasFocus() && First().GetDock()->HasFocus());
    const QString sFocused = First().GetDock()->styleSheet();
    QVERIFY(sFocused.contains(u"titlebar-close-icon-white.png"_s));
    QVERIFY(sFocused.contains(u"bold"_s));
    Second().setFocus();
    QVERIFY(!First().HasFocus() && !First().GetDock()->HasFocus() && Second().GetDock()->HasFocus());
    QCOMPARE(Second().GetDock()->styleSheet(), sFocused);
    QVERIFY(!First().GetDock()->styleSheet().contains(u"bold"_s));
  }

  void delClearsTheWindowWithTheFocus() {
    QStringList Args;
    RegisterActionHandler(ACTION_WINDOW_CLEAR, [&Args] { Args << GetActionArgs(ACTION_WINDOW_CLEAR); });
    First().GetDock()->setFocus();
    QTest::keyClick(First().GetDock(), Qt::Key_Delete);
    QCOMPARE(Args, QStringList{u"First"_s});
    Second().bEmpty = true;
    Second().Clear();
    QTest::keyClick(Second().GetDock(), Qt::Key_Delete);
    QCOMPARE(Args.size(), 1);
  }

  void clearingAsksWhereItIsToBeConfirmed() {
    int NumPerformed = 0, NumAsked = 0;
    RegisterActionHandler(ACTION_WINDOW_CLEAR, [&NumPerformed] { ++NumPerformed; });
    int Answer = CMessageBox::DECLINED;
    CMessageBox::SetResponder([&](const QString& sTitle, const QString&, int) {
      NumAsked += sTitle == u"Clear First?"_s;
      return Answer;
    });
    First().SetFlag(WF_CONFIRM_CLEAR, true);
    First().OnActionClearTriggered();
    QCOMPARE(NumPerformed, 0);
    Answer = CMessageBox::ACCEPTED;
    First().OnActionClearTriggered();
    QCOMPARE(NumPerformed, 1);
    First().SetFlag(WF_CONFIRM_CLEAR, false);
    First().OnActionClearTriggered();
    QCOMPARE(NumPerformed, 2);
    QCOMPARE(NumAsked, 2);
  }

  void hidingClearsAndShowingUpdates_data() {
    QTest::addColumn<bool>("ClearWhenHidden");
    QTest::newRow("clears") << true;
    QTest::newRow("keeps") << false;
  }

  void hidingClearsAndShowingUpdates() {
    QFETCH(bool, ClearWhenHidden);
    First().SetFlag(WF_CLEAR_WHEN_HIDDEN, ClearWhenHidden);
    First().GetDock()->hide();
    QVERIFY(!First().IsVisible() && !First().IsOpen());
    QCOMPARE(First().NumClears, ClearWhenHidden ? 1 : 0);
    QVERIFY(First().PCs.isEmpty());
    First().GetDock()->show();
    QVERIFY(First().IsVisible());
    QCOMPARE(First().PCs, QList<U32>{static_cast<U32>(CDevice::Get().GetPC())});
  }

  void aHaltReachesThoseWhoCanBeSeen_data() {
    QTest::addColumn<int>("Mode");
    QTest::addColumn<bool>("Seen");
    QTest::addColumn<bool>("Tab");
    QTest::addColumn<bool>("Updated");
    QTest::newRow("visible") << int(WIN_UPDATE_VISIBLE) << true << false << true;
    QTest::newRow("tab behind another") << int(WIN_UPDATE_VISIBLE) << false << true << false;
    QTest::newRow("tab of an open window") << int(WIN_UPDATE_OPEN) << false << true << true;
    QTest::newRow("closed") << int(WIN_UPDATE_OPEN) << false << false << false;
    QTest::newRow("closed, always") << int(WIN_UPDATE_ALWAYS) << false << false << true;
  }

  void aHaltReachesThoseWhoCanBeSeen() {
    QFETCH(int, Mode);
    QFETCH(bool, Seen);
    QFETCH(bool, Tab);
    QFETCH(bool, Updated);
    First().SetUpdateMode(static_cast<WIN_UPDATE_MODES>(Mode));
    if (Tab) {
      m_pMain->tabifyDockWidget(First().GetDock(), Second().GetDock());
      Second().GetDock()->raise();
      QTRY_VERIFY(!First().IsVisible());
      QVERIFY(First().IsOpen() && First().IsObscured());
    } else if (!Seen) {
      First().GetDock()->hide();
    }
    First().PCs.clear();
    const U32 PC = static_cast<U32>(CDevice::Get().GetPC());
    First().OnDeviceHaltDone(PC, HR_GENERAL);
    QCOMPARE(!First().PCs.isEmpty(), Updated);
    First().PCs.clear();
    First().OnDeviceStepped(PC);
    QCOMPARE(!First().PCs.isEmpty(), Updated);
  }

  void anOlderHaltIsIgnored() {
    const U32 PC = static_cast<U32>(CDevice::Get().GetPC());
    First().OnDeviceHaltDone(PC + 8, HR_GENERAL);
    First().OnDeviceStepped(PC + 8);
    First().OnDeviceHaltDone(0xFFFFFFFF, HR_GENERAL);
    QVERIFY(First().PCs.isEmpty());
  }

  void disconnectingClears() {
    First().SetFlag(WF_CLEAR_ON_DISCONNECT, true);
    Second().SetFlag(WF_CLEAR_ON_DISCONNECT, false);
    First().SetWindowTitle(u"First of a session"_s);
    First().OnDeviceDisconnectDone();
    Second().OnDeviceDisconnectDone();
    QCOMPARE(First().GetDock()->windowTitle(), u"First"_s);
    QCOMPARE(First().NumClears, 1);
    QCOMPARE(Second().NumClears, 0);
  }

  void anEmptyWindowSaysWhy() {
    First().setFocus();
    First().bEmpty = true;
    First().Clear();
    QVERIFY(!First().centralWidget()->isVisible());
    QVERIFY(First().HasFocus());
    First().grab();
    const auto* const pFrame = First().findChild<QFrame*>(u"buttonFrame"_s);
    QVERIFY(pFrame->isVisible());
    QCOMPARE(pFrame->findChild<QLabel*>()->text(), u"No target connection"_s);
    First().bEmpty = false;
    First().Clear();
    First().grab();
    QVERIFY(!pFrame->isVisible());
    QVERIFY(First().centralWidget()->hasFocus());
  }

  void aWidgetsWindowIsTheNearest() {
    QWidget* const pInner = First().centralWidget();
    QCOMPARE(GetWindow(pInner), static_cast<CWindow*>(m_pFirst));
    QCOMPARE(GetWindow(First().GetDock()), static_cast<CWindow*>(m_pFirst));
    QCOMPARE(GetDock(pInner), First().GetDock());
    QCOMPARE(First().GetName(), u"First"_s);
    QVERIFY(GetWindow(m_pMain.get()) == nullptr && GetWindow(nullptr) == nullptr && GetDock(nullptr) == nullptr);
  }

  void theFormatActionsAskForTheCommand_data() {
    QTest::addColumn<U32>("Row");
    QTest::addColumn<QString>("Constant");
    QTest::newRow("auto") << U32{ACTION_WIN_SET_DISPLAY_FORMAT_AUTO} << u"DISPLAY_FORMAT_AUTO"_s;
    QTest::newRow("binary") << U32{ACTION_WIN_SET_DISPLAY_FORMAT_BINARY} << u"DISPLAY_FORMAT_BINARY"_s;
    QTest::newRow("decimal") << U32{ACTION_WIN_SET_DISPLAY_FORMAT_DEC} << u"DISPLAY_FORMAT_DEC"_s;
    QTest::newRow("hexadecimal") << U32{ACTION_WIN_SET_DISPLAY_FORMAT_HEX} << u"DISPLAY_FORMAT_HEX"_s;
    QTest::newRow("character") << U32{ACTION_WIN_SET_DISPLAY_FORMAT_CHAR} << u"DISPLAY_FORMAT_CHAR"_s;
  }

  // By row, and with a console that listens: it takes away what an action carries after each run. A window that refuses
  // the format keeps its mark where it was.
  void theFormatActionsAskForTheCommand() {
    QFETCH(U32, Row);
    QFETCH(QString, Constant);
    QStringList Args;
    RegisterActionHandler(ACTION_WIN_SET_DISPLAY_FORMAT,
                          [&Args] { Args << GetActionArgs(ACTION_WIN_SET_DISPLAY_FORMAT); });
    LinkActions(&First());
    connect(&First(), &CWindow::ActionTriggered, this, [](QAction* pAction) { OnActionTriggered(pAction); });
    connect(&First(), &CWindow::ActionPerformed, this, [](QAction* pAction) { OnActionPerformed(pAction); });
    QCOMPARE(TriggerAction(Row), 0);
    GetAction(Row)->trigger();
    const QStringList Once = {u"First"_s, Constant};
    QCOMPARE(Args, Once + Once);
    QVERIFY(GetAction(ACTION_WIN_SET_DISPLAY_FORMAT_AUTO)->isChecked());
    QVERIFY(GetAction(Row)->toolTip().startsWith(u"Show Values in "_s));
  }

  void aWatchedWidgetAsksForTheTip() {
    const QPoint Pos(321, 123);
    QHelpEvent Event(QEvent::ToolTip, QPoint(1, 2), Pos);
    QCoreApplication::sendEvent(First().centralWidget(), &Event);
    QCOMPARE(First().TipPos, Pos);
    QVERIFY(Second().TipPos.isNull());
  }

  void aShownWindowStylesItsActions() {
    QCOMPARE(First().findChild<QAction*>(u"actionWinAdd"_s)->text(), QString::number(ACTION_WIN_ADD));
    QCOMPARE(First().findChild<QAction*>(u"actionWinClear"_s)->text(), QString::number(ACTION_WIN_CLEAR));
  }

private:
  CCountingWindow& First() { return *m_pFirst; }
  CCountingWindow& Second() { return *m_pSecond; }

  std::unique_ptr<QMainWindow> m_pMain;
  CCountingWindow* m_pFirst = nullptr;
  CCountingWindow* m_pSecond = nullptr;
};

QTEST_MAIN(CDockWindowTest)
#include "dock_window_test.moc"
