#include "ui/table/column_filter.h"

#include <gtest/gtest.h>

#include "tests/common/print.h"

using namespace Qt::StringLiterals;

// Numbers that a filter shows, of 0 to 40 in steps of 4 and some at the ends of the scale.
TEST(ColumnFilter, NumbersByOperator) {
  constexpr I64 LOWEST = std::numeric_limits<I64>::min(), HIGHEST = std::numeric_limits<I64>::max();
  constexpr I64 NUMBERS[] = {LOWEST, -5, 0, 4, 5, 6, 15, 16, 17, 32, 33, HIGHEST};
  const struct {
    const char* sFilter;
    U32 Kind;
    std::vector<I64> Shown;
  } ROWS[] = {
      {"5", COLUMN_INTEGER, {5}},
      {" 0x10 ", COLUMN_INTEGER, {16}},
      {"> 5", COLUMN_INTEGER, {6, 15, 16, 17, 32, 33, HIGHEST}},
      {">= 5", COLUMN_INTEGER, {5, 6, 15, 16, 17, 32, 33, HIGHEST}},
      {"<5", COLUMN_INTEGER, {LOWEST, -5, 0, 4}},
      {"<= 5", COLUMN_INTEGER, {LOWEST, -5, 0, 4, 5}},
      {"5 - 16", COLUMN_INTEGER, {5, 6, 15, 16}},
      {"5-6", COLUMN_INTEGER, {5, 6}},
      {"16 - 5", COLUMN_INTEGER, {}},
      {"-5", COLUMN_INTEGER, {-5}},
      {"-5 - 4", COLUMN_INTEGER, {-5, 0, 4}},
      {">= -5", COLUMN_INTEGER, {-5, 0, 4, 5, 6, 15, 16, 17, 32, 33, HIGHEST}},
      {"-", COLUMN_INTEGER, {}},
      {"5 -", COLUMN_INTEGER, {}},
      {">", COLUMN_INTEGER, {}},
      {"five", COLUMN_INTEGER, {}},
      {"> 9223372036854775807", COLUMN_INTEGER, {}},
      {"< -9223372036854775808", COLUMN_INTEGER, {}},
      {"9223372036854775808", COLUMN_INTEGER, {}},
      {"0x10 - 0x20", COLUMN_INTEGER | COLUMN_HEX, {16, 17, 32}},
      {"10 - 20", COLUMN_INTEGER | COLUMN_HEX, {16, 17, 32}},
      {"f", COLUMN_INTEGER | COLUMN_HEX, {15}},
  };
  for (const auto& Row : ROWS) {
    const CColumnFilter Filter(QLatin1String(Row.sFilter), Row.Kind);
    std::vector<I64> Shown;
    for (const I64 Number : NUMBERS) {
      if (Filter.AcceptsInteger(Number)) Shown.push_back(Number);
    }
    EXPECT_EQ(Shown, Row.Shown) << Row.sFilter;
  }
}

// Cells without a value of their own are read as they are shown.
TEST(ColumnFilter, NumbersAsShown) {
  const struct {
    QString sFilter;
    U32 Kind;
    QString sCell;
    bool bShown;
  } ROWS[] = {
      {u"0x20000010"_s, COLUMN_INTEGER | COLUMN_HEX, u"2000\u20080010"_s, true},
      {u"2000\u20080010"_s, COLUMN_INTEGER | COLUMN_HEX, u"20000010"_s, true},
      {u"> 1000"_s, COLUMN_INTEGER, u"1\u2008234"_s, true},
      {u"> 1000"_s, COLUMN_INTEGER, u"N/A"_s, false},
      {u"> 1000"_s, COLUMN_INTEGER, QString(), false},
      {u"< 1"_s, COLUMN_FLOAT, u"0.25"_s, true},
      {u"> 0.5"_s, COLUMN_FLOAT, u"0.5"_s, false},
      {u"> 0.5"_s, COLUMN_FLOAT, u"0.5000001"_s, true},
      {u">= 0.5"_s, COLUMN_FLOAT, u"0.5"_s, true},
      {u"< 0.5"_s, COLUMN_FLOAT, u"0.5"_s, false},
      {u"1e-5"_s, COLUMN_FLOAT, u"1e-5"_s, true},
      {u"1e-5 - 1"_s, COLUMN_FLOAT, u"2"_s, false},
      {u"<= -1.5"_s, COLUMN_FLOAT, u"-1.5"_s, true},
      {u"nan"_s, COLUMN_FLOAT, u"1"_s, false},
  };
  for (const auto& Row : ROWS) {
    EXPECT_EQ(CColumnFilter(Row.sFilter, Row.Kind).AcceptsNumberText(Row.sCell), Row.bShown)
        << Row.sFilter.toStdString() << " of " << Row.sCell.toStdString();
  }
}

// What is named of the cell stands between brackets; a cell that is not shown is empty.
TEST(ColumnFilter, TextsAndWhatIsMarked) {
  const struct {
    const char* sFilter;
    const char* sCell;
    const char* sMarked;
  } ROWS[] = {
      {"led", "ToggleLed_LEDs", "Toggle[Led]_LEDs"},
      {"*led*", "ToggleLed", "Toggle[Led]"},
      {"led*", "LEDs", "[LED]s"},
      {"led*", "ToggleLed", ""},
      {"*led", "LedToggleLed", "LedToggle[Led]"},
      {"*led", "LEDs", ""},
      {"l*d", "LED", "[LED]"},
      {"l*d", "LEDs", ""},
      {"ab*ba", "aba", ""},
      {"*a*b*", "xa.by", "x[a.b]y"},
      {"*a*b*", "ba", ""},
      {"**", "any", "any"},
      {"a?c", "abc", ""},
      {"(x", "f(x)", "f[(x])"},
      {"led", "", ""},
  };
  for (const auto& Row : ROWS) {
    const CColumnFilter Filter(QLatin1String(Row.sFilter), COLUMN_TEXT);
    QString sCell = QLatin1String(Row.sCell), sMarked;
    if (Filter.AcceptsText(sCell)) {
      const TEXT_MATCH Match = Filter.Match(sCell);
      sMarked = Match.Length == 0 ? sCell
                                  : sCell.left(Match.Start) + u'[' + sCell.mid(Match.Start, Match.Length) + u']' +
                                        sCell.mid(Match.Start + Match.Length);
    }
    EXPECT_EQ(sMarked, QLatin1String(Row.sMarked)) << Row.sFilter << " of " << Row.sCell;
  }
}
