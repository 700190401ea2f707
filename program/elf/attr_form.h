#pragma once

#include "program/elf/byte_cursor.h"
#include "program/elf/dwarf_constants.h"

// Sizes in bytes that the header of a unit gives to some forms.
struct FORM_SIZES {
  U8 Addr = 4;
  U8 Offset = 4;   // 8 in the 64-bit format
  U8 RefAddr = 4;  // of a reference into another unit: as an address in version 2, as an offset since

  bool operator==(const FORM_SIZES&) const = default;
};

inline constexpr I32 FORM_SIZE_VARIES = -1;

// Bytes that a value of the form takes, FORM_SIZE_VARIES where the value itself says it and for an unknown form.
I32 FixedFormSize(U32 Form, const FORM_SIZES& Sizes);
// Passes over one value. An unknown form spoils the cursor.
void SkipForm(CByteCursor& Bytes, U32 Form, const FORM_SIZES& Sizes);
// The form itself or, for DW_FORM_indirect, the one that stands in front of the value; the cursor stays behind it.
U32 DirectForm(CByteCursor& Bytes, U32 Form);
bool IsKnownForm(U32 Form);
