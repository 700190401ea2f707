#include "ui/table/sort_filter.h"

#include <algorithm>
#include <numeric>

#include "ui/table/sort_keys.h"
#include "ui/table/table_model.h"

namespace {

U32 KindOf(const QAbstractItemModel& Model, int Column) {
  return Model.headerData(Column, Qt::Horizontal, ROLE_COLUMN_KIND).toUInt();
}

}  // namespace

CSortFilter::CSortFilter(QObject* pParent) : QAbstractProxyModel(pParent) {
  m_RebuildTimer.setSingleShot(true);
  m_RebuildTimer.setInterval(0);
  connect(&m_RebuildTimer, &QTimer::timeout, this, &CSortFilter::Rebuild);
}

CSortFilter::~CSortFilter() = default;

// ---- Filters

void CSortFilter::SetFilter(int Column, const QString& sText) {
  const QString sFilter = sText.isEmpty() ? QString(NO_FILTER) : sText;
  if (sFilter == GetFilter(Column)) return;
  m_Filters.erase(Column);
  if (sFilter != NO_FILTER && sourceModel()) m_Filters.emplace(Column, CColumnFilter(sFilter, GetFilterKind(Column)));
  Rebuild();
  Q_EMIT FiltersChanged();
}

void CSortFilter::ClearFilters() {
  if (m_Filters.empty()) return;
  m_Filters.clear();
  Rebuild();
  Q_EMIT FiltersChanged();
}

U32 CSortFilter::GetFilterKind(int Column) const {
  const U32 Flags = headerData(Column, Qt::Horizontal, ROLE_COLUMN_FLAGS).toUInt();
  return Flags & COLUMN_TEXT_FILTER ? COLUMN_TEXT : headerData(Column, Qt::Horizontal, ROLE_COLUMN_KIND).toUInt();
}

QString CSortFilter::GetFilter(int Column) const {
  const auto it = m_Filters.find(Column);
  return it == m_Filters.end() ? QString(NO_FILTER) : it->second.Info().sText;
}

TEXT_MATCH CSortFilter::GetMatch(int Column, const QString& sText) const {
  const auto it = m_Filters.find(Column);
  return it == m_Filters.end() ? TEXT_MATCH() : it->second.Match(sText);
}

bool CSortFilter::AcceptsItem(const CColumnFilter& Filter, const QModelIndex& Item) const {
  const QVariant Value = Filter.IsText() ? QVariant() : Item.data(ROLE_SORT_VALUE);
  bool bAccepted = false;
  if (Filter.IsText()) {
    bAccepted = Filter.AcceptsText(Item.data().toString());
  } else if (!Value.isValid()) {
    bAccepted = Filter.AcceptsNumberText(Item.data().toString());
  } else {
    bAccepted = Filter.IsFloat() ? Filter.AcceptsFloat(Value.toDouble()) : Filter.AcceptsInteger(Value.toLongLong());
  }
  return bAccepted || Item.data(ROLE_NO_FILTER).toBool();
}

bool CSortFilter::AcceptsRow(int SourceRow, const QModelIndex& SourceParent) const {
  if (SourceParent.isValid()) return true;
  return std::ranges::all_of(m_Filters, [&](const auto& Filter) {
    return AcceptsItem(Filter.second, sourceModel()->index(SourceRow, Filter.first, SourceParent));
  });
}

std::vector<int> CSortFilter::AcceptedRows(const QModelIndex& SourceParent) const {
  std::vector<int> Rows(static_cast<size_t>(sourceModel()->rowCount(SourceParent)));
  std::iota(Rows.begin(), Rows.end(), 0);
  if (!m_Filters.empty() && !SourceParent.isValid()) {
    std::erase_if(Rows, [&](int Row) { return !AcceptsRow(Row, SourceParent); });
  }
  return Rows;
}

// ---- Order

void CSortFilter::sort(int Column, Qt::SortOrder Order) {
  if (Column == m_SortColumn && Order == m_SortOrder) return;
  m_SortColumn = Column;
  m_SortOrder = Order;
  Rebuild();
}

