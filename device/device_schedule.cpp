// The device's Schedule operations: each fills one job.

#include <cstring>

#include "device/device.h"
#include "device/device_context.h"
#include "device/device_log.h"
#include "device/event_ring.h"
#include "device/make_job.h"

namespace {

constexpr U32 COMMAND_REPLY_BYTES = 512;
constexpr U8 AW_OF_VARIABLE = 255;
constexpr U32 MAX_LOC_BYTES = 8;

}  // namespace

int CDevice::ScheduleSimple(U32 Type, U64 P0, U64 P1, U64 P2) {
  DEVICE_JOB Job = MakeJob(Type, P0, P1, P2);
  return ScheduleJob(&Job);
}

int CDevice::CopyDynParam(DEVICE_JOB& Job, U32 Index, const void* pData, U64 NumBytes) {
  if (RequestDynParam(Job, Index, pData ? NumBytes : 0) != 0) return -1;
  std::memcpy(Job.pDyn[Index], pData, NumBytes);
  return 0;
}

int CDevice::Finish(DEVICE_JOB& Job, int Result) {
  if (Result == 0) return ScheduleJob(&Job);
  FreeDynParams(Job);
  return -1;
}

int CDevice::ScheduleText(U32 Type, const char* sText, U64 P0) {
  DEVICE_JOB Job = MakeJob(Type, P0);
  return Finish(Job, CopyDynParam(Job, 0, sText, sText ? std::strlen(sText) + 1 : 0));
}

int CDevice::ScheduleCopied(U32 Type, U64 Cnt, const void* pData, U64 NumBytes, U64 P1, U64 P2) {
  DEVICE_JOB Job = MakeJob(Type, Cnt, P1, P2);
  return Finish(Job, CopyDynParam(Job, 0, pData, NumBytes));
}

U64 CDevice::AccessWidth(U8 AW) const {
  return AW == AW_OF_VARIABLE ? Context().Settings.AccessWidth.load() : AW;
}

int CDevice::ScheduleConnect(CONNECT_MODES Mode) {
  return ScheduleSimple(JT_CONNECT, Mode);
}

int CDevice::ScheduleConnectSimple() {
  return ScheduleSimple(JT_CONNECT, CM_BARE);
}

int CDevice::ScheduleDisconnect() {
  if (IsConnected()) Announce(DE_ABOUT_TO_DISCONNECT);
  return ScheduleSimple(JT_DISCONNECT);
}

int CDevice::ScheduleConfigure(const char* sXML) {
  return ScheduleText(JT_CONFIGURE, sXML);
}

int CDevice::ScheduleSetConfigParam(DEV_CONFIG_PARAMS Param, int Value) {
  return ScheduleSimple(JT_SET_CONFIG_PARAM, static_cast<U64>(Param), static_cast<U64>(static_cast<I64>(Value)));
}

int CDevice::ScheduleSetConfigParam(DEV_CONFIG_PARAMS Param, const char* sText) {
  return ScheduleText(JT_SET_CONFIG_PARAM, sText, static_cast<U64>(Param));
}

int CDevice::ScheduleGetDeviceInfo(const char* sDevice) {
  return ScheduleText(JT_GET_DEVICE_INFO, sDevice);
}

int CDevice::ScheduleExecVNodeCmd(const char* sCommand) {
  DEVICE_JOB Job = MakeJob(JT_EXEC_VNODE_CMD);
  int Result = CopyDynParam(Job, 0, sCommand, sCommand ? std::strlen(sCommand) + 1 : 0);
  if (Result == 0) Result = RequestDynParam(Job, 1, COMMAND_REPLY_BYTES);
  return Finish(Job, Result);
}

int CDevice::ScheduleMeasureCoreSpeed() {
  return ScheduleSimple(JT_MEASURE_CORE_SPEED);
}

int CDevice::ScheduleReset(RESET_MODES Mode) {
  return ScheduleSimple(JT_RESET, Mode);
}

int CDevice::ScheduleHalt() {
  return ScheduleSimple(JT_HALT);
}

int CDevice::ScheduleContinue(RESUME_MODES Mode) {
  Announce(DE_BEFORE_RESUME);
  return ScheduleSimple(JT_CONTINUE, Mode);
}

int CDevice::ScheduleStep(U32 Type) {
  Announce(DE_BEFORE_STEP);
  return ScheduleSimple(Type);
}

int CDevice::ScheduleStepInst() {
  return ScheduleStep(JT_STEP_INST);
}

int CDevice::ScheduleStepInto() {
  return ScheduleStep(JT_STEP_INTO);
}

int CDevice::ScheduleStepOver() {
  return ScheduleStep(JT_STEP_OVER);
}

int CDevice::ScheduleStepOut() {
  return ScheduleStep(JT_STEP_OUT);
}

int CDevice::ScheduleRunTo(U32 Addr) {
  return ScheduleSimple(JT_RUN_TO, Addr);
}

int CDevice::ScheduleSetTargetExecState(U64 PC, U64 SP) {
  return ScheduleSimple(JT_SET_TARGET_EXEC_STATE, PC, SP);
}

int CDevice::ScheduleResetTargetExecState() {
  return ScheduleSimple(JT_RESET_TARGET_EXEC_STATE);
}

int CDevice::ScheduleSetBreakpoint(U32 Addr, BP_STATES State, BP_TYPES Type) {
  return ScheduleSimple(JT_SET_BP, Addr, State, Type);
}

int CDevice::ScheduleSetBreakpoints(U32 Cnt, const U32* paAddr, BP_STATES State, BP_TYPES Type) {
  return ScheduleCopied(JT_SET_BPS, Cnt, paAddr, U64{Cnt} * sizeof(U32), State, Type);
}

