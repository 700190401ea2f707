#include <thread>

#include <QClipboard>
#include <QFontDatabase>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/windows/command_input.h"
#include "shell/windows/console_view.h"
#include "shell/windows/console_window.h"
#include "shell/windows/time_stamp_bar.h"

using namespace Qt::StringLiterals;

namespace {

// A font whose lines have another height than those of its fixed-pitch form, the default font if there is none.
QFont UnevenFont() {
  for (const QString& sFamily : QFontDatabase::families(QFontDatabase::Latin)) {
    const QFont Font(sFamily, 15);
    if (std::abs(QFontMetrics(Font).height() - QFontMetrics(MonospacedForm(Font)).height()) > 2) return Font;
  }
  return QFont();
}

}  // namespace

// A console of its own; messages are drained by hand.
class CConsoleTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }

  void init() {
    SetVarValue(GetVarInfo(PREF_SHOW_TIMESTAMPS_CONSOLE), 1, 0);
    m_pConsole = std::make_unique<CConsoleWindow>(nullptr);
    m_pConsole->Clear();
    m_pConsole->resize(500, 200);
    m_pConsole->show();
  }

  void theKeysGoThroughTheHistory_data() {
    QTest::addColumn<QStringList>("Commands");
    QTest::addColumn<QString>("Keys");
    QTest::addColumn<QString>("Shown");
    const QStringList ABC = {u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("nothing entered") << QStringList() << u"UD"_s << QString();
    QTest::newRow("newest first") << ABC << u"U"_s << u"c"_s;
    QTest::newRow("then the one before") << ABC << u"UU"_s << u"b"_s;
    QTest::newRow("back") << ABC << u"UUD"_s << u"c"_s;
    QTest::newRow("around upwards") << ABC << u"UUUU"_s << u"c"_s;
    QTest::newRow("around downwards") << ABC << u"UD"_s << u"a"_s;
    QTest::newRow("down first") << ABC << u"D"_s << u"a"_s;
    QTest::newRow("a repeated one keeps its place") << ABC + QStringList{u"a"_s} << u"U"_s << u"c"_s;
  }

  void theKeysGoThroughTheHistory() {
    QFETCH(QStringList, Commands);
    QFETCH(QString, Keys);
    QFETCH(QString, Shown);
    for (const QString& sCommand : Commands) Type(sCommand);
    QVERIFY(Input().text().isEmpty());
    for (const QChar Key : Keys) QTest::keyClick(&Input(), Key == QLatin1Char('U') ? Qt::Key_Up : Qt::Key_Down);
    QCOMPARE(Input().text(), Shown);
  }

  void aTypedCommandIsEchoedOnce() {
    QString sError;
    const auto Handle = [&sError] {
      if (!sError.isEmpty()) SetActionError(ACTION_WINDOW_CLEAR, sError);
    };
    RegisterActionHandler(ACTION_WINDOW_CLEAR, Handle);
    Type(u"window.clear Console"_s);
    QCOMPARE(Lines(), QStringList{u"Window.Clear (\"Console\");"_s});
    sError = QLatin1String(ActionError::INVALID_PARAMETER);
    Type(u"Window.Clear (\"Source\");"_s);
    QCOMPARE(Lines().mid(1),
             (QStringList{u"Window.Clear (\"Source\");"_s, u"Window.Clear (\"Source\"): invalid parameter"_s}));
    UnregisterActionHandler(ACTION_WINDOW_CLEAR);
    m_pConsole->Clear();
    Type(u"Window.Clear (\"Source\");"_s);
    Type(u"   "_s);
    const QStringList Last = Lines();
    QCOMPARE(Last.size(), 2);
    QCOMPARE(Last[0], u"Window.Clear: Command disabled"_s);
    QVERIFY(Last[1].endsWith(u"Type ? or help for a list of available commands."_s));
  }

  void actionsOfListenersAreEchoed() {
    CWindow Window(nullptr, u"Other"_s);
    QAction Action(&Window);
    Action.setObjectName(u"actionHelpAbout"_s);
    QVERIFY(LinkAction(&Action));
    QAction Local(&Window);
    Local.setObjectName(u"actionWithoutARow"_s);
    QObject Receiver;
    for (QAction* const pAction : {&Action, &Local}) {
      Window.Connect(pAction, SIGNAL(triggered()), &Receiver, SLOT(deleteLater()));
    }
    m_pConsole->AddCommandListener(&Window);
    m_pConsole->AddCommandListener(&Window);
    Action.trigger();
    Local.trigger();
    QCOMPARE(Lines(), QStringList{u"Help.About();"_s});
    m_pConsole->RemoveCommandListener(&Window);
    Action.trigger();
    QCOMPARE(Lines().size(), 1);
    UnlinkActions(&Window);
  }

  void aFullRingDropsWhatComes() {
    for (U32 i = 0; i < CONSOLE_RING_SLOTS + 7; ++i) PrintConsole(u"message %1"_s.arg(i));
    m_pConsole->Drain();
    QCOMPARE(View().document()->blockCount(), static_cast<int>(CONSOLE_DRAIN_MAX));
    for (U32 i = 1; i < CONSOLE_RING_SLOTS / CONSOLE_DRAIN_MAX; ++i) m_pConsole->Drain();
    QCOMPARE(Lines().size(), static_cast<int>(CONSOLE_RING_SLOTS));
    QCOMPARE(Lines().last(), u"message 999"_s);
    PrintConsole(u"there is room again"_s);
    QCOMPARE(Lines().last(), u"there is room again"_s);
  }

  void clearingDropsWhatWaits() {
    PrintConsole(u"shown"_s);
    m_pConsole->Drain();
    PrintConsole(u"waiting"_s);
    Input().setText(u"typed"_s);
    m_pConsole->Clear();
    QCOMPARE(Lines(), QStringList{QString()});
    QVERIFY(StampOf(0).isEmpty() && Input().text().isEmpty());
    QCOMPARE(Sidebar().width(), 0);
    PrintConsole(u"first"_s);
    QCOMPARE(Lines(), QStringList{u"first"_s});
    QVERIFY(!StampOf(0).isEmpty() && StampOf(1).isEmpty());
  }

  void everyStampStandsBesideItsMessage_data() {
    QTest::addColumn<QStringList>("Texts");
    QTest::newRow("single lines") << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("several lines") << QStringList{u"a\nb\nc"_s, u"d"_s, u"e\n\nf"_s, u"g"_s};
    QTest::newRow("a line feed at the end") << QStringList{u"a\n"_s, u"b"_s};
    QTest::newRow("an empty line first") << QStringList{u" "_s, u"b"_s};
    QTest::newRow("wider than the window") << QStringList{QString(300, QLatin1Char('x')), u"b"_s};
    QTest::newRow("carriage returns") << QStringList{u"a\r\nb"_s, u"c"_s};
    QTest::newRow("other scripts") << QStringList{u"日本語 ก็ม้"_s, u"b"_s};
  }

  void everyStampStandsBesideItsMessage() {
    QFETCH(QStringList, Texts);
    QList<int> FirstLines;
    bool bMono = false;
    for (const QString& sText : Texts) {
      FirstLines << (FirstLines.isEmpty() ? 0 : View().document()->blockCount());
      PrintConsole(sText, CONSOLE_RGBA_DEFAULT, bMono);
      m_pConsole->Drain();
      bMono = !bMono;
    }
    for (int Line = 0; Line < View().document()->blockCount(); ++Line) {
      QCOMPARE(StampOf(Line).isEmpty(), !FirstLines.contains(Line));
    }
    const auto InkOf = [this](int Line) {
      QRectF Place;
      View().VisitVisibleLines([&](int Visible, const QRectF& Rect) {
        if (Visible == Line) Place = Rect;
      });
      const QImage Image =
          Sidebar().grab(QRect(0, qRound(Place.top()), Sidebar().width(), qRound(Place.height()))).toImage();
      int NumInked = 0;
      for (int y = 0; y < Image.height(); ++y) {
        for (int x = 0; x < Image.width(); ++x) NumInked += Image.pixel(x, y) != Image.pixel(0, 0);
      }
      return NumInked;
    };
    const auto Check = [&] {
      QTest::qWait(0);
      for (int Line = 0; Line < View().document()->blockCount(); ++Line) {
        QCOMPARE(InkOf(Line) > 0, FirstLines.contains(Line));
      }
    };
    Check();
    const QFont Uneven = UnevenFont();
    if (Uneven == QFont()) QSKIP("every font here is as high as its fixed-pitch form");
    SetFont(FONT_CONSOLE, Uneven, false);
    m_pConsole->SetFont(FONT_CONSOLE, GetFont(FONT_CONSOLE));
    m_pConsole->resize(500, 500);
    Check();
    SetFont(FONT_CONSOLE, GetFont(FONT_APP), false);
  }

  void stampsScrollWithTheText() {
    for (int i = 0; i < 90; ++i) PrintConsole(u"line %1\nand more"_s.arg(i));
    m_pConsole->Drain();
    QScrollBar& Text = *View().verticalScrollBar();
    QVERIFY(Text.maximum() > 0);
    QCOMPARE(Text.value(), Text.maximum());
    QWheelEvent Wheel(QPointF(2, 2), Sidebar().mapToGlobal(QPointF(2, 2)), QPoint(), QPoint(0, 240), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Sidebar(), &Wheel);
    QVERIFY(Text.value() < Text.maximum());
    const QImage Before = Sidebar().grab().toImage();
    Text.setValue(1);
    QVERIFY(Sidebar().grab().toImage() != Before);
  }

  void stampsAreAPreference() {
    PrintConsole(u"a"_s);
    m_pConsole->Drain();
    QVERIFY(Sidebar().isVisible());
    const int Width = Sidebar().width();
    QVERIFY(Width >= GetTextWidth(FONT_CONSOLE, StampOf(0)));
    m_pConsole->SetPreference(PREF_SHOW_TIMESTAMPS_CONSOLE, 0);
    QVERIFY(!Sidebar().isVisible());
    m_pConsole->SetPreference(PREF_SHOW_TIMESTAMPS_CONSOLE, 1);
    QVERIFY(Sidebar().isVisible());
    QCOMPARE(Sidebar().width(), Width);
  }

  void coloursFollowThePaletteAndTheSettings() {
    const QPalette Before = QApplication::palette();
    QPalette Dark(QColor(40, 40, 40), QColor(40, 40, 40));
    QApplication::setPalette(Dark);
    UpdatePaletteColors();
    PrintConsoleColor(u"user"_s, COLOR_LOGGING_USER);
    PrintConsole(u"probe"_s, 0xFF00008B);
    SetColorRgb(COLOR_LOGGING_ERROR, 0xFF200000, false);
    PrintConsoleError(u"chosen by the user"_s);
    m_pConsole->Drain();
    QVERIFY(ColorOf(0).lightness() > 200);
    QVERIFY(ColorOf(1).lightness() > 150);
    QCOMPARE(ColorOf(2).rgba(), 0xFF200000u);
    QApplication::setPalette(Before);
    UpdatePaletteColors();
    QTest::qWait(0);
    QVERIFY(ColorOf(0).lightness() < 200);
    QCOMPARE(ColorOf(1).rgba(), 0xFF00008Bu);
    SetColorRgb(COLOR_LOGGING_USER, 0xFF123456, false);
    m_pConsole->SetColor(COLOR_LOGGING_USER, GetColor(COLOR_LOGGING_USER));
    QTest::qWait(0);
    QCOMPARE(ColorOf(0).rgba(), 0xFF123456u);
    QCOMPARE(ColorOf(1).rgba(), 0xFF00008Bu);
    ResetColor(COLOR_LOGGING_ERROR);
    ResetColor(COLOR_LOGGING_USER);
  }

  void shownTextsFollowTheFont() {
    PrintConsole(u"plain"_s);
    PrintConsole(u"fixed"_s, CONSOLE_RGBA_DEFAULT, true);
    m_pConsole->Drain();
    const auto FontOf = [this](int Line) {
      return View().document()->findBlockByNumber(Line).begin().fragment().charFormat().font();
    };
    const QFont Font(u"DejaVu Serif"_s, 17, QFont::Bold);
    SetFont(FONT_CONSOLE, Font, false);
    m_pConsole->SetFont(FONT_CONSOLE, Font);
    QTest::qWait(0);
    for (const int Line : {0, 1}) {
      QCOMPARE(FontOf(Line).pointSize(), 17);
      QCOMPARE(FontOf(Line).weight(), QFont::Bold);
    }
    QCOMPARE(FontOf(0).family(), Font.family());
    QCOMPARE(FontOf(1).family(), MonospacedForm(Font).family());
    SetFont(FONT_CONSOLE, GetFont(FONT_APP), false);
  }

  void eachPaneHasItsMenu() {
    PrintConsole(u"a"_s);
    m_pConsole->Drain();
    const QStringList OfTheView = MenuTexts([this] { Q_EMIT View().customContextMenuRequested(QPoint(5, 5)); });
    QCOMPARE(OfTheView, (QStringList{u"&Copy"_s, QString(), u"Select All"_s, u"&Clear"_s, QString(),
                                     u"List Co&mmands"_s, QString(), u"&Timestamps"_s}));
    QCOMPARE(MenuTexts([this] { Q_EMIT Sidebar().customContextMenuRequested(QPoint(5, 5)); }),
             QStringList{u"&Timestamps"_s});
  }

  void keysCopyFromThePaneAndDeleteInTheInput() {
    PrintConsole(u"first"_s);
    PrintConsole(u"second"_s);
    m_pConsole->Drain();
    QApplication::clipboard()->clear();
    QTest::keyClick(&View(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&View(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"first\nsecond"_s);
    Input().setText(u"ab"_s);
    QTest::keyClick(&Input(), Qt::Key_Home);
    QTest::keyClick(&Input(), Qt::Key_Delete);
    QCOMPARE(Input().text(), u"b"_s);
    QCOMPARE(Lines().size(), 2);
  }

  // Keys that arrive while the burst is being shown are not lost.
  void aBurstOfTwoThreadsIsKeptAsFarAsTheRingGoes() {
    constexpr int NUM_MESSAGES = 5000;
    const auto Write = [](const char* sText) {
      for (int i = 0; i < NUM_MESSAGES; ++i) PrintConsole(sText, CONSOLE_RGBA_DEFAULT);
    };
    std::thread First(Write, "first");
    std::thread Second(Write, "second");
    First.join();
    Second.join();
    const QString sTyped = u"typed meanwhile"_s;
    for (const QChar Key : sTyped) {
      QTest::keyClick(&Input(), Key.toLatin1());
      m_pConsole->Drain();
    }
    QCOMPARE(Input().text(), sTyped);
    QCOMPARE(Lines().size(), static_cast<int>(CONSOLE_RING_SLOTS));
  }

  void whatWaitsAtTheEndIsInTheLogFile() {
    QTemporaryDir Dir;
    const QString sPath = Dir.filePath(u"console.log"_s);
    QCOMPARE(OpenLogFile(LOG_FILE_CONSOLE, sPath.toUtf8().constData()), 0);
    for (U32 i = 0; i < 3 * CONSOLE_DRAIN_MAX; ++i) PrintConsole(QString::number(i));
    m_pConsole.reset();
    CloseLogFiles();
    QFile File(sPath);
    QVERIFY(File.open(QIODevice::ReadOnly));
    QCOMPARE(File.readAll().count('\n'), static_cast<int>(3 * CONSOLE_DRAIN_MAX));
  }

private:
  CCommandInput& Input() { return *m_pConsole->findChild<CCommandInput*>(); }
  CConsoleView& View() { return *m_pConsole->findChild<CConsoleView*>(); }
  CTimeStampBar& Sidebar() { return *m_pConsole->findChild<CTimeStampBar*>(); }
  QString StampOf(int Line) { return View().HasTimeStamp(Line) ? Sidebar().TextOf(Line) : QString(); }
  QColor ColorOf(int Line) {
    return View().document()->findBlockByNumber(Line).begin().fragment().charFormat().foreground().color();
  }

  // The texts of the entries of the menu that Request opens.
  QStringList MenuTexts(const std::function<void()>& Request) {
    QStringList Texts;
    QTimer::singleShot(0, m_pConsole.get(), [&Texts] {
      auto* const pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!pMenu) return;
      for (const QAction* const pAction : pMenu->actions()) Texts << pAction->text().section(QLatin1Char('\t'), 0, 0);
      pMenu->close();
    });
    Request();
    return Texts;
  }

  void Type(const QString& sCommand) {
    Input().setText(sCommand);
    QTest::keyClick(&Input(), Qt::Key_Return);
  }
  QStringList Lines() {
    m_pConsole->Drain();
    return m_pConsole->DumpText().split(QLatin1Char('\n'));
  }

  std::unique_ptr<CConsoleWindow> m_pConsole;
};

QTEST_MAIN(CConsoleTest)
#include "console_test.moc"
