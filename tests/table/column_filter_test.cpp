#include "ui/table/column_filter.h"

#include <gtest/gtest.h>

#include "tests/common/print.h"

using namespace Qt::StringLiterals;

// Numbers that a filter shows, of 0 to 40 in steps of 4 and some at the ends of the scale.
TEST(ColumnFilter, NumbersByOperator) {
  constexpr I64 LOWEST = std::numeric_limits<I64>::min(), HIGHEST = std::numeric_limits<I64>::max();
  constexpr I64 NUMBERS[] = {LOWEST, -5, 0, 4, 5, 6, 15, 16, 17, 32, 33, HIGHEST};
  const std::tuple<const char*, U32, std::vector<I64>> ROWS[] = {
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
  for (const auto& [sFilter, Kind, Shown] : ROWS) {
    const CColumnFilter Filter(QLatin1String(sFilter), Kind);
    std::vector<I64> Accepted;
    for (const I64 Number : NUMBERS) {
      if (Filter.AcceptsInteger(Number)) Accepted.push_back(Number);
    }
    EXPECT_EQ(Accepted, Shown) << sFilter;
  }
}

// Cells without a value of their own are read as they are shown.
TEST(ColumnFilter, NumbersAsShown) {
  const std::tuple<QString, U32, QString, bool> ROWS[] = {
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
  for (const auto& [sFilter, Kind, sCell, bShown] : ROWS) {
    EXPECT_EQ(CColumnFilter(sFilter, Kind).AcceptsNumberText(sCell), bShown)
        << sFilter.toStdString() << " of " << sCell.toStdString();
  }
}

// What is named of the cell stands between brackets; a cell that is not shown is empty.
TEST(ColumnFilter, TextsAndWhatIsMarked) {
  const std::tuple<const char*, const char*, const char*> ROWS[] = {
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
  for (const auto& [sFilter, sText, sMarked] : ROWS) {
    const CColumnFilter Filter(QLatin1String(sFilter), COLUMN_TEXT);
    QString sCell = QLatin1String(sText);
    const TEXT_MATCH Match = Filter.AcceptsText(sCell) ? Filter.Match(sCell) : TEXT_MATCH();
    if (Match.Length > 0) sCell.insert(Match.Start + Match.Length, u']').insert(Match.Start, u'[');
    if (!Filter.AcceptsText(QLatin1String(sText))) sCell.clear();
    EXPECT_EQ(sCell, QLatin1String(sMarked)) << sFilter << " of " << sText;
  }
}
