#pragma once

#include <QAbstractProxyModel>
#include <QHash>
#include <QTimer>
#include <map>
#include <memory>
#include <vector>

#include "ui/table/column_filter.h"
#include "ui/table/row_mapping.h"

// Filters and sorts the rows of a model. Filters apply to top rows; below one that is shown all rows are. A new filter
// or order rebuilds the mapping of rows in one step, told as a change of layout, so that selection, current item and
// expansion stay with their rows; rows that vanish lose them. Main thread.
class CSortFilter : public QAbstractProxyModel {
  Q_OBJECT

public:
  explicit CSortFilter(QObject* pParent = nullptr);
  ~CSortFilter() override;
  void setSourceModel(QAbstractItemModel* pModel) override;

  // --- Filters, by column of the model. An empty text and "*" remove one.
  void SetFilter(int Column, const QString& sText);
  void ClearFilters();
  // "*" where there is none.
  QString GetFilter(int Column) const;
  bool HasFilters() const { return !m_Filters.empty(); }
  // How the column's filters are read: COLUMN_KINDS.
  U32 GetFilterKind(int Column) const;
  // The part of an item's text that a filter names, for marking.
  TEXT_MATCH GetMatch(int Column, const QString& sText) const;

  // --- Order. A column of -1 leaves the rows as the model has them.
  void sort(int Column, Qt::SortOrder Order = Qt::AscendingOrder) override;
  int GetSortColumn() const { return m_SortColumn; }
  Qt::SortOrder GetSortOrder() const { return m_SortOrder; }

  // --- QAbstractProxyModel
  QModelIndex mapToSource(const QModelIndex& Index) const override;
  QModelIndex mapFromSource(const QModelIndex& Source) const override;
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& Index) const override;
  QModelIndex sibling(int Row, int Column, const QModelIndex& Index) const override;
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& Parent = QModelIndex()) const override;
  bool hasChildren(const QModelIndex& Parent = QModelIndex()) const override;
  QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;

Q_SIGNALS:
  // A filter was set or removed; the rows have followed.
  void FiltersChanged();

private:
  CRowMapping* FindMapping(const QModelIndex& SourceParent) const;
  CRowMapping* MappingOf(const QModelIndex& SourceParent) const;
  std::vector<int> AcceptedRows(const QModelIndex& SourceParent) const;
  bool AcceptsRow(int SourceRow, const QModelIndex& SourceParent) const;
  bool AcceptsItem(const CColumnFilter& Filter, const QModelIndex& Item) const;
  void SortRows(std::vector<int>& Rows, const QModelIndex& SourceParent) const;
  void Fill(CRowMapping& Mapping) const;
  void DropDeadMappings();
  void BeginLayout();
  void EndLayout();
  void Rebuild();
  void RebuildSoon();

  void ConnectSource();
  void OnSourceReset();
  void OnDataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight, const QList<int>& Roles);
  void OnRowsAboutToBeInserted(const QModelIndex& Parent);
  void OnRowsInserted(const QModelIndex& Parent, int First, int Last);
  void OnRowsAboutToBeRemoved(const QModelIndex& Parent, int First, int Last);
  void OnRowsRemoved(const QModelIndex& Parent, int First, int Last);

  std::map<int, CColumnFilter> m_Filters;
  int m_SortColumn = -1;
  Qt::SortOrder m_SortOrder = Qt::AscendingOrder;
  // Made when rows are first asked for. Top rows have an invalid parent.
  mutable std::vector<std::unique_ptr<CRowMapping>> m_Mappings;
  mutable QHash<QPersistentModelIndex, CRowMapping*> m_ByParent;
  mutable CRowMapping* m_pTop = nullptr;
  // Between the two ends of a change of layout.
  QModelIndexList m_OldIndexes;
  QList<QPersistentModelIndex> m_SourceIndexes;
  QTimer m_RebuildTimer;
  QList<QMetaObject::Connection> m_Connections;
};
