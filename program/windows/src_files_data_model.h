#pragma once

#include <vector>

#include "base/addr_range.h"
#include "ui/table/table_model.h"

// The source files that the program names, with the files on this host that they are. Files are looked for when they
// are first shown.
class CSourceFilesDataModel : public CTableModel {
  Q_OBJECT

public:
  enum COLUMNS { COLUMN_FILE, COLUMN_STATUS, COLUMN_SIZE, COLUMN_INSTS, COLUMN_PATH };

  CSourceFilesDataModel();

  // Takes the files of the program that is loaded now.
  void Reload();
  void Clear();
  // Files may be found elsewhere now.
  void InvalidateFilePaths();

  // --- One file
  struct FILE_ITEM {
    U32 FileNo = 0;  // identifier in the program database
    QString sPath;   // as the program names it
    QString sName;
    QAddrRanges Code;  // of its own lines
    U32 NumBytes = 0;
    // Known once they were asked for.
    QString sFound;  // on this host; of a missing file where it was looked for
    bool bExists = false;
    bool bResolved = false;
    I64 NumInsts = -1;
  };
  // Null beside the rows.
  const FILE_ITEM* ItemOf(const QModelIndex& Index) const;

  int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
  QVariant GetItemData(const QModelIndex& Index, int Role) const override;
  // Another path for the file becomes a file alias.
  bool SetItemData(const QModelIndex& Index, const QVariant& Value) override;

private:
  FILE_ITEM& Resolved(int Row) const;
  U32 NumInstsOf(int Row) const;
  QVariant TextOf(int Row, int Column) const;
  QVariant SortValueOf(int Row, int Column) const;

  mutable std::vector<FILE_ITEM> m_Items;
};
