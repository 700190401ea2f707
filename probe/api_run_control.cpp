// Run control and registers.

#include <chrono>
#include <thread>

#include "probe/api_call.h"
#include "probe/text.h"

namespace {

// With a message when the core runs.
bool IsHaltedFor(CTargetCall& Call, const char* sWhat) {
  if (Call.Target().IsHalted() > 0) return true;
  Call.Error(FormatText("%s: the core is not halted", sWhat));
  return false;
}

}  // namespace

int VNODEARM_Halt() {
  CTargetCall Call(FAULT_POINT::Halt);
  if (!Call) return -1;
  switch (Call->Faults.HaltFault()) {
    case HALT_FAULT::Refused:
      Call.Error("Halt: the core does not halt");
      return -1;
    case HALT_FAULT::Silent:
      return 0;
    case HALT_FAULT::None:
      break;
  }
  return Call.Target().Halt();
}

int VNODEARM_IsHalted() {
  CTargetCall Call(FAULT_POINT::IsHalted);
  return Call ? Call.Target().IsHalted() : Call.FailureCode();
}

void VNODEARM_GoEx(int, int Flags) {
  CTargetCall Call(FAULT_POINT::GoEx);
  if (Call) Call.Target().Go(Flags & 1);
}

int VNODEARM_Step() {
  CTargetCall Call(FAULT_POINT::Step);
  if (!Call || !IsHaltedFor(Call, "Step")) return -1;
  return Call.Target().Step();
}

int VNODEARM_Reset() {
  CTargetCall Call(FAULT_POINT::Reset);
  if (!Call) return -1;
  if (Call.Target().Reset(Call->Faults.HaltFault() == HALT_FAULT::None, Call->Config) < 0) return -1;
  std::this_thread::sleep_for(std::chrono::milliseconds(Call->Config.ResetDelayMs));
  return 0;
}

U32 VNODEARM_ReadReg(U32 Index) {
  CTargetCall Call(FAULT_POINT::ReadReg);
  if (!Call || !IsHaltedFor(Call, "ReadReg")) return 0;
  U32 Value = 0;
  return Call.Target().ReadRegs(&Index, &Value, nullptr, 1) < 0 ? 0 : Value;
}

int VNODEARM_ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
  CTargetCall Call(FAULT_POINT::ReadRegs);
  if (!Call || !IsHaltedFor(Call, "ReadRegs")) return Call.FailureCode();
  return Call.Target().ReadRegs(paIndex, paValue, paStatus, Count);
}

int VNODEARM_WriteReg(U32 Index, U32 Value) {
  CTargetCall Call(FAULT_POINT::WriteReg);
  if (!Call || !IsHaltedFor(Call, "WriteReg")) return -1;
  return Call.Target().WriteReg(Index, Value);
}

int VNODEARM_CP15_ReadEx(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) {
  CTargetCall Call(FAULT_POINT::CP15_ReadEx);
  if (!Call || !IsHaltedFor(Call, "CP15_ReadEx")) return -1;
  return Call.Target().ReadCP15(CRn, CRm, Op1, Op2, pValue);
}

int VNODEARM_CP15_WriteEx(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) {
  CTargetCall Call(FAULT_POINT::CP15_WriteEx);
  if (!Call || !IsHaltedFor(Call, "CP15_WriteEx")) return -1;
  return Call.Target().WriteCP15(CRn, CRm, Op1, Op2, Value);
}

int VNODEARM_GetDebugInfo(U32 Index, U32* pValue) {
  CTargetCall Call;
  return Call ? Call.Target().GetDebugInfo(Index, pValue) : -1;
}

int VNODEARM_MeasureCPUSpeedEx(U32 RAMAddr, int, int) {
  CTargetCall Call(FAULT_POINT::MeasureCPUSpeedEx);
  if (!Call || !IsHaltedFor(Call, "MeasureCPUSpeed")) return -1;
  return Call.Target().MeasureCPUSpeed(RAMAddr);
}
