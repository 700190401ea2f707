#include "ui/windows/source_menus.h"

#include <algorithm>
#include <span>

#include "device/device.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "ui/popup_menu.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr U32 SEPARATOR = NUM_ACTIONS;

constexpr U32 TEXT_ITEMS[] = {
    ACTION_BP_SET,
    ACTION_BP_CLEAR,
    ACTION_BP_EDIT_DIALOG,
    SEPARATOR,
    ACTION_SRC_SET_NEXT_STMNT,
    ACTION_SRC_SET_NEXT_PC,
    ACTION_SRC_RUN_TO_CURSOR,
    SEPARATOR,
    ACTION_VIEW_SOURCE,
    ACTION_VIEW_DISASSEMBLY,
    ACTION_VIEW_DATA,
    ACTION_VIEW_CALL_GRAPH,
    ACTION_VIEW_MEMORY_MAP,
    SEPARATOR,
    ACTION_WATCH,
    SEPARATOR,
    ACTION_SRC_VIEW_PC,
    ACTION_SRC_VIEW_LINE,
    SEPARATOR,
    ACTION_SRC_EXPAND_LINE,
    ACTION_SRC_COLLAPSE_LINE,
    ACTION_SRC_EXPAND_ALL_LINES,
    ACTION_SRC_COLLAPSE_ALL_LINES,
    SEPARATOR,
};
constexpr U32 MARGIN_ITEMS[] = {
    ACTION_BP_SET,         ACTION_BP_CLEAR, ACTION_BP_ENABLE,      ACTION_BP_DISABLE,
    ACTION_BP_EDIT_DIALOG, SEPARATOR,       ACTION_BP_OPEN_DIALOG, ACTION_BREAK_CLEAR_ALL,
};
constexpr U32 TAB_ITEMS[] = {
    ACTION_FILE_SAVE, SEPARATOR, ACTION_FILE_CLOSE, ACTION_FILE_CLOSE_ALL, ACTION_FILE_CLOSE_ALL_BUT_THIS,
};

// These are left out where they can't be done, the rest is shown disabled.
constexpr U32 ONLY_WHERE_POSSIBLE[] = {ACTION_BP_SET,
                                       ACTION_BP_CLEAR,
                                       ACTION_BP_ENABLE,
                                       ACTION_BP_DISABLE,
                                       ACTION_SRC_SET_NEXT_PC,
                                       ACTION_SRC_EXPAND_LINE,
                                       ACTION_SRC_COLLAPSE_LINE,
                                       ACTION_SRC_EXPAND_ALL_LINES,
                                       ACTION_SRC_COLLAPSE_ALL_LINES};

void AddEntries(CPopupMenu& Menu, std::span<const U32> Items, U32 LeftOutID = SEPARATOR) {
  for (const U32 ID : Items) {
    if (ID == LeftOutID && ID != SEPARATOR) continue;
    QAction* const pAction = GetAction(ID);
    const bool bLeftOut = pAction && !pAction->isEnabled() && std::ranges::count(ONLY_WHERE_POSSIBLE, ID) > 0;
    if (ID == SEPARATOR) {
      Menu.AddSeparator();
    } else if (!bLeftOut) {
      Menu.AddAction(pAction);
    }
  }
}

void Offer(U32 ID, bool bOn) {
  if (QAction* const pAction = GetAction(ID)) pAction->setEnabled(bOn);
}

}  // namespace

void AddSourceEntries(CPopupMenu& Menu, CSourceEditor& Editor) {
  const bool bInstruction = Editor.Rows().IsInstruction(Editor.CursorPos().y());
  AddEntries(Menu, TEXT_ITEMS, bInstruction ? ACTION_SRC_SET_NEXT_STMNT : ACTION_SRC_SET_NEXT_PC);
  Editor.AddMenuEntries(&Menu, false);
  Menu.AddSeparator();
  Menu.AddAction(GetAction(ACTION_SRC_FIND));
}

void AddMarginEntries(CPopupMenu& Menu) {
  AddEntries(Menu, MARGIN_ITEMS);
}

void AddTabEntries(CPopupMenu& Menu) {
  AddEntries(Menu, TAB_ITEMS);
}

void UpdateSourceActions(const CSourceEditor& Editor, bool bHasText) {
  const int Row = Editor.CursorPos().y();
  const bool bInstruction = bHasText && Editor.Rows().IsInstruction(Row);
  const bool bCode = bInstruction || (bHasText && Editor.Rows().HasCodeAt(Row));
  const bool bExpanded = bHasText && (bInstruction || Editor.Rows().IsExpandedAt(Row));
  const bool bConnected = CDevice::Get().IsConnected();
  const bool bHalted = bConnected && CDevice::Get().IsHalted();
  Offer(ACTION_SRC_FIND_NEXT_UNDER_CURSOR, bHasText);
  Offer(ACTION_SRC_FIND_NEXT, bHasText);
  Offer(ACTION_SRC_VIEW_LINE, bHasText);
  Offer(ACTION_SRC_VIEW_PC, bConnected);
  Offer(ACTION_SRC_SET_NEXT_STMNT, bHalted && bCode);
  Offer(ACTION_SRC_SET_NEXT_PC, bHalted && bInstruction);
  Offer(ACTION_SRC_RUN_TO_CURSOR, bHalted && bCode);
  Offer(ACTION_SRC_EXPAND_LINE, bCode && !bExpanded);
  Offer(ACTION_SRC_COLLAPSE_LINE, bExpanded);
  Offer(ACTION_SRC_EXPAND_ALL_LINES, bHasText && ELFAPI_GetFileRange(Editor.GetFileNo()).Size > 0);
  Offer(ACTION_SRC_COLLAPSE_ALL_LINES, bHasText && !Editor.Rows().ExpandedLocs().isEmpty());
}
