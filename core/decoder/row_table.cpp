#include "core/decoder/row_table.h"

#include <map>

namespace {

// The bits that tell most encodings apart.
constexpr INDEX_FIELD THUMB16_HIGH = {6, 10};
constexpr INDEX_FIELD THUMB16_LOW = {0, 0};
constexpr INDEX_FIELD THUMB32_HIGH = {20, 9};
constexpr INDEX_FIELD THUMB32_LOW = {4, 4};
constexpr INDEX_FIELD ARM_HIGH = {20, 9};
constexpr INDEX_FIELD ARM_LOW = {4, 4};

constexpr INDEX_FIELD SIMD_HIGH = {20, 6};
constexpr INDEX_FIELD SIMD_LOW = {6, 6};

constexpr U8 FIRST_ARCH_WITH_THUMB2 = 7;
constexpr U8 FIRST_ARCH_WITH_HALF = 8;
constexpr U8 NO_ARCH = 0xFF;

}  // namespace

CRowTable::CRowTable(std::initializer_list<ROW_SET> Sets, INDEX_FIELD HighField, INDEX_FIELD LowField)
    : High(HighField), Low(LowField) {
  for (const ROW_SET& Set : Sets) {
    for (const INST_ROW& Row : Set.Rows) {
      const U8 MinArch = std::max(Row.Gate.Version, Set.MinArch);
      aEntry.push_back({&Row,
                        {MinArch, Row.Gate.bOnM ? MinArch : NO_ARCH},
                        std::max(Row.Order, Set.Order),
                        CTextTemplate(Row.sText)});
    }
  }
  FillBuckets();
}

void CRowTable::FillBuckets() {
  const U32 NumBuckets = 1u << (High.Width + Low.Width);
  std::vector<std::vector<U16>> aBucket(NumBuckets);
  for (size_t i = 0; i < aEntry.size(); ++i) {
    const INST_ROW& Row = *aEntry[i].pRow;
    const U32 Free = ~IndexOf(Row.Mask) & (NumBuckets - 1);
    for (U32 Part = Free;; Part = (Part - 1) & Free) {  // every combination of the free bits
      aBucket[IndexOf(Row.Value) | Part].push_back(static_cast<U16>(i));
      if (Part == 0) break;
    }
  }
  std::map<std::vector<U16>, U16> FirstSlots;
  for (const auto& Bucket : aBucket) {
    const auto [Found, bNew] = FirstSlots.try_emplace(Bucket, static_cast<U16>(aSlot.size()));
    aFirstSlot.push_back(Found->second);
    if (!bNew) continue;
    for (const U16 i : Bucket) {
      const TABLE_ENTRY& Entry = aEntry[i];
      aSlot.push_back({Entry.pRow->Mask, Entry.pRow->Value, i, {Entry.aMinArch[0], Entry.aMinArch[1]}});
    }
    aSlot.push_back({0, 0, NO_ENTRY, {0, 0}});
  }
}

const CRowTable& Thumb16Table() {
  static const CRowTable Table({{Thumb16Rows()}}, THUMB16_HIGH, THUMB16_LOW);
  return Table;
}

const CRowTable& Thumb32Table() {
  static const CRowTable Table({{Thumb32MProfileRows(), 0, ROW_FIRST},
                                {HalfRows(), FIRST_ARCH_WITH_HALF, ROW_FIRST},
                                {FloatRows(), FIRST_ARCH_WITH_THUMB2, ROW_FIRST},
                                {Thumb32Rows()},
                                {Thumb32LoadRows()},
                                {Thumb32DspRows()}},
                               THUMB32_HIGH, THUMB32_LOW);
  return Table;
}

const CRowTable& SimdTable() {
  static const CRowTable Table({{SimdRows()}}, SIMD_HIGH, SIMD_LOW);
  return Table;
}

const CRowTable& ArmTable() {
  static const CRowTable Table({{HalfRows(), FIRST_ARCH_WITH_HALF, ROW_FIRST},
                                {FloatRows(), 0, ROW_FIRST},
                                {ArmSystemRows()},
                                {ArmMultiplyRows()},
                                {ArmLoadRows()},
                                {ArmMediaRows()},
                                {ArmDataRows()},
                                {ArmUnconditionalRows()}},
                               ARM_HIGH, ARM_LOW);
  return Table;
}
