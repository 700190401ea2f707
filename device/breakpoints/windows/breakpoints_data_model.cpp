#include "device/breakpoints/windows/breakpoints_data_model.h"

#include <algorithm>

#include "base/stable_hash.h"
#include "device/breakpoints/windows/breakpoint_cells.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"

namespace {

QList<TABLE_COLUMN> MakeColumns() {
  QList<TABLE_COLUMN> Columns;
  for (int i = 0; i < NUM_BREAKPOINT_COLUMNS; ++i) {
    const BREAKPOINT_COLUMN_INFO& Info = BreakpointColumnInfo(i);
    TABLE_COLUMN Column;
    Column.sTitle = QLatin1String(Info.sTitle);
    Column.Width = Info.Characters;
    Columns << Column;
  }
  Columns[BREAKPOINT_STATE].Flags = COLUMN_FIXED;
  Columns[BREAKPOINT_SKIP].Kind = COLUMN_INTEGER;
  Columns[BREAKPOINT_SKIP].Alignment = Qt::AlignRight;
  return Columns;
}

bool IsSameRow(const CBreakpointRec& A, const CBreakpointRec& B) {
  return A.bIsSource == B.bIsSource && (A.bIsSource ? A.Loc == B.Loc : A.Addr == B.Addr);
}

bool HasSameChildren(const CBreakpointRec& A, const CBreakpointRec& B) {
  return std::equal(A.Children.cbegin(), A.Children.cend(), B.Children.cbegin(), B.Children.cend(), IsSameRow);
}

}  // namespace

CBreakpointsDataModel::CBreakpointsDataModel(QObject* pParent)
    : CTableModel(QStringLiteral("BreakpointsDataModel"), MakeColumns(), pParent) {}

void CBreakpointsDataModel::SetRows(const QList<CBreakpointRec>& Rows) {
  RemoveMissing(Rows);
  if (!InsertNew(Rows)) return Reset(Rows);
  for (int i = 0; i < m_Rows.size(); ++i) Update(i, Rows[i]);
}

void CBreakpointsDataModel::RemoveMissing(const QList<CBreakpointRec>& Rows) {
  for (int i = static_cast<int>(m_Rows.size()); i-- > 0;) {
    const auto IsThis = [&](const CBreakpointRec& Record) { return IsSameRow(Record, m_Rows[i].Record); };
    if (std::any_of(Rows.cbegin(), Rows.cend(), IsThis)) continue;
    beginRemoveRows({}, i, i);
    m_Rows.removeAt(i);
    endRemoveRows();
  }
}

// False when rows that were there before have changed places.
bool CBreakpointsDataModel::InsertNew(const QList<CBreakpointRec>& Rows) {
  for (int i = 0; i < Rows.size(); ++i) {
    if (i < m_Rows.size() && IsSameRow(m_Rows[i].Record, Rows[i])) continue;
    const auto IsThis = [&](const ROW& Row) { return IsSameRow(Row.Record, Rows[i]); };
    if (std::any_of(m_Rows.cbegin(), m_Rows.cend(), IsThis)) return false;
    beginInsertRows({}, i, i);
    m_Rows.insert(i, ROW{Rows[i], ++m_LastId});
    endInsertRows();
  }
  return m_Rows.size() == Rows.size();
}

void CBreakpointsDataModel::Update(int Row, const CBreakpointRec& Record) {
  CBreakpointRec& Known = m_Rows[Row].Record;
  const QModelIndex Parent = index(Row, 0);
  if (!HasSameChildren(Known, Record)) {
    if (!Known.Children.isEmpty()) {
      beginRemoveRows(Parent, 0, static_cast<int>(Known.Children.size()) - 1);
      Known.Children.clear();
      endRemoveRows();
    }
    if (!Record.Children.isEmpty()) {
      beginInsertRows(Parent, 0, static_cast<int>(Record.Children.size()) - 1);
      Known = Record;
      endInsertRows();
    }
  }
  Known = Record;
  Q_EMIT dataChanged(Parent, index(Row, NUM_BREAKPOINT_COLUMNS - 1));
  if (const int NumChildren = rowCount(Parent); NumChildren > 0) {
    Q_EMIT dataChanged(index(0, 0, Parent), index(NumChildren - 1, NUM_BREAKPOINT_COLUMNS - 1, Parent));
  }
}

