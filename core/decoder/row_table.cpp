#include "core/decoder/row_table.h"

namespace {

// 16-bit encodings differ by their top five bits, 32-bit ones by bits 12 to 4 of the first halfword.
constexpr U32 THUMB16_INDEX_LOW = 11;
constexpr U32 THUMB16_INDEX_WIDTH = 5;
constexpr U32 THUMB32_INDEX_LOW = 20;
constexpr U32 THUMB32_INDEX_WIDTH = 9;

}  // namespace

CRowTable::CRowTable(std::initializer_list<std::span<const INST_ROW>> Spans, U32 IndexLow, U32 IndexWidth)
    : Low(IndexLow), NumBuckets(1u << IndexWidth), aBucket(NumBuckets) {
  for (const auto& Rows : Spans) {
    for (const INST_ROW& Row : Rows) {
      aEntry.push_back(std::make_unique<TABLE_ENTRY>(TABLE_ENTRY{&Row, CTextTemplate(Row.sText)}));
      Spread(*aEntry.back());
    }
  }
}

void CRowTable::Spread(const TABLE_ENTRY& Entry) {
  const U32 Mask = Entry.pRow->Mask >> Low & (NumBuckets - 1);
  const U32 Value = Entry.pRow->Value >> Low & (NumBuckets - 1);
  for (U32 i = 0; i < NumBuckets; ++i) {
    if ((i & Mask) == Value) aBucket[i].push_back(&Entry);
  }
}

const TABLE_ENTRY* CRowTable::Find(U32 Word, U32 ArchVersion) const {
  for (const TABLE_ENTRY* pEntry : aBucket[Word >> Low & (NumBuckets - 1)]) {
    if (pEntry->pRow->Matches(Word, ArchVersion)) return pEntry;
  }
  return nullptr;
}

const CRowTable& Thumb16Table() {
  static const CRowTable Table({Thumb16Rows()}, THUMB16_INDEX_LOW, THUMB16_INDEX_WIDTH);
  return Table;
}

const CRowTable& Thumb32Table() {
  static const CRowTable Table({ThumbVfpRows(), Thumb32Rows(), Thumb32LoadRows(), Thumb32DspRows()}, THUMB32_INDEX_LOW,
                               THUMB32_INDEX_WIDTH);
  return Table;
}
