#pragma once

#include <QGroupBox>
#include <QList>

#include "base/types.h"

class QComboBox;
class QPushButton;

// What the boxes for colours and for fonts share: a list of items, a field that shows the selected item's value and
// opens a dialog for another, and a button that resets it. Items that differ from their default are bold.
class CAppearanceBox : public QGroupBox {
  Q_OBJECT

public:
  U32 GetItemID() const;
  void SetItemID(U32 ID);

public Q_SLOTS:
  void OnItemSelected();
  void OnButtonResetClicked();
  void OnFieldClicked();

protected:
  CAppearanceBox(const QString& sTitle, QWidget* pParent);
  void AddItem(U32 ID, const QString& sName, const QString& sToolTip);
  // Shows all items as they are now.
  void Refresh();

  virtual bool IsModified(U32 ID) const = 0;
  virtual void ShowValue(U32 ID, QPushButton* pField) const = 0;
  // Asks the user, and applies the answer.
  virtual void Choose(U32 ID) = 0;
  virtual void Reset(U32 ID) = 0;

private:
  QComboBox* m_pItems;
  QPushButton* m_pField;
  QPushButton* m_pReset;
};