void CBreakpointsDataModel::Reset(const QList<CBreakpointRec>& Rows) {
  beginResetModel();
  m_Rows.clear();
  for (const CBreakpointRec& Record : Rows) m_Rows << ROW{Record, ++m_LastId};
  endResetModel();
}

int CBreakpointsDataModel::FindId(quintptr Id) const {
  const auto It = std::find_if(m_Rows.cbegin(), m_Rows.cend(), [Id](const ROW& Row) { return Row.Id == Id; });
  return It == m_Rows.cend() ? -1 : static_cast<int>(It - m_Rows.cbegin());
}

const CBreakpointRec* CBreakpointsDataModel::GetRecord(const QModelIndex& Index) const {
  if (!Index.isValid()) return nullptr;
  if (Index.internalId() == 0) return Index.row() < m_Rows.size() ? &m_Rows[Index.row()].Record : nullptr;
  const int Row = FindId(Index.internalId());
  return Row >= 0 && Index.row() < m_Rows[Row].Record.Children.size() ? &m_Rows[Row].Record.Children[Index.row()]
                                                                      : nullptr;
}

int CBreakpointsDataModel::rowCount(const QModelIndex& Parent) const {
  if (!Parent.isValid()) return static_cast<int>(m_Rows.size());
  if (Parent.internalId() != 0 || Parent.column() > 0) return 0;
  return static_cast<int>(m_Rows[Parent.row()].Record.Children.size());
}

QModelIndex CBreakpointsDataModel::index(int Row, int Column, const QModelIndex& Parent) const {
  if (Row < 0 || Column < 0 || Row >= rowCount(Parent) || Column >= NUM_BREAKPOINT_COLUMNS) return {};
  return createIndex(Row, Column, Parent.isValid() ? m_Rows[Parent.row()].Id : quintptr{0});
}

QModelIndex CBreakpointsDataModel::parent(const QModelIndex& Index) const {
  const int Row = Index.isValid() && Index.internalId() != 0 ? FindId(Index.internalId()) : -1;
  return Row < 0 ? QModelIndex() : createIndex(Row, 0, quintptr{0});
}

int CBreakpointsDataModel::GetFallbackColumn() const {
  return BREAKPOINT_LOCATION_COLUMN;
}

QVariant CBreakpointsDataModel::GetItemData(const QModelIndex& Index, int Role) const {
  const CBreakpointRec* const pRecord = GetRecord(Index);
  if (pRecord == nullptr) return {};
  switch (Role) {
    case Qt::DisplayRole:
      return BreakpointText(*pRecord, Index.column());
    case Qt::DecorationRole:
      return Index.column() == BREAKPOINT_STATE ? QVariant(GetIcon(BreakpointIcon(*pRecord))) : QVariant();
    case Qt::ForegroundRole:
      return pRecord->State == BP_STATE_DISABLED || pRecord->State == BP_STATE_CLEARED
                 ? QVariant(GetTextColor(COLOR_TABLE_ITEM_INACTIVE))
                 : QVariant();
    case ROLE_SORT_VALUE:
      return Index.column() == BREAKPOINT_SKIP ? QVariant(static_cast<qlonglong>(pRecord->Props.SkipCount))
                                               : QVariant();
    case ROLE_HAS_VALUE:
      return Index.column() == BREAKPOINT_SKIP ? QVariant(pRecord->Props.SkipCount > 0) : QVariant();
    case ROLE_ITEM_ID:
      // Files in different folders may have the same name.
      return StableHash32(pRecord->sLocation + QLatin1String(pRecord->bIsDerived ? " derived " : " ") +
                          QString::number(pRecord->bIsSource ? pRecord->Loc.File : 0));
    default:
      return {};
  }
}
