#pragma once

#include <QHash>
#include <QList>
#include <QWidget>

#include "base/types.h"

class QCheckBox;
class QComboBox;
class QPushButton;

// Editors for a list of preferences: a check box for each boolean, and for all others one pair of lists, of names and
// of values. A change is kept in the settings and made by command, so that windows and console learn of it.
class CVariableBox : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int VariableID READ GetVariableID WRITE SetVariableID NOTIFY VariableChanged)

public:
  CVariableBox(const QList<U32>& IDs, QWidget* pParent);

  // The row that the list of values belongs to, -1 without such rows.
  int GetVariableID() const;
  void SetVariableID(int ID);

Q_SIGNALS:
  // A row was given another value here.
  void VariableChanged(int ID);

public Q_SLOTS:
  void OnItemSelected();
  void OnButtonResetClicked();
  void OnComboBoxValueTextChanged();
  void OnCheckBoxStateChanged();

private:
  void AddCheckBox(U32 ID);
  void AddItem(U32 ID);
  void MakeItemRow();
  void ShowValue();
  void Apply(U32 ID, const QString& sText);

  QHash<QCheckBox*, U32> m_CheckBoxes;
  QComboBox* m_pItems = nullptr;
  QComboBox* m_pValue = nullptr;
  QPushButton* m_pReset = nullptr;
};
