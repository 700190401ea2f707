#include "program/elf/unit_header.h"

namespace {

constexpr U16 FIRST_VERSION = 2;
constexpr U16 FIRST_VERSION_WITH_UNIT_TYPE = 5;
constexpr U16 LAST_VERSION = 5;
constexpr U16 LAST_VERSION_WITH_ADDRESSES_AS_REFERENCES = 2;

bool IsTypeUnit(U64 UnitType) {
  return UnitType == DW_UT_type || UnitType == DW_UT_split_type;
}

bool HasUnitId(U64 UnitType) {
  return UnitType == DW_UT_skeleton || UnitType == DW_UT_split_compile;
}

// What stands behind the version.
DWARF_DAMAGE ReadFields(CByteCursor& Bytes, DWARF_UNIT& Unit) {
  U64 UnitType = Unit.bTypes ? DW_UT_type : DW_UT_compile;
  const auto ReadAbbrevOffset = [&] { Unit.AbbrevOffset = Bytes.UInt(Unit.Sizes.Offset); };
  if (Unit.Version >= FIRST_VERSION_WITH_UNIT_TYPE) {
    UnitType = Bytes.Int<U8>();
    Unit.AddrSize = static_cast<U8>(Bytes.Int<U8>());
    ReadAbbrevOffset();
  } else {
    ReadAbbrevOffset();
    Unit.AddrSize = static_cast<U8>(Bytes.Int<U8>());
  }
  if (UnitType < DW_UT_compile || UnitType > DW_UT_split_type) return {"unknown unit type", "unit_type", UnitType};
  if (Unit.AddrSize != 4 && Unit.AddrSize != 8) return {"address size not supported", "address_size", Unit.AddrSize};
  Unit.bTypeUnit = IsTypeUnit(UnitType);
  if (HasUnitId(UnitType)) Bytes.Skip(sizeof(U64));
  if (Unit.bTypeUnit) {
    Unit.Signature = Bytes.Int<U64>();
    const U64 TypeOffset = Bytes.UInt(Unit.Sizes.Offset);
    if (TypeOffset >= Unit.End - Unit.Offset) return {"type outside its unit", "type_offset", TypeOffset};
    Unit.TypeOffset = static_cast<U32>(TypeOffset);
  }
  return {};
}

}  // namespace

DWARF_DAMAGE ReadUnitHeader(const CByteCursor& Section, DWARF_UNIT& Unit) {
  const auto Damaged = [&](const char* sWhat) { return DWARF_DAMAGE{sWhat, "offset", Unit.Offset}; };
  CByteCursor Bytes = Section;
  Bytes.Skip(Unit.Offset);
  bool b64 = false;
  const U64 Length = Bytes.UnitLength(b64);
  if (!Bytes.Ok()) return Damaged("unit length is damaged");
  if (Length > Bytes.Left()) return Damaged("unit reaches beyond its section");
  Bytes.Limit(Length);
  Unit.End = static_cast<U32>(Bytes.Position() + Length);
  Unit.Version = static_cast<U16>(Bytes.Int<U16>());
  if (Bytes.Ok() && (Unit.Version < FIRST_VERSION || Unit.Version > LAST_VERSION)) {
    return {"unit version not supported", "version", Unit.Version};
  }
  Unit.Sizes.Offset = b64 ? 8 : 4;
  const DWARF_DAMAGE Damage = ReadFields(Bytes, Unit);
  if (!Bytes.Ok()) return Damaged("unit header is cut off");
  if (Damage.sWhat) return Damage;
  const bool bRefAsAddr = Unit.Version <= LAST_VERSION_WITH_ADDRESSES_AS_REFERENCES;
  Unit.Sizes.Addr = Unit.AddrSize;
  Unit.Sizes.RefAddr = bRefAsAddr ? Unit.AddrSize : Unit.Sizes.Offset;
  Unit.FirstEntry = static_cast<U32>(Bytes.Position());
  return {};
}
