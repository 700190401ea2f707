#include "ui/table/sort_keys.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "ui/table/text_order.h"

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

void CSortKeys::TakeNumberText(const QString& sText, KEY* pKey) const {
  const QString sNumber = QString(sText).remove(GROUP_BLANK).trimmed();
  bool bOk = false;
  pKey->Integer = sNumber.toLongLong(&bOk, m_bHex ? HEXADECIMAL : DETECT);
  if (!bOk) pKey->Integer = sNumber.toLongLong(&bOk);
  // Groups of hexadecimal digits are one number.
  if (!bOk && sText.contains(GROUP_BLANK)) pKey->Integer = sNumber.toLongLong(&bOk, HEXADECIMAL);
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
  return Result == 0 && L.bOfModel && R.bOfModel ? FallbackOf(Left).compare(FallbackOf(Right)) : Result;
}

void CSortKeys::SortTexts(ROWS::iterator First, ROWS::iterator End, TEXT_OF TextOf, bool bDescending) const {
  std::vector<ROW_TEXT> Texts(static_cast<size_t>(End - First));
  std::transform(First, End, Texts.begin(), [&](int Row) {
    return ROW_TEXT{&(this->*TextOf)(static_cast<size_t>(Row)), Row};
  });
  SortByText(Texts, bDescending);
  std::ranges::transform(Texts, First, &ROW_TEXT::Row);
}

void CSortKeys::SortIntegers(ROWS& Rows, bool bDescending) const {
  std::vector<std::pair<I64, int>> Values;
  Values.reserve(Rows.size());
  for (const int Row : Rows) Values.emplace_back(KeyOf(Row).Integer, Row);
  std::ranges::stable_sort(Values, [bDescending](const auto& Left, const auto& Right) {
    return bDescending ? Left.first > Right.first : Left.first < Right.first;
  });
  std::ranges::transform(Values, Rows.begin(), &std::pair<I64, int>::second);
  for (auto First = Rows.begin(); First != Rows.end();) {
    const auto End =
        std::find_if(First, Rows.end(), [&](int Row) { return KeyOf(Row).Integer != KeyOf(*First).Integer; });
    const bool bOfModel = std::all_of(First, End, [&](int Row) { return KeyOf(Row).bOfModel; });
    if (End - First > 1 && bOfModel) SortTexts(First, End, &CSortKeys::FallbackOf, bDescending);
    First = End;
  }
}

void CSortKeys::SortNumbers(ROWS& Rows, bool bDescending) const {
  if (std::ranges::none_of(Rows, [this](int Row) { return KeyOf(Row).bFloat; })) return SortIntegers(Rows, bDescending);
  std::ranges::stable_sort(Rows, [this, bDescending](int Left, int Right) {
    const size_t L = static_cast<size_t>(Left), R = static_cast<size_t>(Right);
    return bDescending ? CompareNumbers(R, L) < 0 : CompareNumbers(L, R) < 0;
  });
}

void CSortKeys::Sort(std::vector<int>& Rows, bool bDescending) const {
  ROWS Empty, Numbers, Texts, WithoutValue;
  for (const int Row : Rows) {
    const KEY& Key = KeyOf(Row);
    ROWS& OfRank = Key.Rank == RANK_TEXT ? Texts : Key.Rank == RANK_NUMBER ? Numbers : Empty;
    (Key.bHasValue ? OfRank : WithoutValue).push_back(Row);
  }
  SortNumbers(Numbers, bDescending);
  SortTexts(Texts.begin(), Texts.end(), &CSortKeys::TextOf, bDescending);
  SortTexts(WithoutValue.begin(), WithoutValue.end(), &CSortKeys::FallbackOf, bDescending);
  if (bDescending) std::swap(Empty, Texts);
  Rows.clear();
  for (const ROWS* const pPart : {&Empty, &Numbers, &Texts, &WithoutValue}) {
    Rows.insert(Rows.end(), pPart->begin(), pPart->end());
  }
}
