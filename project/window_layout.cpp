#include "project/window_layout.h"

#include <QHash>
#include <QMap>
#include <algorithm>
#include <map>

namespace {

constexpr DOCK_AREA DOCKED_AREAS[] = {DOCK_AREA_LEFT, DOCK_AREA_RIGHT, DOCK_AREA_BOTTOM};
constexpr int MAX_TOOL_BAR_ROW = 9;

// Index of each edge among the sorted distinct ones.
QMap<int, int> IndexOfEdges(const QList<int>& Edges) {
  QMap<int, int> Index;
  for (const int Edge : Edges) Index.insert(Edge, 0);
  int Next = 0;
  for (int& Value : Index) Value = Next++;
  return Index;
}

// Docks by cell of an area, columns and rows numbered without gaps; the docks of a cell are tabs.
class CDockGrid {
public:
  explicit CDockGrid(const QList<DOCK_RECORD>& Docks) {
    QList<int> Lefts, Tops;
    for (const DOCK_RECORD& Dock : Docks) {
      Lefts << Dock.x;
      Tops << Dock.y;
    }
    const QMap<int, int> Columns = IndexOfEdges(Lefts);
    const QMap<int, int> Rows = IndexOfEdges(Tops);
    for (const DOCK_RECORD& Dock : Docks) m_Cells[{Rows[Dock.y], Columns[Dock.x]}] << Dock.sName;
  }

  QList<DOCK_STEP> Steps(DOCK_AREA Area) const {
    QList<DOCK_STEP> Steps;
    QMap<int, QString> LowestOfColumn;
    for (const auto& [Cell, Docks] : m_Cells) {
      if (Cell.second != 0) continue;
      const QString sAbove = LowestOfColumn.value(0);
      Steps << DOCK_STEP{sAbove.isEmpty() ? DOCK_STEP_ADD : DOCK_STEP_BELOW, Area, Docks.first(), sAbove};
      LowestOfColumn[0] = Docks.first();
    }
    int Row = -1;
    QString sBefore;  // last dock placed in the row
    QString sLeftmost = FirstOfColumn0();
    for (const auto& [Cell, Docks] : m_Cells) {
      if (Cell.first != Row) sBefore.clear();
      Row = Cell.first;
      if (Cell.second == 0) {
        sLeftmost = Docks.first();
      } else {
        const QString sAbove = LowestOfColumn.value(Cell.second);
        // Where nothing of the row stands to the left, something tall does: below the one above, or beside the tall
        // one.
        const bool bBelow = sBefore.isEmpty() && !sAbove.isEmpty();
        const QString sBeside = sBefore.isEmpty() ? sLeftmost : sBefore;
        Steps << DOCK_STEP{bBelow ? DOCK_STEP_BELOW : DOCK_STEP_BESIDE, Area, Docks.first(), bBelow ? sAbove : sBeside};
        LowestOfColumn[Cell.second] = Docks.first();
      }
      sBefore = Docks.first();
    }
    for (const auto& [Cell, Docks] : m_Cells) {
      for (qsizetype i = 1; i < Docks.size(); ++i) Steps << DOCK_STEP{DOCK_STEP_TAB, Area, Docks[i], Docks.first()};
    }
    return Steps;
  }

private:
  QString FirstOfColumn0() const {
    for (const auto& [Cell, Docks] : m_Cells) {
      if (Cell.second == 0) return Docks.first();
    }
    return {};
  }

  std::map<std::pair<int, int>, QStringList> m_Cells;  // by row and column
};

DOCK_EXTENT ExtentOf(const DOCK_RECORD& Dock) {
  const bool bBottom = Dock.Area == DOCK_AREA_BOTTOM;
  return {Dock.sName, bBottom ? 0 : Dock.w, bBottom ? Dock.h : 0};
}

// The records in the order of the names, without those of other names.
template <typename RECORD>
QList<RECORD> RecordsOf(const QList<RECORD>& Records, const QStringList& Names, QStringList* pWithout) {
  QHash<QString, RECORD> ByName;
  for (const RECORD& Record : Records) ByName.insert(Record.sName, Record);
  QList<RECORD> Found;
  for (const QString& sName : Names) {
    const auto It = ByName.constFind(sName);
    if (It == ByName.cend()) {
      *pWithout << sName;
    } else {
      Found << *It;
    }
  }
  return Found;
}

QRect VisibleGeometry(const PLACED_ITEM& Item, const QList<PLACED_ITEM>& Items) {
  for (const PLACED_ITEM& Other : Items) {
    if (!Item.sVisibleTab.isEmpty() && Other.sName == Item.sVisibleTab && Other.Area == Item.Area)
      return Other.Geometry;
  }
  return Item.Geometry;
}

}  // namespace