void CSortFilter::SortRows(std::vector<int>& Rows, const QModelIndex& SourceParent) const {
  const QAbstractItemModel& Model = *sourceModel();
  if (m_SortColumn < 0 || m_SortColumn >= Model.columnCount(SourceParent) || Rows.size() < 2) return;
  std::vector<int> Order(Rows.size());
  std::iota(Order.begin(), Order.end(), 0);
  const auto* const pTable = qobject_cast<const CTableModel*>(&Model);
  const int Fallback = pTable ? pTable->GetFallbackColumn() : 0;
  CSortKeys Keys(KindOf(Model, m_SortColumn),
                 [&](size_t Pos) { return Model.index(Rows[Pos], Fallback, SourceParent).data().toString(); });
  Keys.Reserve(Rows.size());
  for (const int Row : Rows) {
    const QModelIndex Item = Model.index(Row, m_SortColumn, SourceParent);
    SORT_CELL Cell;
    const QVariant HasValue = Item.data(ROLE_HAS_VALUE);
    Cell.bHasValue = !HasValue.isValid() || HasValue.toBool();
    if (!Keys.IsText()) Cell.Value = Item.data(ROLE_SORT_VALUE);
    if (Cell.Value.typeId() == QMetaType::Double) Cell.Second = Item.data(ROLE_SECOND_SORT_VALUE);
    if (!Cell.Value.isValid()) Cell.sText = Item.data().toString();
    Keys.Add(Cell);
  }
  Keys.Sort(Order, m_SortOrder == Qt::DescendingOrder);
  for (int& Pos : Order) Pos = Rows[static_cast<size_t>(Pos)];
  Rows = std::move(Order);
}

void CSortFilter::Fill(CRowMapping& Mapping) const {
  const QModelIndex SourceParent = Mapping.SourceParent();
  std::vector<int> Rows = AcceptedRows(SourceParent);
  SortRows(Rows, SourceParent);
  Mapping.Set(std::move(Rows), sourceModel()->rowCount(SourceParent));
}

// ---- Mapping

CRowMapping* CSortFilter::FindMapping(const QModelIndex& SourceParent) const {
  if (!SourceParent.isValid()) return m_pTop;
  return m_ByParent.isEmpty() ? nullptr : m_ByParent.value(QPersistentModelIndex(SourceParent.siblingAtColumn(0)));
}

CRowMapping* CSortFilter::MappingOf(const QModelIndex& SourceParent) const {
  if (CRowMapping* const pKnown = FindMapping(SourceParent)) return pKnown;
  const QPersistentModelIndex Parent(SourceParent.siblingAtColumn(0));
  CRowMapping* const pMapping = m_Mappings.emplace_back(std::make_unique<CRowMapping>(Parent)).get();
  if (Parent.isValid()) {
    m_ByParent.insert(Parent, pMapping);
  } else {
    m_pTop = pMapping;
  }
  Fill(*pMapping);
  return pMapping;
}

QModelIndex CSortFilter::mapToSource(const QModelIndex& Index) const {
  if (!Index.isValid() || sourceModel() == nullptr) return {};
  const auto* const pMapping = static_cast<const CRowMapping*>(Index.internalPointer());
  const int SourceRow = pMapping->SourceOf(Index.row());
  return SourceRow < 0 ? QModelIndex() : sourceModel()->index(SourceRow, Index.column(), pMapping->SourceParent());
}

QModelIndex CSortFilter::mapFromSource(const QModelIndex& Source) const {
  if (!Source.isValid()) return {};
  const QModelIndex SourceParent = Source.parent();
  if (SourceParent.isValid() && !mapFromSource(SourceParent).isValid()) return {};
  CRowMapping* const pMapping = MappingOf(SourceParent);
  const int Row = pMapping->RowOf(Source.row());
  return Row < 0 ? QModelIndex() : createIndex(Row, Source.column(), pMapping);
}

QModelIndex CSortFilter::index(int Row, int Column, const QModelIndex& Parent) const {
  if (sourceModel() == nullptr || Row < 0 || Column < 0 || (Parent.isValid() && Parent.column() > 0)) return {};
  const QModelIndex SourceParent = mapToSource(Parent);
  if (Parent.isValid() && !sourceModel()->hasChildren(SourceParent)) return {};
  CRowMapping* const pMapping = MappingOf(SourceParent);
  if (Row >= pMapping->NumRows() || Column >= sourceModel()->columnCount(SourceParent)) return {};
  return createIndex(Row, Column, pMapping);
}

QModelIndex CSortFilter::parent(const QModelIndex& Index) const {
  if (!Index.isValid()) return {};
  return mapFromSource(static_cast<const CRowMapping*>(Index.internalPointer())->SourceParent());
}

QModelIndex CSortFilter::sibling(int Row, int Column, const QModelIndex& Index) const {
  if (!Index.isValid()) return {};
  auto* const pMapping = static_cast<CRowMapping*>(Index.internalPointer());
  const bool bThere = Row >= 0 && Row < pMapping->NumRows() && Column >= 0 &&
                      Column < sourceModel()->columnCount(pMapping->SourceParent());
  return bThere ? createIndex(Row, Column, pMapping) : QModelIndex();
}

