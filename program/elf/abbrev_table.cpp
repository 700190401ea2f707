#include "program/elf/abbrev_table.h"

#include <algorithm>

namespace {

constexpr U64 MAX_NUMBER = 0xFFFF;  // of a tag, an attribute and a form
constexpr U64 MAX_CODE = 0xFFFFFFFFu;
// Tables of a sound file stand apart. Those of a damaged one can begin anywhere inside others.
constexpr U64 MAX_DECODED_TIMES = 4;   // the section's size
constexpr U64 MAX_DECODED = 64 << 20;  // bytes
constexpr U32 MAX_SPECS = 256;         // of an entry; compilers write about 20

}  // namespace

CAbbrevTable::CAbbrevTable(CByteCursor& Bytes, const FORM_SIZES& Sizes) : FormSizes(Sizes) {
  while (ReadAbbrev(Bytes)) {
  }
  for (size_t i = 0; i < aAbbrevs.size(); ++i) bDense = bDense && aAbbrevs[i].Code == i + 1;
  if (bDense) return;
  const auto ByCode = [](const ABBREV& A, const ABBREV& B) { return A.Code < B.Code; };
  std::stable_sort(aAbbrevs.begin(), aAbbrevs.end(), ByCode);
}

bool CAbbrevTable::ReadAbbrev(CByteCursor& Bytes) {
  const U64 Code = Bytes.Leb();
  if (!Bytes.Ok() || Code == 0) return false;
  const U64 Tag = Bytes.Leb();
  ABBREV Abbrev = {};
  Abbrev.bChildren = Bytes.Int<U8>() != 0;
  if (Code > MAX_CODE || Tag > MAX_NUMBER) Bytes.Spoil();
  if (!Bytes.Ok()) return false;
  Abbrev.Code = static_cast<U32>(Code);
  Abbrev.Tag = static_cast<U16>(Tag);
  if (!ReadSpecs(Bytes, Abbrev)) return false;
  MakeSteps(Abbrev);
  aAbbrevs.push_back(Abbrev);
  return true;
}

bool CAbbrevTable::ReadSpecs(CByteCursor& Bytes, ABBREV& Abbrev) {
  Abbrev.FirstSpec = static_cast<U32>(aSpecs.size());
  while (true) {
    const U64 Attr = Bytes.Leb(), Form = Bytes.Leb();
    const bool bTooMany = aSpecs.size() - Abbrev.FirstSpec >= MAX_SPECS;
    if (Attr > MAX_NUMBER || Form > MAX_NUMBER || bTooMany) Bytes.Spoil();
    if (!Bytes.Ok()) return false;
    if (Attr == 0 && Form == 0) break;
    ATTR_SPEC Spec = {static_cast<U16>(Attr), static_cast<U16>(Form), 0};
    if (Form == DW_FORM_implicit_const) {
      Spec.Const = static_cast<U32>(aConsts.size());
      aConsts.push_back(Bytes.Sleb());
    }
    aSpecs.push_back(Spec);
    if (Attr < ABBREV::NUM_QUICK_ATTRS) Abbrev.aQuickAttrs[Attr / 64] |= 1ull << Attr % 64;
  }
  Abbrev.NumSpecs = static_cast<U32>(aSpecs.size()) - Abbrev.FirstSpec;
  return true;
}

void CAbbrevTable::MakeSteps(ABBREV& Abbrev) {
  Abbrev.bKnown = true;
  Abbrev.FirstStep = static_cast<U32>(aSteps.size());
  SKIP_STEP Step = {0, 0};
  for (const ATTR_SPEC& Spec : Specs(Abbrev)) {
    const I32 Size = FixedFormSize(Spec.Form, FormSizes);
    if (Size != FORM_SIZE_VARIES) {
      Step.NumBytes += static_cast<U32>(Size);
      continue;
    }
    Abbrev.bKnown = Abbrev.bKnown && IsKnownForm(Spec.Form);
    Step.Form = Spec.Form;
    aSteps.push_back(Step);
    Step = {0, 0};
  }
  if (Step.NumBytes) aSteps.push_back(Step);
  Abbrev.NumSteps = static_cast<U32>(aSteps.size()) - Abbrev.FirstStep;
}

void CAbbrevTable::Skip(const ABBREV& Abbrev, CByteCursor& Bytes) const {
  const SKIP_STEP* pStep = aSteps.data() + Abbrev.FirstStep;
  for (const SKIP_STEP* pEnd = pStep + Abbrev.NumSteps; pStep != pEnd; ++pStep) {
    Bytes.Skip(pStep->NumBytes);
    if (pStep->Form) SkipForm(Bytes, pStep->Form, FormSizes);
  }
}

const ABBREV* CAbbrevTable::FindSparse(U64 Code) const {
  const auto At = std::lower_bound(aAbbrevs.begin(), aAbbrevs.end(), Code,
                                   [](const ABBREV& Abbrev, U64 Wanted) { return Abbrev.Code < Wanted; });
  return At != aAbbrevs.end() && At->Code == Code ? &*At : nullptr;
}

const CAbbrevTable* CAbbrevTables::At(U64 Offset, const FORM_SIZES& Sizes) {
  const KEY Key = {Offset, Sizes.Addr, Sizes.Offset, Sizes.RefAddr};
  const auto Known = Tables.find(Key);
  if (Known != Tables.end()) return Known->second.get();
  CByteCursor Bytes = Sections.Bytes(DEBUG_SECTION::Abbrev);
  if (NumDecoded > std::min(MAX_DECODED_TIMES * Bytes.Left(), MAX_DECODED)) return nullptr;
  Bytes.Skip(Offset);
  if (!Bytes.More()) return nullptr;
  Bytes.Limit(std::min(Bytes.Left(), MAX_DECODED));
  auto pTable = std::make_unique<CAbbrevTable>(Bytes, Sizes);
  NumDecoded += Bytes.Position() - Offset;
  return Tables.emplace(Key, std::move(pTable)).first->second.get();
}
