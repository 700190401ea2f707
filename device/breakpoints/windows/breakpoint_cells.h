#pragma once
// What a breakpoint's cells show.

#include <QVariant>

#include "device/breakpoints/breakpoint_rec.h"

enum BREAKPOINT_COLUMN : int {
  BREAKPOINT_STATE,
  BREAKPOINT_LOCATION_COLUMN,
  BREAKPOINT_PERMITTED_IMP,
  BREAKPOINT_ACTUAL_IMP,
  BREAKPOINT_CONTEXT,
  BREAKPOINT_TASK_FILTER,
  BREAKPOINT_SKIP,
  BREAKPOINT_CONDITION,
  NUM_BREAKPOINT_COLUMNS,
};

// The title, of a sample width in characters.
struct BREAKPOINT_COLUMN_INFO {
  const char* sTitle;
  int Characters;
};
const BREAKPOINT_COLUMN_INFO& BreakpointColumnInfo(int Column);

// What a cell reads.
QString BreakpointText(const CBreakpointRec& Record, int Column);
// The names of the three implementations, by BP_TYPES.
QStringList BreakpointTypeNames();
// Name of the icon of a breakpoint: full where the target halts, hollow where it does not, a warning where it should.
QString BreakpointIcon(const CBreakpointRec& Record);