int CSortFilter::rowCount(const QModelIndex& Parent) const {
  if (sourceModel() == nullptr || Parent.column() > 0) return 0;
  const QModelIndex SourceParent = mapToSource(Parent);
  if (Parent.isValid() && !sourceModel()->hasChildren(SourceParent)) return 0;
  return MappingOf(SourceParent)->NumRows();
}

int CSortFilter::columnCount(const QModelIndex& Parent) const {
  return sourceModel() ? sourceModel()->columnCount(mapToSource(Parent)) : 0;
}

bool CSortFilter::hasChildren(const QModelIndex& Parent) const {
  if (sourceModel() == nullptr || Parent.column() > 0) return false;
  return Parent.isValid() ? sourceModel()->hasChildren(mapToSource(Parent)) : rowCount() > 0;
}

QVariant CSortFilter::headerData(int Section, Qt::Orientation Orientation, int Role) const {
  // Columns keep their numbers; without rows there is no index to ask by.
  if (sourceModel() == nullptr || Orientation != Qt::Horizontal) return {};
  return sourceModel()->headerData(Section, Orientation, Role);
}

// ---- Changes

void CSortFilter::BeginLayout() {
  Q_EMIT layoutAboutToBeChanged();
  m_OldIndexes = persistentIndexList();
  m_SourceIndexes.clear();
  m_SourceIndexes.reserve(m_OldIndexes.size());
  for (const QModelIndex& Index : std::as_const(m_OldIndexes)) m_SourceIndexes << mapToSource(Index);
}

void CSortFilter::EndLayout() {
  DropDeadMappings();
  for (const auto& pMapping : m_Mappings) Fill(*pMapping);
  QModelIndexList NewIndexes;
  NewIndexes.reserve(m_SourceIndexes.size());
  for (const QPersistentModelIndex& Source : std::as_const(m_SourceIndexes)) NewIndexes << mapFromSource(Source);
  changePersistentIndexList(m_OldIndexes, NewIndexes);
  m_OldIndexes.clear();
  m_SourceIndexes.clear();
  Q_EMIT layoutChanged();
}

void CSortFilter::Rebuild() {
  m_RebuildTimer.stop();
  if (sourceModel() == nullptr || m_pTop == nullptr) return;
  BeginLayout();
  EndLayout();
}

void CSortFilter::RebuildSoon() {
  if (m_SortColumn >= 0 || !m_Filters.empty()) m_RebuildTimer.start();
}

// Of rows that are gone with what was below them.
void CSortFilter::DropDeadMappings() {
  std::erase_if(m_Mappings, [this](const auto& pMapping) {
    if (pMapping.get() == m_pTop || pMapping->SourceParent().isValid()) return false;
    m_ByParent.removeIf([&](const auto& Entry) { return Entry.value() == pMapping.get(); });
    return true;
  });
}

void CSortFilter::OnSourceReset() {
  m_RebuildTimer.stop();
  m_ByParent.clear();
  m_Mappings.clear();
  m_pTop = nullptr;
}

void CSortFilter::OnDataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight, const QList<int>& Roles) {
  CRowMapping* const pMapping = TopLeft.isValid() ? FindMapping(TopLeft.parent()) : nullptr;
  if (pMapping == nullptr || (TopLeft.parent().isValid() && !mapFromSource(TopLeft.parent()).isValid())) return;
  int First = pMapping->NumRows(), Last = -1;
  for (int Source = TopLeft.row(); Source <= BottomRight.row(); ++Source) {
    const int Row = pMapping->RowOf(Source);
    if (Row < 0) continue;
    First = std::min(First, Row);
    Last = std::max(Last, Row);
  }
  if (Last >= 0) {
    Q_EMIT dataChanged(createIndex(First, TopLeft.column(), pMapping),
                       createIndex(Last, BottomRight.column(), pMapping), Roles);
  }
  const auto IsChanged = [&](int Column) { return Column >= TopLeft.column() && Column <= BottomRight.column(); };
  const bool bFiltered = std::ranges::any_of(m_Filters, [&](const auto& Filter) { return IsChanged(Filter.first); });
  if (bFiltered || IsChanged(m_SortColumn)) RebuildSoon();
}

// The rows that are there now have to be known before others come.
void CSortFilter::OnRowsAboutToBeInserted(const QModelIndex& Parent) {
  if (!Parent.isValid() ? m_pTop != nullptr : mapFromSource(Parent).isValid()) MappingOf(Parent);
}

