#pragma once

#include <QAbstractTableModel>

#include "shell/windows/command_completion.h"

// The rows of the completion list: what can stand there, and what it is.
class CCompletionModel : public QAbstractTableModel {
  Q_OBJECT

public:
  enum COLUMN : int { COLUMN_TEXT, COLUMN_NOTE, NUM_COLUMNS };

  using QAbstractTableModel::QAbstractTableModel;
  void SetItems(const QList<COMPLETION_ITEM>& Items);
  const COMPLETION_ITEM& ItemAt(int Row) const { return m_Items.at(Row); }

  int rowCount(const QModelIndex& Parent = {}) const override;
  int columnCount(const QModelIndex& Parent = {}) const override;
  QVariant data(const QModelIndex& Index, int Role) const override;

private:
  QList<COMPLETION_ITEM> m_Items;
};
