// Docks and tool bars on the way into a project's user file and back, in a main window with more docks than one needs.

#include <QMainWindow>
#include <QTest>
#include <QToolBar>

#include "shell/user_layout.h"
#include "ui/dock_window.h"
#include "ui/window.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList NAMES = {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s};
constexpr QSize SMALL_SIZE(1000, 700);
constexpr QSize BIG_SIZE(2000, 1300);

class CFrame : public QMainWindow {
public:
  explicit CFrame(const QSize& Size) {
    setCentralWidget(new QWidget);
    for (const QString& sName : NAMES) {
      auto* const pDock = new CDockWindow(sName, sName, this);
      addDockWidget(Qt::BottomDockWidgetArea, pDock);
      Windows << new CWindow(pDock, sName);
      pDock->setWidget(Windows.last());
      ToolBars << addToolBar(sName);
      ToolBars.last()->setObjectName(sName);
      ToolBars.last()->addAction(sName);
    }
    resize(Size);
    show();
  }

  CDockWindow* Dock(const char* sName) const { return findChild<CDockWindow*>(QLatin1String(sName)); }
  QToolBar* Bar(const char* sName) const { return findChild<QToolBar*>(QLatin1String(sName)); }
  QString Measured() const { return MakeUserFileText(MeasureLayout(*this, Windows, ToolBars)); }
  void Apply(const QString& sText) { ApplyLayout(ParseUserFile(sText), *this, Windows, ToolBars); }

  QList<CWindow*> Windows;
  QList<QToolBar*> ToolBars;
};

QString DockLine(const char* sName, const char* sPlace) {
  return u"OpenWindow=\"%1\", DockArea=%2, FilterBarShown=0, \n"_s.arg(QLatin1String(sName), QLatin1String(sPlace));
}

QString BarLine(const char* sName, const char* sPlace) {
  return u"OpenToolbar=\"%1\", %2\n"_s.arg(QLatin1String(sName), QLatin1String(sPlace));
}

}  // namespace

class CUserLayoutTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void comesBack_data() {
    QTest::addColumn<QString>("Text");
    QTest::newRow("columns, rows and tabs")
        << DockLine("A", "LEFT, x=0, y=0, w=210, h=200") + DockLine("B", "LEFT, x=0, y=1, w=0, h=200") +
               DockLine("C", "LEFT, x=1, y=0, w=130, h=200") + DockLine("D", "LEFT, x=1, y=0, w=130, h=200") +
               DockLine("E", "BOTTOM, x=0, y=0, w=0, h=170");
    QTest::newRow("three areas") << DockLine("C", "RIGHT, x=0, y=0, w=240, h=0") +
                                        DockLine("D", "BOTTOM, x=0, y=0, w=0, h=150") +
                                        DockLine("E", "BOTTOM, x=1, y=0, w=0, h=150") +
                                        DockLine("F", "LEFT, x=0, y=0, w=180, h=0");
    QTest::newRow("floating") << DockLine("A", "FLOATING, x=60, y=70, w=320, h=240") +
                                     DockLine("B", "BOTTOM, x=0, y=0, w=0, h=150");
    QTest::newRow("tool bars in rows") << BarLine("A", "Floating=0, x=1, y=0") + BarLine("B", "Floating=0, x=0, y=0") +
                                              BarLine("C", "Floating=0, x=0, y=1") +
                                              BarLine("D", "Floating=1, x=90, y=80");
  }

  // What is measured after the text was applied puts another window, of another size, into the same places.
  void comesBack() {
    QFETCH(QString, Text);
    CFrame First(SMALL_SIZE);
    First.Apply(Text);
    QTest::qWait(0);
    const USER_FILE Asked = ParseUserFile(Text);
    const QString sMeasured = First.Measured();
    ComparePlaces(ParseUserFile(sMeasured), Asked);
    CFrame Second(BIG_SIZE);
    Second.Apply(sMeasured);
    QTest::qWait(0);
    ComparePlaces(ParseUserFile(Second.Measured()), Asked);
  }

  void aKindThatIsNotNamedStays() {
    CFrame Frame(SMALL_SIZE);
    Frame.Dock("A")->show();
    Frame.Bar("B")->hide();
    const QString sBefore = Frame.Measured();
    for (const QString& sText : {QString(), DockLine("Unknown", "LEFT, x=0, y=0, w=1, h=1"), u"\x01=,,\"\n"_s}) {
      Frame.Apply(sText);
      QCOMPARE(Frame.Measured(), sBefore);
    }
  }

  void whatFloatsStaysInReach_data() {
    QTest::addColumn<QString>("Place");
    QTest::newRow("far right") << u"x=32000, y=100, w=300, h=200"_s;
    QTest::newRow("above") << u"x=100, y=-900, w=300, h=200"_s;
    QTest::newRow("left, below") << u"x=-32000, y=32000, w=300, h=200"_s;
    QTest::newRow("bigger than the screen") << u"x=9000, y=9000, w=32767, h=32767"_s;
  }

  void whatFloatsStaysInReach() {
    QFETCH(QString, Place);
    CFrame Frame(SMALL_SIZE);
    Frame.Apply(DockLine("A", qPrintable(u"FLOATING, "_s + Place)) +
                BarLine("B", qPrintable(u"Floating=1, "_s + Place)));
    const QRect Screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(Frame.Dock("A")->isFloating() && Frame.Bar("B")->isFloating());
    QVERIFY2(Screen.contains(Frame.Dock("A")->pos()), qPrintable(Place));
    QVERIFY2(Screen.contains(Frame.Bar("B")->pos()), qPrintable(Place));
  }

  void filterBarsFollow() {
    CFrame Frame(SMALL_SIZE);
    Frame.Apply(u"OpenWindow=\"B\", DockArea=BOTTOM, x=0, y=0, w=0, h=150, FilterBarShown=1\n"_s);
    QVERIFY(Frame.Windows[1]->TestFlag(WF_FILTER_BAR));
    QVERIFY(Frame.Measured().contains(u"FilterBarShown=1"_s));
  }

private:
  // The same docks and bars in the same cells; the extent that belongs to an area, where one is asked for.
  void ComparePlaces(const USER_FILE& Measured, const USER_FILE& Asked) {
    QCOMPARE(Measured.ToolBars.mid(0, Asked.ToolBars.size()), Asked.ToolBars);
    if (Asked.Docks.isEmpty()) return;
    QCOMPARE(Measured.Docks.size(), Asked.Docks.size());
    for (qsizetype i = 0; i < Asked.Docks.size(); ++i) {
      const DOCK_RECORD& Is = Measured.Docks[i];
      const DOCK_RECORD& Should = Asked.Docks[i];
      QCOMPARE(std::tuple(Is.sName, Is.Area, Is.x, Is.y), std::tuple(Should.sName, Should.Area, Should.x, Should.y));
      if (Should.w > 0 && Should.Area != DOCK_AREA_BOTTOM) QCOMPARE(Is.w, Should.w);
      if (Should.h > 0 && Should.Area == DOCK_AREA_BOTTOM) QCOMPARE(Is.h, Should.h);
    }
  }
};

QTEST_MAIN(CUserLayoutTest)
#include "user_layout_test.moc"
