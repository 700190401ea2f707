#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "device/device.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
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
  bool IsEmpty() const override { return bEmpty; }

  int NumClears = 0;
  QList<U32> PCs;
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
    First().NumClears = Second().NumClears = 0;
    First().PCs.clear();
  }

  void cleanup() {
    for (const U32 ID : {ACTION_WINDOW_CLOSE, ACTION_WINDOW_CLEAR}) {
      UnregisterActionHandler(ID);
    }
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
    QStringList Told;
    RegisterActionHandler(ACTION_WINDOW_CLEAR, [&Told] { Told << u"cleared"_s; });
    int Answer = CMessageBox::DECLINED;
    CMessageBox::SetResponder([&](const QString& sTitle, const QString&, int) {
      Told << sTitle;
      return Answer;
    });
    First().SetFlag(WF_CONFIRM_CLEAR, true);
    First().OnActionClearTriggered();
    Answer = CMessageBox::ACCEPTED;
    First().OnActionClearTriggered();
    First().SetFlag(WF_CONFIRM_CLEAR, false);
    First().OnActionClearTriggered();
    QCOMPARE(Told, (QStringList{u"Clear First?"_s, u"Clear First?"_s, u"cleared"_s, u"cleared"_s}));
  }

  void hidingClearsAndShowingUpdates() {
    for (const bool bClearWhenHidden : {true, false}) {
      First().SetFlag(WF_CLEAR_WHEN_HIDDEN, bClearWhenHidden);
      First().NumClears = 0;
      First().PCs.clear();
      First().GetDock()->hide();
      QVERIFY(!First().IsVisible() && !First().IsOpen() && First().PCs.isEmpty());
      QCOMPARE(First().NumClears, bClearWhenHidden ? 1 : 0);
      First().GetDock()->show();
      QVERIFY(First().IsVisible());
      QCOMPARE(First().PCs, QList<U32>{static_cast<U32>(CDevice::Get().GetPC())});
    }
  }

  void aHaltReachesThoseWhoCanBeSeen_data() {
    QTest::addColumn<int>("Mode");
    QTest::addColumn<QString>("Place");
    QTest::addColumn<bool>("Updated");
    QTest::newRow("visible") << int(WIN_UPDATE_VISIBLE) << u"seen"_s << true;
    QTest::newRow("tab behind another") << int(WIN_UPDATE_VISIBLE) << u"tab"_s << false;
    QTest::newRow("tab of an open window") << int(WIN_UPDATE_OPEN) << u"tab"_s << true;
    QTest::newRow("closed") << int(WIN_UPDATE_OPEN) << u"closed"_s << false;
    QTest::newRow("closed, always") << int(WIN_UPDATE_ALWAYS) << u"closed"_s << true;
  }

  void aHaltReachesThoseWhoCanBeSeen() {
    QFETCH(int, Mode);
    QFETCH(QString, Place);
    QFETCH(bool, Updated);
    First().SetUpdateMode(static_cast<WIN_UPDATE_MODES>(Mode));
    if (Place == u"tab"_s) {
      m_pMain->tabifyDockWidget(First().GetDock(), Second().GetDock());
      Second().GetDock()->raise();
      QTRY_VERIFY(!First().IsVisible());
      QVERIFY(First().IsOpen() && First().IsObscured());
    } else if (Place == u"closed"_s) {
      First().GetDock()->hide();
    }
    First().PCs.clear();
    const U32 PC = static_cast<U32>(CDevice::Get().GetPC());
    First().OnDeviceHaltDone(PC, HR_GENERAL);
    First().OnDeviceStepped(PC);
    QCOMPARE(First().PCs, QList<U32>(Updated ? 2 : 0, PC));
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
    for (CCountingWindow* const pWindow : {m_pFirst, m_pSecond}) pWindow->OnDeviceDisconnectDone();
    QCOMPARE(First().GetDock()->windowTitle(), u"First"_s);
    QCOMPARE((QList{First().NumClears, Second().NumClears}), (QList{1, 0}));
  }

  void anEmptyWindowSaysWhy() {
    First().setFocus();
    First().bEmpty = true;
    First().Clear();
    QVERIFY(!First().centralWidget()->isVisible() && First().HasFocus());
    First().grab();
    const auto* const pFrame = First().findChild<QFrame*>(u"buttonFrame"_s);
    QVERIFY(pFrame->isVisible());
    QCOMPARE(pFrame->findChild<QLabel*>()->text(), u"No target connection"_s);
    First().bEmpty = false;
    First().Clear();
    First().grab();
    QVERIFY(!pFrame->isVisible() && First().centralWidget()->hasFocus());
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
