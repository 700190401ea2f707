#pragma once

#include <QMap>
#include <QTimer>
#include <QWidget>

class CSortFilter;
class CTableHeader;
class QLineEdit;
class QTreeView;

// The filter bar of a table: above each visible column a cell as wide as the column. What is typed there is applied
// when the edit ends; Escape takes it back.
class CFilterHeaderView : public QWidget {
  Q_OBJECT

public:
  // The three are the window's and outlive the bar.
  CFilterHeaderView(QTreeView* pView, CTableHeader* pHeader, CSortFilter* pProxy, QWidget* pParent);

  // Shows or hides the bar. A change removes all filters: none works that is not seen.
  void SetShown(bool bShown);
  // For dialogs: filters apply while they are typed, Return goes on to the rows, and Escape is the dialog's.
  void SetLive();
  // The focus to the cell of a column, all of its text selected; false if it has none.
  bool EditFilter(int Column);
  QLineEdit* Cell(int Column) const { return m_Cells.value(Column); }
  void SetFont(const QFont& Font);
  // Menu entries for the filter of a column, and for all.
  void AddFilterEntries(QMenu* pMenu, int Column);
  // Of a column of numbers a dialog, otherwise the cell.
  void OnSetFilter(int Column);
  void OnActionClearAllFiltersTriggered();

Q_SIGNALS:
  // The user goes on to the rows.
  void Left(int Column);

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
  void showEvent(QShowEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;

private:
  void MakeCells();
  void LayOut();
  void LayOutSoon();
  void ShowFilters();
  void OnFilterCellEditComplete(int Column);
  void ShowMenu(int Column, const QPoint& GlobalPos);
  QString TextOf(int Column) const;

  QTreeView* m_pView;
  CTableHeader* m_pHeader;
  CSortFilter* m_pProxy;
  QMap<int, QLineEdit*> m_Cells;  // by column of the model
  QTimer m_LayoutTimer;
  bool m_bLive = false;
};
