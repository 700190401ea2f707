#include "ui/table/sort_keys.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"

namespace {

constexpr double EQUAL_FLOATS = 1.0e-15;
constexpr int HEXADECIMAL = 16;
constexpr int DETECT = 0;

template <typename NUMBER>
int Order(NUMBER Left, NUMBER Right) {
  return (Left > Right) - (Left < Right);
}

bool IsFloatValue(const QVariant& Value) {
  return Value.typeId() == QMetaType::Double || Value.typeId() == QMetaType::Float;
}

}  // namespace

void CSortKeys::TakeNumberText(const QString& sText, KEY* pKey) {
  QString sNumber = sText;
  const bool bGroups = sNumber.contains(GROUP_BLANK);
  if (bGroups) sNumber.remove(GROUP_BLANK);
  sNumber = sNumber.trimmed();
  bool bOk = false;
  pKey->Integer = sNumber.toLongLong(&bOk, DETECT);
  if (!bOk) pKey->Integer = sNumber.toLongLong(&bOk);
  // Groups of hexadecimal digits are one number.
  if (!bOk && bGroups) pKey->Integer = sNumber.toLongLong(&bOk, HEXADECIMAL);
  pKey->Float = static_cast<double>(pKey->Integer);
  if (!bOk) {
    pKey->Float = sNumber.toDouble(&bOk);
    bOk = bOk && !std::isnan(pKey->Float);
    pKey->bFloat = bOk;
  }
  if (bOk) pKey->Rank = RANK_NUMBER;
}

void CSortKeys::Add(const SORT_CELL& Cell) {
  KEY& Key = m_Keys.emplace_back();
  Key.bHasValue = Cell.bHasValue;
  if (!m_bText && Cell.Value.isValid()) {
    Key.Rank = RANK_NUMBER;
    Key.bOfModel = true;
    Key.bFloat = IsFloatValue(Cell.Value);
    Key.Float = Cell.Value.toDouble();
    Key.Integer = Key.bFloat ? 0 : Cell.Value.toLongLong();
    Key.bSecond = Cell.Second.isValid();
    Key.Second = Cell.Second.toDouble();
    return;
  }
  if (Cell.sText.isEmpty()) return;
  Key.Rank = RANK_TEXT;
  if (!m_bText) TakeNumberText(Cell.sText, &Key);
  if (Key.Rank == RANK_TEXT) Key.sText = Cell.sText.toCaseFolded();
}

const QString& CSortKeys::FallbackOf(size_t Row) const {
  if (m_Fallbacks.empty()) m_Fallbacks.resize(m_Keys.size());
  QString& sText = m_Fallbacks[Row];
  if (sText.isNull()) sText = m_Fallback ? m_Fallback(Row).toCaseFolded() : QString();
  if (sText.isNull()) sText = QLatin1String("");
  return sText;
}

int CSortKeys::CompareFallbacks(size_t Left, size_t Right) const {
  return FallbackOf(Left).compare(FallbackOf(Right));
}

int CSortKeys::CompareNumbers(size_t Left, size_t Right) const {
  const KEY& L = m_Keys[Left];
  const KEY& R = m_Keys[Right];
  int Result = 0;
  if (!L.bFloat && !R.bFloat) {
    Result = Order(L.Integer, R.Integer);
  } else if (!(std::fabs(L.Float - R.Float) <= EQUAL_FLOATS)) {
    Result = Order(L.Float, R.Float);
  } else if (L.bSecond && R.bSecond) {
    return Order(L.Second, R.Second);
  }
  return Result == 0 && L.bOfModel && R.bOfModel ? CompareFallbacks(Left, Right) : Result;
}

int CSortKeys::Compare(size_t Left, size_t Right) const {
  const KEY& L = m_Keys[Left];
  const KEY& R = m_Keys[Right];
  if (!L.bHasValue && !R.bHasValue) return CompareFallbacks(Left, Right);
  if (L.Rank != R.Rank) return Order(L.Rank, R.Rank);
  if (L.Rank == RANK_NUMBER) return CompareNumbers(Left, Right);
  return L.sText.compare(R.sText);
}

void CSortKeys::Sort(std::vector<int>& Rows, bool bDescending) const {
  std::ranges::stable_sort(Rows, [this, bDescending](int Left, int Right) {
    const size_t L = static_cast<size_t>(Left), R = static_cast<size_t>(Right);
    if (m_Keys[L].bHasValue != m_Keys[R].bHasValue) return m_Keys[L].bHasValue;
    return bDescending ? Compare(R, L) < 0 : Compare(L, R) < 0;
  });
}
