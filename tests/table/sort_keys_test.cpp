#include "ui/table/sort_keys.h"

#include <gtest/gtest.h>

#include <numeric>

#include "ui/table/item_states.h"

using namespace Qt::StringLiterals;

namespace {

using CELLS = std::vector<SORT_CELL>;

// One cell for each part between bars.
CELLS Texts(const QString& sCells) {
  CELLS Cells;
  for (const QString& sCell : sCells.split(u'|')) Cells.push_back({true, {}, {}, sCell});
  return Cells;
}
SORT_CELL Number(const QVariant& Value, const QVariant& Second = {}) {
  return {true, Value, Second, u"not looked at"_s};
}
SORT_CELL None() {
  return {false, {}, {}, {}};
}

// The cells' letters in their order; a cell's letter is its fallback text, too.
std::string Sorted(const CELLS& Cells, U32 Kind, bool bDescending, const char* sLetters) {
  CSortKeys Keys(Kind, [&](size_t Row) { return QString(QLatin1Char(sLetters[Row])); });
  for (const SORT_CELL& Cell : Cells) Keys.Add(Cell);
  std::vector<int> Rows(Cells.size());
  std::iota(Rows.begin(), Rows.end(), 0);
  Keys.Sort(Rows, bDescending);
  std::string sOrder;
  for (const int Row : Rows) sOrder += sLetters[Row];
  return sOrder;
}

}  // namespace

TEST(SortKeys, Orders) {
  const struct {
    const char* sWhat;
    CELLS Cells;
    U32 Kind;
    const char* sLetters;
    const char* sUp;
    const char* sDown;
  } ROWS[] = {
      {"texts in any case", Texts(u"b|A|C|"_s), COLUMN_TEXT, "bace", "eabc", "cbae"},
      {"texts of numbers in a column of texts", Texts(u"10|9"_s), COLUMN_TEXT, "ab", "ab", "ba"},
      {"equal texts stay", Texts(u"x|X|w"_s), COLUMN_TEXT, "bac", "cba", "bac"},
      {"numbers", {Number(10), Number(9), Number(-1)}, COLUMN_INTEGER, "abc", "cba", "abc"},
      {"beyond 53 bits", {Number(9007199254740993LL), Number(9007199254740992LL)}, COLUMN_INTEGER, "ab", "ba", "ab"},
      {"equal numbers by fallback", {Number(1), Number(1), Number(0)}, COLUMN_INTEGER, "zab", "baz", "zab"},
      {"no value stands last", {None(), Number(5), None(), Number(4)}, COLUMN_INTEGER, "nxmy", "yxmn", "xynm"},
      {"no value among texts", {None(), Texts(u"b"_s)[0], Texts(u"a"_s)[0]}, COLUMN_TEXT, "nba", "abn", "ban"},
      {"shown numbers", Texts(u"10|9|0x10||N/A"_s), COLUMN_INTEGER, "abcde", "dbace", "ecabd"},
      {"shown groups", Texts(u"1\u2008000|999"_s), COLUMN_INTEGER, "ab", "ba", "ab"},
      {"shown hexadecimal groups", Texts(u"2000\u200800FF|2000\u200800F0"_s), COLUMN_HEX, "ab", "ba", "ab"},
      {"digits alone", Texts(u"2000\u20080400|1000\u2008ABCD"_s), COLUMN_INTEGER | COLUMN_HEX, "ab", "ba", "ab"},
      {"shown floats", Texts(u"1.5|-2|1e-3"_s), COLUMN_FLOAT, "abc", "bca", "acb"},
      {"equal shown numbers stay", Texts(u"7|0x7"_s), COLUMN_INTEGER, "ba", "ba", "ba"},
      {"close floats by second value", {Number(0.5, 2.0), Number(0.5 + 1e-16, 1.0)}, COLUMN_FLOAT, "ab", "ba", "ab"},
      {"close floats without one by fallback", {Number(0.5, 2.0), Number(0.5)}, COLUMN_FLOAT, "ba", "ab", "ba"},
      {"floats apart", {Number(0.5, 2.0), Number(0.5 + 1e-14, 1.0)}, COLUMN_FLOAT, "ab", "ab", "ba"},
      {"floats beside integers", {Number(2), Number(1.5), Number(1)}, COLUMN_INTEGER, "abc", "cba", "abc"},
  };
  for (const auto& Row : ROWS) {
    EXPECT_EQ(Sorted(Row.Cells, Row.Kind, false, Row.sLetters), Row.sUp) << Row.sWhat;
    EXPECT_EQ(Sorted(Row.Cells, Row.Kind, true, Row.sLetters), Row.sDown) << Row.sWhat << ", down";
  }
}

TEST(ItemStates, ChangesAndTheirFading) {
  constexpr I64 AGE = -2;
  // What comes, and the level afterwards. Only the low 32 bits of a value count; a negative one is none.
  const std::pair<I64, CHANGE_LEVELS> STEPS[] = {
      {10, CHANGE_LEVEL_UNCHANGED},  {10, CHANGE_LEVEL_UNCHANGED},  {11, CHANGE_LEVEL_1},
      {-1, CHANGE_LEVEL_1},          {AGE, CHANGE_LEVEL_2},         {AGE, CHANGE_LEVEL_3},
      {AGE, CHANGE_LEVEL_UNCHANGED}, {AGE, CHANGE_LEVEL_UNCHANGED}, {0x10000000B, CHANGE_LEVEL_UNCHANGED},
  };
  CItemStates States;
  for (const auto& [What, Level] : STEPS) {
    What == AGE ? States.Age(1) : States.TakeValue(1, What);
    EXPECT_EQ(States.GetLevel(1), Level) << &Level - &STEPS[0].second;
    EXPECT_EQ(States.HasChanges(), Level != CHANGE_LEVEL_UNCHANGED);
  }
}
