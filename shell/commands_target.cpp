// Target.*, Break.* and Elf.*

#include "device/breakpoint_ops.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "program/database/elfapi.h"
#include "script/api_stubs.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/log/console_print.h"
#include "shell/register_files.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr U8 WIDTH_FROM_SETTING = 255;

CDevice& Device() {
  return CDevice::Get();
}

// ---- Breakpoints at addresses

bool HasBreakpoint(U32 Addr, BP* pEntry) {
  return Device().Context().Breakpoints.GetAt(Addr, *pEntry);
}

void SetBreak(U32 ActionID, BP_TYPES Type) {
  U32 Addr = 0;
  if (!GetAddressArg(ActionID, 0, &Addr)) return;
  BP Entry;
  if (HasBreakpoint(Addr, &Entry) && Entry.State == BP_STATE_ENABLED && Entry.Type == Type) {
    return SetActionError(ActionID, QLatin1String(ActionError::BREAKPOINT_ALREADY_SET));
  }
  Device().ScheduleSetBreakpoint(Addr, BP_STATE_ENABLED, Type);
}

void BreakSet(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_BREAK_SET))
    SetBreak(ACTION_BREAK_SET, static_cast<BP_TYPES>(GetVarValue(VAR_BREAKPOINT_TYPE)));
}

void BreakSetEx(COMMAND_CONTEXT&) {
  U32 Type = 0;
  if (!CheckActionArgs(ACTION_BREAK_SET_EX) || !GetNumberArg(ACTION_BREAK_SET_EX, 1, &Type)) return;
  if (Type > BP_TYPE_SOFT) return SetActionError(ACTION_BREAK_SET_EX, QLatin1String(ActionError::INVALID_PARAMETER));
  SetBreak(ACTION_BREAK_SET_EX, static_cast<BP_TYPES>(Type));
}

void BreakClear(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  BP Entry;
  if (!CheckActionArgs(ACTION_BREAK_CLEAR) || !GetAddressArg(ACTION_BREAK_CLEAR, 0, &Addr)) return;
  if (!HasBreakpoint(Addr, &Entry))
    return SetActionError(ACTION_BREAK_CLEAR, QLatin1String(ActionError::BREAKPOINT_NOT_SET));
  Device().ScheduleClearBreakpoint(Addr);
}

void ChangeBreakState(U32 ActionID, BP_STATES From, BP_STATES To, const char* sError) {
  U32 Addr = 0;
  BP Entry;
  if (!CheckActionArgs(ActionID) || !GetAddressArg(ActionID, 0, &Addr)) return;
  if (!HasBreakpoint(Addr, &Entry)) return SetActionError(ActionID, QLatin1String(ActionError::BREAKPOINT_NOT_SET));
  if (Entry.State != From) return SetActionError(ActionID, QLatin1String(sError));
  Device().ScheduleSetBreakpoint(Addr, To, static_cast<BP_TYPES>(Entry.Type));
}

void BreakEnable(COMMAND_CONTEXT&) {
  ChangeBreakState(ACTION_BREAK_ENABLE, BP_STATE_DISABLED, BP_STATE_ENABLED, ActionError::BREAKPOINT_NOT_DISABLED);
}

void BreakDisable(COMMAND_CONTEXT&) {
  ChangeBreakState(ACTION_BREAK_DISABLE, BP_STATE_ENABLED, BP_STATE_DISABLED, ActionError::BREAKPOINT_NOT_SET);
}

void BreakClearAll(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_BREAK_CLEAR_ALL)) Device().ScheduleClearAllBreakpoints();
}

// ---- Registers and memory

void GetReg(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_GET_REG;
  if (!CheckActionArgs(ID) || !CheckConnected(ID)) return;
  const QString sName = GetActionArgs(ID).value(0);
  if (CRegisterFiles::Get().FindRegister(sName) < 0) {
    return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER), QuotedArg(sName));
  }
  const U64 Value = ReadTargetReg(sName);
  if (Value == ~U64{0}) return SetActionError(ID, QLatin1String(ActionError::PROGRAM_IS_RUNNING));
  SetActionResult(ID, Value);
}

void SetReg(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SET_REG;
  U32 Value = 0;
  if (!CheckActionArgs(ID) || !CheckHalted(ID) || !GetNumberArg(ID, 1, &Value)) return;
  const QString sName = GetActionArgs(ID).value(0);
  const int Index = CRegisterFiles::Get().FindRegister(sName);
  if (Index < 0) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER), QuotedArg(sName));
  Device().ScheduleWriteReg(static_cast<U32>(Index), Value);
}

template <U32 ID, U32 NumBytes>
void ReadInt(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetAddressArg(ID, 0, &Addr)) return;
  bool bOk = false;
  const U32 Value = ReadTargetInt(Addr, NumBytes, &bOk);
  if (!bOk) return SetActionError(ID, QLatin1String(ActionError::COULD_NOT_READ_MEMORY));
  SetActionResult(ID, Value);
}

