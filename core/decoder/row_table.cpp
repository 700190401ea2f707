#include "core/decoder/row_table.h"

namespace {

// The bits that tell most encodings apart.
constexpr INDEX_FIELD THUMB16_HIGH = {6, 10};
constexpr INDEX_FIELD THUMB16_LOW = {0, 0};
constexpr INDEX_FIELD THUMB32_HIGH = {20, 9};
constexpr INDEX_FIELD THUMB32_LOW = {4, 4};
constexpr INDEX_FIELD ARM_HIGH = {20, 9};
constexpr INDEX_FIELD ARM_LOW = {4, 4};

constexpr U8 FIRST_ARCH_WITH_THUMB2 = 7;

}  // namespace

CRowTable::CRowTable(std::initializer_list<ROW_SET> Sets, INDEX_FIELD HighField, INDEX_FIELD LowField)
    : High(HighField), Low(LowField) {
  for (const ROW_SET& Set : Sets) {
    for (const INST_ROW& Row : Set.Rows) {
      aEntry.push_back(
          {&Row, std::max(Row.MinArch, Set.MinArch), std::max(Row.Order, Set.Order), CTextTemplate(Row.sText)});
    }
  }
  FillBuckets();
}

void CRowTable::FillBuckets() {
  const U32 NumBuckets = 1u << (High.Width + Low.Width);
  std::vector<std::vector<SLOT>> aBucket(NumBuckets);
  for (size_t i = 0; i < aEntry.size(); ++i) {
    const INST_ROW& Row = *aEntry[i].pRow;
    const U32 Free = ~IndexOf(Row.Mask) & (NumBuckets - 1);
    for (U32 Part = Free;; Part = (Part - 1) & Free) {  // every combination of the free bits
      aBucket[IndexOf(Row.Value) | Part].push_back({Row.Mask, Row.Value, static_cast<U16>(i), aEntry[i].MinArch});
      if (Part == 0) break;
    }
  }
  for (const auto& Bucket : aBucket) {
    aFirstSlot.push_back(static_cast<U32>(aSlot.size()));
    aSlot.insert(aSlot.end(), Bucket.begin(), Bucket.end());
  }
  aFirstSlot.push_back(static_cast<U32>(aSlot.size()));
}

const CRowTable& Thumb16Table() {
  static const CRowTable Table({{Thumb16Rows()}}, THUMB16_HIGH, THUMB16_LOW);
  return Table;
}

const CRowTable& Thumb32Table() {
  static const CRowTable Table(
      {{FloatRows(), FIRST_ARCH_WITH_THUMB2, ROW_FIRST}, {Thumb32Rows()}, {Thumb32LoadRows()}, {Thumb32DspRows()}},
      THUMB32_HIGH, THUMB32_LOW);
  return Table;
}

const CRowTable& ArmTable() {
  static const CRowTable Table({{FloatRows(), 0, ROW_FIRST},
                                {ArmSystemRows()},
                                {ArmMultiplyRows()},
                                {ArmLoadRows()},
                                {ArmMediaRows()},
                                {ArmDataRows()},
                                {ArmUnconditionalRows()}},
                               ARM_HIGH, ARM_LOW);
  return Table;
}
