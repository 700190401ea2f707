#pragma once

#include "device/breakpoints/breakpoint_location.h"
#include "ui/table/model_view_window.h"

class CBreakpointsDataModel;
struct CBreakpointRec;

// The window "Breakpoints": all breakpoints of the manager, those on source lines with their addresses below them. What
// the user does here is performed as commands. Keeps the breakpoints in the project's user file.
class CBreakpointWindow : public CModelViewWindow {
  Q_OBJECT

public:
  explicit CBreakpointWindow(QWidget* pParent);

  // --- CWindow
  void Clear() override;  // clears all breakpoints
  void Reload() override;
  void Update(U32 NewPC) override;
  QString GetEmptyWindowText(DEBUG_STATES State) const override;
  QString GetUserConfigStr() const override;
  void SetUserConfigStr(const QString& sConfig) override;
  void ClearStateBackup() override;
  QString GetItemTooltip(const QModelIndex& Index, CToolTip::PAIRS& Pairs) const override;

public Q_SLOTS:
  void OnActionAddTriggered() override;
  void OnActionBPSetTriggered();
  void OnActionBPClearTriggered();
  void OnActionBPEnableTriggered();
  void OnActionBPDisableTriggered();
  void OnActionBPEditDialogTriggered();
  void OnActionBPClearAllTriggered();
  void OnTypeMenuActionTriggered(QAction* pAction);
  // Shows the place: SrcLocSelected or InstrSelected.
  void OnItemClicked(const QModelIndex& Index) override;
  void OnItemDoubleClicked(const QModelIndex& Index) override;
  bool OnKeyPressed(QKeyEvent* pEvent) override;
  // Goes to the breakpoint there.
  void OnSrcLocSelected(const CSrcLoc& Loc, int Type) override;
  void OnInstrSelected(I64 Addr) override;

protected:
  void UpdateActions() override;
  void AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) override;
  void SetActionStyle(U32 ActionID, QAction* pAction) override;

private:
  QAction* AddBreakpointAction(const char* sObjectName, const char* sText, const char* sIcon, const char* sSlot);
  const CBreakpointRec* CurrentRecord() const;
  // What the actions act on: what another window offers, otherwise the current item.
  BREAKPOINT_LOCATION Place() const;
  void AddTypeEntries(QMenu* pMenu, const CBreakpointRec& Record);
  void ShowTypeMenu(const QPersistentModelIndex& Item);
  void SetType(const QModelIndex& Index, const QAction* pEntry);
  void Select(const std::function<bool(const CBreakpointRec&)>& IsWanted);

  CBreakpointsDataModel* m_pRows;
  QAction* actionBpSet = nullptr;
  QAction* actionBpClear = nullptr;
  QAction* actionBpEnable = nullptr;
  QAction* actionBpDisable = nullptr;
  QAction* actionBpEditDialog = nullptr;
  QAction* actionBpClearAll = nullptr;
  bool m_bTelling = false;  // of a place that the user has chosen here
};
