#pragma once
// The order of many texts. No widgets.

#include <QString>
#include <vector>

struct ROW_TEXT {
  const QString* pText;
  int Row;
};

// Sorts rows by the code units of their texts. Rows of equal text keep their order, upwards and downwards.
void SortByText(std::vector<ROW_TEXT>& Rows, bool bDescending);
