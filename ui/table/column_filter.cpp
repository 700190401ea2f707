#include "ui/table/column_filter.h"

#include <cmath>
#include <limits>

#include "base/text.h"

namespace {

constexpr I64 LOWEST = std::numeric_limits<I64>::min();
constexpr I64 HIGHEST = std::numeric_limits<I64>::max();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr int DECIMAL = 10;
constexpr int HEXADECIMAL = 16;
constexpr int DETECT = 0;

template <typename NUMBER>
struct RANGE {
  NUMBER Min;
  NUMBER Max;
};

// Number kinds: how a text is read, what comes next to a number, and the ends of the scale.
struct INTEGERS {
  using NUMBER = I64;
  int Base;
  NUMBER Lowest() const { return LOWEST; }
  NUMBER Highest() const { return HIGHEST; }
  NUMBER Read(const QString& sText, bool* pOk) const { return ParseShownInteger(sText, Base, pOk); }
  static bool Above(NUMBER* pNumber) { return *pNumber != HIGHEST && (++*pNumber, true); }
  static bool Below(NUMBER* pNumber) { return *pNumber != LOWEST && (--*pNumber, true); }
};

struct FLOATS {
  using NUMBER = double;
  NUMBER Lowest() const { return -INFINITE; }
  NUMBER Highest() const { return INFINITE; }
  NUMBER Read(const QString& sText, bool* pOk) const { return ParseShownFloat(sText, pOk); }
  static bool Above(NUMBER* pNumber) { return *pNumber = std::nextafter(*pNumber, INFINITE), true; }
  static bool Below(NUMBER* pNumber) { return *pNumber = std::nextafter(*pNumber, -INFINITE), true; }
};

// A sign or an exponent has a "-", too: the first one between two numbers makes the range.
template <typename KIND>
bool ParseRange(const KIND& Kind, const QString& sText, RANGE<typename KIND::NUMBER>* pRange) {
  for (qsizetype Pos = sText.indexOf(u'-'); Pos >= 0; Pos = sText.indexOf(u'-', Pos + 1)) {
    bool bMin = false, bMax = false;
    *pRange = {Kind.Read(sText.left(Pos), &bMin), Kind.Read(sText.mid(Pos + 1), &bMax)};
    if (bMin && bMax) return true;
  }
  return false;
}

template <typename KIND>
bool ParseNumberFilter(const KIND& Kind, const QString& sText, RANGE<typename KIND::NUMBER>* pRange) {
  if (ParseRange(Kind, sText, pRange)) return true;
  const bool bOperator = sText.startsWith(u'>') || sText.startsWith(u'<');
  const bool bEqual = bOperator && sText.mid(1, 1) == u"=";
  bool bOk = false;
  auto Number = Kind.Read(sText.mid(bOperator + bEqual), &bOk);
  if (!bOk) return false;
  if (!bOperator) {
    *pRange = {Number, Number};
  } else if (sText.startsWith(u'>')) {
    bOk = bEqual || Kind.Above(&Number);
    *pRange = {Number, Kind.Highest()};
  } else {
    bOk = bEqual || Kind.Below(&Number);
    *pRange = {Kind.Lowest(), Number};
  }
  return bOk;
}

}  // namespace

I64 ParseShownInteger(QString sText, int Base, bool* pOk) {
  return sText.remove(GROUP_BLANK).trimmed().toLongLong(pOk, Base);
}

int InputBaseOf(U32 ColumnKind) {
  return ColumnKind & COLUMN_HEX ? HEXADECIMAL : DETECT;
}

double ParseShownFloat(QString sText, bool* pOk) {
  const double Value = sText.remove(GROUP_BLANK).trimmed().toDouble(pOk);
  if (std::isnan(Value)) *pOk = false;
  return Value;
}

CColumnFilter::CColumnFilter(const QString& sText, U32 ColumnKind) {
  m_Info.sText = sText;
  m_Info.ColumnKind = ColumnKind;
  m_Info.NumberBase = ColumnKind & COLUMN_HEX ? HEXADECIMAL : DECIMAL;
  IsText() ? ParseText() : ParseNumbers();
}

void CColumnFilter::ParseNumbers() {
  const QString sText = m_Info.sText.trimmed();
  if (IsFloat()) {
    RANGE<double> Range{};
    m_Info.bValid = ParseNumberFilter(FLOATS(), sText, &Range);
    m_Info.FloatMin = Range.Min;
    m_Info.FloatMax = Range.Max;
  } else {
    RANGE<I64> Range{};
    const INTEGERS Kind{InputBaseOf(m_Info.ColumnKind)};
    m_Info.bValid = ParseNumberFilter(Kind, sText, &Range);
    m_Info.Min = Range.Min;
    m_Info.Max = Range.Max;
  }
}

void CColumnFilter::ParseText() {
  const QString& sText = m_Info.sText;
  const bool bWildcard = sText.contains(u'*');
  m_bFromStart = bWildcard && !sText.startsWith(u'*');
  m_bToEnd = bWildcard && !sText.endsWith(u'*');
  m_Words = sText.split(u'*', Qt::SkipEmptyParts);
  if (m_Words.size() == 1 && !m_bFromStart && !m_bToEnd) {
    m_Contained = QStringMatcher(m_Words.takeFirst(), Qt::CaseInsensitive);
  }
}

bool CColumnFilter::Find(const QString& sText, TEXT_MATCH* pMatch) const {
  if (!m_Contained.pattern().isEmpty()) {
    *pMatch = {m_Contained.indexIn(sText), m_Contained.pattern().size()};
    return pMatch->Start >= 0;
  }
  qsizetype Start = -1, Pos = 0;
  for (qsizetype i = 0; i < m_Words.size(); ++i) {
    const QString& sWord = m_Words[i];
    qsizetype Found = sText.indexOf(sWord, Pos, Qt::CaseInsensitive);
    if (i == 0 && m_bFromStart && Found != 0) return false;
    // The last word stands at the end even if it is found earlier, too.
    if (i == m_Words.size() - 1 && m_bToEnd && Found >= 0 && !(i == 0 && m_bFromStart)) {
      Found = sText.endsWith(sWord, Qt::CaseInsensitive) ? sText.size() - sWord.size() : -1;
    }
    if (Found < Pos) return false;
    if (i == 0) Start = Found;
    Pos = Found + sWord.size();
  }
  *pMatch = {std::max<qsizetype>(Start, 0), Start < 0 ? 0 : Pos - Start};
  return true;
}

bool CColumnFilter::AcceptsText(const QString& sText) const {
  TEXT_MATCH Match;
  return Find(sText, &Match);
}

bool CColumnFilter::AcceptsNumberText(const QString& sText) const {
  bool bOk = false;
  if (IsFloat()) {
    const double Value = ParseShownFloat(sText, &bOk);
    return bOk && AcceptsFloat(Value);
  }
  const I64 Value = ParseShownInteger(sText, InputBaseOf(m_Info.ColumnKind), &bOk);
  return bOk && AcceptsInteger(Value);
}

TEXT_MATCH CColumnFilter::Match(const QString& sText) const {
  TEXT_MATCH Match;
  return IsText() && Find(sText, &Match) ? Match : TEXT_MATCH();
}
