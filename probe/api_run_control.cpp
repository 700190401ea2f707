// Run control and registers.

#include <chrono>
#include <thread>

#include "device/probe_api/register_index.h"
#include "probe/api_call.h"
#include "probe/text.h"

namespace {

constexpr U32 DEBUG_INFO_HAS_SECURITY_EXT = 271;

// With a message when the core runs.
bool IsHaltedFor(CTargetCall& Call, const char* sWhat) {
  if (Call.Board().IsHalted()) return true;
  Call.Error(FormatText("%s: the core is not halted", sWhat));
  return false;
}

// R0 to R12 and LR have no reset value of their own.
void InitRegisters(sim::CMachine& Machine) {
  for (U32 Index = 0; Index <= VNODE_REG_LR; ++Index) {
    if (Index != VNODE_REG_SP) Machine.WriteReg(Index, Index == VNODE_REG_LR ? 0xFFFFFFFF : 0);
  }
}

}  // namespace

int VNODEARM_Halt() {
  CTargetCall Call(FAULT_POINT::Halt);
  if (!Call) return -1;
  if (Call->Faults.IsHaltIgnored()) {
    Call.Error("Halt: the core does not halt");
    return -1;
  }
  Call.Board().Halt();
  return 0;
}

int VNODEARM_IsHalted() {
  CTargetCall Call;
  return Call ? Call.Board().IsHalted() : -1;
}

void VNODEARM_GoEx(int, int Flags) {
  CTargetCall Call;
  Call->Messages.Trace("GoEx");
  if (Call) Call.Board().Go(Flags & 1);
}

int VNODEARM_Step() {
  CTargetCall Call(FAULT_POINT::Step);
  if (!Call || !IsHaltedFor(Call, "Step")) return -1;
  Call.Board().Step();
  return 0;
}

int VNODEARM_Reset() {
  CTargetCall Call(FAULT_POINT::Reset);
  if (!Call) return -1;
  const bool bHalt = !Call->Faults.IsHaltIgnored();
  Call.Board().Reset(bHalt);
  if (bHalt && Call->Config.bInitRegsOnReset) InitRegisters(*CBoard::CAccess(Call.Board()));
  std::this_thread::sleep_for(std::chrono::milliseconds(Call->Config.ResetDelayMs));
  return 0;
}

U32 VNODEARM_ReadReg(U32 Index) {
  CTargetCall Call(FAULT_POINT::ReadReg);
  U32 Value = 0;
  if (!Call || !IsHaltedFor(Call, "ReadReg")) return 0;
  if (!CBoard::CAccess(Call.Board())->ReadReg(Index, &Value)) return 0;
  return Value;
}

int VNODEARM_ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  CTargetCall Call(FAULT_POINT::ReadRegs);
  if (!Call || !IsHaltedFor(Call, "ReadRegs")) return Call.FailureCode();
  CBoard::CAccess Machine(Call.Board());
  for (U32 i = 0; i < Count; ++i) {
    paValue[i] = 0;
    const bool bRead = Machine->ReadReg(paIndex[i], &paValue[i]);
    if (paStatus) paStatus[i] = !bRead;
  }
  return 0;
}

int VNODEARM_WriteReg(U32 Index, U32 Value) {
  CTargetCall Call(FAULT_POINT::WriteReg);
  if (!Call || !IsHaltedFor(Call, "WriteReg")) return -1;
  return CBoard::CAccess(Call.Board())->WriteReg(Index, Value) ? 0 : -1;
}

int VNODEARM_CP15_ReadEx(U8, U8, U8, U8, U32*) {
  return -1;  // no simulated core has a system control coprocessor
}

int VNODEARM_CP15_WriteEx(U8, U8, U8, U8, U32) {
  return -1;
}

int VNODEARM_GetDebugInfo(U32 Index, U32* pValue) {
  CTargetCall Call;
  if (!Call || Index != DEBUG_INFO_HAS_SECURITY_EXT) return -1;
  *pValue = 0;
  return 0;
}

int VNODEARM_MeasureCPUSpeedEx(U32 RAMAddr, int, int) {
  CTargetCall Call(FAULT_POINT::MeasureCPUSpeedEx);
  if (!Call || !IsHaltedFor(Call, "MeasureCPUSpeed")) return -1;
  // A measuring loop would need writable memory there.
  U32 Saved = 0;
  CBoard::CAccess Machine(Call.Board());
  const bool bUsable = Machine->ReadMem(RAMAddr, sizeof(Saved), &Saved) == sizeof(Saved) &&
                       Machine->WriteMem(RAMAddr, sizeof(Saved), &Saved) == sizeof(Saved);
  return bUsable ? static_cast<int>(Call.Board().Spec().ClockHz) : -1;
}
