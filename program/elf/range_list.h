#pragma once

#include "program/elf/location_list.h"

struct RANGE_ENTRY {
  U64 Low = 0;
  U64 High = 0;  // first address behind the range
};

// Entries of a list in .debug_ranges (versions 2 to 4) or .debug_rnglists (version 5), one after the other.
class CRangeListReader {
public:
  // Bytes begin with the first entry of the list and end with the section.
  CRangeListReader(const CByteCursor& Bytes, U32 Version, const LIST_CONTEXT& Context)
      : Bytes(Bytes), Version(Version), Context(Context), Base(Context.Base) {}

  // False behind the last entry, and at damage.
  bool Next(RANGE_ENTRY& Entry);
  // False if the list ended by damage.
  bool Ok() const { return Bytes.Ok(); }
  U64 Position() const { return Bytes.Position(); }

private:
  CByteCursor Bytes;
  U32 Version;
  const LIST_CONTEXT& Context;
  U64 Base;

  bool NextOfPairs(RANGE_ENTRY& Entry);
  bool NextOfKinds(RANGE_ENTRY& Entry);
  U64 Address() { return Bytes.UInt(Context.AddrSize); }
  U64 Indexed();
};
