#pragma once

#include <QStringList>

#include "ui/dialog.h"

class QComboBox;
class QDialogButtonBox;
class QLineEdit;

// Asks for one text: an icon, a label, an input, OK and Cancel. The input is a line; with a history a line with a list
// of earlier texts, and with choices a list from which one is taken.
class CInputDialog : public CDialog {
  Q_OBJECT

public:
  // sIcon is a name for GetIcon, empty for none. sLabel may have several lines.
  CInputDialog(QWidget* pParent, const QString& sTitle, const QString& sIcon, const QString& sLabel);

  // What the line holds at the start, selected.
  void SetText(const QString& sText);
  // Earlier texts, the latest first.
  void SetHistory(const QStringList& Texts);
  // Nothing but these can be answered.
  void SetChoices(const QStringList& Texts, int Current = 0);
  // An input that mustn't be empty keeps OK disabled while it is.
  void SetMandatory(bool bOn);

  QString Text() const;
  // Index among the choices or in the history, -1 for another text.
  int Index() const;

  // Puts a text first in a history of at most MaxTexts, once.
  static QStringList AddToHistory(QStringList History, const QString& sText, int MaxTexts = MAX_HISTORY);
  static constexpr int MAX_HISTORY = 20;  // texts

protected:
  void showEvent(QShowEvent* pEvent) override;

private:
  void UpdateButtons();
  void UseCombo(bool bEditable);

  QLineEdit* m_pLine;
  QComboBox* m_pCombo;
  QDialogButtonBox* m_pButtons;
  bool m_bMandatory = false;
};
