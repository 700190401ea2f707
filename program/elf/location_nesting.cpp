#include "program/elf/location_nesting.h"

#include "program/elf/elf_types.h"

namespace {

// What stands inside a location that is inside another one: the record has no field for its kind.
U32 InnermostType(U32 InnerType) {
  if (InnerType == ELF_LOC_REG_INDIRECT) return ELF_LOC_REG_OFFSET;
  return InnerType == ELF_LOC_ENTRY_VALUE ? ELF_LOC_REG : ELF_LOC_NONE;
}

}  // namespace

ELF_SYM_LOC NestLocation(ELF_LOC_TYPE Type, const ELF_SYM_LOC& Inner) {
  if (Inner.Type == ELF_LOC_NONE || Inner.BaseType != InnermostType(Inner.Type)) return {};
  const bool bHasInner = Inner.BaseType != ELF_LOC_NONE;
  ELF_SYM_LOC Loc;
  Loc.Type = Type;
  Loc.BaseType = Inner.Type;
  Loc.BaseAddr = bHasInner ? Inner.BaseAddr : Inner.Addr;
  Loc.BaseReg = bHasInner ? Inner.BaseReg : Inner.Reg;
  Loc.BaseOffset = bHasInner ? Inner.BaseOffset : Inner.Offset;
  Loc.Value = Inner.Value;
  return Loc;
}

ELF_SYM_LOC ELF_GetInnerLocation(const ELF_SYM_LOC& Loc) {
  ELF_SYM_LOC Inner;
  Inner.Type = Loc.BaseType;
  Inner.Value = Loc.Value;
  Inner.BaseType = InnermostType(Loc.BaseType);
  const bool bHasInner = Inner.BaseType != ELF_LOC_NONE;
  (bHasInner ? Inner.BaseAddr : Inner.Addr) = Loc.BaseAddr;
  (bHasInner ? Inner.BaseReg : Inner.Reg) = Loc.BaseReg;
  (bHasInner ? Inner.BaseOffset : Inner.Offset) = Loc.BaseOffset;
  return Inner;
}
