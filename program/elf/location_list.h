#pragma once

#include "program/elf/address_pool.h"

// What a list of locations or ranges is read with.
struct LIST_CONTEXT {
  U64 Base = 0;  // low pc of the unit, to which the addresses of a list are relative
  U8 AddrSize = 4;
  ADDRESS_POOL Pool;
};

// One location of a list, for pc from Low up to High.
struct LOCATION_ENTRY {
  U64 Low = 0;
  U64 High = 0;
  bool bDefault = false;  // where no other entry holds; Low and High say nothing
  CByteCursor Expr;
};

// Entries of a list in .debug_loc (versions 2 to 4) or .debug_loclists (version 5), one after the other.
class CLocationListReader {
public:
  // Bytes begin with the first entry of the list and end with the section.
  CLocationListReader(const CByteCursor& Bytes, U32 Version, const LIST_CONTEXT& Context)
      : Bytes(Bytes), Version(Version), Context(Context), Base(Context.Base) {}

  // False behind the last entry, and at damage.
  bool Next(LOCATION_ENTRY& Entry);
  // False if the list ended by damage.
  bool Ok() const { return Bytes.Ok(); }

private:
  CByteCursor Bytes;
  U32 Version;
  const LIST_CONTEXT& Context;
  U64 Base;

  bool NextOfPairs(LOCATION_ENTRY& Entry);
  bool NextOfKinds(LOCATION_ENTRY& Entry);
  U64 Address() { return Bytes.UInt(Context.AddrSize); }
  U64 Indexed();
};

// The expression that a list has for pc, the first one for a pc of 0; empty where none is. Reader is used up.
CByteCursor FindLocation(CLocationListReader Reader, U32 PC);
