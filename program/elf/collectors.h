#pragma once

#include "program/elf/dwarf_info.h"

// Enters one entry, met for the first time, in the lists that want it. False if none did.
bool Collect(DWARF_INFO& Info, const CDie& Die, U32 Entry, U32 Tag, bool bInFunction);

// Subprogram or inlined subroutine.
bool IsFunctionTag(U32 Tag);
// Class, structure, union or enumeration.
bool IsClassTag(U32 Tag);

// The first function marked as the main subprogram, else the first that is named "main"; 0 if there is none.
U32 FindEntryFunc(const DWARF_INFO& Info);
