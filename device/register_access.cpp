#include "device/register_access.h"

#include <vector>

namespace {

constexpr U32 INVALID_INDEX = 0xFFFFFFFFu;
constexpr U8 STATUS_NOT_READ = 0xFF;

}  // namespace

int CRegisterAccess::Fail(const char* sText) {
  Ctx.LogWarnMsg(QString::fromLatin1(sText));
  return -1;
}

int CRegisterAccess::ReadReg(U32 VNodeRegIdx, U64* pOutRegVal) {
  if (!Ctx.IsConnected()) return Fail("ReadReg: not connected");
  if (!Ctx.State.Exec.bHalted) return Fail("ReadReg: not halted");
  if (VNodeRegIdx == INVALID_INDEX) return Fail("ReadReg: invalid register index");
  const U32 Value = Ctx.Api.VNODEARM_ReadReg(VNodeRegIdx);
  *pOutRegVal = VNodeRegIdx == Ctx.PCIndex() ? Ctx.AlignInst(Value) : Value;
  return 0;
}

int CRegisterAccess::WriteReg(U32 VNodeRegIdx, U64 Value) {
  if (!Ctx.IsConnected()) return Fail("WriteReg: Not connected");
  if (!Ctx.State.Exec.bHalted) return Fail("WriteReg: Not halted");
  if (VNodeRegIdx == INVALID_INDEX) return Fail("WriteReg: invalid register index");
  if (Ctx.Api.VNODEARM_WriteReg(VNodeRegIdx, static_cast<U32>(Value)) != 0) {
    return Fail("WriteReg: VNODE API call failed");
  }
  return 0;
}

int CRegisterAccess::ReadRegs(U32 Cnt, const U32* paVNodeRegIdxs, U64* paOutRegVals, U8* paOutRegStatus) {
  std::fill_n(paOutRegStatus, Cnt, STATUS_NOT_READ);
  if (std::find(paVNodeRegIdxs, paVNodeRegIdxs + Cnt, INVALID_INDEX) != paVNodeRegIdxs + Cnt) {
    return Fail("ReadRegs: Invalid register index");
  }
  const int Halted = Ctx.QueryHalted();
  if (Halted < 0) return Fail("ReadRegs: invalid halt status");
  if (Halted == 0) return Fail("ReadRegs: not halted");

  std::vector<U32> aValue(Cnt);
  if (Ctx.Api.VNODEARM_ReadRegs(paVNodeRegIdxs, aValue.data(), paOutRegStatus, Cnt) != 0) {
    return Fail("ReadRegs: VNODE API call failed");
  }
  const U32 PCIndex = Ctx.PCIndex();
  for (U32 i = 0; i < Cnt; ++i) {
    const bool bValid = paOutRegStatus[i] == MEM_VALID;
    if (!bValid) paOutRegStatus[i] = MEM_UNAVAILABLE;
    const U32 Value = paVNodeRegIdxs[i] == PCIndex ? Ctx.AlignInst(aValue[i]) : aValue[i];
    paOutRegVals[i] = bValid ? Value : ~0ull;
  }
  return 0;
}

int CRegisterAccess::ReadCPReg(const char* sReg, U64* pOutValue) {
  CP15_REG Reg;
  if (!Ctx.Program.ParseCPReg(sReg, Reg)) return Fail("ReadCPReg: invalid register identifier");
  if (!Ctx.IsConnected()) return Fail("ReadCPReg: not connected");
  if (!Ctx.State.Exec.bHalted) return Fail("ReadCPReg: not halted");
  U32 Value = 0;
  if (Ctx.Api.VNODEARM_CP15_ReadEx(Reg.CRn, Reg.CRm, Reg.Op1, Reg.Op2, &Value) != 0) {
    return Fail("ReadCPReg: VNODE API call failed");
  }
  *pOutValue = Value;
  return 0;
}

int CRegisterAccess::WriteCPReg(const char* sReg, U64 Value) {
  CP15_REG Reg;
  if (!Ctx.Program.ParseCPReg(sReg, Reg)) return Fail("WriteCPReg: invalid register identifier");
  if (!Ctx.IsConnected()) return Fail("WriteCPReg: not connected");
  if (!Ctx.State.Exec.bHalted) return Fail("WriteCPReg: not halted");
  if (Ctx.Api.VNODEARM_CP15_WriteEx(Reg.CRn, Reg.CRm, Reg.Op1, Reg.Op2, static_cast<U32>(Value)) != 0) {
    return Fail("WriteCPReg: VNODE API call failed");
  }
  return 0;
}
