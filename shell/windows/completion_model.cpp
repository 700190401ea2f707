#include "shell/windows/completion_model.h"

#include <QApplication>
#include <QPalette>

void CCompletionModel::SetItems(const QList<COMPLETION_ITEM>& Items) {
  beginResetModel();
  m_Items = Items;
  endResetModel();
}

int CCompletionModel::rowCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : static_cast<int>(m_Items.size());
}

int CCompletionModel::columnCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : NUM_COLUMNS;
}

QVariant CCompletionModel::data(const QModelIndex& Index, int Role) const {
  if (!Index.isValid() || Index.row() >= m_Items.size()) return {};
  const COMPLETION_ITEM& Item = m_Items.at(Index.row());
  switch (Role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return Index.column() == COLUMN_TEXT ? Item.sText : Item.sNote;
    case Qt::ForegroundRole:
      if (Index.column() == COLUMN_NOTE) return QApplication::palette().brush(QPalette::PlaceholderText);
      return {};
    default:
      return {};
  }
}
