#include "shell/menu_table.h"

#include "shell/actions/action_ids.h"

namespace {

constexpr MENU_ITEM Entry(U32 ActionID, const char* sText, const char* sIcon = nullptr) {
  return {MENU_ACTION, ActionID, sText, sIcon, nullptr};
}
constexpr MENU_ITEM Sub(const MENU_TABLE& Table, const char* sIcon = nullptr) {
  return {MENU_SUBMENU, NUM_ACTIONS, Table.sTitle, sIcon, &Table};
}
constexpr MENU_ITEM Dynamic(MENU_ITEM_KINDS Kind, const char* sText) {
  return {Kind, NUM_ACTIONS, sText, nullptr, nullptr};
}
constexpr MENU_ITEM SEPARATOR = {MENU_SEPARATOR, NUM_ACTIONS, nullptr, nullptr, nullptr};

// ---- File

constexpr MENU_ITEM FILE_ITEMS[] = {
    Entry(ACTION_FILE_NEW_PROJECT, "&New Project", "project-new.png"),
    Entry(ACTION_FILE_NEW_PROJECT_WIZARD, "New Project &Wizard...", "project-wizard.png"),
    Entry(ACTION_FILE_OPEN, "&Open...", "file-open.png"),
    SEPARATOR,
    Entry(ACTION_FILE_CLOSE, "&Close", "file-close.png"),
    Entry(ACTION_FILE_CLOSE_ALL, "Close All &Documents"),
    Entry(ACTION_FILE_CLOSE_ALL_BUT_THIS, "Close All &But This"),
    SEPARATOR,
    Entry(ACTION_FILE_SAVE, "&Save", "file-save.png"),
    Entry(ACTION_FILE_SAVE_PROJ_AS, "Save Project &As..."),
    Entry(ACTION_FILE_SAVE_ALL, "Sa&ve All", "file-save-all.png"),
    SEPARATOR,
    Entry(ACTION_FILE_LOAD, "Download Data F&ile...", "document-binary.png"),
    SEPARATOR,
    Dynamic(MENU_RECENT_PROJECTS, "Recent &Projects"),
    Dynamic(MENU_RECENT_PROGRAMS, "Recent P&rograms"),
    SEPARATOR,
    Entry(ACTION_FILE_EXIT, "E&xit"),
};

// ---- Find, Edit

constexpr MENU_ITEM FIND_ITEMS[] = {
    Entry(ACTION_SRC_FIND, "&Find...", "edit-find.png"),
    Entry(ACTION_SRC_FIND_NEXT, "Find &Next"),
    Entry(ACTION_SRC_FIND_NEXT_UNDER_CURSOR, "Find Next &Under Cursor"),
    Entry(ACTION_FILE_FIND, "Find in F&iles..."),
    SEPARATOR,
    Entry(ACTION_VIEW_NEXT_RESULT, "Ne&xt Result"),
    Entry(ACTION_VIEW_PREV_RESULT, "&Previous Result"),
    SEPARATOR,
    Entry(ACTION_SRC_VIEW_LINE, "&Go to Line...", "arrow-curve.png"),
};

constexpr MENU_ITEM EDIT_ITEMS[] = {
    Entry(ACTION_EDIT_PREFERENCES, "&Preferences...", "preferences.png"),
    Entry(ACTION_EDIT_SYS_VARS, "System &Variables...", "system-variables.png"),
};

// ---- View

constexpr MENU_ITEM LOCATION_ITEMS[] = {
    Entry(ACTION_VIEW_SOURCE, "&Source", "document-text.png"),
    Entry(ACTION_VIEW_DISASSEMBLY, "&Disassembly", "window-disassembly.png"),
    Entry(ACTION_VIEW_DATA, "D&ata", "window-memory.png"),
    Entry(ACTION_VIEW_MEMORY_MAP, "&Memory Map", "window-memory-usage.png"),
    Entry(ACTION_VIEW_CALL_GRAPH, "&Call Graph", "window-call-graph.png"),
    SEPARATOR,
    Entry(ACTION_SRC_VIEW_PREV_OBSV_POINT, "&Back"),
    Entry(ACTION_SRC_VIEW_NEXT_OBSV_POINT, "&Forward"),
};
constexpr MENU_TABLE LOCATION_MENU = {"Go T&o", LOCATION_ITEMS};

constexpr MENU_ITEM SOURCE_VIEW_ITEMS[] = {
    Entry(ACTION_SRC_EXPAND_LINE, "&Expand Line", "node-expand.png"),
    Entry(ACTION_SRC_COLLAPSE_LINE, "&Collapse Line", "node-collapse.png"),
    Entry(ACTION_SRC_EXPAND_ALL_LINES, "Expand &All Lines", "expand-all.png"),
    Entry(ACTION_SRC_COLLAPSE_ALL_LINES, "C&ollapse All Lines", "collapse-all.png"),
    SEPARATOR,
    Entry(ACTION_SRC_SHOW_CODE_PROFILE, "&Show Execution Counters"),
    Entry(ACTION_SRC_RESET_CODE_PROFILE, "&Reset Execution Counters"),
    Entry(ACTION_SRC_LOCK_HEADER_BAR, "&Lock Header Bar"),
};
constexpr MENU_TABLE SOURCE_VIEW_MENU = {"Source View", SOURCE_VIEW_ITEMS};

constexpr MENU_ITEM TOOL_BAR_ITEMS[] = {
    Entry(ACTION_TOOLBAR_SHOW_FILE, "&File"),
    Entry(ACTION_TOOLBAR_SHOW_DEBUG, "&Debug"),
    Entry(ACTION_TOOLBAR_SHOW_VIEWS, "&Views"),
    Entry(ACTION_TOOLBAR_SHOW_BREAKPOINTS, "&Breakpoints"),
};
constexpr MENU_TABLE TOOL_BAR_MENU = {"Toolbar&s", TOOL_BAR_ITEMS};

constexpr MENU_ITEM VIEW_ITEMS[] = {
    Entry(ACTION_WINDOW_SHOW_SRC_FILES, "Source F&iles", "window-source-files.png"),
    Entry(ACTION_WINDOW_SHOW_FUNCTIONS, "&Functions", "window-functions.png"),
    Entry(ACTION_WINDOW_SHOW_DISASSEMBLY, "&Disassembly", "window-disassembly.png"),
    Entry(ACTION_WINDOW_SHOW_CALL_STACK, "Call Stac&k", "window-call-stack.png"),
    Entry(ACTION_WINDOW_SHOW_CALL_GRAPH, "Call Grap&h", "window-call-graph.png"),
    SEPARATOR,
    Entry(ACTION_WINDOW_SHOW_REGISTERS, "&Registers", "window-registers.png"),
    Entry(ACTION_WINDOW_SHOW_MEMORY, "&Memory", "window-memory.png"),
    Entry(ACTION_WINDOW_SHOW_MEMORY_USAGE, "Memor&y Usage", "window-memory-usage.png"),
    Entry(ACTION_WINDOW_SHOW_GLOBAL_DATA, "&Global Data", "window-global-data.png"),
    Entry(ACTION_WINDOW_SHOW_LOCAL_DATA, "&Local Data", "window-local-data.png"),
    Entry(ACTION_WINDOW_SHOW_WATCHED_DATA, "&Watched Data", "window-watched-data.png"),
    Entry(ACTION_WINDOW_SHOW_DATA_GRAPH, "Da&ta Graph", "window-data-graph.png"),
    SEPARATOR,
    Entry(ACTION_WINDOW_SHOW_BREAKPOINTS, "&Breakpoints", "window-breakpoints.png"),
    Entry(ACTION_WINDOW_SHOW_WATCHPOINTS, "D&ata Breakpoints", "window-data-breakpoints.png"),
    SEPARATOR,
    Entry(ACTION_WINDOW_SHOW_INSTR_TRACE, "Instr&uction Trace", "window-instruction-trace.png"),
    Entry(ACTION_WINDOW_SHOW_TIMELINE, "Timeli&ne", "window-timeline.png"),
    Entry(ACTION_WINDOW_SHOW_CODE_PROFILE, "Code Profile", "window-code-profile.png"),
    SEPARATOR,
    Entry(ACTION_WINDOW_SHOW_CONSOLE, "&Console", "window-console.png"),
    Entry(ACTION_WINDOW_SHOW_TERMINAL, "T&erminal", "window-terminal.png"),
    Entry(ACTION_WINDOW_SHOW_FIND_RESULTS, "Find Results", "window-find-results.png"),
    Entry(ACTION_WINDOW_SHOW_VNODE_WEB_CONTROL, "&V-Node Web Control", "window-web-control.png"),
    SEPARATOR,
    Entry(ACTION_VIEW_PC, "Show &PC", "view-pc.png"),
    Entry(ACTION_VIEW_PC_LINE, "Show PC Line", "arrow-pc.png"),
    Sub(LOCATION_MENU),
    Sub(SOURCE_VIEW_MENU),
    SEPARATOR,
    Sub(TOOL_BAR_MENU),
};

// ---- Debug

constexpr MENU_ITEM START_MODE_ITEMS[] = {
    Entry(ACTION_DEBUG_DOWNLOAD_RESET, "&Download && Reset Program", "debug-start.png"),
    Entry(ACTION_DEBUG_ATTACH, "&Attach to Running Program", "debug-attach.png"),
    Entry(ACTION_DEBUG_ATTACH_HALT, "Attach && &Halt Program", "debug-attach-halt.png"),
};
constexpr MENU_TABLE START_MODE_MENU = {"Start &With", START_MODE_ITEMS};

constexpr MENU_ITEM RESET_MODE_ITEMS[] = {
    Entry(ACTION_DEBUG_RESET_HALT, "Reset && &Halt", "debug-reset-halt.png"),
    Entry(ACTION_DEBUG_RESET_BREAK_AT_SYMBOL, "Reset && &Break at Symbol", "debug-reset-symbol.png"),
    Entry(ACTION_DEBUG_RESET_RUN, "Reset && &Run", "debug-reset-run.png"),
};
constexpr MENU_TABLE RESET_MODE_MENU = {"Reset Wit&h", RESET_MODE_ITEMS};

constexpr MENU_ITEM DEBUG_ITEMS[] = {
    Entry(ACTION_DEBUG_START, "&Start Debugging", "debug-start.png"),
    Sub(START_MODE_MENU),
    Entry(ACTION_DEBUG_STOP, "S&top Debugging", "debug-stop.png"),
    SEPARATOR,
    Entry(ACTION_DEBUG_CONTINUE, "&Continue", "debug-continue.png"),
    Entry(ACTION_DEBUG_HALT, "H&alt", "debug-halt.png"),
    Entry(ACTION_DEBUG_RESET, "&Reset", "debug-reset.png"),
    Sub(RESET_MODE_MENU),
    SEPARATOR,
    Entry(ACTION_DEBUG_STEP_INTO, "Step &Into", "debug-step-into.png"),
    Entry(ACTION_DEBUG_STEP_OVER, "Step &Over", "debug-step-over.png"),
    Entry(ACTION_DEBUG_STEP_OUT, "Step O&ut", "debug-step-out.png"),
    SEPARATOR,
    Entry(ACTION_SRC_RUN_TO_CURSOR, "Run to Cursor", "debug-run-to-cursor.png"),
    Entry(ACTION_SRC_SET_NEXT_STMNT, "Set &Next Statement", "debug-set-next.png"),
    Entry(ACTION_SRC_SET_NEXT_PC, "Set Next &PC", "debug-set-next.png"),
    SEPARATOR,
    Entry(ACTION_WATCH_DIALOG, "Watch &Expression...", "eye--plus.png"),
};

// ---- Break

constexpr MENU_ITEM BREAK_ITEMS[] = {
    Entry(ACTION_BP_OPEN_DIALOG, "&Set Breakpoint...", "breakpoint-dialog.png"),
    Entry(ACTION_BREAK_CLEAR_ALL, "&Clear All Breakpoints", "breakpoint-clear-all.png"),
    SEPARATOR,
    Entry(ACTION_WP_OPEN_DIALOG, "Set &Data Breakpoint...", "watchpoint-small.png"),
    Entry(ACTION_BREAK_CLEAR_ALL_ON_DATA, "Clear &All Data Breakpoints", "breakpoint-clear-all.png"),
};

// ---- Target, Tools

constexpr MENU_ITEM TARGET_ITEMS[] = {
    Entry(ACTION_DEBUG_CONNECT, "&Connect", "debug-attach.png"),
    Entry(ACTION_DEBUG_DISCONNECT, "&Disconnect", "control-power-red.png"),
    SEPARATOR,
    Entry(ACTION_DEBUG_DOWNLOAD, "Do&wnload Program", "document-binary.png"),
    SEPARATOR,
    Entry(ACTION_EXEC_CONNECT, "Connect &Probe Only"),
    Entry(ACTION_EXEC_RESET, "&Reset Hardware Only"),
};

constexpr MENU_ITEM TOOLS_ITEMS[] = {
    Entry(ACTION_EDIT_VNODE_SETTINGS, "&V-Node Settings...", "settings-vnode.png"),
    Entry(ACTION_EDIT_TRACE_SETTINGS, "&Trace Settings...", "settings-trace.png"),
    Entry(ACTION_EDIT_DATA_GRAPH_SETTINGS, "Data &Graph Settings...", "window-data-graph.png"),
};

// ---- Window, Help

constexpr MENU_ITEM WINDOW_ITEMS[] = {
    Entry(ACTION_SRC_SHOW_NEXT_DOCUMENT, "&Next Document", "document-text.png"),
    Entry(ACTION_WINDOW_CLOSE, "&Close Window"),
    SEPARATOR,
    Dynamic(MENU_WINDOW_LIST, nullptr),
};

constexpr MENU_ITEM HELP_ITEMS[] = {
    Entry(ACTION_HELP_MANUAL, "&User Guide", "help-manual.png"),
    Entry(ACTION_HELP_COMMANDS, "&Commands", "help-commands.png"),
    SEPARATOR,
    Entry(ACTION_HELP_ABOUT, "&About Vexor...", "help-about.png"),
};

constexpr MENU_TABLE MENUS[] = {
    {"&File", FILE_ITEMS},     {"&Edit", EDIT_ITEMS},   {"F&ind", FIND_ITEMS},     {"&View", VIEW_ITEMS},
    {"&Debug", DEBUG_ITEMS},   {"&Break", BREAK_ITEMS}, {"Tar&get", TARGET_ITEMS}, {"&Tools", TOOLS_ITEMS},
    {"&Window", WINDOW_ITEMS}, {"&Help", HELP_ITEMS},
};

// ---- Tool bars. Texts and icons are those of the menus.

constexpr MENU_ITEM Button(U32 ActionID) {
  return Entry(ActionID, nullptr);
}

constexpr MENU_ITEM FILE_BUTTONS[] = {
    Button(ACTION_FILE_NEW_PROJECT), Button(ACTION_FILE_OPEN),        SEPARATOR,
    Button(ACTION_FILE_SAVE),        Button(ACTION_FILE_SAVE_ALL),    SEPARATOR,
    Button(ACTION_SRC_FIND),         Button(ACTION_EDIT_PREFERENCES),
};
// Only some of them are seen at a time: no separator may end up alone.
constexpr MENU_ITEM DEBUG_BUTTONS[] = {
    Button(ACTION_DEBUG_START),
    Button(ACTION_DEBUG_STOP),
    SEPARATOR,
    Button(ACTION_DEBUG_CONTINUE),
    Button(ACTION_DEBUG_HALT),
    Button(ACTION_DEBUG_RESET),
    SEPARATOR,
    Button(ACTION_DEBUG_STEP_OVER),
    Button(ACTION_DEBUG_STEP_INTO),
    Button(ACTION_DEBUG_STEP_OUT),
    Button(ACTION_VIEW_PC),
};
constexpr MENU_ITEM VIEW_BUTTONS[] = {
    Button(ACTION_WINDOW_SHOW_SRC_FILES),
    Button(ACTION_WINDOW_SHOW_FUNCTIONS),
    Button(ACTION_WINDOW_SHOW_DISASSEMBLY),
    Button(ACTION_WINDOW_SHOW_CALL_STACK),
    SEPARATOR,
    Button(ACTION_WINDOW_SHOW_REGISTERS),
    Button(ACTION_WINDOW_SHOW_MEMORY),
    Button(ACTION_WINDOW_SHOW_GLOBAL_DATA),
    Button(ACTION_WINDOW_SHOW_LOCAL_DATA),
    Button(ACTION_WINDOW_SHOW_WATCHED_DATA),
    Button(ACTION_WINDOW_SHOW_DATA_GRAPH),
    SEPARATOR,
    Button(ACTION_WINDOW_SHOW_INSTR_TRACE),
    Button(ACTION_WINDOW_SHOW_TIMELINE),
    Button(ACTION_WINDOW_SHOW_CODE_PROFILE),
    SEPARATOR,
    Button(ACTION_WINDOW_SHOW_CONSOLE),
    Button(ACTION_WINDOW_SHOW_TERMINAL),
};
constexpr MENU_ITEM BREAKPOINT_BUTTONS[] = {
    Button(ACTION_WINDOW_SHOW_BREAKPOINTS), Button(ACTION_WINDOW_SHOW_WATCHPOINTS), SEPARATOR,
    Button(ACTION_BP_OPEN_DIALOG),          Button(ACTION_BREAK_CLEAR_ALL),         SEPARATOR,
    Button(ACTION_WP_OPEN_DIALOG),          Button(ACTION_BREAK_CLEAR_ALL_ON_DATA),
};

constexpr TOOL_BAR_TABLE TOOL_BARS[] = {
    {"ToolbarFile", "File", "ToolbarFileState", false, ACTION_TOOLBAR_SHOW_FILE, FILE_BUTTONS},
    {"ToolbarDebug", "Debug", "ToolbarDebugState", true, ACTION_TOOLBAR_SHOW_DEBUG, DEBUG_BUTTONS},
    {"ToolbarViews", "Views", "ToolbarWindowState", false, ACTION_TOOLBAR_SHOW_VIEWS, VIEW_BUTTONS},
    {"ToolbarBreakpoints", "Breakpoints", "ToolbarBreakpointState", false, ACTION_TOOLBAR_SHOW_BREAKPOINTS,
     BREAKPOINT_BUTTONS},
};

// Those that a user presses in quick succession, or when the moment counts.
constexpr U32 PRESS_ACTIONS[] = {ACTION_DEBUG_HALT, ACTION_DEBUG_STEP_OVER, ACTION_DEBUG_STEP_INTO,
                                 ACTION_DEBUG_STEP_OUT};

}  // namespace

std::span<const MENU_TABLE> GetMenuTables() {
  return MENUS;
}
std::span<const TOOL_BAR_TABLE> GetToolBarTables() {
  return TOOL_BARS;
}
std::span<const MENU_ITEM> GetStartModeItems() {
  return START_MODE_ITEMS;
}
std::span<const MENU_ITEM> GetResetModeItems() {
  return RESET_MODE_ITEMS;
}
std::span<const U32> GetPressActions() {
  return PRESS_ACTIONS;
}
