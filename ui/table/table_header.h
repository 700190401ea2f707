#pragma once

#include <QHeaderView>

#include "base/types.h"
#include "project/user_file.h"

// The header of a table: which columns are shown, where, how wide, and which one the rows are sorted by. Columns can be
// moved and hidden; the state goes to records of the user file and back.
class CTableHeader : public QHeaderView {
  Q_OBJECT

public:
  explicit CTableHeader(QWidget* pParent);

  // Widths and visibility as the model's columns have them at first.
  void ApplyDefaults();
  // A hidden column keeps its width; the last visible column stays. Fixed columns are never hidden.
  void SetSectionVisible(int LogicalIdx, bool bVisible);
  QString TitleOf(int LogicalIdx) const;
  // Hides and shows columns in a menu; the entries of columns that aren't fixed, checked when shown.
  void AddColumnEntries(QMenu* pMenu);

  // Visible columns from left to right with their widths; sName is left empty.
  TABLE_HEADER_RECORD ToRecord() const;
  // Titles that are no columns are ignored. Returns through the header the sort indicator, too; the caller sorts.
  void FromRecord(const TABLE_HEADER_RECORD& Record);

Q_SIGNALS:
  void SectionVisibilityChanged(int LogicalIdx, bool bVisible);

private:
  int FindTitle(const QString& sTitle) const;
  U32 FlagsOf(int LogicalIdx) const;
};