QList<DOCK_RECORD> RecordsOfDocks(const QList<PLACED_ITEM>& Docks) {
  QMap<DOCK_AREA, QList<int>> Lefts, Tops;
  for (const PLACED_ITEM& Dock : Docks) {
    const QRect Geometry = VisibleGeometry(Dock, Docks);
    Lefts[Dock.Area] << Geometry.left();
    Tops[Dock.Area] << Geometry.top();
  }
  QMap<DOCK_AREA, QMap<int, int>> Columns, Rows;
  for (const DOCK_AREA Area : DOCKED_AREAS) {
    Columns[Area] = IndexOfEdges(Lefts[Area]);
    Rows[Area] = IndexOfEdges(Tops[Area]);
  }
  QList<DOCK_RECORD> Records;
  for (const PLACED_ITEM& Dock : Docks) {
    if (Dock.Area == DOCK_AREA_NONE) continue;
    const QRect Geometry = VisibleGeometry(Dock, Docks);
    const bool bFloating = Dock.Area == DOCK_AREA_FLOATING;
    DOCK_RECORD& Record = Records.emplace_back();
    Record.sName = Dock.sName;
    Record.Area = Dock.Area;
    Record.x = bFloating ? Geometry.left() : Columns[Dock.Area][Geometry.left()];
    Record.y = bFloating ? Geometry.top() : Rows[Dock.Area][Geometry.top()];
    Record.w = Geometry.width();
    Record.h = Geometry.height();
  }
  return Records;
}

QList<TOOL_BAR_RECORD> RecordsOfToolBars(const QList<PLACED_ITEM>& ToolBars) {
  QList<int> Tops;
  QMap<int, QList<int>> LeftsOfRow;
  const auto IsDocked = [](const PLACED_ITEM& Bar) {
    return Bar.Area != DOCK_AREA_NONE && Bar.Area != DOCK_AREA_FLOATING;
  };
  for (const PLACED_ITEM& Bar : ToolBars) {
    if (!IsDocked(Bar)) continue;
    Tops << Bar.Geometry.top();
    LeftsOfRow[Bar.Geometry.top()] << Bar.Geometry.left();
  }
  const QMap<int, int> Rows = IndexOfEdges(Tops);
  QList<TOOL_BAR_RECORD> Records;
  for (const PLACED_ITEM& Bar : ToolBars) {
    if (Bar.Area == DOCK_AREA_NONE) continue;
    const QPoint Pos = Bar.Geometry.topLeft();
    if (IsDocked(Bar)) {
      Records << TOOL_BAR_RECORD{Bar.sName, false, IndexOfEdges(LeftsOfRow[Pos.y()])[Pos.x()], Rows[Pos.y()]};
    } else {
      Records << TOOL_BAR_RECORD{Bar.sName, true, Pos.x(), Pos.y()};
    }
  }
  return Records;
}

DOCK_PLAN PlanDocks(const QList<DOCK_RECORD>& Records, const QStringList& DockNames) {
  DOCK_PLAN Plan;
  QStringList Without;
  const QList<DOCK_RECORD> Docks = RecordsOf(Records, DockNames, &Without);
  if (Docks.isEmpty()) return Plan;
  QMap<DOCK_AREA, QList<DOCK_RECORD>> ByArea;
  for (const DOCK_RECORD& Dock : Docks) ByArea[Dock.Area] << Dock;
  for (const DOCK_AREA Area : DOCKED_AREAS) {
    Plan.Steps << CDockGrid(ByArea[Area]).Steps(Area);
    for (const DOCK_RECORD& Dock : ByArea[Area]) Plan.Extents << ExtentOf(Dock);
  }
  Plan.Floating = ByArea[DOCK_AREA_FLOATING];
  for (const DOCK_RECORD& Dock : ByArea[DOCK_AREA_NONE]) Plan.Hidden << Dock.sName;
  Plan.Hidden << Without;
  return Plan;
}

QList<TOOL_BAR_STEP> PlanToolBars(const QList<TOOL_BAR_RECORD>& Records, const QStringList& BarNames) {
  QStringList Without;
  QList<TOOL_BAR_RECORD> Bars = RecordsOf(Records, BarNames, &Without);
  if (Bars.isEmpty()) return {};
  for (TOOL_BAR_RECORD& Bar : Bars) {
    if (!Bar.bFloating) Bar.y = std::clamp(Bar.y, 0, MAX_TOOL_BAR_ROW);
  }
  std::stable_sort(Bars.begin(), Bars.end(), [](const TOOL_BAR_RECORD& A, const TOOL_BAR_RECORD& B) {
    return std::pair(A.y, A.x) < std::pair(B.y, B.x);
  });
  QList<TOOL_BAR_STEP> Steps, Floating;
  int Row = -1;
  bool bAddedHidden = false;
  const auto AddHidden = [&] {
    for (const QString& sName : Without) Steps << TOOL_BAR_STEP{sName, false, false, false, 0, 0};
    bAddedHidden = true;
  };
  for (const TOOL_BAR_RECORD& Bar : Bars) {
    if (Bar.bFloating) {
      Floating << TOOL_BAR_STEP{Bar.sName, false, true, true, Bar.x, Bar.y};
      continue;
    }
    if (Bar.y > 0 && !bAddedHidden) AddHidden();
    Steps << TOOL_BAR_STEP{Bar.sName, Row >= 0 && Bar.y != Row, true, false, 0, 0};
    Row = Bar.y;
  }
  if (!bAddedHidden) AddHidden();
  return Steps + Floating;
}
