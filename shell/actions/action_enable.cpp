#include "shell/actions/action_enable.h"

#include "base/text.h"
#include "shell/actions/action_dispatch.h"

namespace {

// What a rule may ask of the session.
enum CONDITION : U8 {
  COND_YES,
  COND_NO,
  COND_CONNECTED,
  COND_NOT_CONNECTED,
  COND_HALTED,
  COND_NOT_HALTED,
  COND_CONNECTED_HALTED,
  COND_CONNECTED_RUNNING,
  COND_CONNECTED_PC_HAS_SOURCE,
  COND_ACTIVE_DOC_MODIFIED,
  COND_PROJECT_OPEN,
  COND_ANYTHING_MODIFIED,
  COND_HAS_BREAKPOINT,
  COND_HAS_DATA_BREAKPOINT,
  COND_HAS_ARGUMENT,
};

struct ENABLE_RULE {
  ACTION_ID ID;
  CONDITION Accepted;
  CONDITION GuiEnabled;
  CONDITION Visible;
};

constexpr ENABLE_RULE Rules[] = {
    {ACTION_FILE_SAVE, COND_ACTIVE_DOC_MODIFIED, COND_ACTIVE_DOC_MODIFIED, COND_YES},
    {ACTION_FILE_SAVE_PROJ_AS, COND_PROJECT_OPEN, COND_PROJECT_OPEN, COND_YES},
    {ACTION_FILE_SAVE_ALL, COND_ANYTHING_MODIFIED, COND_ANYTHING_MODIFIED, COND_YES},
    {ACTION_FILE_OPEN_RECENT_PROGRAM, COND_YES, COND_YES, COND_NO},
    {ACTION_DEBUG_STOP, COND_YES, COND_CONNECTED, COND_CONNECTED},
    {ACTION_DEBUG_START, COND_NOT_CONNECTED, COND_NOT_CONNECTED, COND_NOT_CONNECTED},
    {ACTION_DEBUG_DOWNLOAD_RESET, COND_NOT_CONNECTED, COND_NOT_CONNECTED, COND_YES},
    {ACTION_DEBUG_ATTACH, COND_NOT_CONNECTED, COND_NOT_CONNECTED, COND_YES},
    {ACTION_DEBUG_ATTACH_HALT, COND_NOT_CONNECTED, COND_NOT_CONNECTED, COND_YES},
    {ACTION_DEBUG_RESET, COND_CONNECTED, COND_CONNECTED, COND_YES},
    {ACTION_DEBUG_RESET_BREAK_AT_SYMBOL, COND_CONNECTED, COND_CONNECTED, COND_YES},
    {ACTION_DEBUG_RESET_HALT, COND_CONNECTED, COND_CONNECTED, COND_YES},
    {ACTION_DEBUG_RESET_RUN, COND_CONNECTED, COND_CONNECTED, COND_YES},
    {ACTION_DEBUG_CONTINUE, COND_YES, COND_CONNECTED_HALTED, COND_HALTED},
    {ACTION_DEBUG_HALT, COND_YES, COND_CONNECTED_RUNNING, COND_NOT_HALTED},
    {ACTION_DEBUG_STEP_INTO, COND_YES, COND_CONNECTED_HALTED, COND_YES},
    {ACTION_DEBUG_STEP_OVER, COND_YES, COND_CONNECTED_HALTED, COND_YES},
    {ACTION_DEBUG_STEP_OUT, COND_YES, COND_CONNECTED_HALTED, COND_YES},
    {ACTION_DEBUG_SET_NEXT_PC, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_DEBUG_SET_NEXT_STMNT, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_DEBUG_RUN_TO, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_VIEW_DATA, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_VIEW_MEMORY_MAP, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_VIEW_SOURCE, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_VIEW_DISASSEMBLY, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_VIEW_CALL_GRAPH, COND_YES, COND_HAS_ARGUMENT, COND_HAS_ARGUMENT},
    {ACTION_VIEW_PC, COND_CONNECTED, COND_CONNECTED, COND_CONNECTED},
    {ACTION_VIEW_PC_LINE, COND_CONNECTED, COND_CONNECTED, COND_CONNECTED_PC_HAS_SOURCE},
    {ACTION_VIEW_INSTR_TRACE, COND_CONNECTED, COND_CONNECTED, COND_CONNECTED},
    {ACTION_VIEW_MEMORY, COND_CONNECTED, COND_CONNECTED, COND_CONNECTED},
    {ACTION_WATCH, COND_YES, COND_HAS_ARGUMENT, COND_YES},
    {ACTION_BREAK_CLEAR_ALL, COND_HAS_BREAKPOINT, COND_HAS_BREAKPOINT, COND_YES},
    {ACTION_BREAK_CLEAR_ALL_ON_DATA, COND_HAS_DATA_BREAKPOINT, COND_HAS_DATA_BREAKPOINT, COND_YES},
};

bool Holds(CONDITION Condition, const ACTION_STATE& State, bool HasArgs) {
  switch (Condition) {
    case COND_YES:
      return true;
    case COND_NO:
      return false;
    case COND_CONNECTED:
      return State.Connected;
    case COND_NOT_CONNECTED:
      return !State.Connected;
    case COND_HALTED:
      return State.Halted;
    case COND_NOT_HALTED:
      return !State.Halted;
    case COND_CONNECTED_HALTED:
      return State.Connected && State.Halted;
    case COND_CONNECTED_RUNNING:
      return State.Connected && !State.Halted;
    case COND_CONNECTED_PC_HAS_SOURCE:
      return State.Connected && State.PCHasSource;
    case COND_ACTIVE_DOC_MODIFIED:
      return State.DocumentOpen && State.ActiveDocumentModified;
    case COND_PROJECT_OPEN:
      return State.ProjectOpen;
    case COND_ANYTHING_MODIFIED:
      return (State.ProjectOpen && State.ProjectModified) || State.AnyDocumentModified;
    case COND_HAS_BREAKPOINT:
      return State.HasBreakpoint;
    case COND_HAS_DATA_BREAKPOINT:
      return State.HasDataBreakpoint;
    case COND_HAS_ARGUMENT:
      return HasArgs;
  }
  return true;
}

const ENABLE_RULE* FindRule(U32 ID) {
  const auto it =
      std::find_if(std::begin(Rules), std::end(Rules), [=](const ENABLE_RULE& Rule) { return Rule.ID == ID; });
  return it == std::end(Rules) ? nullptr : it;
}

}  // namespace

