#pragma once

#include "base/types.h"

enum DEBUG_STATES : int {
  DEBUG_STATE_NONE = 0,
  DEBUG_STATE_RUNNING = 1,  // connected, not halted
  DEBUG_STATE_HALTED = 2,   // connected and halted
  DEBUG_STATE_NO_CONNECTION = 3,
};
// From the device's flags.
DEBUG_STATES GetDebugState();

enum WINDOW_FLAGS : U32 {
  WF_LIVE_REFRESH = 2,         // may read the target while it runs
  WF_CLEAR_WHEN_HIDDEN = 4,    // Clear() when the window becomes invisible
  WF_CLEAR_ON_DISCONNECT = 8,  // Clear() when the session ends
  WF_MODIFIABLE = 16,          // the user may clear the contents
  WF_CONFIRM_CLEAR = 32,       // ask before clearing
  WF_ITEMS_EDITABLE = 64,      // default of an item's editable role
  WF_ITEMS_DROPPABLE = 128,    // default of an item's drop role
  WF_FILTER_BAR = 256,         // shows its filter bar
  WF_ACCEPT_DROPS = 512,
};

// Which windows update at a halt: those that are seen, those that are at least open as a tab, or all.
enum WIN_UPDATE_MODES { WIN_UPDATE_VISIBLE = 0, WIN_UPDATE_OPEN = 1, WIN_UPDATE_ALWAYS = 2 };

// The target is halted and no job is about to resume it: what it shows now is worth looking at.
bool IsStandingStill();
// Whether PC is where the device stands now; an older halt's PC is not.
bool IsCurrentPC(U32 PC);
