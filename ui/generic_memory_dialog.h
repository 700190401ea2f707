#pragma once

#include "base/types.h"
#include "ui/dialog.h"

class QDialogButtonBox;
class QFormLayout;
class QLineEdit;

enum MEMORY_DIALOG_MODES { MEMORY_DIALOG_LOAD, MEMORY_DIALOG_SAVE, MEMORY_DIALOG_FILL };

// Asks what is to be loaded into, saved from or filled in the target's memory: a file and an address, these with a
// size, or an address, a size and a byte. OK is enabled while all of them can be understood.
class CGenericMemoryDialog : public CDialog {
  Q_OBJECT

public:
  CGenericMemoryDialog(QWidget* pParent, MEMORY_DIALOG_MODES Mode);

  // bFixed: the user can't choose another one.
  void SetFile(const QString& sPath, bool bFixed = false);
  void SetAddr(U32 Addr);
  void SetSize(U32 NumBytes);

  // Valid after the dialog was accepted.
  QString File() const;
  U32 Addr() const;
  U32 Size() const;  // bytes
  U8 Value() const;

private:
  QLineEdit* AddLine(QFormLayout* pForm, const QString& sLabel, const QString& sText);
  void AddFileRow(QFormLayout* pForm);
  void ChooseFile();
  void UpdateButtons();
  bool IsValid() const;

  MEMORY_DIALOG_MODES m_Mode;
  QLineEdit* m_pFile = nullptr;
  QLineEdit* m_pAddr = nullptr;
  QLineEdit* m_pSize = nullptr;
  QLineEdit* m_pValue = nullptr;
  QWidget* m_pBrowse = nullptr;
  QDialogButtonBox* m_pButtons;
};
