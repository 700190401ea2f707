#pragma once

#include "program/elf/addr_list.h"
#include "program/elf/dwarf_info.h"

// Where the unit of an entry finds its addresses and lists.

ADDRESS_POOL AddressPoolOf(const DWARF_INFO& Info, U32 Entry);
LIST_CONTEXT ListContextOf(const DWARF_INFO& Info, U32 Entry);
// 4 or 8: the size of offsets in the DWARF format of the entry's unit.
U8 OffsetSizeOf(const DWARF_INFO& Info, U32 Entry);

struct LIST_SECTIONS {
  DEBUG_SECTION Pairs;  // versions 2 to 4
  DEBUG_SECTION Kinds;  // version 5
  U32 BaseAttr;         // of the unit: where in Kinds its table of offsets begins
  U32 IndexForm;        // of an attribute that holds a number in that table
};

inline constexpr LIST_SECTIONS LOCATION_LISTS = {DEBUG_SECTION::Loc, DEBUG_SECTION::Loclists, DW_AT_loclists_base,
                                                 DW_FORM_loclistx};
inline constexpr LIST_SECTIONS RANGE_LISTS = {DEBUG_SECTION::Ranges, DEBUG_SECTION::Rnglists, DW_AT_rnglists_base,
                                              DW_FORM_rnglistx};

// The bytes from the list that an attribute of the entry names to the end of the section; empty where it names none.
CByteCursor ListBytesOf(const DWARF_INFO& Info, U32 Entry, const CAttribute& Attribute, const LIST_SECTIONS& Sections);
