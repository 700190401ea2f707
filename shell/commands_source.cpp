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

// What the window does without more.
template <auto OPERATION>
void Do(COMMAND_CONTEXT& Context) {
  (Context.Window.Source().*OPERATION)();
}

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

// ---- What is shown

void CollapseAllLines(COMMAND_CONTEXT& Context) {
  Context.Window.Source().CollapseAll(true);
}

template <U32 PREFERENCE>
void TogglePreference(COMMAND_CONTEXT&) {
  PerformAction(ACTION_EDIT_PREFERENCE, QLatin1String(GetVarInfo(PREFERENCE)->sName),
                GetVarValue(PREFERENCE) == 0 ? 1 : 0);
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_SRC_FIND_NEXT, Do<&CSourceWindow::FindNext>},
    {ACTION_SRC_FIND_NEXT_UNDER_CURSOR, Do<&CSourceWindow::FindNextUnderCursor>},
    {ACTION_SRC_SHOW_NEXT_DOCUMENT, Do<&CSourceWindow::ShowNextDocument>},
    {ACTION_SRC_VIEW_LINE, GoToLine},
    {ACTION_SRC_VIEW_PC, GoToPC},
    {ACTION_SRC_SET_NEXT_STMNT, SetNext},
    {ACTION_SRC_SET_NEXT_PC, SetNext},
    {ACTION_SRC_RUN_TO_CURSOR, RunToCursor},
    {ACTION_SRC_EXPAND_LINE, Do<&CSourceWindow::ExpandLine>},
    {ACTION_SRC_EXPAND_ALL_LINES, Do<&CSourceWindow::ExpandAll>},
    {ACTION_SRC_COLLAPSE_LINE, Do<&CSourceWindow::CollapseLine>},
    {ACTION_SRC_COLLAPSE_ALL_LINES, CollapseAllLines},
    {ACTION_SRC_VIEW_NEXT_OBSV_POINT, Do<&CSourceWindow::SelectNextObsvPoint>},
    {ACTION_SRC_VIEW_PREV_OBSV_POINT, Do<&CSourceWindow::SelectPrevObsvPoint>},
    {ACTION_SRC_SHOW_CODE_PROFILE, TogglePreference<PREF_SHOW_SRC_CODE_PROFILE>},
    {ACTION_SRC_LOCK_HEADER_BAR, TogglePreference<PREF_LOCK_HEADER_BAR>},
    {ACTION_SRC_RESET_CODE_PROFILE, Do<&CSourceWindow::ResetExecCounters>},
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
  // In no menu of the main window, where the others have their texts from.
  GetAction(ACTION_SRC_VIEW_PC)->setText(QStringLiteral("Show &PC Line"));
  GetAction(ACTION_SRC_VIEW_PC)->setIcon(GetIcon(QStringLiteral("arrow-pc.png")));
  for (const auto& Check : CHECKS) GetAction(Check.first)->setCheckable(true);
  UpdateChecks();
  AddPreferenceListener([](U32, U32) { UpdateChecks(); });
}
