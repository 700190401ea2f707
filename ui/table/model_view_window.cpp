#include "ui/table/model_view_window.h"

#include <QScrollBar>

#include "device/device.h"
#include "shell/settings/fonts.h"
#include "shell/settings/var_ids.h"
#include "ui/table/filter_header_view.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"
#include "ui/table/tree_view.h"
#include "ui/table/view_keeper.h"

namespace {

constexpr int UPDATE_DELAY_MS = 10;
constexpr int DEACTIVATE_DELAY_MS = 500;  // a short run leaves the window as it is
constexpr int WATCHDOG_INTERVAL_MS = 1000;
constexpr int MAX_WAITING_JOBS = 10;  // more than these, and the reads wait for another moment
constexpr int MAX_EXPANDED = 10'000;  // items that one command opens; a tree of pointers has no end

CItemStates::KEY KeyOf(const QModelIndex& Index) {
  return static_cast<CItemStates::KEY>(Index.internalId());
}

}  // namespace

CModelViewWindow::CModelViewWindow(QWidget* pParent, const QString& sName, CTableModel* pTableModel)
    : CWindow(pParent, sName), pModel(pTableModel) {
  Flags = (Flags | WF_ITEMS_EDITABLE | WF_ITEMS_DROPPABLE | WF_ACCEPT_DROPS) &
          ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT);
  auto* const pCentral = new QWidget(this);
  auto* const pLayout = new QVBoxLayout(pCentral);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pModel->setParent(this);
  pModel->SetOwner(this);
  pProxy = new CSortFilter(this);
  pProxy->setSourceModel(pModel);
  pView = new CTreeView(pCentral);
  pHeader = new CTableHeader(pView);
  pView->setHeader(pHeader);
  pView->setModel(pProxy);
  pView->setSortingEnabled(true);
  pView->SetFlat(pModel->IsFlat());
  pDelegate = new CItemDelegate(*this, pView);
  pView->setItemDelegate(pDelegate);
  pFilterBar = new CFilterHeaderView(pView, pHeader, pProxy, pCentral);
  pLayout->addWidget(pFilterBar);
  pLayout->addWidget(pView);
  setCentralWidget(pCentral);
  setFocusProxy(pView);
  pHeader->ApplyDefaults();
  CreateTableActions();
}

// The view and what stands in it go first, while what they ask and tell is there.
CModelViewWindow::~CModelViewWindow() {
  pView->disconnect(this);
  pView->selectionModel()->disconnect(this);
  pModel->disconnect(this);
  delete takeCentralWidget();
  delete pProxy;
  delete pModel;
}

void CModelViewWindow::Init() {
  UpdateTimer.setSingleShot(true);
  UpdateTimer.setInterval(UPDATE_DELAY_MS);
  DeactivateTimer.setSingleShot(true);
  DeactivateTimer.setInterval(DEACTIVATE_DELAY_MS);
  WatchdogTimer.setInterval(WATCHDOG_INTERVAL_MS);
  connect(&UpdateTimer, &QTimer::timeout, this, &CModelViewWindow::OnUpdateTimerTimeout);
  connect(&DeactivateTimer, &QTimer::timeout, this, &CModelViewWindow::OnDeactivateTimerTimeout);
  connect(&WatchdogTimer, &QTimer::timeout, this, &CModelViewWindow::OnWatchdogTimerTimeout);
  ConnectView();
  if (bShowsTarget) {
    WatchdogTimer.start();
  } else {
    SetActive(true);
  }
  OnFlagChanged(WF_ACCEPT_DROPS, TestFlag(WF_ACCEPT_DROPS));
  OnContentChanged();
}

