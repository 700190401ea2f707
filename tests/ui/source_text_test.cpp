// A source file without its window: bytes and line ends, and the colours of the columns.

#include <QTest>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "ui/windows/source_colors.h"
#include "ui/windows/source_document.h"

using namespace Qt::StringLiterals;

class CSourceTextTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void bytesBecomeText() {
    QCOMPARE(DecodeSource("/* \xC3\xBC */"), QStringLiteral(u"/* ü */"));
    QCOMPARE(DecodeSource("\xEF\xBB\xBFint x;"), u"int x;"_s);
    QCOMPARE(DecodeSource("/* \xFC */"), QStringLiteral(u"/* ü */"));
    QCOMPARE(DecodeSource("// \xC3"), QStringLiteral(u"// Ã"));
    QCOMPARE(DecodeSource(QByteArray()), QString());
  }

  void lineEndsAreDetected() {
    const std::pair<QString, EOL_FORMAT> Rows[] = {
        {u"a\nb\n"_s, EOL_UNIX},
        {u"a\r\nb\r\n"_s, EOL_WINDOWS},
        {u"a\rb\r"_s, EOL_MAC},
        {u"a\r\nb\nc\r\n"_s, EOL_MIXED},
        {u"a"_s, EOL_MAC},
        {QString(), EOL_MAC},
        {u"\na\r\nb\r\n"_s, EOL_WINDOWS},                // a line feed in front does not count
        {u"a\n"_s.repeated(9) + u"a\r\n"_s, EOL_MIXED},  // the tenth does, the eleventh does not
        {u"a\n"_s.repeated(10) + u"a\r\n"_s, EOL_UNIX},
    };
    for (const auto& [sText, Format] : Rows) QVERIFY2(DetectLineEnding(sText) == Format, qPrintable(sText));
  }

  void rowsAreColouredAlone() {
    const QStringList Rows = {u"/* a"_s, u"int if"_s, u"b */ int x;"_s, u"\tif\t\"x\""_s};
    const QString Expected[] = {u"CCCC"_s, u"CCCCCC"_s, u"CCCCTKKKTTT"_s, u"TTTTKKTTSSS"_s};
    CSourceColors Colors;
    Colors.SetText(Rows, SYNTAX_C);
    for (int Row = 0; Row < 4; ++Row) {
      QString sKinds;
      for (const QTextLayout::FormatRange& Format : Colors.FormatsOf(Row, Rows[Row], 4, true)) {
        QCOMPARE(Format.start, static_cast<int>(sKinds.size()));
        sKinds += QString(Format.length, KindOf(Format.format.foreground().color()));
      }
      QCOMPARE(sKinds, Expected[Row]);
    }
  }

private:
  static QChar KindOf(const QColor& Color) {
    if (Color == GetColor(COLOR_SYNTAX_COMMENT)) return u'C';
    if (Color == GetColor(COLOR_SYNTAX_KEYWORD)) return u'K';
    if (Color == GetColor(COLOR_SYNTAX_STRING)) return u'S';
    return Color == GetColor(COLOR_SYNTAX_TEXT) ? u'T' : u'?';
  }
};

QTEST_MAIN(CSourceTextTest)
#include "source_text_test.moc"
