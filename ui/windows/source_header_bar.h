#pragma once

#include <QTimer>
#include <QWidget>

#include "base/elf_sym.h"
#include "base/src_loc.h"

class QComboBox;

// The two boxes above a source text: the functions and classes of the file, and what lies in the one that is selected.
// Choosing an entry leads to its place.
class CSourceHeaderBar : public QWidget {
  Q_OBJECT

public:
  explicit CSourceHeaderBar(QWidget* pParent);

  // Fills the boxes for a file of the program; another file leaves them with the file's scope alone.
  void Init(U32 FileNo);
  // Selects the entries for a function; 0 for a place outside of all. Does nothing while the bar is locked.
  void SetSelection(ELF_SYM_HANDLE hSymbol);
  void SetLocked(bool bLocked) { m_bLocked = bLocked; }
  bool IsLocked() const { return m_bLocked; }
  // The cursor has moved: asks soon where it stands now, unless the user chooses just then.
  void RequestUpdate();

Q_SIGNALS:
  void SymbolChosen(const CSrcLoc& Loc);
  // The answer is given by SetSelection.
  void UpdateRequested();

private:
  // What the first box lists; hFunc is 0 for a class, and for the file's scope, whose name is empty.
  struct SCOPE {
    QString sClass;
    ELF_SYM_HANDLE hFunc = 0;
  };

  void AddScope(const SCOPE& Scope, const QString& sText, const char* sIcon);
  void FillMembers();
  void AddMember(ELF_SYM_HANDLE hSymbol);
  bool IsMember(const SCOPE& Scope, ELF_SYM_HANDLE hSymbol) const;
  void OnComboBoxScopeIndexChanged(int Index);
  void OnComboBoxSymbolsIndexChanged(int Index);
  void OnHeaderBarUpdateTimerTimeout();

  QComboBox* m_pScopes;
  QComboBox* m_pSymbols;
  QTimer m_UpdateTimer{this};
  QList<SCOPE> m_Scopes;
  ELF_SYM_LIST m_Symbols;    // functions and inlined instances of the file, by line
  ELF_SYM_LIST m_Variables;  // that the file declares
  ELF_SYM_LIST m_Members;    // what the second box lists
  bool m_bLocked = false;
};
