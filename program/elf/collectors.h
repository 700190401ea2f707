#pragma once

#include "program/elf/dwarf_info.h"

// Enters one entry, met for the first time, in the lists that want it. Func is the nearest function around it, 0 for
// none. False if no list wanted it.
bool Collect(DWARF_INFO& Info, const CDie& Die, U32 Entry, U32 Func);
// Takes the variables without a place out of the list of globals whose concrete instance is there too: link-time
// optimisation leaves both. Call once when all entries are there.
void DropAbstractVars(DWARF_INFO& Info);
// Puts the lists of owned entries in order, once all entries are there.
void SortOwned(DIE_LISTS& Lists);

// Subprogram or inlined subroutine.
bool IsFunctionTag(U32 Tag);
// Class, structure, union or enumeration.
bool IsClassTag(U32 Tag);

// The first function marked as the main subprogram, else the first that is named "main"; 0 if there is none.
U32 FindEntryFunc(const DWARF_INFO& Info);
