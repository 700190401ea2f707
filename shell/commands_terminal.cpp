// The channels of the target's own input and output: Project.SetSWO and its like

#include "device/device.h"
#include "device/device_ops.h"
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

QString Arg(U32 ActionID, int Index) {
  return GetActionArgs(ActionID).value(Index);
}

// Takes a boolean word; false, with the error, when it is none.
bool GetBoolArg(U32 ActionID, int Index, bool* pValue) {
  bool bOk = false;
  *pValue = ParseBool(Arg(ActionID, Index), &bOk);
  if (!bOk) SetActionError(ActionID, QLatin1String(ActionError::INVALID_PARAMETER));
  return bOk;
}

// A frequency that can't be understood leaves the one of before.
void SetSWOSpeeds(const QString& sSWOFreq, const QString& sCpuFreq) {
  const std::pair<U32, QString> aSpeed[] = {{VAR_SWO_SPEED, sSWOFreq}, {VAR_SWO_CPU_SPEED, sCpuFreq}};
  for (const auto& [VarID, sText] : aSpeed) {
    bool bOk = false;
    const U32 FrequencyHz = ParseFrequency(sText, &bOk);
    if (bOk) SetVarValue(GetVarInfo(VarID), FrequencyHz, 0);
  }
}

void ConfigSWO(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_CONFIG_SWO;
  if (CheckActionArgs(ID)) SetSWOSpeeds(Arg(ID, 0), Arg(ID, 1));
}

void SetSWO(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_SET_SWO;
  bool bOn = false;
  if (!CheckActionArgs(ID) || !GetBoolArg(ID, 0, &bOn)) return;
  SetSWOSpeeds(Arg(ID, 1), Arg(ID, 2));
  const bool bIsOn = GetVarValue(VAR_TRACE_SOURCE) == TRACE_SOURCE_SWO;
  if (bOn == bIsOn) return;
  const U32 Source = bOn ? TRACE_SOURCE_SWO : TRACE_SOURCE_NONE;
  PerformAction(ACTION_PROJ_SET_TRACE_SOURCE, GetVarText(GetVarInfo(VAR_TRACE_SOURCE), Source));
}

template <U32 ID, U32 VAR>
void SetChannel(COMMAND_CONTEXT&) {
  bool bOn = false;
  if (CheckActionArgs(ID) && GetBoolArg(ID, 0, &bOn)) SetVarValue(GetVarInfo(VAR), bOn, 0);
}

void AddRTTSearchRange(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_ADD_RTT_SEARCH_RANGE;
  U32 Addr = 0;
  U32 NumBytes = 0;
  if (!CheckActionArgs(ID) || !GetNumberArg(ID, 0, &Addr) || !GetNumberArg(ID, 1, &NumBytes)) return;
  if (!CDevice::Get().Ops().Channels.RTT.AddSearchRange(Addr, NumBytes)) {
    PrintConsoleError(QStringLiteral("Could not add RTT search range. Buffer full."));
  }
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_PROJ_CONFIG_SWO, ConfigSWO},
    {ACTION_PROJ_SET_SWO, SetSWO},
    {ACTION_SET_SEMIHOSTING, SetChannel<ACTION_SET_SEMIHOSTING, VAR_SEMIHOSTING_ENABLED>},
    {ACTION_SET_RTT, SetChannel<ACTION_SET_RTT, VAR_RTT_ENABLED>},
    {ACTION_PROJ_ADD_RTT_SEARCH_RANGE, AddRTTSearchRange},
};

}  // namespace

void RegisterTerminalCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
