#pragma once

#include <QString>

#include "base/elf_sym.h"

// What a name stands for in an expression at the current PC. 0 where nothing has the name.

// A variable or function. Of several functions with one name one with code of its own rather than what was inlined
// elsewhere.
ELF_SYM_HANDLE FindVariable(const QString& sName);
// sKeyword is "struct", "class", "union" or "enum" where it stands before the name, else empty.
ELF_SYM_HANDLE FindType(const QString& sName, const QString& sKeyword = {});
// A constant or static variable that no unit defines outside its class.
ELF_SYM_HANDLE FindStaticMember(const QString& sName);
// A variable, function, enumerator or static member.
ELF_SYM_HANDLE FindOperand(const QString& sName);

bool IsReference(ELF_SYM_HANDLE Type);
// The type of a symbol's value, which is that of what a reference refers to.
ELF_SYM_HANDLE TypeOfValue(ELF_SYM_HANDLE Sym);
