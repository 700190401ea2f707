#include "program/elf/bit_field.h"

#include "program/elf/die_lookup.h"

namespace {

constexpr U32 BITS_PER_BYTE = 8;
constexpr U32 DEFAULT_UNIT_BITS = 32;

// The newer way: bits from the beginning of the record, in big-endian files from its most significant one.
BIT_PLACE FromRecord(U32 Start, U32 Width, U32 UnitBits, bool bBigEndian) {
  BIT_PLACE Place;
  Place.Offset = Start / UnitBits * (UnitBits / BITS_PER_BYTE);
  Place.Position = Start % UnitBits;
  // In a packed record a field can reach into the next storage unit: it is taken from the byte where it begins.
  if (Place.Position + Width > UnitBits) Place = {Start / BITS_PER_BYTE, Start % BITS_PER_BYTE};
  const U32 End = Place.Position + Width;
  if (bBigEndian) Place.Position = UnitBits > End ? UnitBits - End : 0;
  return Place;
}

// The older way: bits from the most significant one of the storage unit, in every file.
U32 FromHighEnd(const DWARF_INFO& Info, U32 Entry, U32 Offset, U32 Width) {
  const CDieLookup Lookup(Info);
  if (Width == 0) return Offset;
  U32 Size = static_cast<U32>(Lookup.Integer(Entry, DW_AT_byte_size).value_or(0));
  if (Size == 0) Size = Width / BITS_PER_BYTE;
  if (Size == 0) Size = Lookup.TypeSize(Info.Index.Get(Entry).Parent);
  const U32 Bits = Size * BITS_PER_BYTE;
  return (Bits >= Width + Offset ? Bits : DEFAULT_UNIT_BITS) - Width - Offset;
}

}  // namespace

BIT_PLACE PlaceOfBits(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  const U32 Width = static_cast<U32>(Lookup.Integer(Entry, DW_AT_bit_size).value_or(0));
  if (const std::optional<I64> Start = Lookup.Integer(Entry, DW_AT_data_bit_offset)) {
    const U32 UnitBits = Lookup.TypeSize(Entry) * BITS_PER_BYTE;
    return FromRecord(static_cast<U32>(*Start), Width, UnitBits ? UnitBits : DEFAULT_UNIT_BITS,
                      Info.Sections.IsBigEndian());
  }
  const std::optional<I64> Offset = Lookup.Integer(Entry, DW_AT_bit_offset);
  return {0, Offset ? FromHighEnd(Info, Entry, static_cast<U32>(*Offset), Width) : 0};
}