// New rows come where the model has them, or in a sorted table at the end, and go to their places a moment later.
void CSortFilter::OnRowsInserted(const QModelIndex& Parent, int First, int Last) {
  CRowMapping* const pMapping = FindMapping(Parent);
  if (pMapping == nullptr) return;
  const QModelIndex ProxyParent = mapFromSource(Parent);
  const bool bShown = !Parent.isValid() || ProxyParent.isValid();
  pMapping->InsertSources(First, Last);
  std::vector<int> Rows;
  for (int Row = First; Row <= Last; ++Row) {
    if (AcceptsRow(Row, Parent)) Rows.push_back(Row);
  }
  if (Rows.empty()) return;
  int Pos = pMapping->NumRows();
  if (m_SortColumn < 0) {
    Pos = 0;
    while (Pos < pMapping->NumRows() && pMapping->SourceOf(Pos) < First) ++Pos;
  }
  if (bShown) beginInsertRows(ProxyParent, Pos, Pos + static_cast<int>(Rows.size()) - 1);
  pMapping->Show(Pos, Rows);
  if (bShown) endInsertRows();
  if (m_SortColumn >= 0) RebuildSoon();
}

void CSortFilter::OnRowsAboutToBeRemoved(const QModelIndex& Parent, int First, int Last) {
  CRowMapping* const pMapping = FindMapping(Parent);
  if (pMapping == nullptr) return;
  const QModelIndex ProxyParent = mapFromSource(Parent);
  const bool bShown = !Parent.isValid() || ProxyParent.isValid();
  const auto IsRemoved = [&](int Row) { return pMapping->SourceOf(Row) >= First && pMapping->SourceOf(Row) <= Last; };
  for (int Row = pMapping->NumRows() - 1; Row >= 0; --Row) {
    if (!IsRemoved(Row)) continue;
    const int End = Row;
    while (Row > 0 && IsRemoved(Row - 1)) --Row;
    if (bShown) beginRemoveRows(ProxyParent, Row, End);
    pMapping->Hide(Row, End);
    if (bShown) endRemoveRows();
  }
}

void CSortFilter::OnRowsRemoved(const QModelIndex& Parent, int First, int Last) {
  if (CRowMapping* const pMapping = FindMapping(Parent)) pMapping->RemoveSources(First, Last);
  DropDeadMappings();
}

void CSortFilter::setSourceModel(QAbstractItemModel* pModel) {
  beginResetModel();
  for (const QMetaObject::Connection& Connection : std::as_const(m_Connections)) disconnect(Connection);
  m_Connections.clear();
  OnSourceReset();
  m_Filters.clear();
  QAbstractProxyModel::setSourceModel(pModel);
  if (pModel) ConnectSource();
  endResetModel();
}

void CSortFilter::ConnectSource() {
  using MODEL = QAbstractItemModel;
  const MODEL* const pModel = sourceModel();
  const auto BeginReset = [this] { beginResetModel(); };
  const auto EndReset = [this] {
    OnSourceReset();
    endResetModel();
  };
  m_Connections = {
      connect(pModel, &MODEL::modelAboutToBeReset, this, BeginReset),
      connect(pModel, &MODEL::modelReset, this, EndReset),
      connect(pModel, &MODEL::columnsAboutToBeInserted, this, BeginReset),
      connect(pModel, &MODEL::columnsInserted, this, EndReset),
      connect(pModel, &MODEL::columnsAboutToBeRemoved, this, BeginReset),
      connect(pModel, &MODEL::columnsRemoved, this, EndReset),
      connect(pModel, &MODEL::columnsAboutToBeMoved, this, BeginReset),
      connect(pModel, &MODEL::columnsMoved, this, EndReset),
      connect(pModel, &MODEL::layoutAboutToBeChanged, this, &CSortFilter::BeginLayout),
      connect(pModel, &MODEL::layoutChanged, this, &CSortFilter::EndLayout),
      connect(pModel, &MODEL::rowsAboutToBeMoved, this, &CSortFilter::BeginLayout),
      connect(pModel, &MODEL::rowsMoved, this, &CSortFilter::EndLayout),
      connect(pModel, &MODEL::dataChanged, this, &CSortFilter::OnDataChanged),
      connect(pModel, &MODEL::headerDataChanged, this, &MODEL::headerDataChanged),
      connect(pModel, &MODEL::rowsAboutToBeInserted, this, &CSortFilter::OnRowsAboutToBeInserted),
      connect(pModel, &MODEL::rowsInserted, this, &CSortFilter::OnRowsInserted),
      connect(pModel, &MODEL::rowsAboutToBeRemoved, this, &CSortFilter::OnRowsAboutToBeRemoved),
      connect(pModel, &MODEL::rowsRemoved, this, &CSortFilter::OnRowsRemoved),
  };
}
