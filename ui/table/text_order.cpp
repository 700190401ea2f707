#include "ui/table/text_order.h"

#include <algorithm>

#include "base/types.h"

namespace {

constexpr qsizetype UNITS_A_PART = 4;
constexpr int BITS_A_UNIT = 16;

// Texts lie all over the memory, and names begin alike. So a few units of each are compared at a time, in place, from
// where the texts begin to differ.
struct ENTRY {
  U64 Part;
  ROW_TEXT Of;
};

U64 PartOf(const QString& sText, qsizetype Start) {
  U64 Part = 0;
  for (qsizetype i = Start; i < Start + UNITS_A_PART; ++i) {
    Part = Part << BITS_A_UNIT | (i < sText.size() ? sText[i].unicode() : 0u);
  }
  return Part;
}

// The length of what all begin with, at least what is known of it.
qsizetype CommonLength(const ENTRY* pFirst, const ENTRY* pEnd, qsizetype Known) {
  const QString& sFirst = *pFirst->Of.pText;
  qsizetype Common = sFirst.size();
  for (const ENTRY* p = pFirst + 1; p != pEnd && Common > Known; ++p) {
    const QString& sText = *p->Of.pText;
    const qsizetype Length = std::min(Common, sText.size());
    for (Common = std::min(Known, Length); Common < Length && sText[Common] == sFirst[Common];) ++Common;
  }
  return std::max(Common, Known);
}

void SortFrom(ENTRY* pFirst, ENTRY* pEnd, qsizetype Known, bool bDescending) {
  const qsizetype Start = CommonLength(pFirst, pEnd, Known);
  bool bMore = false;
  for (ENTRY* p = pFirst; p != pEnd; ++p) {
    p->Part = PartOf(*p->Of.pText, Start);
    bMore |= p->Of.pText->size() > Start + UNITS_A_PART;
  }
  std::stable_sort(pFirst, pEnd, [bDescending](const ENTRY& Left, const ENTRY& Right) {
    return bDescending ? Left.Part > Right.Part : Left.Part < Right.Part;
  });
  while (bMore && pFirst != pEnd) {
    ENTRY* const pNext =
        std::find_if(pFirst, pEnd, [pFirst](const ENTRY& Entry) { return Entry.Part != pFirst->Part; });
    if (pNext - pFirst > 1) SortFrom(pFirst, pNext, Start + UNITS_A_PART, bDescending);
    pFirst = pNext;
  }
}

}  // namespace

void SortByText(std::vector<ROW_TEXT>& Rows, bool bDescending) {
  if (Rows.size() < 2) return;
  std::vector<ENTRY> Entries(Rows.size());
  std::ranges::transform(Rows, Entries.begin(), [](const ROW_TEXT& Of) { return ENTRY{0, Of}; });
  SortFrom(Entries.data(), Entries.data() + Entries.size(), 0, bDescending);
  std::ranges::transform(Entries, Rows.begin(), [](const ENTRY& Entry) { return Entry.Of; });
}
