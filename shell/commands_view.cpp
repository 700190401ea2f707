// View.*, as far as their windows exist.

#include "device/device.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/main_window.h"
#include "ui/windows/source_window.h"

namespace {

U32 CurrentPC() {
  return static_cast<U32>(CDevice::Get().GetPC());
}

void ViewPC(COMMAND_CONTEXT& Context) {
  if (CheckActionArgs(ACTION_VIEW_PC) && CheckConnected(ACTION_VIEW_PC)) Context.Window.ShowPC(CurrentPC());
}

void ViewPCLine(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_VIEW_PC_LINE;
  if (!CheckActionArgs(ID) || !CheckConnected(ID)) return;
  if (!ELFAPI_HasSrcLoc(CurrentPC())) return SetActionError(ID, QLatin1String(ActionError::NO_SOURCE_INFO));
  Context.Window.ShowPC(CurrentPC());
}

void ViewLine(COMMAND_CONTEXT& Context) {
  U32 Line = 0;
  if (!CheckActionArgs(ACTION_VIEW_LINE) || !GetNumberArg(ACTION_VIEW_LINE, 0, &Line)) return;
  CSourceWindow& Source = Context.Window.Source();
  if (!Source.ShowLine(Line))
    return SetActionError(ACTION_VIEW_LINE, QLatin1String(ActionError::INVALID_PARAMETER),
                          GetActionArgs(ACTION_VIEW_LINE).value(0));
  Source.setFocus();
}

void ViewSource(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_VIEW_SOURCE;
  if (!CheckActionArgs(ID)) return;
  CSourceWindow& Source = Context.Window.Source();
  if (!Source.SelectLocation(ELFAPI_ParseSrcLoc(GetActionArgs(ID).value(0)), true))
    return SetActionError(ID, QLatin1String(ActionError::NO_SOURCE_INFO));
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_VIEW_PC, ViewPC},
    {ACTION_VIEW_PC_LINE, ViewPCLine},
    {ACTION_VIEW_LINE, ViewLine},
    {ACTION_VIEW_SOURCE, ViewSource},
};

}  // namespace

void RegisterViewCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
