// Elf.*, and the settings of Target.*

#include <algorithm>

#include "device/device.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/expr_value.h"
#include "shell/log/console_print.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr U64 RESULT_FAILED = static_cast<U64>(-1);

CDevice& Device() {
  return CDevice::Get();
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

// One that was inlined as a whole begins where its first instance does.
void GetEntryFuncPC(COMMAND_CONTEXT&) {
  const ELF_SYM_HANDLE Func = ELFAPI_GetEntryFunc();
  U32 Addr = Func ? ELFAPI_GetAddr(Func) : INVALID_ADDR;
  if (Func && Addr == INVALID_ADDR) {
    for (const ELF_SYM_HANDLE Instance : ELFAPI_GetInlinedFuncs(Func)) Addr = std::min(Addr, ELFAPI_GetAddr(Instance));
  }
  SetActionResult(ACTION_ELF_GET_ENTRY_FUNC_PC, Addr);
}

void GetEndianess(COMMAND_CONTEXT&) {
  SetActionResult(ACTION_ELF_GET_ENDIANESS, ELFAPI_IsLoaded() ? ELFAPI_GetEncoding() : INVALID_ADDR);
}

// The answer is on the console, too. Whatever the expression engine would be needed for does not parse.
void GetExprValue(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_ELF_GET_EXPR_VALUE;
  SetActionResult(ID, RESULT_FAILED);
  if (!CheckActionArgs(ID)) return;
  const QString sText = GetActionArgs(ID).value(0);
  const EXPR_VALUE Value = EvalOperand(sText);
  if (Value.Outcome == EXPR_NOT_PARSED) {
    return SetActionError(ID, QLatin1String(ActionError::ERROR_PARSING_EXPRESSION), QuotedArg(sText));
  }
  if (Value.Outcome == EXPR_FAILED) {
    return SetActionError(ID,
                          QLatin1String(ActionError::ERROR_EVALUATING_EXPRESSION) + QLatin1Char(' ') + Value.sError);
  }
  for (const QString& sLine : ExprValueLines(sText, Value)) PrintConsole(sLine);
  SetActionResult(ID, static_cast<U32>(Value.Integer));
}

constexpr COMMAND_HANDLER TARGET_HANDLERS[] = {
    {ACTION_TARGET_SET_ACCESS_WIDTH, SetAccessWidth}, {ACTION_TARGET_SET_ENDIANESS, SetEndianess},
    {ACTION_ELF_GET_BASE_ADDR, GetBaseAddr},          {ACTION_ELF_GET_ENTRY_POINT_PC, GetEntryPointPC},
    {ACTION_ELF_GET_ENTRY_FUNC_PC, GetEntryFuncPC},   {ACTION_ELF_GET_ENDIANESS, GetEndianess},
    {ACTION_ELF_GET_EXPR_VALUE, GetExprValue},
};

}  // namespace

void RegisterTargetCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, TARGET_HANDLERS);
}
