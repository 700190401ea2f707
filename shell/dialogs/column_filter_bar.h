#pragma once

#include <QList>
#include <QWidget>

class QLineEdit;
class QTableView;

// A text filter above each column of a table, as wide as the column. The bar stands directly above the table.
class CColumnFilterBar : public QWidget {
  Q_OBJECT

public:
  // The table has its model already.
  CColumnFilterBar(QTableView* pTable, QWidget* pParent);
  QLineEdit* Filter(int Column) const { return m_Filters[Column]; }

Q_SIGNALS:
  void FilterChanged(int Column, const QString& sText);
  // The user goes on to the rows: by Return or by the Down key.
  void Left();

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;

private:
  void LayOut();

  QTableView* m_pTable;
  QList<QLineEdit*> m_Filters;
};
