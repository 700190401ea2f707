#pragma once

#include <map>
#include <memory>
#include <span>
#include <tuple>
#include <vector>

#include "program/elf/attr_form.h"
#include "program/elf/debug_sections.h"

struct ATTR_SPEC {
  U16 Attr;
  U16 Form;
  U32 Const;  // position of the value of DW_FORM_implicit_const
};

// One step over the values of an entry: a run of values of fixed size, then one value of a form that says its size
// itself; Form 0 for no such value.
struct SKIP_STEP {
  U32 NumBytes;
  U32 Form;
};

struct ABBREV {
  static constexpr U32 NUM_QUICK_ATTRS = 128;  // lower numbers are looked up in a set; nearly all are

  U64 aQuickAttrs[NUM_QUICK_ATTRS / 64];
  U32 Code;
  U16 Tag;
  bool bChildren;
  bool bKnown;  // false for a form that is not known: the values cannot be passed over
  U32 FirstSpec;
  U32 NumSpecs;
  U32 FirstStep;
  U32 NumSteps;
};

// The abbreviations that one or more units share.
class CAbbrevTable {
public:
  // Bytes begin with the first abbreviation and stand behind the last one afterwards; spoilt by damage, in front of
  // which all abbreviations are known.
  CAbbrevTable(CByteCursor& Bytes, const FORM_SIZES& Sizes);

  // Null for a code that the table does not have.
  const ABBREV* Find(U64 Code) const {
    if (bDense) return Code - 1 < aAbbrevs.size() ? &aAbbrevs[Code - 1] : nullptr;
    return FindSparse(Code);
  }
  std::span<const ATTR_SPEC> Specs(const ABBREV& Abbrev) const {
    return {aSpecs.data() + Abbrev.FirstSpec, Abbrev.NumSpecs};
  }
  bool Has(const ABBREV& Abbrev, U32 Attr) const {
    if (Attr < ABBREV::NUM_QUICK_ATTRS) return Abbrev.aQuickAttrs[Attr / 64] >> Attr % 64 & 1;
    for (const ATTR_SPEC& Spec : Specs(Abbrev)) {
      if (Spec.Attr == Attr) return true;
    }
    return false;
  }
  // Passes over all values of an entry.
  void Skip(const ABBREV& Abbrev, CByteCursor& Bytes) const;
  I64 ImplicitConst(const ATTR_SPEC& Spec) const { return aConsts[Spec.Const]; }
  const FORM_SIZES& Sizes() const { return FormSizes; }

private:
  FORM_SIZES FormSizes;
  bool bDense = true;  // the codes count from 1
  std::vector<ABBREV> aAbbrevs;
  std::vector<ATTR_SPEC> aSpecs;
  std::vector<SKIP_STEP> aSteps;
  std::vector<I64> aConsts;

  bool ReadAbbrev(CByteCursor& Bytes);
  bool ReadSpecs(CByteCursor& Bytes, ABBREV& Abbrev);
  void MakeSteps(ABBREV& Abbrev);
  const ABBREV* FindSparse(U64 Code) const;
};

// The tables of a file, each decoded once.
class CAbbrevTables {
public:
  explicit CAbbrevTables(const CDebugSections& Sections) : Sections(Sections) {}

  // Null where no table can begin at that offset of the section, and where units of a damaged file ask for more tables
  // than the section can hold.
  const CAbbrevTable* At(U64 Offset, const FORM_SIZES& Sizes);

private:
  using KEY = std::tuple<U64, U8, U8, U8>;

  const CDebugSections& Sections;
  std::map<KEY, std::unique_ptr<CAbbrevTable>> Tables;
  U64 NumDecoded = 0;  // bytes
};
