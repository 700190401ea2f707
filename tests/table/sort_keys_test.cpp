#include "ui/table/sort_keys.h"

#include <gtest/gtest.h>

#include <numeric>

#include "ui/table/item_states.h"

using namespace Qt::StringLiterals;

namespace {

SORT_CELL Text(const QString& sText) {
  return {true, {}, {}, sText};
}
SORT_CELL Number(const QVariant& Value, const QVariant& Second = {}) {
  return {true, Value, Second, u"not looked at"_s};
}
SORT_CELL None() {
  return {false, {}, {}, {}};
}

// The cells' letters in their order; a cell's letter is its fallback text, too.
std::string Sorted(const std::vector<SORT_CELL>& Cells, U32 Kind, bool bDescending, const char* sLetters) {
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
    std::vector<SORT_CELL> Cells;
    U32 Kind;
    const char* sLetters;
    const char* sUp;
    const char* sDown;
  } ROWS[] = {
      {"texts in any case",
       {Text(u"b"_s), Text(u"A"_s), Text(u"C"_s), Text(u""_s)},
       COLUMN_TEXT,
       "bace",
       "eabc",
       "cbae"},
      {"texts of numbers in a column of texts", {Text(u"10"_s), Text(u"9"_s)}, COLUMN_TEXT, "ab", "ab", "ba"},
      {"equal texts stay", {Text(u"x"_s), Text(u"X"_s), Text(u"w"_s)}, COLUMN_TEXT, "bac", "cba", "bac"},
      {"numbers", {Number(10), Number(9), Number(-1)}, COLUMN_INTEGER, "abc", "cba", "abc"},
      {"numbers beyond 53 bits",
       {Number(9007199254740993LL), Number(9007199254740992LL)},
       COLUMN_INTEGER,
       "ab",
       "ba",
       "ab"},
      {"equal numbers by fallback", {Number(1), Number(1), Number(0)}, COLUMN_INTEGER, "zab", "baz", "zab"},
      {"no value stands last", {None(), Number(5), None(), Number(4)}, COLUMN_INTEGER, "nxmy", "yxmn", "xynm"},
      {"no value among texts", {None(), Text(u"b"_s), Text(u"a"_s)}, COLUMN_TEXT, "nba", "abn", "ban"},
      {"shown numbers",
       {Text(u"10"_s), Text(u"9"_s), Text(u"0x10"_s), Text(u""_s), Text(u"N/A"_s)},
       COLUMN_INTEGER,
       "abcde",
       "dbace",
       "ecabd"},
      {"shown groups", {Text(u"1\u2008000"_s), Text(u"999"_s)}, COLUMN_INTEGER, "ab", "ba", "ab"},
      {"shown hexadecimal groups",
       {Text(u"2000\u200800FF"_s), Text(u"2000\u200800F0"_s)},
       COLUMN_HEX,
       "ab",
       "ba",
       "ab"},
      {"shown floats", {Text(u"1.5"_s), Text(u"-2"_s), Text(u"1e-3"_s)}, COLUMN_FLOAT, "abc", "bca", "acb"},
      {"equal shown numbers stay", {Text(u"7"_s), Text(u"0x7"_s)}, COLUMN_INTEGER, "ba", "ba", "ba"},
      {"floats too close by second value",
       {Number(0.5, 2.0), Number(0.5 + 1e-16, 1.0)},
       COLUMN_FLOAT,
       "ab",
       "ba",
       "ab"},
      {"floats too close without one by fallback", {Number(0.5, 2.0), Number(0.5)}, COLUMN_FLOAT, "ba", "ab", "ba"},
      {"floats apart whatever the second",
       {Number(0.5, 2.0), Number(0.5 + 1e-14, 1.0)},
       COLUMN_FLOAT,
       "ab",
       "ab",
       "ba"},
      {"floats beside integers", {Number(2), Number(1.5), Number(1)}, COLUMN_INTEGER, "abc", "cba", "abc"},
  };
  for (const auto& Row : ROWS) {
    EXPECT_EQ(Sorted(Row.Cells, Row.Kind, false, Row.sLetters), Row.sUp) << Row.sWhat;
    EXPECT_EQ(Sorted(Row.Cells, Row.Kind, true, Row.sLetters), Row.sDown) << Row.sWhat << ", down";
  }
}

TEST(SortKeys, FallbackIsAskedOnceARow) {
  int NumAsked = 0;
  CSortKeys Keys(COLUMN_INTEGER, [&NumAsked](size_t) { return ++NumAsked, QString(); });
  std::vector<int> Rows(100);
  std::iota(Rows.begin(), Rows.end(), 0);
  for (int i = 0; i < 100; ++i) Keys.Add(Number(0));
  Keys.Sort(Rows, false);
  EXPECT_EQ(NumAsked, 100);
}

TEST(ItemStates, ChangesAndTheirFading) {
  CItemStates States;
  States.TakeValue(1, 10);
  EXPECT_EQ(States.GetLevel(1), CHANGE_LEVEL_UNCHANGED);
  States.TakeValue(1, 10);
  EXPECT_FALSE(States.HasChanges());
  States.TakeValue(1, 11);
  EXPECT_EQ(States.GetLevel(1), CHANGE_LEVEL_1);
  States.TakeValue(1, -1);
  EXPECT_EQ(States.GetValue(1), 11u);
  for (const CHANGE_LEVELS Level : {CHANGE_LEVEL_2, CHANGE_LEVEL_3, CHANGE_LEVEL_UNCHANGED, CHANGE_LEVEL_UNCHANGED}) {
    States.Age(1);
    EXPECT_EQ(States.GetLevel(1), Level);
  }
  // Only the low 32 bits count.
  States.TakeValue(1, 0x10000000BLL);
  EXPECT_EQ(States.GetLevel(1), CHANGE_LEVEL_UNCHANGED);
}

TEST(ItemStates, RequestsAreForgottenAndAnswersKept) {
  CItemStates States;
  States.SetRefreshState(1, ITEM_REQUESTED);
  States.SetRefreshState(2, ITEM_READ);
  States.ForgetRequests();
  EXPECT_EQ(States.GetRefreshState(1), ITEM_STALE);
  EXPECT_EQ(States.GetRefreshState(2), ITEM_READ);
  States.Invalidate();
  EXPECT_EQ(States.GetRefreshState(2), ITEM_STALE);
}
