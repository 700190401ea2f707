#include "device/program_access.h"

#include "core/core_table.h"
#include "core/vcore.h"
#include "device/probe_api/records.h"
#include "program/database/database.h"

namespace {

constexpr U8 SYSTEM_CONTROL_COPROCESSOR = 15;

}  // namespace

U32 CProgramAccess::InstAlign() {
  return VCore::GetInfo().InstAlign;
}

bool CProgramAccess::GetInst(U32 Addr, INST_INFO& Info) {
  VCORE_INST Inst;
  if (VCore::Analyze(Addr, Inst) < 0 || Inst.Length == 0) return false;
  Info.Size = Inst.Length;
  Info.bBreakpoint = (Inst.Flags & IF_BKPT) != 0;
  Info.bSemihosting = (Inst.Flags & IF_SEMIHOST) != 0;
  return true;
}

U32 CProgramAccess::InstSetAt(U32 Addr) {
  return ELFAPI_GetMappingName(Addr, false) == QLatin1String("$ARM") ? VNODE_BP_ARM : VNODE_BP_THUMB;
}

U32 CProgramAccess::MapRegIndex(U32 LogicReg) {
  return VCore::MapRegIndex(LogicReg);
}

bool CProgramAccess::ParseCPReg(const char* sReg, CP15_REG& Reg) {
  VCore::CP_REG Parsed;
  if (VCore::ParseCPReg(QString::fromUtf8(sReg), Parsed) < 0) return false;
  if (Parsed.Coprocessor != SYSTEM_CONTROL_COPROCESSOR) return false;
  Reg = {Parsed.CRn, Parsed.CRm, Parsed.Op1, Parsed.Op2};
  return true;
}

int CProgramAccess::SetResetState() {
  return VCore::SetResetState();
}

void CProgramAccess::SetCpuInfo(U32 Core, U32 DataEndian, U32 InstEndian) {
  VCore::SetCpuInfo(VCORE_CPU{Core, DataEndian, InstEndian});
}

QString CProgramAccess::CoreVariant(U32 Core) {
  QString sName;
  return VCore::GetCoreName(VCore::GetFamily(Core), VCore::GetSubFamily(Core), sName) == 0 ? sName : QString();
}

CSrcLoc CProgramAccess::SrcLocAt(U32 Addr) {
  return ELFAPI_GetLastSrcLoc(Addr);
}

ELF_SYM_HANDLE CProgramAccess::FuncAt(U32 Addr, CAddrRange& Range) {
  const CDatabaseLock Db;
  const ELF_SYM_HANDLE Func = ELFAPI_GetFuncAt(Addr);
  Range = ELFAPI_GetAddrRange(Func);
  return Func;
}

bool CProgramAccess::FrameReg(U32 LogicReg, U64& Value) {
  return pfFrameReg && pfFrameReg(LogicReg, Value);
}
