#include "shell/window_table.h"

#include "device/breakpoints/windows/breakpoint_window.h"
#include "device/windows/vnode_web_control_window.h"
#include "program/windows/functions_window.h"
#include "program/windows/source_files_window.h"
#include "shell/actions/action_ids.h"
#include "shell/windows/console_window.h"
#include "ui/windows/source_window.h"

namespace {

constexpr Qt::DockWidgetArea LEFT = Qt::LeftDockWidgetArea;
constexpr Qt::DockWidgetArea RIGHT = Qt::RightDockWidgetArea;
constexpr Qt::DockWidgetArea BOTTOM = Qt::BottomDockWidgetArea;

template <typename WINDOW>
CWindow* Make(QWidget* pParent) {
  return new WINDOW(pParent);
}

constexpr WINDOW_ROW ROWS[] = {
    {"Call Stack", "Call Stack", RIGHT, false, ACTION_WINDOW_SHOW_CALL_STACK, nullptr},
    {"Registers", "Registers", RIGHT, true, ACTION_WINDOW_SHOW_REGISTERS, nullptr},
    {"Breakpoints", "Breakpoints", LEFT, false, ACTION_WINDOW_SHOW_BREAKPOINTS, Make<CBreakpointWindow>},
    {"Data Breakpoints", "Data Breakpoints", LEFT, false, ACTION_WINDOW_SHOW_WATCHPOINTS, nullptr},
    {"Source Files", "Source Files", LEFT, false, ACTION_WINDOW_SHOW_SRC_FILES, Make<CSourceFilesWindow>},
    {"Disassembly", "Disassembly", RIGHT, false, ACTION_WINDOW_SHOW_DISASSEMBLY, nullptr},
    {"Source", "Source", Qt::NoDockWidgetArea, true, NUM_ACTIONS, Make<CSourceWindow>},
    {"Memory1", "Memory", BOTTOM, true, ACTION_WINDOW_SHOW_MEMORY, nullptr},
    {"Memory2", "Memory", BOTTOM, false, NUM_ACTIONS, nullptr},
    {"Memory3", "Memory", BOTTOM, false, NUM_ACTIONS, nullptr},
    {"Memory4", "Memory", BOTTOM, false, NUM_ACTIONS, nullptr},
    {"Global Data", "Global Data", RIGHT, false, ACTION_WINDOW_SHOW_GLOBAL_DATA, nullptr},
    {"Local Data", "Local Data", RIGHT, false, ACTION_WINDOW_SHOW_LOCAL_DATA, nullptr},
    {"Watched Data", "Watched Data", RIGHT, false, ACTION_WINDOW_SHOW_WATCHED_DATA, nullptr},
    {"Functions", "Functions", LEFT, true, ACTION_WINDOW_SHOW_FUNCTIONS, Make<CFunctionsWindow>},
    {"Call Graph", "Call Graph", LEFT, false, ACTION_WINDOW_SHOW_CALL_GRAPH, nullptr},
    {"Timeline", "Timeline", BOTTOM, false, ACTION_WINDOW_SHOW_TIMELINE, nullptr},
    {"Memory Usage", "Memory Usage", BOTTOM, false, ACTION_WINDOW_SHOW_MEMORY_USAGE, nullptr},
    {"Code Profile", "Code Profile", BOTTOM, false, ACTION_WINDOW_SHOW_CODE_PROFILE, nullptr},
    {"Instruction Trace", "Instruction Trace", RIGHT, false, ACTION_WINDOW_SHOW_INSTR_TRACE, nullptr},
    {"Terminal", "Terminal", BOTTOM, false, ACTION_WINDOW_SHOW_TERMINAL, nullptr},
    {"Data Graph", "Data Graph", BOTTOM, false, ACTION_WINDOW_SHOW_DATA_GRAPH, nullptr},
    {"Find Results", "Find Results", BOTTOM, false, ACTION_WINDOW_SHOW_FIND_RESULTS, nullptr},
    {"Console", "Console", BOTTOM, true, ACTION_WINDOW_SHOW_CONSOLE, Make<CConsoleWindow>},
    {"V-Node Web Control", "V-Node Web Control", RIGHT, false, ACTION_WINDOW_SHOW_VNODE_WEB_CONTROL,
     Make<CVNodeWebControlWindow>},
};

}  // namespace

std::span<const WINDOW_ROW> GetWindowTable() {
  return ROWS;
}
