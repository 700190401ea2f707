#pragma once

#include <QMap>
#include <QTimer>

#include "ui/item_window.h"
#include "ui/table/item_delegate.h"
#include "ui/table/item_states.h"
#include "ui/table/table_model.h"
#include "ui/table/view_state.h"
#include "ui/tool_tip.h"
#include "ui/window.h"

class CFilterHeaderView;
class CPopupMenu;
class CSortFilter;
class CTableHeader;
class CTreeView;

// Base of all table and tree windows: a view with header and filter bar over a model, with filters, order, choice of
// columns, states, change colours and refreshing in common. A subclass gives the model and says what an item does. All
// indexes that it is asked with are the model's.
class CModelViewWindow : public CWindow, public ITableOwner, public IItemStyle, public IItemWindow {
  Q_OBJECT

public:
  // Takes the model over. A subclass calls Init() at the end of its constructor, as of any window.
  CModelViewWindow(QWidget* pParent, const QString& sName, CTableModel* pModel);
  ~CModelViewWindow() override;

  CTableModel* Model() const { return pModel; }
  CSortFilter* Proxy() const { return pProxy; }
  CTreeView* View() const { return pView; }
  CTableHeader* Header() const { return pHeader; }
  CFilterHeaderView* FilterBar() const { return pFilterBar; }

  // --- What a subclass adds
  // The user added or removed an item by name.
  void AddItem(const QString& /*sItem*/) override {}
  void RemoveItem(const QString& /*sItem*/) override {}
  // Builds the rows anew, as after a program was loaded.
  virtual void Reload() {}
  // Drops cached values and repaints. Called when all windows are refreshed.
  virtual void Invalidate();
  // An item on screen whose value has to be read from the target, and the read, of one item at a time: it sets the
  // item's refresh state, and the value arrives as a change of the model's data.
  virtual bool IsItemStale(const QModelIndex& Index) const;
  virtual void FetchItem(const QModelIndex& /*Index*/) {}
  // Title and pairs of an item's tool tip; without them a text that is cut short is shown whole.
  virtual QString GetItemTooltip(const QModelIndex& /*Index*/, CToolTip::PAIRS& /*Pairs*/) const { return {}; }

  // --- Items
  // The current row, none without one.
  QModelIndex GetCurrentItem() const;
  void SelectItem(const QModelIndex& Index);
  CItemStates& ItemStates() { return States; }
  void SetItemDisplayFormat(const QModelIndex& Index, int Format);
  // The column's filter, as typed; "*" for none.
  void SetFilter(int Column, const QString& sText);

  // --- The header's place in settings and user files, under the window's name
  TABLE_HEADER_RECORD GetHeaderRecord() const;
  void SetHeaderRecord(const TABLE_HEADER_RECORD& Record);

  // --- CWindow
  void Clear() override;
  void Repaint() override;
  void Update(U32 NewPC) override;
  bool IsEmpty() const override;
  void SetFont(int FontID, const QFont& Font) override;
  void SetColor(int ColorID, const QColor& Color) override;
  void SetPreference(int VarID, int Value) override;
  void SetDisplayFormat(int Format) override;
  void ExpandAll() override;
  void CollapseAll() override;
  void ScrollBy(int dx, int dy) override;
  void ClearStateBackup() override { StateBackups.clear(); }
  void BackupState(int StateID) override;
  void RestoreState(int StateID, U32 DoNotRestoreFlags) override;
  QString DumpText() const override;
  void OnDeviceResumeDone(RESUME_MODES Mode) override;
  void OnDeviceDisconnectDone() override;

