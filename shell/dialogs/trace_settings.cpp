#include "shell/dialogs/trace_settings.h"

#include "shell/actions/action_ids.h"
#include "shell/actions/command_text.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

TRACE_SETTINGS GetTraceSettings(bool bTiming) {
  TRACE_SETTINGS Settings;
  Settings.Source = GetVarValue(VAR_TRACE_SOURCE);
  Settings.PortWidth = GetVarValue(VAR_TRACE_PORT_WIDTH);
  Settings.bTiming = bTiming;
  for (U32 i = 0; i < NUM_TRACE_DELAYS; ++i)
    Settings.aDelay[i] = static_cast<I32>(GetVarValue(VAR_TRACE_PORT_DELAY_0 + i));
  Settings.CPUSpeed = GetVarValue(VAR_SWO_CPU_SPEED);
  Settings.SWOSpeed = GetVarValue(VAR_SWO_SPEED);
  return Settings;
}

QStringList TraceCommands(const TRACE_SETTINGS& Settings) {
  const QString sSource = GetVarText(GetVarInfo(VAR_TRACE_SOURCE), Settings.Source);
  QStringList Commands = {MakeCommandText(ACTION_PROJ_SET_TRACE_SOURCE, {sSource})};
  if (Settings.Source == TRACE_SOURCE_ETM) {
    Commands << MakeCommandText(ACTION_PROJ_SET_TRACE_PORT_WIDTH, {QString::number(Settings.PortWidth)});
    QStringList Delays;
    for (const I32 Delay : Settings.aDelay) Delays << QString::number(Delay);
    if (Settings.bTiming) Commands << MakeCommandText(ACTION_PROJ_SET_TRACE_TIMING, Delays);
  }
  if (Settings.Source == TRACE_SOURCE_SWO) {
    Commands << MakeCommandText(ACTION_PROJ_CONFIG_SWO,
                                {FrequencyText(Settings.SWOSpeed), FrequencyText(Settings.CPUSpeed)});
  }
  return Commands;
}

QList<TRACE_CHANGE> TraceChanges(const TRACE_SETTINGS& From, const TRACE_SETTINGS& To) {
  QList<TRACE_CHANGE> Changes;
  const auto Compare = [&Changes](U32 VarID, auto Old, auto New) {
    if (Old != New) Changes.append({VarID, GetVarText(GetVarInfo(VarID), static_cast<U32>(New))});
  };
  Compare(VAR_TRACE_SOURCE, From.Source, To.Source);
  if (To.Source == TRACE_SOURCE_ETM) {
    Compare(VAR_TRACE_PORT_WIDTH, From.PortWidth, To.PortWidth);
    for (U32 i = 0; i < NUM_TRACE_DELAYS; ++i) Compare(VAR_TRACE_PORT_DELAY_0 + i, From.aDelay[i], To.aDelay[i]);
  }
  if (To.Source == TRACE_SOURCE_SWO) {
    Compare(VAR_SWO_SPEED, From.SWOSpeed, To.SWOSpeed);
    Compare(VAR_SWO_CPU_SPEED, From.CPUSpeed, To.CPUSpeed);
  }
  return Changes;
}

bool IsTraceChanged(const TRACE_SETTINGS& From, const TRACE_SETTINGS& To) {
  return !TraceChanges(From, To).isEmpty() || (To.Source == TRACE_SOURCE_ETM && From.bTiming != To.bTiming);
}
