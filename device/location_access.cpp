#include "device/location_access.h"

namespace {

bool IsMemLoc(const ELF_SYM_LOC& Loc) {
  return Loc.Type == ELF_LOC_MEM || Loc.Type == ELF_LOC_MEM_OFFSET;
}

bool IsRegLoc(const ELF_SYM_LOC& Loc) {
  return Loc.Type == ELF_LOC_REG || Loc.Type == ELF_LOC_REG_OFFSET;
}

// The register operations take one by their own numbers only.
bool IsReadableReg(U32 Reg) {
  return Reg != ELF_REG_UNSPECIFIED && Reg != ELF_REG_SAME_AS_CALLER;
}

}  // namespace

int CLocationAccess::ReadRegLoc(U32 Reg, U64& Value) {
  if (!IsReadableReg(Reg)) return -1;
  if (Ctx.Program.FrameReg(Reg, Value)) return 0;
  return Registers.ReadReg(Ctx.Program.MapRegIndex(Reg), &Value);
}

int CLocationAccess::ReadLoc(const ELF_SYM_LOC& Loc, U32 nBytes, U8* paOutData) {
  if (nBytes == 0 || nBytes > MAX_LOC_BYTES || paOutData == nullptr) return -1;
  std::memset(paOutData, 0, nBytes);
  if (Loc.Type == ELF_LOC_CONST) {
    std::memcpy(paOutData, &Loc.Value, nBytes);
    return 0;
  }
  if (IsMemLoc(Loc)) {
    U8 aStatus[MAX_LOC_BYTES];
    const I8 AW = static_cast<I8>(Ctx.Settings.AccessWidth);
    if (Memory.ReadMem(Loc.Addr, nBytes, 0, AW, 0, paOutData, aStatus) == nBytes) return 0;
    std::memset(paOutData, 0, nBytes);
    return -1;
  }
  U64 Value = 0;
  if (!IsRegLoc(Loc) || ReadRegLoc(Loc.Reg, Value) < 0) return -1;
  std::memcpy(paOutData, &Value, nBytes);
  return 0;
}

int CLocationAccess::WriteLoc(const ELF_SYM_LOC& Loc, U32 nBytes, const U8* paData) {
  if (nBytes == 0 || nBytes > MAX_LOC_BYTES || paData == nullptr) return -1;
  if (IsMemLoc(Loc)) {
    const I8 AW = static_cast<I8>(Ctx.Settings.AccessWidth);
    return Memory.WriteMem(Loc.Addr, nBytes, 0, AW, MEM_FLAG_DOWNLOAD, paData) == nBytes ? 0 : -1;
  }
  if (!IsRegLoc(Loc) || !IsReadableReg(Loc.Reg)) return -1;
  U64 Value = 0;
  std::memcpy(&Value, paData, nBytes);
  return Registers.WriteReg(Ctx.Program.MapRegIndex(Loc.Reg), Value);
}

int CLocationAccess::ReadLocs(U32 Cnt, const ELF_SYM_LOC* paLocs, U64* paOutVals, U8* paOutStatus, U32 ItemSize) {
  if (Cnt == 0 || ItemSize == 0 || ItemSize > MAX_LOC_BYTES) return -1;
  for (U32 i = 0; i < Cnt; ++i) {
    U64 Value = 0;
    const bool bRead = ReadLoc(paLocs[i], ItemSize, reinterpret_cast<U8*>(&Value)) == 0;
    paOutVals[i] = bRead ? Value : ~0ull;
    paOutStatus[i] = bRead ? MEM_VALID : MEM_UNAVAILABLE;
  }
  return 0;
}
