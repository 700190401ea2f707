#include "ui/table/table_model.h"

#include "base/stable_hash.h"
#include "ui/window_types.h"

CTableModel::CTableModel(const QString& sName, QList<TABLE_COLUMN> Columns, QObject* pParent)
    : QAbstractItemModel(pParent), m_Columns(std::move(Columns)) {
  setObjectName(sName);
}

void CTableModel::SetColumns(QList<TABLE_COLUMN> Columns) {
  beginResetModel();
  m_Columns = std::move(Columns);
  endResetModel();
}

bool CTableModel::IsAddRow(const QModelIndex& Index) const {
  return HasAddRow() && Index.isValid() && !Index.parent().isValid() && Index.row() == rowCount() - 1;
}

U32 CTableModel::GetItemId(const QModelIndex& Index) const {
  const QModelIndex First = Index.siblingAtColumn(0);
  const U32 Id = data(First, ROLE_ITEM_ID).toUInt();
  return Id != 0 ? Id : StableHash32(data(First).toString());
}

void CTableModel::TellChanged(const QModelIndex& Index) {
  if (Index.isValid()) {
    Q_EMIT dataChanged(Index.siblingAtColumn(0), Index.siblingAtColumn(columnCount(Index.parent()) - 1));
  } else if (const int NumRows = rowCount(); NumRows > 0 && columnCount() > 0) {
    Q_EMIT dataChanged(index(0, 0), index(NumRows - 1, columnCount() - 1));
  }
}

QModelIndex CTableModel::index(int Row, int Column, const QModelIndex& Parent) const {
  if (Parent.isValid() || Row < 0 || Column < 0 || Row >= rowCount() || Column >= columnCount()) return {};
  return createIndex(Row, Column, static_cast<quintptr>(Row));
}

QModelIndex CTableModel::parent(const QModelIndex&) const {
  return {};
}

bool CTableModel::hasChildren(const QModelIndex& Parent) const {
  if (Parent.isValid() && (IsFlat() || Parent.column() > 0)) return false;
  return rowCount(Parent) > 0;
}

int CTableModel::columnCount(const QModelIndex& Parent) const {
  return Parent.isValid() && (IsFlat() || Parent.column() > 0) ? 0 : static_cast<int>(m_Columns.size());
}

QVariant CTableModel::data(const QModelIndex& Index, int Role) const {
  if (!Index.isValid() || Index.column() >= m_Columns.size()) return {};
  const QVariant Answer = GetItemData(Index, Role);
  if (Answer.isValid()) return Answer;
  switch (Role) {
    case Qt::TextAlignmentRole:
      return QVariant(m_Columns[Index.column()].Alignment | Qt::AlignVCenter);
    case Qt::EditRole:
      return GetItemData(Index, Qt::DisplayRole);
    case ROLE_HAS_VALUE:
      return !IsAddRow(Index);
    case ROLE_NO_FILTER:
      return IsAddRow(Index) ? QVariant(true) : QVariant();
    default:
      return {};
  }
}

bool CTableModel::setData(const QModelIndex& Index, const QVariant& Value, int Role) {
  return Role == Qt::EditRole && (flags(Index) & Qt::ItemIsEditable) && SetItemData(Index, Value);
}

QVariant CTableModel::headerData(int Section, Qt::Orientation Orientation, int Role) const {
  if (Orientation != Qt::Horizontal || Section < 0 || Section >= m_Columns.size()) return {};
  const TABLE_COLUMN& Column = m_Columns[Section];
  switch (Role) {
    case Qt::DisplayRole:
      return Column.sTitle;
    case Qt::TextAlignmentRole:
      return QVariant(Column.Alignment | Qt::AlignVCenter);
    case ROLE_COLUMN_KIND:
      return Column.Kind;
    case ROLE_COLUMN_FLAGS:
      return Column.Flags;
    case ROLE_COLUMN_WIDTH:
      return Column.Width;
    default:
      return {};
  }
}

bool CTableModel::FlagOf(const QModelIndex& Index, int Role, U32 WindowFlag) const {
  const QVariant Answer = GetItemData(Index, Role);
  if (Answer.isValid()) return Answer.toBool();
  return m_pOwner == nullptr || m_pOwner->HasWindowFlag(WindowFlag);
}

Qt::ItemFlags CTableModel::flags(const QModelIndex& Index) const {
  if (!Index.isValid()) return Qt::NoItemFlags;
  const bool bActive = m_pOwner == nullptr || m_pOwner->AreItemsActive() ||
                       (m_pOwner->HasWindowFlag(WF_LIVE_REFRESH) && m_pOwner->GetItemRefreshRate(Index) > 0);
  Qt::ItemFlags Flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
  const bool bColumn = Index.column() < m_Columns.size() && (m_Columns[Index.column()].Flags & COLUMN_EDITABLE);
  if ((bActive && bColumn && FlagOf(Index, ROLE_EDITABLE, WF_ITEMS_EDITABLE)) || IsAddRow(Index)) {
    Flags |= Qt::ItemIsEditable;
  }
  if (FlagOf(Index, ROLE_DROPPABLE, WF_ITEMS_DROPPABLE)) Flags |= Qt::ItemIsDropEnabled;
  if (!bActive) Flags |= ITEM_INACTIVE;
  return Flags;
}
