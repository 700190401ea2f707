#pragma once

#include "device/breakpoints/breakpoint_rec.h"
#include "ui/table/table_model.h"

// The rows of the breakpoint window: breakpoints, below those on source lines their addresses. Takes the manager's rows
// as a whole and tells only what is different, so that selection and expansion stay.
class CBreakpointsDataModel : public CTableModel {
  Q_OBJECT

public:
  explicit CBreakpointsDataModel(QObject* pParent = nullptr);

  void SetRows(const QList<CBreakpointRec>& Rows);
  // Null for an invalid index. Holds until the next SetRows.
  const CBreakpointRec* GetRecord(const QModelIndex& Index) const;

  bool IsFlat() const override { return false; }
  QVariant GetItemData(const QModelIndex& Index, int Role) const override;
  int GetFallbackColumn() const override;
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& Index) const override;

private:
  struct ROW {
    CBreakpointRec Record;
    quintptr Id = 0;  // of the row for its children's indexes, never 0
  };
  void RemoveMissing(const QList<CBreakpointRec>& Rows);
  bool InsertNew(const QList<CBreakpointRec>& Rows);
  void Update(int Row, const CBreakpointRec& Record);
  void Reset(const QList<CBreakpointRec>& Rows);
  int FindId(quintptr Id) const;

  QList<ROW> m_Rows;
  quintptr m_LastId = 0;
};
