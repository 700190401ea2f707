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

// The lines of a user file: "A LEFT 0 1 200 100" for a dock, "A 0 1 2" for a tool bar.
QString Lines(const char* sPlaces) {
  QString sLines;
  for (const QString& sPlace : QString::fromLatin1(sPlaces).split(u", "_s)) {
    const QStringList P = sPlace.split(u' ');
    sLines += P.size() == 4 ? u"OpenToolbar=\"%1\", Floating=%2, x=%3, y=%4\n"_s.arg(P[0], P[1], P[2], P[3])
                            : u"OpenWindow=\"%1\", DockArea=%2, x=%3, y=%4, w=%5, h=%6, FilterBarShown=0, \n"_s.arg(
                                  P[0], P[1], P[2], P[3], P[4], P[5]);
  }
  return sLines;
}

}  // namespace

class CUserLayoutTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  // What is measured after the text was applied puts another window, of another size, into the same places.
  void comesBack() {
    for (const char* const sPlaces :
         {"A LEFT 0 0 210 200, B LEFT 0 1 0 200, C LEFT 1 0 130 200, D LEFT 1 0 130 200, E BOTTOM 0 0 0 170",
          "C RIGHT 0 0 240 0, D BOTTOM 0 0 0 150, E BOTTOM 1 0 0 150, F LEFT 0 0 180 0",
          "A FLOATING 60 70 320 240, B BOTTOM 0 0 0 150", "A 0 1 0, B 0 0 0, C 0 0 1, D 1 90 80"}) {
      const USER_FILE Asked = ParseUserFile(Lines(sPlaces));
      CFrame First(SMALL_SIZE);
      First.Apply(Lines(sPlaces));
      QTRY_COMPARE(Missed(First, Asked), QString());
      CFrame Second(BIG_SIZE);
      Second.Apply(First.Measured());
      QTRY_COMPARE(Missed(Second, Asked), QString());
    }
  }

  // To the right, above, to the left and below, and a window that is bigger than the screen.
  void whatFloatsStaysInReach() {
    const QRect Screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const char* const sPlaces :
         {"A FLOATING 32000 100 300 200, B 1 32000 100", "A FLOATING 100 -900 300 200, B 1 100 -900",
          "A FLOATING -32000 32000 300 200, B 1 -32000 32000", "A FLOATING 9000 9000 32767 32767, B 1 9000 9000"}) {
      CFrame Frame(SMALL_SIZE);
      Frame.Apply(Lines("A LEFT 0 0 210 200"));
      Frame.Apply(Lines(sPlaces));
      QVERIFY(Frame.Dock("A")->isFloating() && Frame.Bar("B")->isFloating());
      QVERIFY2(Screen.contains(Frame.Dock("A")->pos()) && Screen.contains(Frame.Bar("B")->pos()), sPlaces);
      Frame.Dock("A")->setFloating(false);
      QCOMPARE(Frame.dockWidgetArea(Frame.Dock("A")), Qt::LeftDockWidgetArea);
    }
  }

private:
  // What is measured as far as it isn't what was asked for: docks and bars in their cells; the extent that belongs to
  // an area, where one is asked for. Sizes come with the next layout.
  QString Missed(const CFrame& Frame, const USER_FILE& Asked) {
    const USER_FILE Measured = ParseUserFile(Frame.Measured());
    bool bSame = Asked.ToolBars.isEmpty() || Measured.ToolBars == Asked.ToolBars;
    bSame &= Asked.Docks.isEmpty() || Measured.Docks.size() == Asked.Docks.size();
    for (qsizetype i = 0; bSame && i < Asked.Docks.size(); ++i) {
      const DOCK_RECORD& Is = Measured.Docks[i];
      const DOCK_RECORD& Should = Asked.Docks[i];
      bSame = std::tie(Is.sName, Is.Area, Is.x, Is.y) == std::tie(Should.sName, Should.Area, Should.x, Should.y);
      if (Should.w > 0 && Should.Area != DOCK_AREA_BOTTOM) bSame &= Is.w == Should.w;
      if (Should.h > 0 && Should.Area == DOCK_AREA_BOTTOM) bSame &= Is.h == Should.h;
    }
    return bSame ? QString() : Frame.Measured();
  }
};

QTEST_MAIN(CUserLayoutTest)
#include "user_layout_test.moc"
