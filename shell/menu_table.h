#pragma once
// Menu bar and tool bars as data, for the whole program: an entry whose row nothing serves yet is left out by itself.

#include <span>

#include "base/types.h"

enum MENU_ITEM_KINDS : U8 {
  MENU_ACTION,
  MENU_SEPARATOR,
  MENU_SUBMENU,          // pSub
  MENU_RECENT_PROJECTS,  // the three that are filled at run time
  MENU_RECENT_PROGRAMS,
  MENU_WINDOW_LIST,
};

struct MENU_TABLE;

struct MENU_ITEM {
  MENU_ITEM_KINDS Kind;
  U32 ActionID;       // of a MENU_ACTION
  const char* sText;  // with its mnemonic
  const char* sIcon;  // null for none
  const MENU_TABLE* pSub;
};

struct MENU_TABLE {
  const char* sTitle;  // with its mnemonic
  std::span<const MENU_ITEM> Items;
};

struct TOOL_BAR_TABLE {
  const char* sName;        // object name
  const char* sTitle;       // also the name that commands use
  const char* sSettingKey;  // of its visibility
  bool ShownFirst;          // in the default layout
  U32 ToggleID;             // row of its entry in View | Toolbars
  std::span<const MENU_ITEM> Items;
};

std::span<const MENU_TABLE> GetMenuTables();
std::span<const TOOL_BAR_TABLE> GetToolBarTables();
// The drop-downs of the start and the reset button, in order of the modes' values.
std::span<const MENU_ITEM> GetStartModeItems();
std::span<const MENU_ITEM> GetResetModeItems();
// Rows whose tool buttons act when they are pressed, not when they are released.
std::span<const U32> GetPressActions();
