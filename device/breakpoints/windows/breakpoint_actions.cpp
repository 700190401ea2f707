#include "device/breakpoints/windows/breakpoint_actions.h"

#include <QApplication>

#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/windows/breakpoint_dialog.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/settings/settings_cache.h"
#include "ui/input_dialog.h"

namespace {

const SETTING_GROUP WINDOW_GROUP = {QStringLiteral("AppData"), QStringLiteral("Breakpoints")};
const QString LAST_INPUT = QStringLiteral("LastDialogInput");

CBreakpointManager& Breakpoints() {
  return CBreakpointManager::Get();
}

// How a place is set; a line without code becomes the one that stands in for it.
bool FindSetting(BREAKPOINT_LOCATION* pLocation, BP_SETTING& Setting) {
  if (pLocation->IsSource()) return Breakpoints().FindOnSrc(&pLocation->Loc, Setting);
  BP Entry;
  if (!Breakpoints().GetAt(pLocation->Addr, Entry)) return false;
  Setting.State = Entry.State;
  Setting.Type = Entry.Type;
  return Breakpoints().GetProps(*pLocation, Setting.Props);
}

void PerformEdit(const BREAKPOINT_LOCATION& Location, const CBreakpointProps& Props) {
  PerformAction(ACTION_BREAK_EDIT, LocationArg(Location), Props.Condition, Props.DoTriggerOnChange ? 1 : 0,
                Props.SkipCount, Props.FilterTaskID, Props.ExtraActionConsoleText, Props.ExtraActionMsgBoxText);
}

}  // namespace

QString LocationArg(const BREAKPOINT_LOCATION& Location) {
  if (!Location.IsSource()) return HexText(Location.Addr);
  return UniqueLineText(Location.Loc, Breakpoints().PathOf(Location.Loc));
}

void PerformBreakpoint(const BREAKPOINT_LOCATION& Location, U32 OnSrcID, U32 AtAddrID) {
  if (Location.IsValid()) PerformAction(Location.IsSource() ? OnSrcID : AtAddrID, LocationArg(Location));
}

void ToggleBreakpointState(BREAKPOINT_LOCATION Location) {
  BP_SETTING Setting;
  if (!FindSetting(&Location, Setting)) return;
  if (Setting.State == BP_STATE_ENABLED) {
    PerformBreakpoint(Location, ACTION_BREAK_DISABLE_ON_SRC, ACTION_BREAK_DISABLE);
  } else {
    PerformBreakpoint(Location, ACTION_BREAK_ENABLE_ON_SRC, ACTION_BREAK_ENABLE);
  }
}

void ToggleBreakpoint(BREAKPOINT_LOCATION Location) {
  BP_SETTING Setting;
  const bool bSet = FindSetting(&Location, Setting);
  if (bSet && !Location.IsSource() && Breakpoints().IsDerived(Location.Addr)) {
    ToggleBreakpointState(Location);
  } else if (bSet) {
    PerformBreakpoint(Location, ACTION_BREAK_CLEAR_ON_SRC, ACTION_BREAK_CLEAR);
  } else {
    PerformBreakpoint(Location, ACTION_BREAK_SET_ON_SRC, ACTION_BREAK_SET);
  }
}

void EditBreakpoint(BREAKPOINT_LOCATION Location) {
  BP_SETTING Setting;
  if (!FindSetting(&Location, Setting)) return;
  const bool bDerived = !Location.IsSource() && Breakpoints().IsDerived(Location.Addr);
  CBreakpointDialog Dialog(QApplication::activeWindow(), LocationArg(Location), bDerived, Breakpoints().Evaluator());
  Dialog.SetBreakpoint(Setting.Props, Setting.State);
  if (Dialog.exec() != QDialog::Accepted) return;
  if (!Dialog.Props().IsSame(Setting.Props) || Breakpoints().DoPropsDiffer(Location.Loc))
    PerformEdit(Location, Dialog.Props());
  // One that could not be set was shown as disabled.
  const U32 Shown = Setting.State == BP_STATE_CLEARED ? U32{BP_STATE_DISABLED} : Setting.State;
  if (Dialog.State() == Shown || Dialog.State() == BP_STATE_MIXED) return;
  if (Dialog.State() == BP_STATE_ENABLED) {
    PerformBreakpoint(Location, ACTION_BREAK_ENABLE_ON_SRC, ACTION_BREAK_ENABLE);
  } else {
    PerformBreakpoint(Location, ACTION_BREAK_DISABLE_ON_SRC, ACTION_BREAK_DISABLE);
  }
}

void AskForBreakpoint() {
  CInputDialog Dialog(QApplication::activeWindow(), QStringLiteral("Set/Clear Breakpoint"),
                      QStringLiteral("breakpoint-dialog.png"),
                      QStringLiteral("Source Location Descriptor, Function or Address"));
  Dialog.SetText(GetSetting(WINDOW_GROUP, LAST_INPUT, QString()).toString());
  Dialog.SetMandatory(true);
  if (Dialog.exec() != QDialog::Accepted) return;
  const QString sText = Dialog.Text().trimmed();
  SetSetting(WINDOW_GROUP, LAST_INPUT, sText);
  BREAKPOINT_LOCATION Location = {Breakpoints().FindByText(sText), INVALID_ADDR};
  if (!Location.IsValid()) Location = ParseBreakpointLocation(sText);
  if (Location.IsValid()) {
    ToggleBreakpoint(Location);
  } else {
    PerformAction(ACTION_BREAK_SET_ON_SRC, sText);  // says what is wrong
  }
}
