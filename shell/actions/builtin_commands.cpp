#include "shell/actions/builtin_commands.h"

#include <QColor>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_link.h"
#include "shell/actions/command_console.h"
#include "shell/log/console_print.h"
#include "shell/settings/colors.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/preferences.h"

namespace {

constexpr I64 MAX_SLEEP_MS = 360'000;
constexpr U64 RESULT_FAILED = static_cast<U64>(-1);

void EditSysVarCommand() {
  SetActionResult(ACTION_EDIT_SYS_VAR, 0);
  if (!CheckActionArgs(ACTION_EDIT_SYS_VAR)) {
    SetActionResult(ACTION_EDIT_SYS_VAR, RESULT_FAILED);
    return;
  }
  const QStringList Args = GetActionArgs(ACTION_EDIT_SYS_VAR);
  const VAR_EDIT Edit = EditSysVar(Args.at(0), Args.at(1));
  if (Edit.sError.isEmpty()) {
    SetActionArgs(ACTION_EDIT_SYS_VAR, QStringList{Edit.sName, Edit.sText});
    return;
  }
  SetActionError(ACTION_EDIT_SYS_VAR, Edit.sError, Edit.sDetail);
  SetActionResult(ACTION_EDIT_SYS_VAR, RESULT_FAILED);
}

// A third argument that no prototype tells of comes from windows: 1 stores the value, 0 wants no echo.
void EditPreferenceCommand() {
  const QStringList Args = GetActionArgs(ACTION_EDIT_PREFERENCE);
  if (Args.size() < 2 || Args.size() > 3) {
    SetActionError(ACTION_EDIT_PREFERENCE, QLatin1String(ActionError::WRONG_PARAMETER_COUNT));
    return;
  }
  const bool bSave = Args.value(2) == u"1" || Args.value(2) == u"true";
  const VAR_EDIT Edit = EditPreference(Args.at(0), Args.at(1), bSave);
  if (!Edit.sError.isEmpty()) {
    SetActionArgs(ACTION_EDIT_PREFERENCE, Args.first(2));
    SetActionError(ACTION_EDIT_PREFERENCE, Edit.sError, Edit.sDetail);
  } else if (Args.size() > 2 && !bSave) {
    SuppressEcho(ACTION_EDIT_PREFERENCE);
  } else {
    SetActionArgs(ACTION_EDIT_PREFERENCE, QStringList{Edit.sName, Edit.sText});
  }
}

void EditColorCommand() {
  if (!CheckActionArgs(ACTION_EDIT_COLOR)) return;
  const QStringList Args = GetActionArgs(ACTION_EDIT_COLOR);
  const int ColorID = FindColor(Args.at(0));
  if (ColorID < 0) {
    SetActionError(ACTION_EDIT_COLOR, QLatin1String(ActionError::UNKNOWN_COLOR), u'"' + Args.at(0) + u'"');
    return;
  }
  QColor Color;
  if (QColor::isValidColor(Args.at(1))) Color.setNamedColor(Args.at(1));
  bool bNumber = false;
  const I64 Number = ParseNumber(Args.at(1), &bNumber);
  if (!Color.isValid() && bNumber) Color = QColor::fromRgba(static_cast<QRgb>(Number));
  if (!Color.isValid()) {
    SetActionError(ACTION_EDIT_COLOR, QLatin1String(ActionError::INVALID_PARAMETER), u'"' + Args.at(1) + u'"');
    return;
  }
  const U32 ID = static_cast<U32>(ColorID);
  SetColorRgb(ID, Color.rgba(), false);
  TellColorChanged(ID);
  SetActionArgs(ACTION_EDIT_COLOR, QStringList{QLatin1String(GetColorInfo(ID)->sName), ColorText(Color.rgba())});
}

void HelpCommandsCommand() {
  if (CheckActionArgs(ACTION_HELP_COMMANDS)) PrintCommandHelp();
}

void UtilLogCommand() {
  if (!CheckActionArgs(ACTION_UTIL_LOG)) return;
  PrintConsoleColor(GetFirstActionArg(ACTION_UTIL_LOG), CONSOLE_COLOR_SCRIPT);
}

void UtilSleepCommand(const std::function<bool()>& IsClosing) {
  if (!CheckActionArgs(ACTION_UTIL_SLEEP)) return;
  bool bOk = false;
  const I64 Milliseconds = GetActionArgNumber(ACTION_UTIL_SLEEP, 0, &bOk);
  if (!bOk) {
    SetActionError(ACTION_UTIL_SLEEP, QLatin1String(ActionError::NOT_A_NUMBER));
    return;
  }
  const QDeadlineTimer Deadline(std::clamp<I64>(Milliseconds, 0, MAX_SLEEP_MS));
  while (!Deadline.hasExpired() && !(IsClosing && IsClosing())) {
    QCoreApplication::processEvents();
    QThread::msleep(1);
  }
}

}  // namespace

void RegisterBuiltinCommands(const std::function<bool()>& IsClosing) {
  RegisterActionHandler(ACTION_EDIT_SYS_VAR, EditSysVarCommand);
  RegisterActionHandler(ACTION_EDIT_PREFERENCE, EditPreferenceCommand);
  RegisterActionHandler(ACTION_EDIT_COLOR, EditColorCommand);
  RegisterActionHandler(ACTION_HELP_COMMANDS, HelpCommandsCommand);
  RegisterActionHandler(ACTION_UTIL_LOG, UtilLogCommand);
  RegisterActionHandler(ACTION_UTIL_SLEEP, [IsClosing] { UtilSleepCommand(IsClosing); });
}
