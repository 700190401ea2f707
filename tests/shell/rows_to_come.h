#pragma once
// Rows that nothing serves yet, each range with what it waits for. Whoever brings that takes the rows from here.

#include "shell/actions/action_ids.h"

struct ROWS_TO_COME {
  U32 FirstID;
  U32 LastID;
  const char* sWaitFor;
};

inline constexpr ROWS_TO_COME ROWS_TO_COME_TABLE[] = {
    {ACTION_FILE_NEW_PROJECT_WIZARD, ACTION_FILE_NEW_PROJECT_WIZARD, "project wizard"},
    {ACTION_FILE_FIND, ACTION_FILE_FIND, "Find dialog and Find Results window"},
    {ACTION_EDIT_DATA_GRAPH_SETTINGS, ACTION_EDIT_DATA_GRAPH_SETTINGS, "Data Graph window"},
    {ACTION_EDIT_REFRESH_RATE, ACTION_EDIT_DISPLAY_FORMAT, "Watched Data window, symbol engine"},
    {ACTION_DEBUG_STEP_OVER, ACTION_DEBUG_STEP_OUT, "source steps"},
    {ACTION_WINDOW_SHOW_REGISTERS, ACTION_WINDOW_SHOW_FIND_RESULTS, "its window"},
    {ACTION_WINDOW_SHOW_CALL_GRAPH, ACTION_WINDOW_SHOW_MEMORY_USAGE, "its window"},
    {ACTION_WINDOW_SHOW_WATCHPOINTS, ACTION_WINDOW_SHOW_WATCHPOINTS, "its window"},
    {ACTION_WINDOW_SHOW_TERMINAL, ACTION_WINDOW_SHOW_TIMELINE, "its window"},
    {ACTION_WINDOW_SHOW_CALL_STACK, ACTION_WINDOW_SHOW_LOCAL_DATA, "its window"},
    {ACTION_VIEW_DATA, ACTION_VIEW_MEMORY_MAP, "symbol windows, Memory Usage window"},
    {ACTION_VIEW_DISASSEMBLY, ACTION_VIEW_MEMORY, "its window"},
    {ACTION_VIEW_NEXT_RESULT, ACTION_VIEW_PREV_RESULT, "Find Results window"},
    {ACTION_WATCH, ACTION_TRACE_ADD, "Watched Data and Data Graph windows"},
    {ACTION_BREAK_SET_ON_DATA, ACTION_BREAK_DISABLE_ON_SYMBOL, "Data Breakpoints window"},
    {ACTION_BREAK_CLEAR_ALL_ON_DATA, ACTION_BREAK_CLEAR_ALL_ON_DATA, "Data Breakpoints window"},
    {ACTION_BREAK_EDIT_ON_DATA, ACTION_BREAK_EDIT_ON_SYMBOL, "Data Breakpoints window"},
    {ACTION_TERMINAL_ENABLE_SEMI, ACTION_TERMINAL_ECHO_INPUT, "Terminal window"},
    {ACTION_MEMORY_VIEW_ADDRESS, ACTION_MEMORY_COPY_INT_LIST, "Memory window"},
    {ACTION_SRC_FIND, ACTION_SRC_FIND, "Find dialog"},
    {ACTION_ASM_VIEW_ADDRESS, ACTION_CP_EXPORT, "the window whose name it has"},
    {ACTION_WP_CLEAR, ACTION_SYM_EDIT_WATCHPOINT, "the window whose name it has"},
    {ACTION_TIMELINE_ZOOM_IN, ACTION_MEM_USAGE_GOTO_DIALOG, "the window whose name it has"},
};
