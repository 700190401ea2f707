// The colours of a source text's rows, and the columns that they stand in.

#include <QTest>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "ui/windows/source_colors.h"

using namespace Qt::StringLiterals;

class CSourceColorsTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void RowsAreColouredAlone_data() {
    QTest::addColumn<int>("Row");
    QTest::addColumn<int>("Column");
    QTest::addColumn<U32>("ColorID");
    QTest::newRow("opening row") << 0 << 2 << U32(COLOR_SYNTAX_COMMENT);
    QTest::newRow("row inside the comment") << 1 << 0 << U32(COLOR_SYNTAX_COMMENT);
    QTest::newRow("row that ends it") << 2 << 3 << U32(COLOR_SYNTAX_COMMENT);
    QTest::newRow("behind the end") << 2 << 5 << U32(COLOR_SYNTAX_KEYWORD);
    QTest::newRow("blank behind a keyword") << 2 << 8 << U32(COLOR_SYNTAX_TEXT);
    QTest::newRow("first column of a tab") << 3 << 0 << U32(COLOR_SYNTAX_TEXT);
    QTest::newRow("behind a tab") << 3 << 4 << U32(COLOR_SYNTAX_KEYWORD);
    QTest::newRow("a tab inside the row") << 3 << 8 << U32(COLOR_SYNTAX_STRING);
  }

  void RowsAreColouredAlone() {
    const QStringList Rows = {u"/* a"_s, u"int if"_s, u"b */ int x;"_s, u"\tif\t\"x\""_s};
    CSourceColors Colors;
    Colors.SetText(Rows, SYNTAX_C);
    QFETCH(int, Row);
    QFETCH(int, Column);
    QFETCH(U32, ColorID);
    int End = 0;
    QColor Found;
    for (const QTextLayout::FormatRange& Format : Colors.FormatsOf(Row, Rows[Row], 4, true)) {
      QCOMPARE(Format.start, End);
      End += Format.length;
      if (Column >= Format.start && Column < End) Found = Format.format.foreground().color();
    }
    QCOMPARE(End, static_cast<int>(ExpandTabs(Rows[Row], 4).size()));
    QCOMPARE(Found, GetColor(ColorID));
  }
};

QTEST_MAIN(CSourceColorsTest)
#include "source_colors_test.moc"
