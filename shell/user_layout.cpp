#include "shell/user_layout.h"

#include <QGuiApplication>
#include <QHash>
#include <QLayout>
#include <QMainWindow>
#include <QScreen>
#include <QToolBar>

#include "project/window_layout.h"
#include "ui/dock_window.h"
#include "ui/table/model_view_window.h"
#include "ui/window.h"

namespace {

constexpr int MIN_SEEN = 40;  // pixels of a floating window that have to be on a screen, to grip it

DOCK_AREA AreaOf(const QMainWindow& Main, CDockWindow& Dock) {
  if (Dock.isHidden()) return DOCK_AREA_NONE;
  if (Dock.isFloating()) return DOCK_AREA_FLOATING;
  switch (Main.dockWidgetArea(&Dock)) {
    case Qt::LeftDockWidgetArea:
      return DOCK_AREA_LEFT;
    case Qt::RightDockWidgetArea:
      return DOCK_AREA_RIGHT;
    default:
      return DOCK_AREA_BOTTOM;
  }
}

Qt::DockWidgetArea QtAreaOf(DOCK_AREA Area) {
  switch (Area) {
    case DOCK_AREA_LEFT:
      return Qt::LeftDockWidgetArea;
    case DOCK_AREA_RIGHT:
      return Qt::RightDockWidgetArea;
    default:
      return Qt::BottomDockWidgetArea;
  }
}

// Of docks that share a place, the one that is seen; empty when that is the dock itself.
QString VisibleTabOf(const QMainWindow& Main, CDockWindow& Dock) {
  if (!Dock.visibleRegion().isEmpty()) return {};
  for (const QDockWidget* const pOther : Main.tabifiedDockWidgets(&Dock)) {
    if (!pOther->visibleRegion().isEmpty()) return pOther->objectName();
  }
  return {};
}

PLACED_ITEM PlaceOf(const QMainWindow& Main, CDockWindow& Dock) {
  const DOCK_AREA Area = AreaOf(Main, Dock);
  return {Dock.objectName(), Area, QRect(Dock.pos(), Dock.size()), VisibleTabOf(Main, Dock)};
}

PLACED_ITEM PlaceOf(const QToolBar& Bar) {
  DOCK_AREA Area = Bar.isFloating() ? DOCK_AREA_FLOATING : DOCK_AREA_BOTTOM;
  if (Bar.isHidden()) Area = DOCK_AREA_NONE;
  return {Bar.objectName(), Area, QRect(Bar.pos(), Bar.size()), QString()};
}

// The nearest place where a window of the size can be gripped.
QPoint OnAScreen(QPoint Pos, const QSize& Size) {
  const QRect Wanted(Pos, Size);
  for (const QScreen* const pScreen : QGuiApplication::screens()) {
    const QRect Seen = pScreen->availableGeometry().intersected(Wanted);
    if (Seen.width() >= MIN_SEEN && Seen.height() >= MIN_SEEN && Seen.top() == Wanted.top()) return Pos;
  }
  const QRect Screen = QGuiApplication::primaryScreen()->availableGeometry();
  const QPoint Last(std::max(Screen.left(), Screen.right() + 1 - Size.width()),
                    std::max(Screen.top(), Screen.bottom() + 1 - Size.height()));
  return {std::clamp(Pos.x(), Screen.left(), Last.x()), std::clamp(Pos.y(), Screen.top(), Last.y())};
}

// Carries out the plan of the docks of one main window.
class CDockArranger {
public:
  CDockArranger(QMainWindow& Main, const QList<CWindow*>& Windows) : m_Main(Main) {
    for (const CWindow* const pWindow : Windows) {
      if (CDockWindow* const pDock = pWindow->GetDock()) m_Docks.insert(pDock->objectName(), pDock);
    }
  }

  void CarryOut(const DOCK_PLAN& Plan) {
    if (Plan.IsEmpty()) return;
    for (CDockWindow* const pDock : std::as_const(m_Docks)) {
      m_Areas.insert(pDock, m_Main.dockWidgetArea(pDock));
      pDock->setFloating(false);
      m_Main.removeDockWidget(pDock);
    }
    for (const QString& sName : Plan.Hidden) AddHidden(m_Docks[sName]);
    for (const DOCK_STEP& Step : Plan.Steps) Take(Step);
    for (const DOCK_RECORD& Record : Plan.Floating) Float(Record);
    Resize(Plan.Extents);
  }

private:
  // Where it was: it opens there, or comes back there when it does not float any more.
  void AddHidden(CDockWindow* pDock) {
    const Qt::DockWidgetArea Area = m_Areas.value(pDock);
    m_Main.addDockWidget(Area == Qt::NoDockWidgetArea ? Qt::BottomDockWidgetArea : Area, pDock);
    pDock->hide();
  }

  void Take(const DOCK_STEP& Step) {
    CDockWindow* const pDock = m_Docks[Step.sDock];
    CDockWindow* const pAnchor = m_Docks.value(Step.sAnchor);
    if (Step.Kind == DOCK_STEP_ADD) m_Main.addDockWidget(QtAreaOf(Step.Area), pDock);
    if (Step.Kind == DOCK_STEP_BELOW) m_Main.splitDockWidget(pAnchor, pDock, Qt::Vertical);
    if (Step.Kind == DOCK_STEP_BESIDE) m_Main.splitDockWidget(pAnchor, pDock, Qt::Horizontal);
    if (Step.Kind == DOCK_STEP_TAB) m_Main.tabifyDockWidget(pAnchor, pDock);
    pDock->show();
  }

