#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QTest>
#include <QTextBlock>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/log/console_print.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "shell/windows/console_window.h"

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
  void initTestCase();
  void init();
  void theKeysGoThroughTheHistory_data();
  void theKeysGoThroughTheHistory();
  void aTypedCommandIsEchoedOnce();
  void actionsOfListenersAreEchoed();
  void aFullRingDropsWhatComes();
  void clearingDropsWhatWaits();
  void everyStampStandsBesideItsMessage_data();
  void everyStampStandsBesideItsMessage();
  void thePanesScrollTogether();
  void stampsAreAPreference();
  void coloursCanBeReadOnADarkGround();

private:
  QLineEdit& Input() { return *m_pConsole->findChild<QLineEdit*>(QStringLiteral("ConsoleInput")); }
  QList<QTextEdit*> Panes() { return m_pConsole->findChildren<QTextEdit*>(); }
  QTextEdit& Editor() { return *Panes().at(0); }
  QTextEdit& Sidebar() { return *Panes().at(1); }
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

void CConsoleTest::initTestCase() {
  SetSettingsInMemory(true);
}

void CConsoleTest::init() {
  SetVarValue(GetVarInfo(PREF_SHOW_TIMESTAMPS_CONSOLE), 1, 0);
  m_pConsole = std::make_unique<CConsoleWindow>(nullptr);
  m_pConsole->Clear();
  m_pConsole->resize(500, 200);
  m_pConsole->show();
}

void CConsoleTest::theKeysGoThroughTheHistory_data() {
  QTest::addColumn<QStringList>("Commands");
  QTest::addColumn<QString>("Keys");
  QTest::addColumn<QString>("Shown");
  const QStringList ABC = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
  QTest::newRow("nothing entered") << QStringList() << QStringLiteral("UD") << QString();
  QTest::newRow("newest first") << ABC << QStringLiteral("U") << QStringLiteral("c");
  QTest::newRow("then the one before") << ABC << QStringLiteral("UU") << QStringLiteral("b");
  QTest::newRow("back") << ABC << QStringLiteral("UUD") << QStringLiteral("c");
  QTest::newRow("around upwards") << ABC << QStringLiteral("UUUU") << QStringLiteral("c");
  QTest::newRow("around downwards") << ABC << QStringLiteral("UD") << QStringLiteral("a");
  QTest::newRow("down first") << ABC << QStringLiteral("D") << QStringLiteral("a");
  QTest::newRow("a repeated one keeps its place")
      << ABC + QStringList{QStringLiteral("a")} << QStringLiteral("U") << QStringLiteral("c");
}

void CConsoleTest::theKeysGoThroughTheHistory() {
  QFETCH(QStringList, Commands);
  QFETCH(QString, Keys);
  QFETCH(QString, Shown);
  for (const QString& sCommand : Commands) Type(sCommand);
  QVERIFY(Input().text().isEmpty());
  for (const QChar Key : Keys) QTest::keyClick(&Input(), Key == QLatin1Char('U') ? Qt::Key_Up : Qt::Key_Down);
  QCOMPARE(Input().text(), Shown);
}

void CConsoleTest::aTypedCommandIsEchoedOnce() {
  QString sError;
  const auto Handle = [&sError] {
    if (!sError.isEmpty()) SetActionError(ACTION_WINDOW_CLEAR, sError);
  };
  RegisterActionHandler(ACTION_WINDOW_CLEAR, Handle);
  Type(QStringLiteral("window.clear Console"));
  QCOMPARE(Lines(), QStringList{QStringLiteral("Window.Clear (\"Console\");")});
  sError = QLatin1String(ActionError::INVALID_PARAMETER);
  Type(QStringLiteral("Window.Clear (\"Source\");"));
  QCOMPARE(Lines().mid(1), (QStringList{QStringLiteral("Window.Clear (\"Source\");"),
                                        QStringLiteral("Window.Clear (\"Source\"): invalid parameter")}));
  UnregisterActionHandler(ACTION_WINDOW_CLEAR);
  m_pConsole->Clear();
  Type(QStringLiteral("Window.Clear (\"Source\");"));
  Type(QStringLiteral("   "));
  const QStringList Last = Lines();
  QCOMPARE(Last.size(), 2);
  QCOMPARE(Last[0], QStringLiteral("Window.Clear: Command disabled"));
  QVERIFY(Last[1].endsWith(QStringLiteral("Type ? or help for a list of available commands.")));
}

