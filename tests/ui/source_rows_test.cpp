// The parts of the source editor that need no window: a text as rows, their colours and grounds, columns and pixels.

#include <QFontMetricsF>
#include <QRandomGenerator>
#include <QTest>

#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/settings_cache.h"
#include "tests/common/write_file.h"
#include "ui/windows/source_colors.h"
#include "ui/windows/source_highlights.h"
#include "ui/windows/source_rows.h"
#include "ui/windows/source_search.h"
#include "ui/windows/text_metrics.h"

using namespace Qt::StringLiterals;

namespace {

constexpr U32 CORTEX_M4 = 0x0E0000FF;
const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");
const QString PIECES[] = {u"\n"_s, u"a"_s, u"/*"_s, u"*/"_s, u"//"_s, u"\""_s, u"\\\n"_s, u"\n\n"_s, u"word "_s, u""_s};

QString RandomText(QRandomGenerator& Random, int NumPieces) {
  QString sText;
  for (int i = 0; i < NumPieces; ++i) sText += PIECES[Random.bounded(static_cast<int>(std::size(PIECES)))];
  return sText;
}

QStringList LinesOf(const CSourceText& Text) {
  QStringList Lines;
  for (int i = 0; i < Text.NumLines(); ++i) Lines << Text.Line(i).toString();
  return Lines;
}

// The kinds of a line's characters, a letter each.
QString KindsOf(CSourceColors& Colors, const CSourceText& Text, int Line) {
  const ROW_SPANS& Row = Colors.SpansOf(Line, Text.Line(Line));
  QString sKinds;
  for (size_t i = 0; i < Row.Spans.size(); ++i) {
    sKinds += QString(Row.Spans[i].Length, QLatin1Char("TCSKDTMLIR"[Row.Kinds[i]]));
  }
  return sKinds;
}

}  // namespace

class CSourceRowsTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    VCore::Init({CORTEX_M4, 0, 0}, {});
    CFileFinder::Get()->SetProjectPath(EXAMPLE + u"traffic_light.vdebug"_s);
    QCOMPARE(ELFAPI_Load(EXAMPLE + u"traffic_light.elf"_s), 0);
  }

  // Lines, what is said of their change, and colours are those of the same text read anew.
  void replacementsKeepLinesAndColours() {
    QRandomGenerator Random(1);
    for (int Round = 0; Round < 300; ++Round) {
      const bool bOpenEnd = Round % 2 != 0;
      CSourceText Text;
      CSourceColors Colors;
      Text.Set(RandomText(Random, Random.bounded(12)), bOpenEnd);
      Colors.SetText(Text, SYNTAX_C);
      for (int i = 0; i < 8; ++i) {
        const QStringList Before = LinesOf(Text);
        const int Position = Random.bounded(Text.Size() + 1);
        const int NumRemoved = Random.bounded(Text.Size() - Position + 1) / (1 + Random.bounded(4));
        const LINE_CHANGE Change = Text.Replace(Position, NumRemoved, RandomText(Random, Random.bounded(4)));
        Colors.Update(Text, Change);
        CSourceText Fresh;
        CSourceColors FreshColors;
        Fresh.Set(Text.Text(), bOpenEnd);
        FreshColors.SetText(Fresh, SYNTAX_C);
        const QStringList After = LinesOf(Text);
        QCOMPARE(After, LinesOf(Fresh));
        QCOMPARE(After.first(std::min<qsizetype>(Change.First, After.size())), Before.first(Change.First));
        QCOMPARE(After.mid(Change.First + Change.NumNew), Before.mid(Change.First + Change.NumOld));
        for (int Line = 0; Line < Text.NumLines(); ++Line) {
          QCOMPARE(Text.StartOf(Line), Fresh.StartOf(Line));
          QCOMPARE(Text.LineAt(Text.StartOf(Line)), Line);
          QCOMPARE(KindsOf(Colors, Text, Line), KindsOf(FreshColors, Fresh, Line));
        }
      }
    }
  }

  // Each line, asked for alone, knows what is open where it begins.
  void linesAreColouredAlone() {
    const std::pair<const char*, const char*> Lines[] = {
        {"/* a", "CCCC"},
        {"int if", "CCCCCC"},
        {"b */ int x;", "CCCCTKKKTTT"},
        {"\tif\t\"x\"", "TKKTSSS"},
        {"/**/ /*/", "CCCCTCCC"},
        {"// */ if", "CCCCCTKK"},
        {"// /* \\", "CCCCCCC"},
        {"int y", "CCCCC"},
        {"s = \"\\\"/*\";", "TTTTSSSSSST"},
        {"c = '\"'; int x", "TTTTTTTTTKKKTT"},
        {"x don\"t", "TTTTTSS"},
        {"int y", "KKKTT"},
        {"\"a \\", "SSSS"},
        {"b\" /*", "SSTCC"},
        {"", ""},
        {"*/ int x", "CCTKKKTT"},
    };
    QStringList Text, Kinds;
    for (const auto& [sLine, sKinds] : Lines) Text << QLatin1String(sLine), Kinds << QLatin1String(sKinds);
    CSourceText Source;
    CSourceColors Colors;
    Source.Set(Text.join(u'\n'), true);
    Colors.SetText(Source, SYNTAX_C);
    for (int i = static_cast<int>(Kinds.size()) - 1; i >= 0; --i) QCOMPARE(KindsOf(Colors, Source, i), Kinds[i]);
  }

  // A list of rows, opened and closed one by one, is the model.
  void openedLinesMapToRows() {
    constexpr int NUM_LINES = 20;
    QRandomGenerator Random(2);
    CLineExpansions Expansions;
    std::map<int, int> Model;  // instruction rows by line
    for (int i = 0; i < 500; ++i) {
      const int Line = Random.bounded(NUM_LINES);
      const int NumRows = Random.bounded(4);
      if (Random.bounded(2)) {
        const bool bOpened = NumRows > 0 && !Model.contains(Line);
        QCOMPARE(Expansions.Open(Line, INSTRUCTION_ROWS(static_cast<size_t>(NumRows))), bOpened);
        if (bOpened) Model[Line] = NumRows;
      } else {
        QCOMPARE(Expansions.Close(Line), Model.erase(Line) > 0);
      }
      int Row = 0;
      for (int l = 0; l < NUM_LINES; ++l) {
        for (int Inst = -1; Inst < (Model.contains(l) ? Model[l] : 0); ++Inst, ++Row) {
          QVERIFY((Expansions.OriginOf(Row) == ROW_ORIGIN{l, Inst}));
          QCOMPARE(Expansions.RowOf({l, Inst}), Row);
        }
      }
      QCOMPARE(NUM_LINES + Expansions.NumRows(), Row);
    }
  }

  void instructionsOfTheExample() {
    CSourceRows Rows;
    LoadMain(Rows);
    const U32 LINE = 35;  // its code lies in two places
    QVERIFY(Rows.Expand(LINE) && !Rows.Expand(LINE) && !Rows.Expand(37) && !Rows.Expand(100000));
    const int First = Rows.RowOfLine(LINE) + 1;
    const QString sRow = Rows.RowText(First).toString();
    QVERIFY(sRow.startsWith(u"0000 0102   B926       CBNZ        R6, 0x0000010E  "_s));
    QCOMPARE(sRow.indexOf(u"; <crossing_step>+0x3E"), 23 + 40);
    QList<int> Groups;
    for (int Row = First; Rows.InstructionAt(Row); ++Row) Groups << Rows.InstructionAt(Row)->Group;
    QCOMPARE(Groups, (QList<int>{0, 1, 1, 1, 1, 1, 1, 1}));
    QCOMPARE(Rows.RowOfAddr(0x110), First + 2);
    QCOMPARE(Rows.LineOfRow(First + 2), LINE);
    QCOMPARE(Rows.RowOfLine(LINE + 1), First + 8);
    QCOMPARE(Rows.RangesOfRow(First - 1), (QAddrRanges{{0x102, 2}, {0x10E, 16}}));
    QCOMPARE(Rows.RangesOfRow(First + 7), (QAddrRanges{{0x11A, 4}}));
    Rows.SetEncodingsShown(false);
    Rows.UpdateInstructions();
    QVERIFY(Rows.RowText(First + 7).startsWith(u"0000 011A  BL "_s));
    QVERIFY(Rows.Collapse(LINE));
    // The row of a closed line stands for its first address alone.
    QCOMPARE(Rows.RowOfAddr(0x102), First - 1);
    QCOMPARE(Rows.RowOfAddr(0x110), -1);
    QCOMPARE(Rows.RowOfCode(0x110), First - 1);
  }

  void columnsAndPixelsAgree() {
    CTextMetrics Metrics;
    Metrics.SetTabSpacing(4);
    const char* const Fonts[] = {"DejaVu Sans Mono", "DejaVu Sans"};
    const QString Rows[] = {
        QString(),          u"plain text"_s,      u"\t\tx\ty"_s,         u"ab\tc"_s,           u"a\u4E2D\u6587b"_s,
        u"\u00E9\u0301x"_s, u"\U0001F600 = 1;"_s, u"wwwiii \u00FC\t|"_s, u"\t"_s.repeated(300)};
    for (const char* const sFont : Fonts) {
      Metrics.SetFont(QFont(QLatin1String(sFont), 10));
      for (const QString& sRow : Rows) {
        qreal Last = -1;
        for (int Column = 0; Column <= sRow.size(); Column = CTextMetrics::NextColumn(sRow, Column)) {
          const qreal x = Metrics.XOf(sRow, Column);
          QVERIFY2(x > Last, qPrintable(sRow));
          QCOMPARE(Metrics.NearestColumn(sRow, x), Column);
          if (Column > 0) QCOMPARE(CTextMetrics::NextColumn(sRow, CTextMetrics::PreviousColumn(sRow, Column)), Column);
          if (Column < sRow.size()) QCOMPARE(Metrics.ColumnAt(sRow, x + 0.5), Column);
          Last = x;
        }
        QCOMPARE(Metrics.NearestColumn(sRow, 1e6), static_cast<int>(sRow.size()));
      }
    }
    Metrics.SetFont(QFont(u"DejaVu Sans Mono"_s, 10));
    const qreal Width = Metrics.CharWidth();
    QCOMPARE(Metrics.XOf(u"ab\tc", 3), 4 * Width);
    QCOMPARE(Metrics.XOf(u"abcd\tc", 5), 8 * Width);
    QCOMPARE(Metrics.XOf(u"e\u0301x", 2), Width);
  }

  void groundsOfRows() {
    CSourceHighlights Highlights;
    Highlights.SetLine(1, COLOR_PC_ACTIVE);
    Highlights.SetLine(2, COLOR_CALL_SITE_ACTIVE);
    Highlights.SetAddr(0x100, COLOR_PC_ACTIVE);
    const auto Source = [](U32 Line) { return ROW_GROUND{.Line = Line}; };
    const auto Instruction = [](U32 Addr, int Group) {
      return ROW_GROUND{.bInstruction = true, .Line = 1, .Addr = Addr, .Group = Group};
    };
    const auto With = [](ROW_GROUND Row, bool ROW_GROUND::*pFlag) {
      Row.*pFlag = true;
      return Row;
    };
    ROW_GROUND Opened = Source(1);
    Opened.bExpanded = Opened.bColorBelow = true;
    ROW_GROUND OpenedCall = Opened;
    OpenedCall.Line = 2;
    const std::pair<ROW_GROUND, std::optional<ROW_COLOR>> Rows[] = {
        {Source(3), std::nullopt},
        {Source(1), ROW_COLOR{COLOR_PC_ACTIVE}},
        {With(Source(1), &ROW_GROUND::bEmpty), std::nullopt},
        {With(Source(1), &ROW_GROUND::bMarksCursor), ROW_COLOR{COLOR_HIGHLIGHT_LIGHT}},
        {With(Source(3), &ROW_GROUND::bMarksCursor), ROW_COLOR{COLOR_HIGHLIGHT_LIGHT}},
        {With(Source(1), &ROW_GROUND::bExpanded), ROW_COLOR{COLOR_PC_ACTIVE}},
        {Opened, ROW_COLOR{COLOR_PC_INACTIVE}},
        {OpenedCall, ROW_COLOR{COLOR_CALL_SITE_ACTIVE}},
        {With(OpenedCall, &ROW_GROUND::bOneInstruction), ROW_COLOR{COLOR_CALL_SITE_INACTIVE}},
        {Instruction(0x100, 0), ROW_COLOR{COLOR_PC_ACTIVE}},
        {Instruction(0x102, 0), ROW_COLOR{COLOR_INLINE_ASM_BACKG}},
        {Instruction(0x102, 3), ROW_COLOR{COLOR_INLINE_ASM_BACKG_ALTERNATE}},
        {With(Instruction(0x102, 0), &ROW_GROUND::bMarksCursor), ROW_COLOR{COLOR_HIGHLIGHT_LIGHT}},
        {With(Instruction(0x102, 1), &ROW_GROUND::bMarksCursor), (ROW_COLOR{COLOR_HIGHLIGHT_LIGHT, true})},
    };
    for (const auto& [Row, Color] : Rows)
      QVERIFY2(Highlights.ColorOf(Row) == Color, qPrintable(QString::number(&Row - &Rows[0].first)));
    Highlights.SetBacktraceActive(true);
    QVERIFY(Highlights.ColorOf(With(Source(1), &ROW_GROUND::bHoldsCursor)) == ROW_COLOR{COLOR_PC_BACKTRACE});
    Highlights.MoveLines(2, 3);
    QVERIFY(Highlights.ColorOf(Source(5)) == ROW_COLOR{COLOR_CALL_SITE_ACTIVE} && !Highlights.ColorOf(Source(2)));
    Highlights.MoveLines(5, -4);
    QVERIFY(Highlights.ColorOf(Source(1)) == ROW_COLOR{COLOR_CALL_SITE_ACTIVE});
    Highlights.Remove(COLOR_CALL_SITE_ACTIVE);
    QVERIFY(!Highlights.ColorOf(Source(1)) && Highlights.HasAddr(0x100));
  }

  void textsAreFoundAroundTheEnds() {
    const QString sText = u"one One tone\none"_s;
    const std::tuple<QString, int, unsigned, int> Rows[] = {
        {u"one"_s, 0, SEARCH_DEFAULT, 0},     {u"one"_s, 1, SEARCH_DEFAULT, 4},
        {u"one"_s, 1, SEARCH_MATCH_CASE, 9},  {u"one"_s, 5, SEARCH_WHOLE_WORD, 13},
        {u"one"_s, 14, SEARCH_DEFAULT, 0},    {u"one"_s, 3, SEARCH_BACKWARD, 0},
        {u"one"_s, 2, SEARCH_BACKWARD, 13},   {u"one"_s, 13, SEARCH_BACKWARD | SEARCH_WHOLE_WORD, 4},
        {u"tone\no"_s, 0, SEARCH_DEFAULT, 8}, {u"ONE"_s, 0, SEARCH_MATCH_CASE, -1},
        {u"on"_s, 0, SEARCH_WHOLE_WORD, -1},  {QString(), 0, SEARCH_DEFAULT, -1},
    };
    for (const auto& [sWhat, From, Flags, Match] : Rows) {
      QCOMPARE(FindText(sText, sWhat, From, static_cast<SEARCH_FLAGS>(Flags)).value_or(-1), Match);
    }
  }

private:
  static void LoadMain(CSourceRows& Rows) {
    Rows.SetText(QString::fromUtf8(ReadFile(EXAMPLE + u"src/main.c"_s)), ELFAPI_ParseSrcLoc(u"main.c:38"_s).File,
                 false);
  }
};

QTEST_MAIN(CSourceRowsTest)
#include "source_rows_test.moc"
