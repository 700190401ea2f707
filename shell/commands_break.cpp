// Break.*

#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/windows/breakpoint_actions.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/log/console_print.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr U32 THUMB_BIT = 1;

CBreakpointManager& Breakpoints() {
  return CBreakpointManager::Get();
}

void SetError(U32 ActionID, const char* sError) {
  SetActionError(ActionID, QLatin1String(sError));
}

U32 DefaultType() {
  return GetVarValue(VAR_BREAKPOINT_TYPE);
}

bool GetTypeArg(U32 ActionID, int Index, U32* pType) {
  if (!GetNumberArg(ActionID, Index, pType)) return false;
  if (*pType <= BP_TYPE_SOFT) return true;
  SetError(ActionID, ActionError::INVALID_PARAMETER);
  return false;
}

bool GetCodeAddrArg(U32 ActionID, U32* pAddr) {
  if (!GetAddressArg(ActionID, 0, pAddr)) return false;
  *pAddr &= ~THUMB_BIT;
  return true;
}

// ---- At addresses

void SetAt(U32 ActionID, U32 Type) {
  U32 Addr = 0;
  BP Entry;
  if (!GetCodeAddrArg(ActionID, &Addr)) return;
  if (Breakpoints().GetAt(Addr, Entry) && Entry.State == BP_STATE_ENABLED && Entry.Type == Type) {
    return SetError(ActionID, ActionError::BREAKPOINT_ALREADY_SET);
  }
  Breakpoints().Set(Addr, BP_STATE_ENABLED, static_cast<BP_TYPES>(Type));
}

void Set(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_BREAK_SET)) SetAt(ACTION_BREAK_SET, DefaultType());
}

void SetEx(COMMAND_CONTEXT&) {
  U32 Type = 0;
  if (CheckActionArgs(ACTION_BREAK_SET_EX) && GetTypeArg(ACTION_BREAK_SET_EX, 1, &Type))
    SetAt(ACTION_BREAK_SET_EX, Type);
}

void Clear(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_BREAK_CLEAR;
  U32 Addr = 0;
  BP Entry;
  if (!CheckActionArgs(ID) || !GetCodeAddrArg(ID, &Addr)) return;
  if (Breakpoints().IsDerived(Addr)) return SetError(ID, ActionError::DERIVED_BREAKPOINT);
  if (!Breakpoints().GetAt(Addr, Entry)) return SetError(ID, ActionError::BREAKPOINT_NOT_SET);
  Breakpoints().Clear(Addr);
}

template <U32 ID, BP_STATES STATE>
void SetState(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  BP Entry;
  if (!CheckActionArgs(ID) || !GetCodeAddrArg(ID, &Addr)) return;
  const bool bSet = Breakpoints().GetAt(Addr, Entry);
  if (STATE == BP_STATE_DISABLED && !bSet) return SetError(ID, ActionError::BREAKPOINT_NOT_SET);
  if (STATE == BP_STATE_ENABLED && (!bSet || Entry.State == BP_STATE_ENABLED)) {
    return SetError(ID, ActionError::BREAKPOINT_NOT_DISABLED);
  }
  Breakpoints().Set(Addr, STATE, static_cast<BP_TYPES>(Entry.Type));
}

// ---- On source lines

// The line that the first argument names; false, with the error "invalid parameter".
bool GetLineArg(U32 ActionID, CSrcLoc* pLoc) {
  const QString sText = GetActionArgs(ActionID).value(0);
  *pLoc = Breakpoints().FindByText(sText);
  if (!pLoc->IsValid()) *pLoc = ParseBreakpointLine(sText);
  if (!pLoc->IsValid()) SetPathError(ActionID, ActionError::INVALID_PARAMETER, sText);
  return pLoc->IsValid();
}

void SetOnLine(U32 ActionID, U32 Type) {
  CSrcLoc Loc;
  BP_SETTING Setting;
  if (!GetLineArg(ActionID, &Loc)) return;
  const CSrcLoc Wanted = Loc;
  const bool bSet = Breakpoints().FindOnSrc(&Loc, Setting);
  if (bSet && Setting.State == BP_STATE_ENABLED && Setting.Type == Type) {
    return SetError(ActionID, ActionError::BREAKPOINT_ALREADY_SET);
  }
  if (!bSet) Loc = LineWithCode(Loc);
  if (!(Loc == Wanted)) PrintConsole(MovedBreakpointText(ELFAPI_GetSrcLocText(Wanted), ELFAPI_GetSrcLocText(Loc)));
  if (!Breakpoints().SetOnSrc(Loc, BP_STATE_ENABLED, Type)) SetActionError(ActionID, QLatin1String(LIST_FULL_TEXT));
}

void SetOnSrc(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_BREAK_SET_ON_SRC)) SetOnLine(ACTION_BREAK_SET_ON_SRC, DefaultType());
}

void SetOnSrcEx(COMMAND_CONTEXT&) {
  U32 Type = 0;
  if (CheckActionArgs(ACTION_BREAK_SET_ON_SRC_EX) && GetTypeArg(ACTION_BREAK_SET_ON_SRC_EX, 1, &Type))
    SetOnLine(ACTION_BREAK_SET_ON_SRC_EX, Type);
}

