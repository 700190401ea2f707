// Break.*, Elf.*, and the settings of Target.*

#include "device/breakpoint_ops.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/log/console_print.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

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

// ---- The access itself

void SetAccessWidth(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SET_ACCESS_WIDTH;
  U32 Width = 0;
  if (!CheckActionArgs(ID) || !GetNumberArg(ID, 0, &Width)) return;
  if (FindNamedConstByValue(QStringLiteral("AW_"), Width) == nullptr) {
    return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER));
  }
  SetVarValue(GetVarInfo(VAR_ACCESS_WIDTH), Width, 0);
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
    {ACTION_TARGET_SET_ACCESS_WIDTH, SetAccessWidth}, {ACTION_TARGET_SET_ENDIANESS, SetEndianess},
    {ACTION_ELF_GET_BASE_ADDR, GetBaseAddr},          {ACTION_ELF_GET_ENTRY_POINT_PC, GetEntryPointPC},
    {ACTION_ELF_GET_ENTRY_FUNC_PC, GetEntryFuncPC},   {ACTION_ELF_GET_ENDIANESS, GetEndianess},
};

}  // namespace

void RegisterBreakCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, BREAK_HANDLERS);
}
void RegisterTargetCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, TARGET_HANDLERS);
}
