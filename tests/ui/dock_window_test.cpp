#include <QLabel>
#include <QLineEdit>
#include <QPointer>
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

  // In the order of the update modes, who is updated at each place; nobody by a halt that a newer one has overtaken.
  void aHaltReachesThoseWhoCanBeSeen() {
    const U32 PC = static_cast<U32>(CDevice::Get().GetPC());
    const auto Updated = [&](WIN_UPDATE_MODES Mode) {
      First().SetUpdateMode(Mode);
      First().PCs.clear();
      for (const U32 Halted : {PC, PC + 8, 0xFFFFFFFF}) {
        First().OnDeviceHaltDone(Halted, HR_GENERAL);
        First().OnDeviceStepped(Halted);
      }
      return First().PCs == QList<U32>(2, PC) ? u"+"_s : First().PCs.isEmpty() ? u"-"_s : u"?"_s;
    };
    const auto All = [&] {
      return Updated(WIN_UPDATE_VISIBLE) + Updated(WIN_UPDATE_OPEN) + Updated(WIN_UPDATE_ALWAYS);
    };
    QCOMPARE(All(), u"+++"_s);
    m_pMain->tabifyDockWidget(First().GetDock(), Second().GetDock());
    Second().GetDock()->raise();
    QTRY_VERIFY(!First().IsVisible());
    QVERIFY(First().IsOpen() && First().IsObscured());
    QCOMPARE(All(), u"-++"_s);
    First().GetDock()->hide();
    QCOMPARE(All(), u"--+"_s);
  }

  void disconnectingClears() {
    First().SetFlag(WF_CLEAR_ON_DISCONNECT, true);
    Second().SetFlag(WF_CLEAR_ON_DISCONNECT, false);
    First().SetWindowTitle(u"First of a session"_s);
    for (CCountingWindow* const pWindow : {m_pFirst, m_pSecond}) pWindow->OnDeviceDisconnectDone();
    QCOMPARE(First().GetDock()->windowTitle(), u"First"_s);
    QCOMPARE((QList{First().NumClears, Second().NumClears}), (QList{1, 0}));
  }

  void aFloatingDockGoesWithTheFocus() {
    CDockWindow* const pDock = First().GetDock();
    pDock->setFloating(true);
    pDock->activateWindow();
    First().setFocus();
    QTRY_VERIFY(First().HasFocus() && pDock->HasFocus());
    delete pDock;
    QVERIFY(!m_pFirst);
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
  QPointer<CCountingWindow> m_pFirst;
  QPointer<CCountingWindow> m_pSecond;
};

QTEST_MAIN(CDockWindowTest)
#include "dock_window_test.moc"