  void Float(const DOCK_RECORD& Record) {
    CDockWindow* const pDock = m_Docks[Record.sName];
    AddHidden(pDock);
    pDock->setFloating(true);
    if (Record.w > 0 && Record.h > 0) pDock->resize(Record.w, Record.h);
    pDock->move(OnAScreen({Record.x, Record.y}, pDock->size()));
    pDock->show();
  }

  void Resize(const QList<DOCK_EXTENT>& Extents) {
    QList<QDockWidget*> Wide, High;
    QList<int> Widths, Heights;
    for (const DOCK_EXTENT& Extent : Extents) {
      if (Extent.Width > 0) {
        Wide << m_Docks[Extent.sDock];
        Widths << Extent.Width;
      }
      if (Extent.Height > 0) {
        High << m_Docks[Extent.sDock];
        Heights << Extent.Height;
      }
    }
    m_Main.layout()->activate();
    m_Main.resizeDocks(Wide, Widths, Qt::Horizontal);
    m_Main.resizeDocks(High, Heights, Qt::Vertical);
  }

  QMainWindow& m_Main;
  QHash<QString, CDockWindow*> m_Docks;
  QHash<const CDockWindow*, Qt::DockWidgetArea> m_Areas;  // as they were
};

void ArrangeToolBars(const QList<TOOL_BAR_STEP>& Steps, QMainWindow& Main, const QList<QToolBar*>& ToolBars) {
  if (Steps.isEmpty()) return;
  QHash<QString, QToolBar*> ByName;
  for (QToolBar* const pBar : ToolBars) {
    Main.removeToolBarBreak(pBar);
    Main.removeToolBar(pBar);
    ByName.insert(pBar->objectName(), pBar);
  }
  for (const TOOL_BAR_STEP& Step : Steps) {
    QToolBar* const pBar = ByName[Step.sName];
    if (pBar->isWindow()) pBar->setWindowFlags(Qt::Widget);
    if (Step.bBreakBefore) Main.addToolBarBreak(Qt::TopToolBarArea);
    Main.addToolBar(Qt::TopToolBarArea, pBar);
    if (Step.bFloating) {
      pBar->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
      pBar->setAttribute(Qt::WA_ShowWithoutActivating);
      pBar->adjustSize();
      pBar->move(OnAScreen({Step.x, Step.y}, pBar->size()));
    }
    pBar->setVisible(Step.bShown);
  }
}

void ApplyTableHeaders(const QList<TABLE_HEADER_RECORD>& Records, const QList<CWindow*>& Windows) {
  for (CWindow* const pWindow : Windows) {
    auto* const pTable = qobject_cast<CModelViewWindow*>(pWindow);
    if (pTable == nullptr) continue;
    for (const TABLE_HEADER_RECORD& Record : Records) {
      if (Record.sName == pTable->GetName()) pTable->SetHeaderRecord(Record);
    }
  }
}

}  // namespace

USER_FILE MeasureLayout(const QMainWindow& Main, const QList<CWindow*>& Windows, const QList<QToolBar*>& ToolBars) {
  USER_FILE File;
  QList<PLACED_ITEM> Docks, Bars;
  QHash<QString, bool> FilterBars;
  for (const CWindow* const pWindow : Windows) {
    if (CDockWindow* const pDock = pWindow->GetDock()) {
      Docks << PlaceOf(Main, *pDock);
      FilterBars.insert(pDock->objectName(), pWindow->TestFlag(WF_FILTER_BAR));
    }
    if (const QString sText = pWindow->GetUserConfigStr(); !sText.isEmpty()) File.WindowTexts << sText;
    const auto* const pTable = qobject_cast<const CModelViewWindow*>(pWindow);
    if (pTable && pTable->IsOpen()) File.TableHeaders << pTable->GetHeaderRecord();
  }
  for (const QToolBar* const pBar : ToolBars) Bars << PlaceOf(*pBar);
  File.Docks = RecordsOfDocks(Docks);
  for (DOCK_RECORD& Record : File.Docks) Record.FilterBarShown = FilterBars.value(Record.sName);
  File.ToolBars = RecordsOfToolBars(Bars);
  return File;
}

void ApplyLayout(const USER_FILE& File, QMainWindow& Main, const QList<CWindow*>& Windows,
                 const QList<QToolBar*>& ToolBars) {
  QStringList DockNames, BarNames;
  for (CWindow* const pWindow : Windows) {
    if (!pWindow->GetDock()) continue;
    DockNames << pWindow->GetDock()->objectName();
    for (const DOCK_RECORD& Record : File.Docks) {
      if (Record.sName == DockNames.last() && Record.FilterBarShown) {
        pWindow->SetFlag(WF_FILTER_BAR, *Record.FilterBarShown);
      }
    }
  }
  for (const QToolBar* const pBar : ToolBars) BarNames << pBar->objectName();
  ApplyTableHeaders(File.TableHeaders, Windows);
  CDockArranger(Main, Windows).CarryOut(PlanDocks(File.Docks, DockNames));
  ArrangeToolBars(PlanToolBars(File.ToolBars, BarNames), Main, ToolBars);
}
