#pragma once

#include <memory>
#include <vector>

#include "base/addr_range.h"
#include "base/elf_sym.h"
#include "base/src_loc.h"
#include "ui/table/table_model.h"

// The functions of the program, and below each the places where it is inlined. Cells are worked out when they are first
// asked for. Rows hold handles of the program database and don't outlive its program.
class CFunctionsDataModel : public CTableModel {
  Q_OBJECT

public:
  enum COLUMNS { COLUMN_NAME, COLUMN_ADDRESS, COLUMN_SIZE, COLUMN_INSTS, COLUMN_CLASS, COLUMN_SOURCE };

  CFunctionsDataModel();
  ~CFunctionsDataModel() override;

  // Takes the functions of the program that is loaded now.
  void Reload();
  void Clear();
  // Class names stand in front of the names.
  void SetClassNamesShown(bool bShown);
  // The addresses of all breakpoints.
  void SetBreakpoints(QAddrList Addrs);

  // --- One function. Its ranges are empty for one without code of its own.
  ELF_SYM_HANDLE FuncOf(const QModelIndex& Index) const;
  QAddrRanges RangesOf(const QModelIndex& Index) const;
  CSrcLoc LocOf(const QModelIndex& Index) const;
  bool HasBreakpoint(const QModelIndex& Index) const;
  // What a command finds the function by: its name, or where another one has that name its place.
  QString CommandTextOf(const QModelIndex& Index) const;

  bool IsFlat() const override { return false; }
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& Index) const override;
  QVariant GetItemData(const QModelIndex& Index, int Role) const override;

private:
  struct ROW;

  ROW* RowOf(const QModelIndex& Index) const;
  void Fill(ROW& Row) const;
  static U32 NumInstsOf(ROW& Row);
  const QString& NameOf(ROW& Row) const;
  void FindChildren(ROW& Row) const;
  bool HasBreakpoint(const ROW& Row) const;
  QVariant TextOf(ROW& Row, int Column) const;
  QVariant SortValueOf(ROW& Row, int Column) const;

  std::vector<std::unique_ptr<ROW>> m_Rows;
  QAddrList m_Breakpoints;  // sorted
  bool m_bClassNames = false;
};
