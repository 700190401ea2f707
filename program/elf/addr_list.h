#pragma once

#include "program/elf/address_pool.h"

// What a list of locations or ranges is read with.
struct LIST_CONTEXT {
  U64 Base = 0;  // low pc of the unit, to which the addresses of a list are relative
  U8 AddrSize = 4;
  ADDRESS_POOL Pool;
};

// One range of a list, from Low up to High, and in a list of locations what holds there.
struct LIST_ENTRY {
  U64 Low = 0;
  U64 High = 0;
  bool bDefault = false;  // where no other entry holds; Low and High say nothing
  CByteCursor Expr;
};

// Entries of a list in .debug_loc and .debug_ranges (versions 2 to 4) or .debug_loclists and .debug_rnglists (version
// 5), one after the other.
class CAddrListReader {
public:
  enum LIST_KIND { LOCATIONS, RANGES };

  // Bytes begin with the first entry of the list and end with the section.
  CAddrListReader(LIST_KIND ListKind, const CByteCursor& Bytes, U32 Version, const LIST_CONTEXT& Context)
      : ListKind(ListKind), Bytes(Bytes), Version(Version), Context(Context), Base(Context.Base) {}

  // False behind the last entry, and at damage.
  bool Next(LIST_ENTRY& Entry);
  // False if the list ended by damage.
  bool Ok() const { return Bytes.Ok(); }
  U64 Position() const { return Bytes.Position(); }

private:
  LIST_KIND ListKind;
  CByteCursor Bytes;
  U32 Version;
  const LIST_CONTEXT& Context;
  U64 Base;

  bool NextOfPairs(LIST_ENTRY& Entry);
  bool NextOfKinds(LIST_ENTRY& Entry);
  U32 EntryKind();
  U64 Address() { return Bytes.UInt(Context.AddrSize); }
  U64 Indexed();
};

// The expression that a list of locations has for pc, the first one for a pc of 0; empty where none is. Reader is used
// up.
CByteCursor FindLocation(CAddrListReader Reader, U32 PC);