void CConsoleTest::actionsOfListenersAreEchoed() {
  CWindow Window(nullptr, QStringLiteral("Other"));
  QAction Action(&Window);
  Action.setObjectName(QStringLiteral("actionHelpAbout"));
  QVERIFY(LinkAction(&Action));
  QAction Local(&Window);
  Local.setObjectName(QStringLiteral("actionWithoutARow"));
  QObject Receiver;
  for (QAction* const pAction : {&Action, &Local}) {
    Window.Connect(pAction, SIGNAL(triggered()), &Receiver, SLOT(deleteLater()));
  }
  m_pConsole->AddCommandListener(&Window);
  m_pConsole->AddCommandListener(&Window);
  Action.trigger();
  Local.trigger();
  QCOMPARE(Lines(), QStringList{QStringLiteral("Help.About();")});
  m_pConsole->RemoveCommandListener(&Window);
  Action.trigger();
  QCOMPARE(Lines().size(), 1);
  UnlinkActions(&Window);
}

void CConsoleTest::aFullRingDropsWhatComes() {
  for (U32 i = 0; i < CONSOLE_RING_SLOTS + 7; ++i) PrintConsole(QStringLiteral("message %1").arg(i));
  m_pConsole->Drain();
  QCOMPARE(Editor().document()->blockCount(), static_cast<int>(CONSOLE_DRAIN_MAX));
  for (U32 i = 1; i < CONSOLE_RING_SLOTS / CONSOLE_DRAIN_MAX; ++i) m_pConsole->Drain();
  QCOMPARE(Lines().size(), static_cast<int>(CONSOLE_RING_SLOTS));
  QCOMPARE(Lines().last(), QStringLiteral("message 999"));
  PrintConsole(QStringLiteral("there is room again"));
  QCOMPARE(Lines().last(), QStringLiteral("there is room again"));
}

void CConsoleTest::clearingDropsWhatWaits() {
  PrintConsole(QStringLiteral("shown"));
  m_pConsole->Drain();
  PrintConsole(QStringLiteral("waiting"));
  Input().setText(QStringLiteral("typed"));
  m_pConsole->Clear();
  QCOMPARE(Lines(), QStringList{QString()});
  QVERIFY(Sidebar().toPlainText().isEmpty() && Input().text().isEmpty());
  PrintConsole(QStringLiteral("first"));
  QCOMPARE(Lines(), QStringList{QStringLiteral("first")});
  QCOMPARE(Sidebar().document()->blockCount(), 1);
}

void CConsoleTest::everyStampStandsBesideItsMessage_data() {
  QTest::addColumn<QStringList>("Texts");
  QTest::newRow("single lines") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
  QTest::newRow("several lines") << QStringList{QStringLiteral("a\nb\nc"), QStringLiteral("d"),
                                                QStringLiteral("e\n\nf"), QStringLiteral("g")};
  QTest::newRow("a line feed at the end") << QStringList{QStringLiteral("a\n"), QStringLiteral("b")};
  QTest::newRow("an empty line first") << QStringList{QStringLiteral(" "), QStringLiteral("b")};
  QTest::newRow("wider than the window") << QStringList{QString(300, QLatin1Char('x')), QStringLiteral("b")};
  QTest::newRow("carriage returns") << QStringList{QStringLiteral("a\r\nb"), QStringLiteral("c")};
  QTest::newRow("other scripts") << QStringList{QStringLiteral("日本語 ก็ม้"), QStringLiteral("b")};
}

