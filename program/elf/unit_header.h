#pragma once

#include "program/elf/attr_form.h"

class CAbbrevTable;

// One unit of .debug_info or .debug_types: what its header says, and of its top entry what others need.
struct DWARF_UNIT {
  U32 Offset = 0;          // of the header
  U32 FirstEntry = 0;      // offset of the top entry
  U32 End = 0;             // first offset behind the unit
  U32 TypeOffset = 0;      // of the type that a type unit describes, from the header
  U64 Signature = 0;       // of a type unit
  U64 AbbrevOffset = 0;    // in .debug_abbrev
  U64 StrOffsetsBase = 0;  // where in .debug_str_offsets its texts begin
  U64 AddrBase = 0;        // where in .debug_addr its addresses begin
  const CAbbrevTable* pAbbrevs = nullptr;
  U32 TopEntry = ~0u;  // number of the unit's top entry, that of the next one's where it has none; none before the walk
  I32 FileTable = -1;  // its table in CSourceTable
  U32 LowPc = 0;
  FORM_SIZES Sizes;
  U16 Version = 0;
  U8 AddrSize = 0;         // bytes
  bool bTypes = false;     // stands in .debug_types
  bool bTypeUnit = false;  // describes one type, in either section
  bool bAddrBase = false;  // AddrBase is known
};

// What a decoder found wrong: a text, the name of the item and its value. No text where all is well.
struct DWARF_DAMAGE {
  const char* sWhat = nullptr;
  const char* sItem = nullptr;
  U64 Value = 0;
};

// Reads the header at the unit's Offset of the section. Where it is damaged End is the place to go on at, 0 if that is
// not known either.
DWARF_DAMAGE ReadUnitHeader(const CByteCursor& Section, DWARF_UNIT& Unit);
