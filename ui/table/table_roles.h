#pragma once
// What models of tables answer beyond the toolkit's own roles.

#include <Qt>

#include "base/types.h"

enum TABLE_ROLES : int {
  // Of items.
  ROLE_SORT_VALUE = Qt::UserRole + 1,         // number to sort and filter by: double or qlonglong
  ROLE_HAS_VALUE = Qt::UserRole + 2,          // bool, true if not answered: rows without value stand last
  ROLE_ITEM_ID = Qt::UserRole + 3,            // U32 key across rebuilds of the rows; 0: the hash of the display text
  ROLE_SECOND_SORT_VALUE = Qt::UserRole + 4,  // decides between equal floating values
  ROLE_NO_FILTER = Qt::UserRole + 6,          // bool: no filter hides the item
  ROLE_ICON = Qt::UserRole + 8,               // a text in place of a picture
  ROLE_ICON_FONT = Qt::UserRole + 9,          // its QFont
  ROLE_EDITABLE = Qt::UserRole + 10,          // bool in place of the window's WF_ITEMS_EDITABLE
  ROLE_DROPPABLE = Qt::UserRole + 11,         // bool in place of the window's WF_ITEMS_DROPPABLE
  // Of header sections.
  ROLE_COLUMN_KIND = Qt::UserRole + 12,   // COLUMN_KINDS
  ROLE_COLUMN_FLAGS = Qt::UserRole + 13,  // COLUMN_FLAGS
  ROLE_COLUMN_WIDTH = Qt::UserRole + 14,  // int, at first, in digits
};

// Bits. A column of numbers without COLUMN_TEXT sorts and filters by number.
enum COLUMN_KINDS : U32 { COLUMN_TEXT = 1, COLUMN_INTEGER = 4, COLUMN_HEX = 8, COLUMN_FLOAT = 64 };

inline bool IsTextColumn(U32 Kind) {
  return (Kind & COLUMN_TEXT) != 0 || (Kind & (COLUMN_INTEGER | COLUMN_HEX | COLUMN_FLOAT)) == 0;
}

enum COLUMN_FLAGS : U32 {
  COLUMN_FIXED = 1,      // always shown: no entry in the header's menu
  COLUMN_HIDDEN = 2,     // not shown until the user asks for it
  COLUMN_NO_FILTER = 4,  // no cell in the filter bar
  COLUMN_EDITABLE = 8,
  COLUMN_VALUE_FONT = 16,   // in the fixed-pitch font of values
  COLUMN_TEXT_FILTER = 32,  // of numbers with a unit: sorted by number, filtered by what is shown
};