  // --- ITableOwner, IItemStyle
  bool AreItemsActive() const override { return IsActive(); }
  bool HasWindowFlag(U32 Flag) const override { return TestFlag(Flag); }
  int GetItemRefreshRate(const QModelIndex& /*Index*/) const override { return 0; }
  int GetItemDisplayFormat(const QModelIndex& Index) const override;
  CHANGE_LEVELS GetChangeLevel(const QModelIndex& ProxyIndex) const override;
  TEXT_MATCH GetFilterMatch(const QModelIndex& ProxyIndex, const QString& sText) const override;

public Q_SLOTS:
  virtual void OnActionExpandAllTriggered();
  virtual void OnActionCollapseAllTriggered();
  virtual void OnActionRefreshItemTriggered();
  virtual void OnActionRefreshAllTriggered();
  virtual void OnActionToggleFilterBarTriggered();
  virtual void OnItemDisplayFormatActionTriggered();
  // True when the key was used.
  virtual bool OnKeyPressed(QKeyEvent* pEvent);
  virtual void OnKeyPlusPressed();
  virtual void OnKeyMinusPressed();
  virtual void OnUpdateTimerTimeout();
  virtual void OnWatchdogTimerTimeout();
  virtual void OnDeactivateTimerTimeout();
  virtual void OnItemClicked(const QModelIndex& /*Index*/) {}
  // Also by Return; not of an item that is edited then.
  virtual void OnItemDoubleClicked(const QModelIndex& /*Index*/) {}
  virtual void OnItemAboutToExpand(const QModelIndex& /*Index*/) {}
  virtual void OnItemAboutToCollapse(const QModelIndex& /*Index*/) {}
  virtual void OnItemExpanded(const QModelIndex& Index);
  virtual void OnItemCollapsed(const QModelIndex& /*Index*/) {}
  virtual void OnSelectionChanged(const QModelIndex& Current, const QModelIndex& Previous);
  virtual void OnDataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight);
  virtual void OnHeaderContextMenuRequested(const QPoint& Pos);
  void OnContextMenuRequested(const QPoint& ScreenPos) override;
  void OnTooltipRequested(const QPoint& ScreenPos) override;
  void OnContentChanged() override;
  void OnFlagChanged(U32 Flag, bool bValue) override;
  void OnVisibilityChanged(bool bVisible) override;
  void OnFloatingStateChanged(bool bFloating) override;
  void OnActivationChanged(bool bActive) override;
  void OnDisplayFormatChanged(int Format) override;
  void OnSizeChanged(int Width, int Height) override;

protected:
  void Init() override;
  void UpdateActions() override;
  // The window shows the target's state: items can be changed while it is halted, and for a moment more, and values
  // are read as they come into view. Other windows' items can always be changed.
  void SetShowsTarget();
  // Values of rows on screen that are not there yet are asked for, at once and a moment later.
  virtual void ReadVisibleItems();
  void ReadSoon() { UpdateTimer.start(); }
  // The entries for an item, ahead of those that all tables have. Invalid: beside the items.
  virtual void AddItemEntries(CPopupMenu& /*Menu*/, const QModelIndex& /*Index*/) {}
  // Behind them: expand, collapse, refresh, formats, filter bar.
  virtual void AddCommonEntries(CPopupMenu& Menu);
  void showEvent(QShowEvent* pEvent) override;

  CTreeView* pView;
  CTableHeader* pHeader;
  CFilterHeaderView* pFilterBar;
  CTableModel* pModel;
  CSortFilter* pProxy;
  CItemDelegate* pDelegate;
  CItemStates States;

private:
  QAction* AddTableAction(const char* sObjectName, const char* sText, const char* sIcon, const char* sSlot);
  void CreateTableActions();
  void ConnectView();
  void ApplyFonts();
  void UpdateFilterBar();
  void TellEmptiness();
  bool MoveToFilterBar();
  void TriggerDelete();

  QTimer UpdateTimer;
  QTimer DeactivateTimer;
  QTimer WatchdogTimer;
  QMap<int, VIEW_STATE> StateBackups;
  QHash<U32, U8> ItemDisplayFormats;
  QFont ItemFont;
  QFont ValueFont;
  QAction* actionExpandAll = nullptr;
  QAction* actionCollapseAll = nullptr;
  QAction* actionRefreshItem = nullptr;
  QAction* actionRefreshAll = nullptr;
  QAction* actionToggleFilterBar = nullptr;
  QMap<int, QAction*> ItemFormatActions;  // by format
  bool bShowsTarget = false;
  bool bFilterBarsDisabled = false;
  bool bDefaultColumns = true;  // no stored header has been applied
  bool bWasEmpty = true;
};
