#pragma once

#include <vector>

#include "program/elf/dwarf_info.h"

inline constexpr U32 MAX_TYPE_STEPS = 25;  // types from an entry to the end of its chain

// Elements in each dimension of an array type; 1 where the end is not known.
std::vector<U32> Dimensions(const DWARF_INFO& Info, U32 Array);
// Product of the dimensions; one of 0 at the start is passed over.
U32 ElementCount(const std::vector<U32>& aCounts);

// Pointer and references.
bool IsReferenceTag(U32 Tag);
// The type behind typedefs and qualifiers by its definition, the entry itself if it is such a type; 0 if there is none.
U32 ResolvedType(const DWARF_INFO& Info, U32 Entry);
// The parameter "this" of a function or of the type of a function, 0 if it has none.
U32 ObjectPointer(const DWARF_INFO& Info, U32 Entry);
// Variable of a function at a fixed place, or function without object pointer.
bool IsStaticEntry(const DWARF_INFO& Info, U32 Entry);
bool IsSignedEntry(const DWARF_INFO& Info, U32 Entry);

// Bytes of an attribute with the form of a block or an expression; none for other forms.
std::vector<U8> BlockOf(const DWARF_INFO& Info, const CDie& Die, U32 Attr);

// Text of the type as C writes it.
std::string TypeText(const DWARF_INFO& Info, U32 Entry);
