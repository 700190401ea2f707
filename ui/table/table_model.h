#pragma once

#include <QAbstractItemModel>
#include <QList>

#include "base/types.h"
#include "ui/table/table_roles.h"

// A column as its model declares it.
struct TABLE_COLUMN {
  QString sTitle;
  U32 Kind = COLUMN_TEXT;  // COLUMN_KINDS
  int Width = 12;          // at first, in digits
  U32 Flags = 0;           // COLUMN_FLAGS
  Qt::Alignment Alignment = Qt::AlignLeft;
};

// What a model asks of the window that shows it. Indexes are the model's own.
class ITableOwner {
public:
  virtual ~ITableOwner() = default;
  // The window's data can be changed now.
  virtual bool AreItemsActive() const = 0;
  virtual bool HasWindowFlag(U32 Flag) const = 0;
  // 0 or less: the item is not refreshed while the target runs.
  virtual int GetItemRefreshRate(const QModelIndex& Index) const = 0;
  // DISPLAY_FORMAT_... of an item's value.
  virtual int GetItemDisplayFormat(const QModelIndex& Index) const = 0;
};

// Base of the models of table windows: columns as data, and what rows have in common. As it stands, rows have no
// children; a model of a tree gives index and parent, too, and says so by IsFlat. Main thread.
class CTableModel : public QAbstractItemModel {
  Q_OBJECT

public:
  // An item of a window that shows a target which is running now.
  static constexpr Qt::ItemFlags ITEM_INACTIVE = Qt::ItemFlags(1024 | 8);

  // sName becomes the object name.
  CTableModel(const QString& sName, QList<TABLE_COLUMN> Columns, QObject* pParent = nullptr);
  // Not owned. Without an owner every item is active.
  void SetOwner(const ITableOwner* pOwner) { m_pOwner = pOwner; }

  // --- Columns
  const QList<TABLE_COLUMN>& Columns() const { return m_Columns; }
  void SetColumns(QList<TABLE_COLUMN> Columns);

  // --- What a subclass says; rowCount, too
  virtual bool IsFlat() const { return true; }
  // Qt::DisplayRole and others; nothing where the item has no answer.
  virtual QVariant GetItemData(const QModelIndex& Index, int Role) const = 0;
  // The user's text for an editable item; true when it was taken.
  virtual bool SetItemData(const QModelIndex& /*Index*/, const QVariant& /*Value*/) { return false; }
  // The last top row is empty, and typing there adds an item.
  virtual bool HasAddRow() const { return false; }
  // Items have values that can be shown in several formats.
  virtual bool HasDisplayFormats() const { return false; }
  // The column whose text decides between rows that are equal in the sort column.
  virtual int GetFallbackColumn() const { return 0; }
  // The column whose values change with the target.
  virtual int GetValueColumn() const { return 1; }

  bool IsAddRow(const QModelIndex& Index) const;
  // The key of a row across rebuilds.
  U32 GetItemId(const QModelIndex& Index) const;
  // Repaints rows: of one item, or all top rows for an invalid index.
  void TellChanged(const QModelIndex& Index = QModelIndex());

  // --- QAbstractItemModel
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& Index) const override;
  bool hasChildren(const QModelIndex& Parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& Parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& Index, int Role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& Index, const QVariant& Value, int Role = Qt::EditRole) override;
  QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& Index) const override;

protected:
  const ITableOwner* Owner() const { return m_pOwner; }

private:
  bool FlagOf(const QModelIndex& Index, int Role, U32 WindowFlag) const;

  QList<TABLE_COLUMN> m_Columns;
  const ITableOwner* m_pOwner = nullptr;
};