void CModelViewWindow::ConnectView() {
  new CViewKeeper(pView, pProxy, pView);
  const auto Forward = [this](auto Signal, void (CModelViewWindow::*Slot)(const QModelIndex&)) {
    connect(pView, Signal, this, [this, Slot](const QModelIndex& Index) { (this->*Slot)(pProxy->mapToSource(Index)); });
  };
  Forward(&QTreeView::clicked, &CModelViewWindow::OnItemClicked);
  Forward(&CTreeView::AboutToExpand, &CModelViewWindow::OnItemAboutToExpand);
  Forward(&CTreeView::AboutToCollapse, &CModelViewWindow::OnItemAboutToCollapse);
  Forward(&QTreeView::expanded, &CModelViewWindow::OnItemExpanded);
  Forward(&QTreeView::collapsed, &CModelViewWindow::OnItemCollapsed);
  connect(pView, &QTreeView::doubleClicked, this, [this](const QModelIndex& Index) {
    if (!(Index.flags() & Qt::ItemIsEditable)) OnItemDoubleClicked(pProxy->mapToSource(Index));
  });
  connect(pView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& Current, const QModelIndex& Previous) {
            OnSelectionChanged(pProxy->mapToSource(Current), pProxy->mapToSource(Previous));
          });
  connect(pView, &CTreeView::KeyPressed, this,
          [this](QKeyEvent* pEvent, bool* pHandled) { *pHandled = OnKeyPressed(pEvent); });
  pView->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(pView, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& Pos) { OnContextMenuRequested(pView->viewport()->mapToGlobal(Pos)); });
  connect(pHeader, &QWidget::customContextMenuRequested, this, &CModelViewWindow::OnHeaderContextMenuRequested);
  pView->viewport()->installEventFilter(this);
  connect(pFilterBar, &CFilterHeaderView::Left, this, [this](int Column) {
    pView->setFocus();
    const QModelIndex Top = pView->VisibleRows().value(0);
    if (Top.isValid()) pView->setCurrentIndex(Top.siblingAtColumn(Column));
  });
  // What comes into view is read.
  for (QScrollBar* const pBar : {pView->verticalScrollBar(), pView->horizontalScrollBar()}) {
    connect(pBar, &QScrollBar::valueChanged, this, &CModelViewWindow::ReadSoon);
  }
  connect(pHeader, &QHeaderView::sectionResized, this, &CModelViewWindow::ReadSoon);
  connect(pProxy, &QAbstractItemModel::layoutChanged, this, &CModelViewWindow::ReadSoon);
  connect(pModel, &QAbstractItemModel::dataChanged, this, &CModelViewWindow::OnDataChanged);
  connect(pModel, &QAbstractItemModel::modelReset, this, &CModelViewWindow::TellEmptiness);
  connect(pModel, &QAbstractItemModel::rowsInserted, this, &CModelViewWindow::TellEmptiness);
  connect(pModel, &QAbstractItemModel::rowsRemoved, this, &CModelViewWindow::TellEmptiness);
}

void CModelViewWindow::SetShowsTarget() {
  bShowsTarget = true;
}

// ---- Contents

bool CModelViewWindow::IsEmpty() const {
  return pModel == nullptr || pModel->rowCount() == 0;
}

void CModelViewWindow::TellEmptiness() {
  ReadSoon();
  if (IsEmpty() != bWasEmpty) Q_EMIT ContentChanged();
}

void CModelViewWindow::OnContentChanged() {
  bWasEmpty = IsEmpty();
  UpdateFilterBar();
  CWindow::OnContentChanged();
}

void CModelViewWindow::Clear() {
  States.Clear();
  CWindow::Clear();
}

void CModelViewWindow::Repaint() {
  CWindow::Repaint();
  pView->viewport()->update();
}

void CModelViewWindow::Invalidate() {
  States.Invalidate();
  Repaint();
  ReadSoon();
}

void CModelViewWindow::Update(U32) {
  if (!bShowsTarget) return;
  if (CDevice::Exists() && CDevice::Get().IsConnected() && CDevice::Get().IsHalted()) {
    DeactivateTimer.stop();
    SetActive(true);
  }
  Invalidate();
}

bool CModelViewWindow::IsItemStale(const QModelIndex& Index) const {
  return bShowsTarget && States.GetRefreshState(KeyOf(Index)) == ITEM_STALE;
}

void CModelViewWindow::ReadVisibleItems() {
  if (!IsOpen() || !bShowsTarget) return;
  const JOB_COUNTS Jobs = CDevice::Get().JobCounts();
  if (Jobs.Scheduled - Jobs.Executed - Jobs.Cancelled > MAX_WAITING_JOBS) return ReadSoon();
  for (const QModelIndex& Row : pView->VisibleRows()) {
    const QModelIndex Item = pProxy->mapToSource(Row);
    if (IsItemStale(Item) && Item.data(ROLE_HAS_VALUE).toBool()) FetchItem(Item);
  }
}

void CModelViewWindow::OnUpdateTimerTimeout() {
  ReadVisibleItems();
}

void CModelViewWindow::OnDeactivateTimerTimeout() {
  if (GetDebugState() != DEBUG_STATE_HALTED) SetActive(false);
}

void CModelViewWindow::OnWatchdogTimerTimeout() {
  States.ForgetRequests();
  ReadSoon();
}

