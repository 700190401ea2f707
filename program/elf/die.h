#pragma once

#include <optional>

#include "program/elf/abbrev_table.h"
#include "program/elf/address_pool.h"
#include "program/elf/debug_sections.h"
#include "program/elf/unit_header.h"

// An offset of an entry together with the section it counts in.
struct DIE_REF {
  U32 Offset = 0;
  bool bTypes = false;
};

// One debug information entry: where its values stand and what they are. Small, to be copied; false for none.
class CDie {
public:
  CDie() = default;
  CDie(const DWARF_UNIT& Unit, const ABBREV& Abbrev, U32 ValuesAt)
      : pUnit(&Unit), pAbbrev(&Abbrev), FirstValue(ValuesAt) {}

  explicit operator bool() const { return pUnit != nullptr; }
  // The rest may be asked of an entry only.
  const DWARF_UNIT& Unit() const { return *pUnit; }
  U32 Tag() const { return pAbbrev->Tag; }
  std::span<const ATTR_SPEC> Specs() const { return pUnit->pAbbrevs->Specs(*pAbbrev); }
  // Offset of the first value in the section.
  U32 ValuesAt() const { return FirstValue; }
  bool Has(U32 Attr) const { return pUnit->pAbbrevs->Has(*pAbbrev, Attr); }

private:
  const DWARF_UNIT* pUnit = nullptr;
  const ABBREV* pAbbrev = nullptr;
  U32 FirstValue = 0;
};

class CDieIndex;

// Reads entries and their own attributes; what cannot be read is reported and answers as absent.
class CDieReader {
public:
  CDieReader(const CDebugSections& Sections, const CDieIndex& Index) : Sections(Sections), Index(Index) {}

  // The entry at exactly that offset, or at the start of any other number there: the index says which offsets are good.
  CDie Load(DIE_REF Ref) const;
  CDie LoadIn(const DWARF_UNIT& Unit, U32 Offset) const;
  bool Has(const CDie& Die, U32 Attr) const { return Die.Has(Attr); }
  // Null where the entry has no such text. It lies in the file and lives as long.
  const char* Text(const CDie& Die, U32 Attr) const;
  // Numbers of every form; addresses as they are, flags as 0 or 1, references as section offsets.
  std::optional<I64> Integer(const CDie& Die, U32 Attr) const;
  // A reference within the section of the entry, or to .debug_info.
  std::optional<DIE_REF> Reference(const CDie& Die, U32 Attr) const;
  // Signature of a type unit, where the attribute refers to one.
  std::optional<U64> Signature(const CDie& Die, U32 Attr) const;

  const CDebugSections& DebugSections() const { return Sections; }

private:
  const CDebugSections& Sections;
  const CDieIndex& Index;
};

// One attribute of an entry with its value; false where the entry does not have it.
class CAttribute {
public:
  CAttribute(const CDebugSections& Sections, const CDie& Die, U32 Attr);

  explicit operator bool() const { return pUnit != nullptr; }
  U32 Form() const { return AttrForm; }
  bool IsAddress() const;
  bool IsReference() const;
  std::optional<I64> Integer(const CDebugSections& Sections) const;
  // The number of a text, address or list in the tables of its unit.
  std::optional<U64> Index() const;
  // Null for a form that is no text.
  const char* Text(const CDebugSections& Sections) const;
  // The bytes of a block or an expression, empty for other forms.
  CByteCursor Block() const;
  std::optional<U64> Signature() const;

private:
  const DWARF_UNIT* pUnit = nullptr;
  U32 AttrForm = 0;
  I64 Const = 0;      // of DW_FORM_implicit_const
  CByteCursor Value;  // ends with the unit

  std::optional<U64> Number() const;
  std::optional<U64> Address(const CDebugSections& Sections) const;
  std::optional<U64> Offset(const CDebugSections& Sections) const;
  const char* TextAt(const CDebugSections& Sections, DEBUG_SECTION Section, U64 Offset) const;
  void Complain(const CDebugSections& Sections, const char* sWhat) const;
};

// The addresses that the forms of a unit name by their number.
ADDRESS_POOL AddressPoolOf(const CDebugSections& Sections, const DWARF_UNIT& Unit);
