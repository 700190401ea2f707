#pragma once
// What a user types above a column, as a test of its cells. Plain text and numbers, no widgets.

#include <QString>
#include <QStringList>
#include <QStringMatcher>

#include "base/types.h"
#include "ui/table/table_roles.h"

// The text that stands for no filter.
inline constexpr QChar NO_FILTER(u'*');

struct FILTER_INFO {
  bool bValid = false;  // a range of numbers was understood
  int NumberBase = 10;  // 16 for a hexadecimal column
  U32 ColumnKind = COLUMN_TEXT;
  I64 Min = 0;  // of an integer column
  I64 Max = 0;
  double FloatMin = 0;  // of a floating column
  double FloatMax = 0;
  QString sText;  // as entered
};

// A part of a text; none with Length 0.
struct TEXT_MATCH {
  qsizetype Start = 0;
  qsizetype Length = 0;
  bool operator==(const TEXT_MATCH&) const = default;
};

// Numbers: "a - b", ">= a", "<= a", "> a", "< a", "a"; what is none of these accepts nothing. Texts, in any case:
// "word" is contained, a "*" at one end leaves only the other end anchored, and one inside stands for anything.
class CColumnFilter {
public:
  CColumnFilter(const QString& sText, U32 ColumnKind);

  const FILTER_INFO& Info() const { return m_Info; }
  bool IsText() const { return IsTextColumn(m_Info.ColumnKind); }
  bool IsFloat() const { return !IsText() && (m_Info.ColumnKind & COLUMN_FLOAT) != 0; }
  bool AcceptsText(const QString& sText) const;
  bool AcceptsInteger(I64 Value) const { return m_Info.bValid && Value >= m_Info.Min && Value <= m_Info.Max; }
  bool AcceptsFloat(double Value) const {
    return m_Info.bValid && Value >= m_Info.FloatMin && Value <= m_Info.FloatMax;
  }
  // Of a column of numbers without values of their own: the number that the text shows.
  bool AcceptsNumberText(const QString& sText) const;
  // The part of an accepted text that the filter names.
  TEXT_MATCH Match(const QString& sText) const;

private:
  void ParseText();
  void ParseNumbers();
  bool Find(const QString& sText, TEXT_MATCH* pMatch) const;

  FILTER_INFO m_Info;
  QStringMatcher m_Contained;  // of a filter of one word that may stand anywhere
  QStringList m_Words;         // of any other, in the order in which they have to come
  bool m_bFromStart = false;
  bool m_bToEnd = false;
};

// The number that a text shows, with thin blanks between groups of digits; base 0 detects "0x".
I64 ParseShownInteger(QString sText, int Base, bool* pOk);
// The base for numbers that a user types for a column.
int InputBaseOf(U32 ColumnKind);
double ParseShownFloat(QString sText, bool* pOk);
