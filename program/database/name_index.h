#pragma once

#include <QHash>
#include <QString>
#include <optional>

#include "base/elf_sym.h"
#include "program/database/namesakes.h"

// A user's name for a symbol, taken apart at its last "::" outside of template arguments. Blanks beside the marks of
// template arguments do not count.
struct SYMBOL_NAME {
  QString sFull;   // without a leading "::"
  QString sOwner;  // empty: any. With a leading "::" it is the whole scope, "::" alone being that of no owner
  QString sName;

  explicit SYMBOL_NAME(const QString& sText);
  // The name of a class or namespace stands before it.
  bool HasOwner() const { return sFull.size() > sName.size(); }
};

// The name as an index keeps it: "Pair<int, 4>" without the blank.
QString NameWithoutBlanks(const QString& sName);

// Symbols of one list by name; built when first asked. The time for an answer does not grow with the number of symbols
// that have the name and other owners. Inline namespaces and template arguments may be left out of an owner. Namespaces
// stand in it under their qualified names.
class CNameIndex {
public:
  void Clear();
  // Symbols with that name, in the order of the list; where none has it, the instances of the template of that name.
  // Lives until the next call.
  const ELF_SYM_LIST& Find(const SYMBOL_NAME& Wanted, const ELF_SYM_LIST& Symbols);
  // Symbols that the index has under the whole text.
  const ELF_SYM_LIST& FindWhole(const QString& sName, const ELF_SYM_LIST& Symbols);
  // Of what one of these gave the one that is seen from there, see CNamesakes; 0 of none.
  ELF_SYM_HANDLE Nearest(const ELF_SYM_LIST& Found, const SCOPE& Scope);

private:
  using LISTS = QHash<QString, ELF_SYM_LIST>;

  const ELF_SYM_LIST& FindIn(const LISTS& Lists, const QString& sName, const QString& sOwner);
  LISTS& OwnersOf(const QString& sName, const ELF_SYM_LIST& Named);
  void Build(const ELF_SYM_LIST& Symbols);

  std::optional<LISTS> m_ByName;
  LISTS m_ByTemplate;               // "Pair" and "<" to all "Pair<...>"
  QHash<QString, LISTS> m_ByOwner;  // for names asked with an owner: symbols by every end of the owner's name
  QHash<const ELF_SYM_HANDLE*, CNamesakes> m_Namesakes;  // by the place of the list, for names asked in a scope
};
