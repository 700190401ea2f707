#pragma once
// What the debug information says of types, members and values. The rules at the top of elf.h hold here too; every
// function gives its neutral value for the handle of an ELF symbol unless something else is said.

#include "base/elf_sym.h"
#include "program/elf/elf.h"

inline constexpr U32 ELF_MAX_ARRAY_DIMENSIONS = 10;

struct ELF_ARRAY_INFO {
  U32 TotalSize = 0;      // bytes
  U32 ElementSize = 0;    // bytes
  U32 TotalCount = 0;     // elements, the product of the dimensions
  U32 NumDimensions = 0;  // the true number, also above ELF_MAX_ARRAY_DIMENSIONS
  U32 aCounts[ELF_MAX_ARRAY_DIMENSIONS] = {};
};

// DW_AT_accessibility values.
enum ELF_ACCESS : U32 { ELF_ACCESS_NONE = 0, ELF_ACCESS_PUBLIC = 1, ELF_ACCESS_PROTECTED = 2, ELF_ACCESS_PRIVATE = 3 };
enum ELF_VIRTUALITY : U32 { ELF_VIRTUALITY_NONE = 0, ELF_VIRTUALITY_VIRTUAL = 1, ELF_VIRTUALITY_PURE = 2 };

// Type of an entry. With bFollow the type behind typedefs and qualifiers: a base, array, class, structure, enumeration,
// union, pointer or reference type or a function, by its definition where it has one; an entry of such a kind answers
// itself. Without bFollow what DW_AT_type names.
ELF_SYM_HANDLE ELF_GetType(ELF_SYM_HANDLE hSym, bool bFollow);
// Text of the entry's type, short names for base types, every part behind the type that it is made of: "uint[4][2]",
// "struct Point*", "void(int)*", "int() Shape::*". Of an enumerator that of its enumeration.
const char* ELF_GetTypeName(ELF_SYM_HANDLE hSym);
// 0, or -1 and an unchanged *pOut where the type of the entry is no array.
int ELF_GetArrayInfo(ELF_SYM_HANDLE hSym, ELF_ARRAY_INFO* pOut);
// Position of a bit field in its storage unit, in bits from the least significant one. The storage unit is as large as
// the member's type and stands at ELF_GetLocation, whichever attributes say it.
U32 ELF_GetBitOffset(ELF_SYM_HANDLE hSym);
// Width of a bit field in bits, 0 for every other member.
U32 ELF_GetBitSize(ELF_SYM_HANDLE hSym);
bool ELF_IsSigned(ELF_SYM_HANDLE hSym);
// A variable in a function with a fixed address, and a function without object pointer.
bool ELF_IsStatic(ELF_SYM_HANDLE hSym);
// ELF_ACCESS of a member, by its class where it says none itself.
U32 ELF_GetAccess(ELF_SYM_HANDLE hSym);
U32 ELF_GetVirtuality(ELF_SYM_HANDLE hSym);
// Bytes of a constant, copied to pOut: of a number 4, or 8 where its type is larger, as many as there are of a block,
// NumBytes at most. The number of bytes, 0 for no constant. Numbers are in host byte order, those in a block too; other
// blocks in that of the file.
U32 ELF_GetConstValue(ELF_SYM_HANDLE hSym, U8* pOut, U32 NumBytes);
// Value of an enumerator with the size and sign of its enumeration, as it is written where that has no type. One
// without sign is to be read as U64. 0, or -1 and unchanged outputs for anything else.
int ELF_GetEnumeratorValue(ELF_SYM_HANDLE hSym, I64* pValue, bool* pbUnsigned);
// The parameter "this" of a function.
ELF_SYM_HANDLE ELF_GetObjectPointer(ELF_SYM_HANDLE hSym);

// Variables and parameters that stand in a function, those of the blocks inside it too, in file order. Behind them
// those with a place or a value that only the function's abstract origin lists, as compilers do with static ones.
U32 ELF_GetNumLocals(ELF_SYM_HANDLE hFunc);
ELF_SYM_HANDLE ELF_GetLocal(ELF_SYM_HANDLE hFunc, U32 Index);
// Members of the class, structure, union or enumeration that the entry is or has as its type, in file order: data
// members, functions (by their definition where they have one) and enumerators.
U32 ELF_GetNumMembers(ELF_SYM_HANDLE hSym);
ELF_SYM_HANDLE ELF_GetMember(ELF_SYM_HANDLE hSym, U32 Index);
// Index of the member with that name, -1 if there is none.
I32 ELF_FindMember(ELF_SYM_HANDLE hSym, const char* sName);
// The inheritance entries of a class; ELF_GetType gives the base class.
U32 ELF_GetNumBases(ELF_SYM_HANDLE hSym);
ELF_SYM_HANDLE ELF_GetBase(ELF_SYM_HANDLE hSym, U32 Index);

// Where the entry's value is found while PC is at pc; 0 takes the first place of a list. For a member or base its place
// in the object around it, for a function its frame base. An ELF symbol other than a function lies in memory. Type
// ELF_LOC_NONE where it is nowhere.
ELF_SYM_LOC ELF_GetLocation(ELF_SYM_HANDLE hSym, U32 PC);
// "[20000010]", "R4", "[CFA - 8]". Lives in a static buffer of 64 bytes.
const char* ELF_GetLocationText(const ELF_SYM_LOC& Loc);
// The location in the Base fields of kinds 6, 15 and 16 as a record of its own. An inner location of kind 6 has a
// register with an offset inside again, one of kind 15 a register.
ELF_SYM_LOC ELF_GetInnerLocation(const ELF_SYM_LOC& Loc);
