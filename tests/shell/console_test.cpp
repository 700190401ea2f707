#include <QClipboard>
#include <QFontDatabase>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

#include "shell/actions/action_dispatch.h"
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
#include "tests/common/write_file.h"

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

  void theKeysGoThroughTheHistory() {
    // Commands, one a letter; keys, up and down; what is shown.
    const std::tuple<QString, QString, QString> Rows[] = {{QString(), u"UD"_s, QString()}, {u"abc"_s, u"U"_s, u"c"_s},
                                                          {u"abc"_s, u"UU"_s, u"b"_s},     {u"abc"_s, u"UUD"_s, u"c"_s},
                                                          {u"abc"_s, u"UUUU"_s, u"c"_s},   {u"abc"_s, u"UD"_s, u"a"_s},
                                                          {u"abc"_s, u"D"_s, u"a"_s},      {u"abca"_s, u"U"_s, u"c"_s}};
    for (const auto& [Commands, Keys, sShown] : Rows) {
      init();
      for (const QChar Command : Commands) Type(Command);
      QVERIFY(Input().text().isEmpty());
      for (const QChar Key : Keys) QTest::keyClick(&Input(), Key == u'U' ? Qt::Key_Up : Qt::Key_Down);
      QCOMPARE(Input().text(), sShown);
    }
  }

  void aTypedCommandIsEchoedOnce() {
    RegisterActionHandler(ACTION_WINDOW_CLEAR, [] {});
    Type(u"window.clear Console"_s);
    UnregisterActionHandler(ACTION_WINDOW_CLEAR);
    Type(u"   "_s);
    QCOMPARE(Lines(), (QStringList{u"Window.Clear (\"Console\");"_s,
                                   u"   : unknown command. Type ? or help for a list of available commands."_s}));
  }

  // Keys that arrive while the burst is being shown are not lost.
  void aBurstIsKeptAsFarAsTheRingGoes() {
    QStringList Messages;
    for (U32 i = 0; i < 10 * CONSOLE_RING_SLOTS; ++i) PrintConsole(Messages.emplaceBack(u"message %1"_s.arg(i)));
    const QString sTyped = u"typed meanwhile"_s;
    for (const QChar Key : sTyped) {
      QTest::keyClick(&Input(), Key.toLatin1());
      m_pConsole->Drain();
    }
    QCOMPARE(Input().text(), sTyped);
    QCOMPARE(Lines(), Messages.first(CONSOLE_RING_SLOTS));
    PrintConsole(u"there is room again"_s);
    QCOMPARE(Lines().last(), u"there is room again"_s);
  }

  void everyStampStandsBesideItsMessage() {
    for (const QStringList& Texts : {QStringList{u"a\nb\nc"_s, u"d"_s, u"e\n\nf"_s, u"g"_s},
                                     {u"a\n"_s, u"b"_s},
                                     {u" "_s, u"b"_s},
                                     {QString(300, u'x'), u"b"_s},
                                     {u"a\r\nb"_s, u"c"_s},
                                     {u"日本語 ก็ม้"_s, u"b"_s}}) {
      init();
      CheckStamps(Texts);
      if (QTest::currentTestFailed()) return qWarning("%s", qPrintable(Texts.join(u'|')));
    }
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

  void coloursFollowThePaletteAndTheSettings() {
    const QPalette Before = QApplication::palette();
    const auto Use = [](const QPalette& Palette) {
      QApplication::setPalette(Palette);
      UpdatePaletteColors();
    };
    Use(QPalette(QColor(40, 40, 40), QColor(40, 40, 40)));
    PrintConsoleColor(u"user"_s, COLOR_LOGGING_USER);
    PrintConsole(u"probe"_s, 0xFF00008B);
    SetColorRgb(COLOR_LOGGING_ERROR, 0xFF200000, false);
    PrintConsoleError(u"chosen by the user"_s);
    m_pConsole->Drain();
    QTRY_VERIFY(ColorOf(0).lightness() > 200 && ColorOf(1).lightness() > 150);
    QCOMPARE(ColorOf(2).rgba(), 0xFF200000u);
    Use(Before);
    QTRY_VERIFY(ColorOf(0).lightness() < 200);
    SetColorRgb(COLOR_LOGGING_USER, 0xFF123456, false);
    m_pConsole->SetColor(COLOR_LOGGING_USER, GetColor(COLOR_LOGGING_USER));
    QTRY_COMPARE(ColorOf(0).rgba(), 0xFF123456u);
    QCOMPARE(ColorOf(1).rgba(), 0xFF00008Bu);
    ResetColors();
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

  void whatWaitsAtTheEndIsInTheLogFile() {
    QTemporaryDir Dir;
    const QString sPath = Dir.filePath(u"console.log"_s);
    QCOMPARE(OpenLogFile(LOG_FILE_CONSOLE, sPath.toUtf8().constData()), 0);
    for (U32 i = 0; i < 3 * CONSOLE_DRAIN_MAX; ++i) PrintConsole(QString::number(i));
    m_pConsole.reset();
    CloseLogFiles();
    QCOMPARE(ReadFile(sPath).count('\n'), static_cast<int>(3 * CONSOLE_DRAIN_MAX));
  }

private:
  void CheckStamps(const QStringList& Texts) {
    QList<int> FirstLines;
    bool bMono = false;
    for (const QString& sText : Texts) {
      FirstLines << (FirstLines.isEmpty() ? 0 : View().document()->blockCount());
      PrintConsole(sText, CONSOLE_RGBA_DEFAULT, bMono);
      m_pConsole->Drain();
      bMono = !bMono;
    }
    const auto HasInk = [this](int Line) {
      QRectF Place;
      View().VisitVisibleLines([&](int Visible, const QRectF& Rect) {
        if (Visible == Line) Place = Rect;
      });
      const QImage Image =
          Sidebar().grab(QRect(0, qRound(Place.top()), Sidebar().width(), qRound(Place.height()))).toImage();
      QImage Plain(Image);
      Plain.fill(Image.pixel(0, 0));
      return Image != Plain;
    };
    const auto AreStamped = [&] {
      bool bRight = true;
      for (int Line = 0; Line < View().document()->blockCount(); ++Line)
        bRight = bRight && HasInk(Line) == FirstLines.contains(Line);
      return bRight;
    };
    QTRY_VERIFY(AreStamped());
    const QFont Uneven = UnevenFont();
    if (Uneven == QFont()) QSKIP("every font here is as high as its fixed-pitch form");
    SetFont(FONT_CONSOLE, Uneven, false);
    m_pConsole->SetFont(FONT_CONSOLE, GetFont(FONT_CONSOLE));
    m_pConsole->resize(500, 500);
    QTRY_VERIFY(AreStamped());
    SetFont(FONT_CONSOLE, GetFont(FONT_APP), false);
  }
  CCommandInput& Input() { return *m_pConsole->findChild<CCommandInput*>(); }
  CConsoleView& View() { return *m_pConsole->findChild<CConsoleView*>(); }
  CTimeStampBar& Sidebar() { return *m_pConsole->findChild<CTimeStampBar*>(); }
  QColor ColorOf(int Line) {
    return View().document()->findBlockByNumber(Line).begin().fragment().charFormat().foreground().color();
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
