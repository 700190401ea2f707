// The shared tool tip: when it comes, where, and when it goes.

#include <QLabel>
#include <QScreen>
#include <QTest>

#include "shell/settings/sys_vars.h"
#include "ui/tool_tip.h"

namespace {

constexpr int SHOWN_MS = 150;   // by then a tip is there, on an idle machine
constexpr int LIMIT_MS = 2000;  // on a busy one

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
  void init();
  void cleanup() { Tip().HideNow(); }
  void comesAMomentAfterItWasAskedFor();
  void showsTitleAndPairs();
  void showsNothingWhileTurnedOff();
  void aHiddenTipsSuccessorTakesItsPlace();
  void keysClicksAndLeavingHideIt();
  void goesWithItsOwner();
  void aTipForANeighbouringPointStays();
  void staysInsideTheScreen_data();
  void staysInsideTheScreen();
  void wrapsWhatIsTooWide();

private:
  void Show(const QPoint& Pos = QPoint(100, 100), const char* sText = "text") {
    Tip().ShowText(m_pOwner.get(), Pos, QLatin1String(sText));
  }

  std::unique_ptr<QWidget> m_pOwner;
};

void CToolTipTest::init() {
  SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 1, 0);
  m_pOwner = std::make_unique<QWidget>();
  m_pOwner->resize(300, 200);
  m_pOwner->show();
  QVERIFY(QTest::qWaitForWindowExposed(m_pOwner.get()));
}

void CToolTipTest::comesAMomentAfterItWasAskedFor() {
  Show();
  QVERIFY(!Tip().isVisible());
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  QCOMPARE(Texts(), QStringList{QStringLiteral("text")});
  Tip().Hide();
  QVERIFY(Tip().isVisible());
  QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
}

void CToolTipTest::showsTitleAndPairs() {
  Tip().ShowPairs(m_pOwner.get(), QPoint(100, 100), QStringLiteral("counter"),
                  {{QStringLiteral("Dec"), QStringLiteral("12")}, {QStringLiteral("Hex"), QStringLiteral("0x<b>0C")}});
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  QCOMPARE(Texts(), (QStringList{QStringLiteral("counter"), QStringLiteral("Dec"), QStringLiteral("12"),
                                 QStringLiteral("Hex"), QStringLiteral("0x<b>0C")}));
  for (const QLabel* const pLabel : Tip().findChildren<QLabel*>()) {
    QVERIFY(Tip().rect().contains(pLabel->geometry()));
    QVERIFY(pLabel->width() >= pLabel->fontMetrics().horizontalAdvance(pLabel->text()));
  }
}

void CToolTipTest::showsNothingWhileTurnedOff() {
  SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 0, 0);
  Show();
  QTest::qWait(SHOWN_MS);
  QVERIFY(!Tip().isVisible());
  // Turned off between the request and the tip.
  SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 1, 0);
  Show();
  SetVarValue(GetVarInfo(PREF_SHOW_TOOLTIPS), 0, 0);
  QTest::qWait(SHOWN_MS);
  QVERIFY(!Tip().isVisible());
}

void CToolTipTest::aHiddenTipsSuccessorTakesItsPlace() {
  Show();
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  Tip().Hide();
  Show(QPoint(160, 100), "other");
  QTest::qWait(SHOWN_MS);
  QVERIFY(Tip().isVisible());
  QCOMPARE(Texts(), QStringList{QStringLiteral("other")});
  // A tip without a text is none.
  Show(QPoint(200, 100), "");
  QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
}

void CToolTipTest::keysClicksAndLeavingHideIt() {
  const std::function<void(QWidget*)> aActions[] = {
      [](QWidget* pOwner) { QTest::keyClick(pOwner, Qt::Key_A); },
      [](QWidget* pOwner) { QTest::mouseClick(pOwner, Qt::LeftButton); },
      [](QWidget* pOwner) {
        QEvent Leave(QEvent::Leave);
        QApplication::sendEvent(pOwner, &Leave);
      },
  };
  for (const auto& Action : aActions) {
    Show();
    QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
    Action(m_pOwner.get());
    QVERIFY(!Tip().isVisible());
  }
}

void CToolTipTest::goesWithItsOwner() {
  Show();
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  m_pOwner.reset();
  QTRY_VERIFY_WITH_TIMEOUT(!Tip().isVisible(), LIMIT_MS);
  init();
  Show();
  m_pOwner.reset();
  QTest::qWait(SHOWN_MS);
  QVERIFY2(!Tip().isVisible(), "shown for an owner that is gone");
}

void CToolTipTest::aTipForANeighbouringPointStays() {
  Show(QPoint(100, 100));
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  const QPoint Before = Tip().pos();
  Show(QPoint(101, 101));
  QTest::qWait(SHOWN_MS);
  QCOMPARE(Tip().pos(), Before);
  Show(QPoint(140, 101));
  QTRY_COMPARE_WITH_TIMEOUT(Tip().pos().x(), Before.x() + 40, LIMIT_MS);
}

void CToolTipTest::staysInsideTheScreen_data() {
  QTest::addColumn<QPoint>("Pointer");
  QTest::addColumn<QSize>("Size");
  const QSize Usual(200, 80);
  QTest::newRow("top left") << QPoint(0, 0) << Usual;
  QTest::newRow("bottom right") << QPoint(1279, 799) << Usual;
  QTest::newRow("right edge") << QPoint(1100, 300) << Usual;
  QTest::newRow("bottom edge") << QPoint(300, 730) << Usual;
  QTest::newRow("wide, in the middle") << QPoint(640, 400) << QSize(900, 80);
}

void CToolTipTest::staysInsideTheScreen() {
  QFETCH(const QPoint, Pointer);
  QFETCH(const QSize, Size);
  const QRect Screen(0, 0, 1280, 800);
  const QRect Place(CToolTip::PlaceFor(Pointer, Size, Screen), Size);
  QVERIFY(Screen.contains(Place));
  QVERIFY2(!Place.contains(Pointer) || Size.width() > Screen.width() / 2, "the tip lies under the pointer");
  // The same on a second screen to the left.
  const QPoint Offset(-1280, 40);
  QCOMPARE(CToolTip::PlaceFor(Pointer + Offset, Size, Screen.translated(Offset)), Place.topLeft() + Offset);
}

void CToolTipTest::wrapsWhatIsTooWide() {
  const QString sLong = QStringLiteral("word ").repeated(400);
  Tip().ShowText(m_pOwner.get(), QPoint(100, 100), sLong);
  QTRY_VERIFY_WITH_TIMEOUT(Tip().isVisible(), LIMIT_MS);
  QVERIFY(Tip().width() < Tip().screen()->availableSize().width());
  QVERIFY(Tip().screen()->availableGeometry().contains(Tip().geometry()));
}

QTEST_MAIN(CToolTipTest)
#include "tool_tip_test.moc"