int CDevice::ScheduleClearBreakpoint(U32 Addr) {
  return ScheduleSimple(JT_CLEAR_BP, Addr);
}

int CDevice::ScheduleClearBreakpoints(U32 Cnt, const U32* paAddr) {
  return ScheduleCopied(JT_CLEAR_BPS, Cnt, paAddr, U64{Cnt} * sizeof(U32));
}

int CDevice::ScheduleClearAllBreakpoints() {
  return ScheduleSimple(JT_CLEAR_ALL_BPS);
}

int CDevice::ScheduleEditBreakpoint() {
  return ScheduleSimple(JT_EDIT_BP);
}

int CDevice::ScheduleResetBreakpoints() {
  return ScheduleSimple(JT_RESET_BPS);
}

int CDevice::ScheduleSetWatchpoints(U32 Cnt, const WP* paWPs) {
  return ScheduleCopied(JT_SET_WPS, Cnt, paWPs, U64{Cnt} * sizeof(WP));
}

int CDevice::ScheduleClearWatchpoints(U32 Cnt, const WP* paWPs) {
  return ScheduleCopied(JT_CLEAR_WPS, Cnt, paWPs, U64{Cnt} * sizeof(WP));
}

int CDevice::ScheduleClearAllWatchpoints() {
  return ScheduleSimple(JT_CLEAR_ALL_WPS);
}

int CDevice::ScheduleReadMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags) {
  DEVICE_JOB Job = MakeJob(JT_READ_MEM, Addr, NumBytes, ChunkSize, AccessWidth(AW), Flags);
  int Result = RequestDynParam(Job, 0, NumBytes);
  if (Result == 0) Result = RequestDynParam(Job, 1, NumBytes);
  return Finish(Job, Result);
}

int CDevice::ScheduleWriteMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags, const U8* paData) {
  DEVICE_JOB Job = MakeJob(JT_WRITE_MEM, Addr, NumBytes, ChunkSize, AccessWidth(AW), Flags);
  return Finish(Job, CopyDynParam(Job, 0, paData, NumBytes));
}

int CDevice::ScheduleWriteMemMultiple(U32 NumRanges, const U32* paRanges, U32 NumBytes, const U8* paData, U32 ChunkSize,
                                      U8 AW, U32 Flags) {
  DEVICE_JOB Job = MakeJob(JT_WRITE_MEM_MULTIPLE, NumRanges, NumBytes, ChunkSize, AccessWidth(AW), Flags);
  int Result = CopyDynParam(Job, 0, paRanges, U64{NumRanges} * 2 * sizeof(U32));
  if (Result == 0) Result = CopyDynParam(Job, 1, paData, NumBytes);
  return Finish(Job, Result);
}

int CDevice::ScheduleReadReg(U32 VNodeRegIdx) {
  return ScheduleSimple(JT_READ_REG, VNodeRegIdx);
}

int CDevice::ScheduleReadRegs(U32 Cnt, const U32* paIndex) {
  DEVICE_JOB Job = MakeJob(JT_READ_REGS, Cnt);
  int Result = CopyDynParam(Job, 0, paIndex, U64{Cnt} * sizeof(U32));
  if (Result == 0) Result = RequestDynParam(Job, 1, U64{Cnt} * sizeof(U64));
  if (Result == 0) Result = RequestDynParam(Job, 2, Cnt);
  return Finish(Job, Result);
}

int CDevice::ScheduleReadCPReg(const char* sReg) {
  return ScheduleText(JT_READ_CP_REG, sReg);
}

int CDevice::ScheduleWriteReg(U32 VNodeRegIdx, U64 Value) {
  return ScheduleSimple(JT_WRITE_REG, VNodeRegIdx, Value);
}

int CDevice::ScheduleWriteCPReg(const char* sReg, U64 Value) {
  return ScheduleText(JT_WRITE_CP_REG, sReg, Value);
}

int CDevice::ScheduleReadLoc(const ELF_SYM_LOC& Loc, U32 NumBytes) {
  if (NumBytes > MAX_LOC_BYTES) {
    LogText(QStringLiteral("ReadLoc: cannot read data locations of size > 8 bytes"), DEVICE_LOG_WARN);
    return -1;
  }
  return ScheduleCopied(JT_READ_LOCATION, NumBytes, &Loc, sizeof(Loc));
}

int CDevice::ScheduleReadLocs(U32 Cnt, const ELF_SYM_LOC* paLocs, U32 Tag) {
  DEVICE_JOB Job = MakeJob(JT_READ_LOCS, Cnt, Tag);
  int Result = CopyDynParam(Job, 0, paLocs, U64{Cnt} * sizeof(ELF_SYM_LOC));
  if (Result == 0) Result = RequestDynParam(Job, 1, U64{Cnt} * sizeof(U64));
  if (Result == 0) Result = RequestDynParam(Job, 2, Cnt);
  return Finish(Job, Result);
}

int CDevice::ScheduleWriteLoc(const ELF_SYM_LOC& Loc, U32 NumBytes, const U8* paData) {
  DEVICE_JOB Job = MakeJob(JT_WRITE_LOCATION, NumBytes);
  int Result = CopyDynParam(Job, 0, &Loc, sizeof(Loc));
  if (Result == 0) Result = CopyDynParam(Job, 1, paData, NumBytes);
  return Finish(Job, Result);
}

int CDevice::ScheduleEndDownload(bool bHaltFirst, const char* sFileName) {
  return ScheduleText(JT_END_DOWNLOAD, sFileName ? sFileName : "", bHaltFirst ? 1 : 0);
}