void CConsoleTest::everyStampStandsBesideItsMessage() {
  QFETCH(QStringList, Texts);
  QList<int> FirstLines;
  bool bMono = false;
  for (const QString& sText : Texts) {
    FirstLines << (FirstLines.isEmpty() ? 0 : Editor().document()->blockCount());
    PrintConsole(sText, CONSOLE_RGBA_DEFAULT, bMono);
    m_pConsole->Drain();
    bMono = !bMono;
  }
  const auto Check = [&] {
    const QTextDocument& Text = *Editor().document();
    const QTextDocument& Stamps = *Sidebar().document();
    QCOMPARE(Stamps.blockCount(), Text.blockCount());
    for (int Line = 0; Line < Text.blockCount(); ++Line) {
      const QTextBlock Message = Text.findBlockByNumber(Line), Stamp = Stamps.findBlockByNumber(Line);
      QCOMPARE(Stamp.text().isEmpty(), !FirstLines.contains(Line));
      QCOMPARE(Stamps.documentLayout()->blockBoundingRect(Stamp).y(),
               Text.documentLayout()->blockBoundingRect(Message).y());
    }
  };
  Check();
  const QFont Uneven = UnevenFont();
  if (Uneven == QFont()) QSKIP("every font here is as high as its fixed-pitch form");
  SetFont(FONT_CONSOLE, Uneven, false);
  m_pConsole->SetFont(FONT_CONSOLE, GetFont(FONT_CONSOLE));
  Check();
  SetFont(FONT_CONSOLE, GetFont(FONT_APP), false);
}

void CConsoleTest::thePanesScrollTogether() {
  for (int i = 0; i < 90; ++i) PrintConsole(QStringLiteral("line %1\nand more").arg(i));
  m_pConsole->Drain();
  QScrollBar& Text = *Editor().verticalScrollBar();
  QScrollBar& Stamps = *Sidebar().verticalScrollBar();
  QVERIFY(Text.maximum() > 0);
  QCOMPARE(Text.value(), Text.maximum());
  QTRY_COMPARE(Stamps.maximum(), Text.maximum());
  QCOMPARE(Stamps.value(), Text.value());
  Text.setValue(40);
  QCOMPARE(Stamps.value(), 40);
  Stamps.setValue(70);
  QCOMPARE(Text.value(), 70);
}

void CConsoleTest::stampsAreAPreference() {
  PrintConsole(QStringLiteral("a"));
  m_pConsole->Drain();
  QVERIFY(Sidebar().isVisible());
  const int Width = Sidebar().width();
  QVERIFY(Width >= GetTextWidth(FONT_CONSOLE, Sidebar().toPlainText()));
  m_pConsole->SetPreference(PREF_SHOW_TIMESTAMPS_CONSOLE, 0);
  QVERIFY(!Sidebar().isVisible());
  m_pConsole->SetPreference(PREF_SHOW_TIMESTAMPS_CONSOLE, 1);
  QVERIFY(Sidebar().isVisible());
  QCOMPARE(Sidebar().width(), Width);
}

void CConsoleTest::coloursCanBeReadOnADarkGround() {
  const QPalette Before = QApplication::palette();
  QPalette Dark(QColor(40, 40, 40), QColor(40, 40, 40));
  QApplication::setPalette(Dark);
  UpdatePaletteColors();
  PrintConsoleColor(QStringLiteral("user"), COLOR_LOGGING_USER);
  PrintConsole(QStringLiteral("probe"), 0xFF00008B);
  SetColorRgb(COLOR_LOGGING_ERROR, 0xFF200000, false);
  PrintConsoleError(QStringLiteral("chosen by the user"));
  m_pConsole->Drain();
  const auto ColorOf = [this](int Line) {
    return Editor().document()->findBlockByNumber(Line).begin().fragment().charFormat().foreground().color();
  };
  QVERIFY(ColorOf(0).lightness() > 200);
  QVERIFY(ColorOf(1).lightness() > 150);
  QCOMPARE(ColorOf(2).rgba(), 0xFF200000u);
  QApplication::setPalette(Before);
  UpdatePaletteColors();
  ResetColor(COLOR_LOGGING_ERROR);
}

QTEST_MAIN(CConsoleTest)
#include "console_test.moc"