void CModelViewWindow::OnDeviceResumeDone(RESUME_MODES Mode) {
  CWindow::OnDeviceResumeDone(Mode);
  if (bShowsTarget) DeactivateTimer.start();
}

void CModelViewWindow::OnDeviceDisconnectDone() {
  CWindow::OnDeviceDisconnectDone();
  if (bShowsTarget) SetActive(false);
}

void CModelViewWindow::OnDataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight) {
  const int Column = pModel->GetValueColumn();
  if (!TopLeft.isValid()) return;
  for (int Row = TopLeft.row(); Row <= BottomRight.row(); ++Row) {
    const QModelIndex Item = TopLeft.sibling(Row, Column);
    if (States.GetRefreshState(KeyOf(Item)) != ITEM_READ) continue;
    const QVariant Value = Item.data(ROLE_SORT_VALUE);
    if (Value.isValid()) States.TakeValue(KeyOf(Item), Value.toLongLong());
  }
}

CHANGE_LEVELS CModelViewWindow::GetChangeLevel(const QModelIndex& ProxyIndex) const {
  if (!bShowsTarget || ProxyIndex.column() != pModel->GetValueColumn()) return CHANGE_LEVEL_NONE;
  return States.GetLevel(KeyOf(pProxy->mapToSource(ProxyIndex)));
}

TEXT_MATCH CModelViewWindow::GetFilterMatch(const QModelIndex& ProxyIndex, const QString& sText) const {
  if (!pProxy->HasFilters() || ProxyIndex.parent().isValid()) return {};
  return pProxy->GetMatch(ProxyIndex.column(), sText);
}

// ---- Items

QModelIndex CModelViewWindow::GetCurrentItem() const {
  return pProxy->mapToSource(pView->currentIndex().siblingAtColumn(0));
}

void CModelViewWindow::SelectItem(const QModelIndex& Index) {
  pView->setCurrentIndex(pProxy->mapFromSource(Index));
}

void CModelViewWindow::OnSelectionChanged(const QModelIndex&, const QModelIndex&) {
  UpdateActions();
}

void CModelViewWindow::OnItemExpanded(const QModelIndex&) {
  ReadSoon();
}

int CModelViewWindow::GetItemDisplayFormat(const QModelIndex& Index) const {
  return ItemDisplayFormats.value(pModel->GetItemId(Index), static_cast<U8>(GetDisplayFormat()));
}

void CModelViewWindow::SetItemDisplayFormat(const QModelIndex& Index, int Format) {
  if (!Index.isValid()) return;
  ItemDisplayFormats.insert(pModel->GetItemId(Index), static_cast<U8>(Format));
  pModel->TellChanged(Index);
  UpdateActions();
}

// The format of all: no item keeps one of its own.
void CModelViewWindow::SetDisplayFormat(int Format) {
  ItemDisplayFormats.clear();
  CWindow::SetDisplayFormat(Format);
}

void CModelViewWindow::OnDisplayFormatChanged(int Format) {
  CWindow::OnDisplayFormatChanged(Format);
  Repaint();
}

void CModelViewWindow::SetFilter(int Column, const QString& sText) {
  pProxy->SetFilter(Column, sText);
}

void CModelViewWindow::ExpandAll() {
  QModelIndexList Level = {QModelIndex()};
  for (int NumOpened = 0; !Level.isEmpty() && NumOpened < MAX_EXPANDED;) {
    QModelIndexList Next;
    for (const QModelIndex& Parent : std::as_const(Level)) {
      for (int Row = 0; Row < pProxy->rowCount(Parent) && NumOpened < MAX_EXPANDED; ++Row) {
        const QModelIndex Item = pProxy->index(Row, 0, Parent);
        if (!pProxy->hasChildren(Item)) continue;
        pView->expand(Item);
        Next << Item;
        ++NumOpened;
      }
    }
    Level = std::move(Next);
  }
}

void CModelViewWindow::CollapseAll() {
  for (int Row = 0; Row < pProxy->rowCount(); ++Row) pView->collapse(pProxy->index(Row, 0));
  pView->collapseAll();
}

void CModelViewWindow::ScrollBy(int dx, int dy) {
  pView->horizontalScrollBar()->setValue(pView->horizontalScrollBar()->value() + dx);
  pView->verticalScrollBar()->setValue(pView->verticalScrollBar()->value() + dy);
}

// ---- Settings

void CModelViewWindow::SetFont(int FontID, const QFont& Font) {
  if (FontID == FONT_ITEM_NAME) ItemFont = Font;
  if (FontID == FONT_ITEM_VALUE) ValueFont = Font;
  if (FontID == FONT_TABLE_HEADER) pHeader->setFont(Font);
  if (FontID == FONT_ITEM_NAME || FontID == FONT_ITEM_VALUE) ApplyFonts();
}

