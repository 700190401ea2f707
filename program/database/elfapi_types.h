#pragma once
// What the program database says of types, members, places and frames. The rules at the top of elfapi.h hold here too.

#include <QByteArray>

#include "program/database/elfapi.h"
#include "program/elf/elf_types.h"

// ---- Types

// Type of a symbol: with bFollow the one behind typedefs and qualifiers, by its definition; a type answers itself.
ELF_SYM_HANDLE ELFAPI_GetType(ELF_SYM_HANDLE Sym, bool bFollow = true);
// As C writes it, with short names of base types: "uint[4][2]", "struct Point*".
QString ELFAPI_GetTypeName(ELF_SYM_HANDLE Sym);
bool ELFAPI_IsSigned(ELF_SYM_HANDLE Sym);
// DW_ATE number of a base type, 0 for anything else.
U32 ELFAPI_GetBaseEncoding(ELF_SYM_HANDLE Sym);
// A variable in a function that lives on after the call, and a function without "this".
bool ELFAPI_IsStatic(ELF_SYM_HANDLE Sym);
// False, and Info as it was, where the symbol's type is no array.
bool ELFAPI_GetArrayInfo(ELF_SYM_HANDLE Sym, ELF_ARRAY_INFO& Info);
// Bytes of a constant, see ELF_GetConstValue: 4 of a number, 8 where its type is larger, as many as there are of a
// block; empty for no constant.
QByteArray ELFAPI_GetConstValue(ELF_SYM_HANDLE Sym);
// See ELF_GetEnumeratorValue; false, and the outputs as they were, for anything else.
bool ELFAPI_GetEnumeratorValue(ELF_SYM_HANDLE Sym, I64& Value, bool& bUnsigned);
// Enumerator of that name, with or without the enumeration ahead of it; of an enumeration that has a name or a typedef.
// One that is no "enum class" stands in the scope around it, too. Of several the one that is meant at the current PC.
ELF_SYM_HANDLE ELFAPI_FindEnumerator(const QString& sName);

// ---- Members of a class, structure, union or enumeration, which the symbol is or has as its type

ELF_SYM_LIST ELFAPI_GetMembers(ELF_SYM_HANDLE Sym);
ELF_SYM_HANDLE ELFAPI_GetMember(ELF_SYM_HANDLE Sym, U32 Index);
// The inheritance entries of a class: ELFAPI_GetType gives the base class, ELFAPI_GetLocation its place in the object.
ELF_SYM_LIST ELFAPI_GetBases(ELF_SYM_HANDLE Sym);
// Names of the base classes, joined by ", ".
QString ELFAPI_GetBaseNames(ELF_SYM_HANDLE Sym);

// Where a member was found.
struct MEMBER_PLACE {
  I32 Member = -1;           // index in ELFAPI_GetMembers of Class; -1: there is no such member
  I32 Base = -1;             // index in ELFAPI_GetBases of the asked class through which it was reached; -1: its own
  ELF_SYM_HANDLE Class = 0;  // the class, or the structure or union without a name, that declares it
  // The bases and members without a name on the way from the asked class to Class, outermost first. The
  // ELFAPI_GetLocation of each is its place in the one before.
  ELF_SYM_LIST Way;

  bool operator==(const MEMBER_PLACE&) const = default;
};
// The class's own member of that name, then one in a member without a name, else the first one in its base classes.
MEMBER_PLACE ELFAPI_FindMember(ELF_SYM_HANDLE Sym, const QString& sName);
// ELF_ACCESS of a member, and "public", "protected", "private" or empty.
U32 ELFAPI_GetAccess(ELF_SYM_HANDLE Sym);
QString ELFAPI_GetAccessText(ELF_SYM_HANDLE Sym);
// Position and width of a bit field in bits, see ELF_GetBitOffset; the width of any other member is 0.
U32 ELFAPI_GetBitOffset(ELF_SYM_HANDLE Sym);
U32 ELFAPI_GetBitSize(ELF_SYM_HANDLE Sym);

// ---- Places

// Where the symbol's value is found while the program stands at PC; 0 takes the first place of a list.
ELF_SYM_LOC ELFAPI_GetLocation(ELF_SYM_HANDLE Sym, U32 PC);
// Frame base of a function, or of the function around a symbol.
ELF_SYM_LOC ELFAPI_GetFrameBase(ELF_SYM_HANDLE Sym, U32 PC);
// True where a value can be had from the location, as far as that can be told without the target.
bool ELFAPI_IsLocValid(const ELF_SYM_LOC& Loc);
// The control block of real-time transfer, 0 without one.
ELF_SYM_HANDLE ELFAPI_GetRttBlock();

// ---- Frames and image

// Rules at PC for DWARF registers 0 to NumRegs - 1; empty where no frame description entry covers PC.
ELF_SYM_LOCS ELFAPI_GetCfiRegs(U32 PC, U32 NumRegs);
// Canonical frame address at PC: a register and an offset, type ELF_LOC_NONE where it is not known.
ELF_SYM_LOC ELFAPI_GetCfa(U32 PC);
// Greatest distance in bytes of the canonical frame address from its register in the function at PC, -1 if not known.
I32 ELFAPI_GetFrameSize(U32 PC);
// Bytes of the program file for the run-time addresses [Start, End); empty unless one segment has all of them.
QByteArray ELFAPI_ReadImage(U32 Start, U32 End);
