#pragma once

#include <QTableWidget>

// The table of the dialogs: in the application's font, with grid lines in their colour.
class CTableWidget : public QTableWidget {
  Q_OBJECT

public:
  CTableWidget(int Rows, int Columns, QWidget* pParent = nullptr);

protected:
  void changeEvent(QEvent* pEvent) override;

private:
  void UpdateStyle();
};
