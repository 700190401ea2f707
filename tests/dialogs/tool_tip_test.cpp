// The shared tool tip: when it comes, where, and when it goes.

#include <QLabel>
#include <QScreen>
#include <QTest>

#include "shell/settings/sys_vars.h"
#include "ui/tool_tip.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int SHOWN_MS = 150;    // by then a tip is there, on an idle machine
constexpr int LIMIT_MS = 20000;  // on a busy one

CToolTip& Tip() {
  return *CToolTip::_GetSingleton();
}

QStringList Texts() {
  QStringList Result;
  for (const QLabel* const pLabel : Tip().findChildren<QLabel*>()) Result << pLabel->text();
  return Result;
}

}  // namespace

class CToolTipTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void init() {
    SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 1, 0);
    m_pOwner = std::make_unique<QWidget>();
    m_pOwner->resize(300, 200);
    m_pOwner->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pOwner.get()));
  }
  void cleanup() { Tip().HideNow(); }

  void comesAndGoesAMomentAfterItWasAskedFor() {
    Tip().ShowPairs(m_pOwner.get(), QPoint(100, 100), "counter", {{"Dec", "12"}, {"Hex", "0x<b>0C"}});
    QVERIFY(!Tip().isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
    QCOMPARE(Texts(), (QStringList{"counter", "Dec", "12", "Hex", "0x<b>0C"}));
    for (const QLabel* const pLabel : Tip().findChildren<QLabel*>()) {
      QVERIFY(Tip().rect().contains(pLabel->geometry()));
      QVERIFY(pLabel->width() >= pLabel->fontMetrics().horizontalAdvance(pLabel->text()));
    }
    Tip().Hide();
    QVERIFY(Tip().isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
  }

  void showsNothingWhileTurnedOff() {
    for (const U32 AtRequest : {0, 1}) {
      SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), AtRequest, 0);
      Show();
      SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 0, 0);
      QTest::qWait(SHOWN_MS);
      QVERIFY(!Tip().isVisible());
    }
  }

  void aHiddenTipsSuccessorTakesItsPlace() {
    ShowAndWait();
    Tip().Hide();
    Show(QPoint(160, 100), "other");
    QTRY_COMPARE_WITH_TIMEOUT(Texts(), QStringList{"other"}, LIMIT_MS);
    QTest::qWait(SHOWN_MS);
    QVERIFY2(Tip().isVisible(), "the hiding of the first one hides its successor");
    // A tip without a text is none.
    Show(QPoint(200, 100), "");
    QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
  }

  void keysClicksAndLeavingHideIt() {
    QEvent Leave(QEvent::Leave);
    const std::function<void()> aActions[] = {[&] { QTest::keyClick(m_pOwner.get(), Qt::Key_A); },
                                              [&] { QTest::mouseClick(m_pOwner.get(), Qt::LeftButton); },
                                              [&] { QApplication::sendEvent(m_pOwner.get(), &Leave); }};
    for (const auto& Action : aActions) {
      ShowAndWait();
      Action();
      QVERIFY(!Tip().isVisible());
    }
  }

  void goesWithItsOwner() {
    ShowAndWait();
    m_pOwner.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
    init();
    Show();
    m_pOwner.reset();
    QTest::qWait(SHOWN_MS);
    QVERIFY2(!Tip().isVisible(), "shown for an owner that is gone");
  }

  void aTipForANeighbouringPointStays() {
    ShowAndWait();
    const QPoint Before = Tip().pos();
    Show(QPoint(101, 101));
    QTest::qWait(SHOWN_MS);
    QCOMPARE(Tip().pos(), Before);
    Show(QPoint(140, 101));
    QTRY_COMPARE_WITH_TIMEOUT(Tip().pos().x(), Before.x() + 40, LIMIT_MS);
  }

  void staysInsideTheScreen() {
    const QRect Screen(0, 0, 1280, 800);
    const QPoint Left(-1280, 40);  // of a second screen
    for (const QPoint& Pointer :
         {QPoint(0, 0), QPoint(1279, 799), QPoint(1100, 300), QPoint(300, 730), QPoint(640, 400)}) {
      for (const QSize& Size : {QSize(200, 80), QSize(900, 80), QSize(200, 600)}) {
        const QRect Place(CToolTip::PlaceFor(Pointer, Size, Screen), Size);
        QVERIFY(Screen.contains(Place));
        QVERIFY2(!Place.contains(Pointer) || Size != QSize(200, 80), "the tip lies under the pointer");
        QCOMPARE(CToolTip::PlaceFor(Pointer + Left, Size, Screen.translated(Left)), Place.topLeft() + Left);
      }
    }
    Tip().ShowText(m_pOwner.get(), QPoint(100, 100), u"word "_s.repeated(400));
    QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
    QVERIFY2(Tip().screen()->availableGeometry().contains(Tip().geometry()), "what is too wide is wrapped");
  }

private:
  void Show(const QPoint& Pos = QPoint(100, 100), const char* sText = "text") {
    Tip().ShowText(m_pOwner.get(), Pos, sText);
  }
  void ShowAndWait() {
    Show();
    QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  }

  std::unique_ptr<QWidget> m_pOwner;
};

QTEST_MAIN(CToolTipTest)
#include "tool_tip_test.moc"
