#pragma once
// The values of one column, collapsed into keys so that a sort of many rows parses nothing while it compares. No
// widgets.

#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

#include "base/types.h"
#include "ui/table/table_roles.h"

// What a model says of one cell.
struct SORT_CELL {
  bool bHasValue = true;
  QVariant Value;   // ROLE_SORT_VALUE
  QVariant Second;  // ROLE_SECOND_SORT_VALUE
  QString sText;    // as displayed
};

// Cells of equal value keep the order of the model. A column of texts goes by text in any case. In a column of numbers
// come first empty texts, then numbers, then texts that are none; of numbers that are equal the second value decides,
// if both are floating and have one, else the fallback text, which only values of the model, not parsed texts, have.
// Rows without value stand last whichever way the column goes.
class CSortKeys {
public:
  // Fallback gives the text of a row, counted as the cells are added; it is asked at most once for each row.
  using FALLBACK = std::function<QString(size_t Row)>;
  CSortKeys(U32 ColumnKind, FALLBACK Fallback)
      : m_bText(IsTextColumn(ColumnKind)), m_bHex((ColumnKind & COLUMN_HEX) != 0), m_Fallback(std::move(Fallback)) {}

  bool IsText() const { return m_bText; }
  void Reserve(size_t NumRows) { m_Keys.reserve(NumRows); }
  void Add(const SORT_CELL& Cell);
  // Sorts positions of added cells.
  void Sort(std::vector<int>& Rows, bool bDescending) const;

private:
  enum RANK : U8 { RANK_EMPTY, RANK_NUMBER, RANK_TEXT };
  struct KEY {
    RANK Rank = RANK_EMPTY;
    bool bHasValue = true;
    bool bFloat = false;
    bool bOfModel = false;  // the number is the model's, not a parsed text
    bool bSecond = false;
    I64 Integer = 0;
    double Float = 0;
    double Second = 0;
    QString sText;  // folded
  };

  using ROWS = std::vector<int>;
  using TEXT_OF = const QString& (CSortKeys::*)(size_t Row) const;

  void SortTexts(ROWS::iterator First, ROWS::iterator End, TEXT_OF TextOf, bool bDescending) const;
  void SortNumbers(ROWS& Rows, bool bDescending) const;
  void SortIntegers(ROWS& Rows, bool bDescending) const;
  int CompareNumbers(size_t Left, size_t Right) const;
  const KEY& KeyOf(int Row) const { return m_Keys[static_cast<size_t>(Row)]; }
  const QString& TextOf(size_t Row) const { return m_Keys[Row].sText; }
  const QString& FallbackOf(size_t Row) const;
  void TakeNumberText(const QString& sText, KEY* pKey) const;

  bool m_bText;
  bool m_bHex;
  FALLBACK m_Fallback;
  std::vector<KEY> m_Keys;
  mutable std::vector<QString> m_Fallbacks;  // folded; null where not asked for yet
};