template <U32 ID, U32 NumBytes>
void WriteInt(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetAddressArg(ID, 0, &Addr)) return;
  bool bOk = false;
  const QString sValue = GetActionArgs(ID).value(1);
  const U64 Value = static_cast<U64>(ParseConstOrNumber(sValue, &bOk));
  if (!bOk) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER), QuotedArg(sValue));
  U8 aData[8] = {};
  const bool bBigEndian = Device().Context().State.DataEndian == ENDIAN_BIG;
  for (U32 i = 0; i < NumBytes; ++i) aData[bBigEndian ? NumBytes - 1 - i : i] = static_cast<U8>(Value >> (8 * i));
  Device().ScheduleWriteMem(Addr, NumBytes, 0, NumBytes > 4 ? 0 : NumBytes, 0, aData);
}

void SetAccessWidth(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SET_ACCESS_WIDTH;
  if (!CheckActionArgs(ID)) return;
  const SYS_VAR* const pVar = GetVarInfo(VAR_ACCESS_WIDTH);
  bool bOk = false;
  const U32 Value = ParseVarValue(pVar, GetActionArgs(ID).value(0), &bOk);
  if (!bOk) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER));
  SetVarValue(pVar, Value, 0);
}

void SetEndianess(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SET_ENDIANESS;
  if (!CheckActionArgs(ID)) return;
  bool bOk = false;
  const bool bBig = ParseBool(GetActionArgs(ID).value(0), &bOk);
  if (!bOk) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER));
  Device().ScheduleSetConfigParam(DCP_ENDIAN, bBig ? ENDIAN_BIG : ENDIAN_LITTLE);
}

// ---- The program file

void GetBaseAddr(COMMAND_CONTEXT&) {
  U32 Lowest = INVALID_ADDR;
  for (const CMemBlock& Block : ELFAPI_GetDataSegments()) Lowest = std::min(Lowest, Block.Addr);
  SetActionResult(ACTION_ELF_GET_BASE_ADDR, Lowest);
}

void GetEntryPointPC(COMMAND_CONTEXT&) {
  SetActionResult(ACTION_ELF_GET_ENTRY_POINT_PC, ELFAPI_GetEntryPC());
}

void GetEntryFuncPC(COMMAND_CONTEXT&) {
  const ELF_SYM_HANDLE Func = ELFAPI_GetEntryFunc();
  SetActionResult(ACTION_ELF_GET_ENTRY_FUNC_PC, Func ? ELFAPI_GetAddr(Func) : INVALID_ADDR);
}

void GetEndianess(COMMAND_CONTEXT&) {
  SetActionResult(ACTION_ELF_GET_ENDIANESS, ELFAPI_IsLoaded() ? ELFAPI_GetEncoding() : INVALID_ADDR);
}

constexpr COMMAND_HANDLER BREAK_HANDLERS[] = {
    {ACTION_BREAK_SET, BreakSet},       {ACTION_BREAK_SET_EX, BreakSetEx},    {ACTION_BREAK_CLEAR, BreakClear},
    {ACTION_BREAK_ENABLE, BreakEnable}, {ACTION_BREAK_DISABLE, BreakDisable}, {ACTION_BREAK_CLEAR_ALL, BreakClearAll},
};

constexpr COMMAND_HANDLER TARGET_HANDLERS[] = {
    {ACTION_TARGET_GET_REG, GetReg},
    {ACTION_TARGET_SET_REG, SetReg},
    {ACTION_TARGET_READ_U32, ReadInt<ACTION_TARGET_READ_U32, 4>},
    {ACTION_TARGET_READ_U16, ReadInt<ACTION_TARGET_READ_U16, 2>},
    {ACTION_TARGET_READ_U8, ReadInt<ACTION_TARGET_READ_U8, 1>},
    {ACTION_TARGET_WRITE_U64, WriteInt<ACTION_TARGET_WRITE_U64, 8>},
    {ACTION_TARGET_WRITE_U32, WriteInt<ACTION_TARGET_WRITE_U32, 4>},
    {ACTION_TARGET_WRITE_U16, WriteInt<ACTION_TARGET_WRITE_U16, 2>},
    {ACTION_TARGET_WRITE_U8, WriteInt<ACTION_TARGET_WRITE_U8, 1>},
    {ACTION_TARGET_SET_ACCESS_WIDTH, SetAccessWidth},
    {ACTION_TARGET_SET_ENDIANESS, SetEndianess},
    {ACTION_ELF_GET_BASE_ADDR, GetBaseAddr},
    {ACTION_ELF_GET_ENTRY_POINT_PC, GetEntryPointPC},
    {ACTION_ELF_GET_ENTRY_FUNC_PC, GetEntryFuncPC},
    {ACTION_ELF_GET_ENDIANESS, GetEndianess},
};

}  // namespace

void RegisterBreakCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, BREAK_HANDLERS);
}
void RegisterTargetCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, TARGET_HANDLERS);
}