bool HasEnableRule(U32 ID) {
  return FindRule(ID) != nullptr;
}

ACTION_ENABLE EvaluateEnableRule(U32 ID, const ACTION_STATE& State, bool HasArgs) {
  const ENABLE_RULE* pRule = FindRule(ID);
  if (!pRule) return {};
  return {Holds(pRule->Accepted, State, HasArgs), Holds(pRule->GuiEnabled, State, HasArgs),
          Holds(pRule->Visible, State, HasArgs)};
}

void UpdateActions(const ACTION_STATE& State) {
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    QAction* pAction = GetAction(ID);
    if (!pAction) continue;
    const ACTION_ENABLE Enable = EvaluateEnableRule(ID, State, HasActionArgs(ID));
    SetActionAccepted(ID, Enable.Accepted);
    if (!HasEnableRule(ID)) continue;
    pAction->setEnabled(Enable.GuiEnabled);
    pAction->setVisible(Enable.Visible);
  }
  if (QAction* pSave = GetAction(ACTION_FILE_SAVE)) {
    const bool bNamed = IsActionEnabled(ACTION_FILE_SAVE, false) && !State.sActiveDocument.isEmpty();
    pSave->setText(bNamed ? QLatin1String("&Save ") + MenuText(State.sActiveDocument) : QStringLiteral("&Save"));
  }
}
