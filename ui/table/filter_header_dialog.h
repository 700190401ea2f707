#pragma once

#include "base/types.h"
#include "ui/dialog.h"

class QDialogButtonBox;
class QLineEdit;

// Asks for the range that a column of numbers is filtered by. An empty field leaves that end open.
class CFilterHeaderDialog : public CDialog {
  Q_OBJECT

public:
  // Kind: COLUMN_KINDS.
  CFilterHeaderDialog(QWidget* pParent, const QString& sColumn, U32 Kind);

  // Fills the fields from a filter's text, and makes the text of what they hold now; "*" for two empty ones.
  void SetFilter(const QString& sFilter);
  QString GetFilter() const;

private:
  void OnEditBoxTextChanged();
  bool IsNumber(const QString& sText) const;

  U32 m_Kind;
  QLineEdit* m_pMin;
  QLineEdit* m_pMax;
  QDialogButtonBox* m_pButtons;
};