void CModelViewWindow::ApplyFonts() {
  pDelegate->SetFonts(ItemFont, ValueFont);
  pView->setFont(ItemFont);
  pFilterBar->SetFont(ItemFont);
  pView->setIndentation(pDelegate->RowHeight());
  pView->doItemsLayout();
  if (bDefaultColumns) pHeader->ApplyDefaults();
}

void CModelViewWindow::SetColor(int, const QColor&) {
  Repaint();
}

void CModelViewWindow::SetPreference(int VarID, int Value) {
  if (VarID != PREF_FILTER_BARS_DISABLED) return;
  bFilterBarsDisabled = Value != 0;
  UpdateFilterBar();
  UpdateActions();
}

void CModelViewWindow::OnFlagChanged(U32 Flag, bool bValue) {
  CWindow::OnFlagChanged(Flag, bValue);
  if (Flag == WF_FILTER_BAR) {
    UpdateFilterBar();
    UpdateActions();
  }
  if (Flag == WF_ACCEPT_DROPS) {
    pView->setAcceptDrops(bValue);
    pView->viewport()->setAcceptDrops(bValue);
  }
}

void CModelViewWindow::UpdateFilterBar() {
  pFilterBar->SetShown(TestFlag(WF_FILTER_BAR) && !bFilterBarsDisabled && IsOpen() && !IsEmpty());
}

void CModelViewWindow::OnVisibilityChanged(bool bVisible) {
  CWindow::OnVisibilityChanged(bVisible);
  UpdateFilterBar();
  if (bVisible) ReadSoon();
}

void CModelViewWindow::showEvent(QShowEvent* pEvent) {
  CWindow::showEvent(pEvent);
  UpdateFilterBar();
}

void CModelViewWindow::OnFloatingStateChanged(bool bFloating) {
  CWindow::OnFloatingStateChanged(bFloating);
  UpdateFilterBar();
}

void CModelViewWindow::OnActivationChanged(bool bActive) {
  CWindow::OnActivationChanged(bActive);
  pView->viewport()->update();
}

void CModelViewWindow::OnSizeChanged(int Width, int Height) {
  CWindow::OnSizeChanged(Width, Height);
  ReadSoon();
}

// ---- States

TABLE_HEADER_RECORD CModelViewWindow::GetHeaderRecord() const {
  TABLE_HEADER_RECORD Record = pHeader->ToRecord();
  Record.sName = GetName();
  return Record;
}

// The header's sort indicator leads to the sort.
void CModelViewWindow::SetHeaderRecord(const TABLE_HEADER_RECORD& Record) {
  bDefaultColumns = false;
  pHeader->FromRecord(Record);
}

void CModelViewWindow::BackupState(int StateID) {
  if (!IsOpen()) return;
  VIEW_STATE& State = StateBackups[StateID] = TakeViewState(*pView, *pProxy, States);
  State.bHeader = !IsEmpty();
  State.Header = pHeader->ToRecord();
}

void CModelViewWindow::RestoreState(int StateID, U32 DoNotRestoreFlags) {
  const auto it = StateBackups.constFind(StateID);
  if (it == StateBackups.cend()) return;
  if (it->bHeader && !(DoNotRestoreFlags & RESTORE_NO_HEADER)) SetHeaderRecord(it->Header);
  ApplyViewState(*it, DoNotRestoreFlags, *pView, *pProxy, States);
}

QString CModelViewWindow::DumpText() const {
  QList<int> Columns;
  for (int Visual = 0; Visual < pHeader->count(); ++Visual) {
    if (!pHeader->isSectionHidden(pHeader->logicalIndex(Visual))) Columns << pHeader->logicalIndex(Visual);
  }
  QStringList Lines, Cells;
  for (const int Column : std::as_const(Columns)) Cells << pHeader->TitleOf(Column);
  Lines << Cells.join(u'\t');
  for (QModelIndex Row = pProxy->index(0, 0); Row.isValid(); Row = pView->indexBelow(Row)) {
    Cells.clear();
    for (const int Column : std::as_const(Columns)) Cells << Row.siblingAtColumn(Column).data().toString();
    for (QModelIndex Parent = Row.parent(); Parent.isValid(); Parent = Parent.parent()) Cells.first().prepend(u"  ");
    Lines << Cells.join(u'\t');
  }
  return Lines.join(u'\n');
}