void ClearOnSrc(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_BREAK_CLEAR_ON_SRC;
  CSrcLoc Loc;
  BP_SETTING Setting;
  if (!CheckActionArgs(ID) || !GetLineArg(ID, &Loc)) return;
  if (!Breakpoints().FindOnSrc(&Loc, Setting)) return SetError(ID, ActionError::BREAKPOINT_NOT_SET);
  Breakpoints().ClearOnSrc(Loc);
}

template <U32 ID, BP_STATES STATE>
void SetStateOnSrc(COMMAND_CONTEXT&) {
  CSrcLoc Loc;
  BP_SETTING Setting;
  if (!CheckActionArgs(ID) || !GetLineArg(ID, &Loc)) return;
  const bool bSet = Breakpoints().FindOnSrc(&Loc, Setting);
  if (STATE == BP_STATE_DISABLED && !bSet) return SetError(ID, ActionError::BREAKPOINT_NOT_SET);
  if (STATE == BP_STATE_ENABLED && (!bSet || Setting.State == BP_STATE_ENABLED)) {
    return SetError(ID, ActionError::BREAKPOINT_NOT_DISABLED);
  }
  Breakpoints().SetOnSrc(Loc, STATE, BP_TYPE_MIXED);
}

// ---- All of them, and what they have beside their place

void ClearAll(COMMAND_CONTEXT&) {
  if (CheckActionArgs(ACTION_BREAK_CLEAR_ALL)) Breakpoints().ClearAll();
}

// The breakpoint that the first argument names by line or address; false, with the error.
bool GetBreakpointArg(U32 ActionID, BREAKPOINT_LOCATION* pLocation) {
  const QString sText = GetActionArgs(ActionID).value(0);
  CBreakpointProps Props;
  *pLocation = {Breakpoints().FindByText(sText), INVALID_ADDR};
  if (!pLocation->IsValid()) *pLocation = ParseBreakpointLocation(sText);
  if (Breakpoints().GetProps(*pLocation, Props)) return true;
  pLocation->Loc = LineWithCode(pLocation->Loc);
  if (Breakpoints().GetProps(*pLocation, Props)) return true;
  SetError(ActionID, ActionError::NO_BREAKPOINT_MATCHES);
  return false;
}

void Edit(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_BREAK_EDIT;
  BREAKPOINT_LOCATION Location;
  U32 OnChange = 0;
  CBreakpointProps Props;
  if (!CheckActionArgs(ID) || !GetNumberArg(ID, 2, &OnChange) || !GetNumberArg(ID, 3, &Props.SkipCount)) return;
  if (!GetBreakpointArg(ID, &Location)) return;
  const QStringList Args = GetActionArgs(ID);
  Props.Condition = Args[1].trimmed();
  Props.DoTriggerOnChange = OnChange != 0;
  Props.FilterTaskID = Args[4].trimmed();
  Props.ExtraActionConsoleText = Args[5];
  Props.ExtraActionMsgBoxText = Args[6];
  Breakpoints().Edit(Location, Props);
}

void SetType(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_BREAK_SET_TYPE;
  BREAKPOINT_LOCATION Location;
  U32 Type = 0;
  BP Entry;
  if (!CheckActionArgs(ID) || !GetTypeArg(ID, 1, &Type) || !GetBreakpointArg(ID, &Location)) return;
  if (Location.IsSource()) {
    Breakpoints().SetOnSrc(Location.Loc, BP_STATE_MIXED, Type);
  } else if (Breakpoints().GetAt(Location.Addr, Entry)) {
    const BP_STATES State = Entry.State == BP_STATE_DISABLED ? BP_STATE_DISABLED : BP_STATE_ENABLED;
    Breakpoints().Set(Location.Addr, State, static_cast<BP_TYPES>(Type));
  }
}

void OpenDialog(COMMAND_CONTEXT&) {
  AskForBreakpoint();
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_BP_OPEN_DIALOG, OpenDialog},
    {ACTION_BREAK_SET, Set},
    {ACTION_BREAK_SET_EX, SetEx},
    {ACTION_BREAK_CLEAR, Clear},
    {ACTION_BREAK_ENABLE, SetState<ACTION_BREAK_ENABLE, BP_STATE_ENABLED>},
    {ACTION_BREAK_DISABLE, SetState<ACTION_BREAK_DISABLE, BP_STATE_DISABLED>},
    {ACTION_BREAK_SET_ON_SRC, SetOnSrc},
    {ACTION_BREAK_SET_ON_SRC_EX, SetOnSrcEx},
    {ACTION_BREAK_CLEAR_ON_SRC, ClearOnSrc},
    {ACTION_BREAK_ENABLE_ON_SRC, SetStateOnSrc<ACTION_BREAK_ENABLE_ON_SRC, BP_STATE_ENABLED>},
    {ACTION_BREAK_DISABLE_ON_SRC, SetStateOnSrc<ACTION_BREAK_DISABLE_ON_SRC, BP_STATE_DISABLED>},
    {ACTION_BREAK_CLEAR_ALL, ClearAll},
    {ACTION_BREAK_EDIT, Edit},
    {ACTION_BREAK_SET_TYPE, SetType},
};

}  // namespace

void RegisterBreakCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
