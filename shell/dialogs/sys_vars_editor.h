#pragma once

#include "base/types.h"
#include "ui/dialog.h"

class CTableWidget;
class QTableWidgetItem;

// The system variables as a table of names and values. A selection drops down its entries, any other value is typed;
// both apply at once, by command.
class CSysVarsEditor : public CDialog {
  Q_OBJECT

public:
  explicit CSysVarsEditor(QWidget* pParent);
  ~CSysVarsEditor() override;

public Q_SLOTS:
  void OnCellClicked(int Row, int Column);
  void OnItemChanged(QTableWidgetItem* pItem);

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  void Fill();
  void FitToContents();
  // Values as they are now.
  void Refresh();
  U32 RowID(int Row) const;
  void EditValue(int Row);
  void DropDownEntries(int Row);
  void ApplyText(U32 ID, const QString& sText);

  CTableWidget* m_pTable;
  int m_Listener = 0;
  bool m_bRefreshing = false;
};
