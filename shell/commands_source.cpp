// The rows of the source window: what its keys and menus do, as commands where there is one.

#include "device/breakpoints/windows/breakpoint_actions.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/commands.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/input_dialog.h"
#include "ui/windows/source_window.h"

namespace {

// ---- Going somewhere

void GoToLine(COMMAND_CONTEXT& Context) {
  const CSourceWindow& Source = Context.Window.Source();
  if (Source.NumLines() == 0) return;
  CInputDialog Dialog(&Context.Window, QStringLiteral("Go to Line"), QStringLiteral("arrow-curve.png"),
                      QStringLiteral("Line number (1 to %1):").arg(Source.NumLines()));
  Dialog.SetText(QString::number(Source.CursorLine()));
  Dialog.SetMandatory(true);
  if (Dialog.exec() == QDialog::Accepted) PerformAction(ACTION_VIEW_LINE, Dialog.Text());
}

void GoToPC(COMMAND_CONTEXT&) {
  if (IsActionEnabled(ACTION_VIEW_PC_LINE, true)) PerformAction(ACTION_VIEW_PC_LINE);
}

void ShowNextDocument(COMMAND_CONTEXT& Context) {
  Context.Window.Source().ShowNextDocument();
}

void GoBack(COMMAND_CONTEXT& Context) {
  Context.Window.Source().SelectPrevObsvPoint();
}

void GoForward(COMMAND_CONTEXT& Context) {
  Context.Window.Source().SelectNextObsvPoint();
}

void FindNext(COMMAND_CONTEXT& Context) {
  Context.Window.Source().FindNext();
}

void FindNextUnderCursor(COMMAND_CONTEXT& Context) {
  Context.Window.Source().FindNextUnderCursor();
}

// ---- Execution

// As the argument of a command.
QString PlaceText(const CODE_PLACE& Place) {
  return LocationArg({Place.bInstruction ? CSrcLoc() : Place.Loc, Place.Addr});
}

void SetNext(COMMAND_CONTEXT& Context) {
  const CODE_PLACE Place = Context.Window.Source().CursorPlace();
  if (!Place.HasCode()) return;
  PerformAction(Place.bInstruction ? ACTION_DEBUG_SET_NEXT_PC : ACTION_DEBUG_SET_NEXT_STMNT, PlaceText(Place));
}

void RunToCursor(COMMAND_CONTEXT& Context) {
  const CODE_PLACE Place = Context.Window.Source().CursorPlace();
  if (Place.HasCode()) PerformAction(ACTION_DEBUG_RUN_TO, PlaceText(Place));
}

// ---- Lines and their instructions

void ExpandLine(COMMAND_CONTEXT& Context) {
  Context.Window.Source().ExpandLine();
}

void CollapseLine(COMMAND_CONTEXT& Context) {
  Context.Window.Source().CollapseLine();
}

void ExpandAllLines(COMMAND_CONTEXT& Context) {
  Context.Window.Source().ExpandAll();
}

void CollapseAllLines(COMMAND_CONTEXT& Context) {
  Context.Window.Source().CollapseAll(true);
}

// ---- What is shown

template <U32 PREFERENCE>
void TogglePreference(COMMAND_CONTEXT&) {
  PerformAction(ACTION_EDIT_PREFERENCE, QLatin1String(GetVarInfo(PREFERENCE)->sName),
                GetVarValue(PREFERENCE) == 0 ? 1 : 0);
}

void ResetCodeProfile(COMMAND_CONTEXT& Context) {
  Q_EMIT Context.Window.Source().ResetExecCounters();
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_SRC_FIND_NEXT, FindNext},
    {ACTION_SRC_FIND_NEXT_UNDER_CURSOR, FindNextUnderCursor},
    {ACTION_SRC_SHOW_NEXT_DOCUMENT, ShowNextDocument},
    {ACTION_SRC_VIEW_LINE, GoToLine},
    {ACTION_SRC_VIEW_PC, GoToPC},
    {ACTION_SRC_SET_NEXT_STMNT, SetNext},
    {ACTION_SRC_SET_NEXT_PC, SetNext},
    {ACTION_SRC_RUN_TO_CURSOR, RunToCursor},
    {ACTION_SRC_EXPAND_LINE, ExpandLine},
    {ACTION_SRC_EXPAND_ALL_LINES, ExpandAllLines},
    {ACTION_SRC_COLLAPSE_LINE, CollapseLine},
    {ACTION_SRC_COLLAPSE_ALL_LINES, CollapseAllLines},
    {ACTION_SRC_VIEW_NEXT_OBSV_POINT, GoForward},
    {ACTION_SRC_VIEW_PREV_OBSV_POINT, GoBack},
    {ACTION_SRC_SHOW_CODE_PROFILE, TogglePreference<PREF_SHOW_SRC_CODE_PROFILE>},
    {ACTION_SRC_LOCK_HEADER_BAR, TogglePreference<PREF_LOCK_HEADER_BAR>},
    {ACTION_SRC_RESET_CODE_PROFILE, ResetCodeProfile},
};

// Those that are in no menu of the main window but in one of the source window's.
struct LABEL {
  U32 ID;
  const char* sText;
  const char* sIcon;
};
constexpr LABEL LABELS[] = {
    {ACTION_SRC_VIEW_PC, "Show &PC Line", "arrow-pc.png"},
};

// What stands for a preference has its check mark.
constexpr std::pair<U32, U32> CHECKS[] = {
    {ACTION_SRC_SHOW_CODE_PROFILE, PREF_SHOW_SRC_CODE_PROFILE},
    {ACTION_SRC_LOCK_HEADER_BAR, PREF_LOCK_HEADER_BAR},
};

void UpdateChecks() {
  for (const auto& [ActionID, VarID] : CHECKS) GetAction(ActionID)->setChecked(GetVarValue(VarID) != 0);
}

}  // namespace

void RegisterSourceCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
  for (const COMMAND_HANDLER& Entry : HANDLERS) {
    // Every code view has these keys for itself.
    QAction* const pAction = GetAction(Entry.ActionID);
    pAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    Context.Window.Source().addAction(pAction);
  }
  for (const U32 ID : {ACTION_SRC_SHOW_NEXT_DOCUMENT, ACTION_SRC_VIEW_LINE})
    GetAction(ID)->setShortcutContext(Qt::WindowShortcut);
  for (const LABEL& Label : LABELS) {
    GetAction(Label.ID)->setText(QLatin1String(Label.sText));
    GetAction(Label.ID)->setIcon(GetIcon(QLatin1String(Label.sIcon)));
  }
  for (const auto& Check : CHECKS) GetAction(Check.first)->setCheckable(true);
  UpdateChecks();
  AddPreferenceListener([](U32, U32) { UpdateChecks(); });
}
