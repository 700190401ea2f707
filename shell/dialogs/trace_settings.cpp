#include "shell/dialogs/trace_settings.h"

#include "shell/actions/action_ids.h"
#include "shell/actions/command_text.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

QString SourceCommand(const TRACE_SETTINGS& Settings) {
  return MakeCommandText(ACTION_PROJ_SET_TRACE_SOURCE, {GetVarText(GetVarInfo(VAR_TRACE_SOURCE), Settings.Source)});
}

QString PortWidthCommand(const TRACE_SETTINGS& Settings) {
  return MakeCommandText(ACTION_PROJ_SET_TRACE_PORT_WIDTH, {QString::number(Settings.PortWidth)});
}

QString TimingCommand(const TRACE_SETTINGS& Settings) {
  QStringList Delays;
  for (const I32 Delay : Settings.aDelay) Delays << QString::number(Delay);
  return MakeCommandText(ACTION_PROJ_SET_TRACE_TIMING, Delays);
}

QString SwoCommand(const TRACE_SETTINGS& Settings) {
  return MakeCommandText(ACTION_PROJ_CONFIG_SWO, {FrequencyText(Settings.SWOSpeed), FrequencyText(Settings.CPUSpeed)});
}

}  // namespace

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
  QStringList Commands = {SourceCommand(Settings)};
  if (Settings.Source == TRACE_SOURCE_ETM) {
    Commands << PortWidthCommand(Settings);
    if (Settings.bTiming) Commands << TimingCommand(Settings);
  }
  if (Settings.Source == TRACE_SOURCE_SWO) Commands << SwoCommand(Settings);
  return Commands;
}

QStringList TraceChanges(const TRACE_SETTINGS& From, const TRACE_SETTINGS& To) {
  QStringList Commands;
  if (From.Source != To.Source) Commands << SourceCommand(To);
  if (To.Source == TRACE_SOURCE_ETM) {
    if (From.PortWidth != To.PortWidth) Commands << PortWidthCommand(To);
    if (From.aDelay != To.aDelay || From.bTiming != To.bTiming) Commands << TimingCommand(To);
  }
  const bool bClocks = From.SWOSpeed != To.SWOSpeed || From.CPUSpeed != To.CPUSpeed;
  if (To.Source == TRACE_SOURCE_SWO && bClocks) Commands << SwoCommand(To);
  return Commands;
}
