#pragma once
// From the places of docks and tool bars on screen to the records of the user file, and from the records to the steps
// that put them there again. Plain data: the main window measures, and carries the steps out.

#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include "project/user_file.h"

// A dock or tool bar as it stands. Docked: geometry within the main window; floating: on the screen.
struct PLACED_ITEM {
  QString sName;
  DOCK_AREA Area = DOCK_AREA_NONE;
  QRect Geometry;
  QString sVisibleTab;  // a dock hidden behind a tab: the dock that is seen in its place
};

// Records in the order of the items; those without area (hidden docks) are left out. A docked dock's column and row are
// the indexes of its left and top edge among the edges of its area.
QList<DOCK_RECORD> RecordsOfDocks(const QList<PLACED_ITEM>& Docks);
// The same for tool bars: any docked area counts as the one that bars have.
QList<TOOL_BAR_RECORD> RecordsOfToolBars(const QList<PLACED_ITEM>& ToolBars);

enum DOCK_STEP_KIND { DOCK_STEP_ADD, DOCK_STEP_BELOW, DOCK_STEP_BESIDE, DOCK_STEP_TAB };

// One step: the dock is added to its area, or split below or beside, or tabbed onto, an anchor that stands already.
struct DOCK_STEP {
  DOCK_STEP_KIND Kind = DOCK_STEP_ADD;
  DOCK_AREA Area = DOCK_AREA_LEFT;
  QString sDock;
  QString sAnchor;
  bool operator==(const DOCK_STEP&) const = default;
};

// An extent to which a docked dock is held while the layout settles; 0 leaves it free.
struct DOCK_EXTENT {
  QString sDock;
  int Width = 0;   // pixels; left and right areas
  int Height = 0;  // pixels; bottom area
  bool operator==(const DOCK_EXTENT&) const = default;
};

struct DOCK_PLAN {
  QList<DOCK_STEP> Steps;  // in this order
  QList<DOCK_EXTENT> Extents;
  QList<DOCK_RECORD> Floating;
  QStringList Hidden;
  // The file names none of the docks: the layout stays as it is.
  bool IsEmpty() const { return Steps.isEmpty() && Floating.isEmpty() && Hidden.isEmpty(); }
};

// The steps for the main window's docks, given by name; records of others are ignored, docks without record hidden.
DOCK_PLAN PlanDocks(const QList<DOCK_RECORD>& Records, const QStringList& DockNames);

// A tool bar's place: added to the top area behind the ones before it, or floating.
struct TOOL_BAR_STEP {
  QString sName;
  bool bBreakBefore = false;
  bool bShown = true;
  bool bFloating = false;
  int x = 0;  // screen position in pixels when floating
  int y = 0;
  bool operator==(const TOOL_BAR_STEP&) const = default;
};

// The steps for the tool bars, given by name, after all were removed. Empty if no record names one of them.
QList<TOOL_BAR_STEP> PlanToolBars(const QList<TOOL_BAR_RECORD>& Records, const QStringList& BarNames);
