#pragma once
// The user file of a project: where docks, tool bars and table columns were when the project was closed. One record a
// line, `key=value` separated by commas, behind "//" or "#" a comment. Plain data; reading never fails: what cannot be
// understood is skipped.

#include <optional>

#include <QList>
#include <QString>
#include <QStringList>

// Where a dock stands. DOCK_AREA_NONE: named by the file, but hidden.
enum DOCK_AREA { DOCK_AREA_NONE, DOCK_AREA_LEFT, DOCK_AREA_RIGHT, DOCK_AREA_BOTTOM, DOCK_AREA_FLOATING };

struct DOCK_RECORD {
  QString sName;  // object name of the dock
  DOCK_AREA Area = DOCK_AREA_NONE;
  int x = 0;  // floating: screen position in pixels; docked: column and row within the area
  int y = 0;
  int w = 0;  // size in pixels, 0 for unknown
  int h = 0;
  std::optional<bool> FilterBarShown;
  std::optional<bool> ExecCountersShown;  // disassembly only
  bool operator==(const DOCK_RECORD&) const = default;
};

struct TOOL_BAR_RECORD {
  QString sName;
  bool bFloating = false;
  int x = 0;  // floating: screen position in pixels; docked: place within the row, and row
  int y = 0;
  bool operator==(const TOOL_BAR_RECORD&) const = default;
};

struct TABLE_HEADER_RECORD {
  QString sName;
  QString sSortCol;  // title; "None" when the table is not sorted
  bool bDescending = false;
  QStringList VisibleCols;
  QList<int> ColWidths;  // pixels
  bool operator==(const TABLE_HEADER_RECORD&) const = default;
};

struct USER_FILE {
  QList<DOCK_RECORD> Docks;
  QStringList WindowTexts;  // lines that windows wrote and read themselves
  QList<TOOL_BAR_RECORD> ToolBars;
  QList<TABLE_HEADER_RECORD> TableHeaders;
  bool operator==(const USER_FILE&) const = default;
};

// Each name has one record: of several lines of a dock or tool bar the later keys count, of a table header the first
// line. Numbers that are none or too big count as missing; sizes, places and list lengths are limited.
USER_FILE ParseUserFile(const QString& sText);
// The text with "\n" line ends. Docks without area are left out; control characters and quotes are dropped from names.
QString MakeUserFileText(const USER_FILE& File);

// The line that a source or disassembly window adds for its execution counters, and what a file says about them;
// nothing if it says nothing.
QString ExecCountersText(const QString& sWindow);
std::optional<bool> FindExecCounters(const QString& sText, const QString& sWindow);
