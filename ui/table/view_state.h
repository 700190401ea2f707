#pragma once
// What a table window keeps of its view while the rows are gone, by keys that outlive them.

#include <QHash>
#include <QList>

#include "project/user_file.h"
#include "ui/table/item_states.h"

class CSortFilter;
class CTreeView;

// The keys of an item and of what it stands below, from the top.
using ITEM_PATH = QList<U32>;

struct VIEW_STATE {
  QList<ITEM_PATH> Expanded;  // parents before children
  ITEM_PATH Current;          // empty: none
  int CurrentColumn = 0;
  int TopRow = 0;  // scroll positions
  int LeftPixel = 0;
  TABLE_HEADER_RECORD Header;
  bool bHeader = false;  // the table had rows
  struct CHANGED_ITEM {
    U32 Value = 0;
    CHANGE_LEVELS Level = CHANGE_LEVEL_NONE;
  };
  QHash<U32, CHANGED_ITEM> Changed;  // by the key of the item alone
};

// Parts that RestoreState leaves alone, bits.
enum RESTORE_FLAGS : U32 {
  RESTORE_NO_HEADER = 1,
  RESTORE_NO_CURRENT = 2,
  RESTORE_NO_SCROLL = 4,
  RESTORE_NO_EXPANSION = 8,
};

// Everything but the header.
VIEW_STATE TakeViewState(const CTreeView& View, const CSortFilter& Proxy, const CItemStates& States);
// Items that no longer exist are skipped.
void ApplyViewState(const VIEW_STATE& State, U32 DoNotRestoreFlags, CTreeView& View, CSortFilter& Proxy,
                    CItemStates& States);
