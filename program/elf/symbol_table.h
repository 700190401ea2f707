#pragma once

#include <vector>

#include "program/elf/elf.h"
#include "program/elf/elf_image.h"

// All symbols of all symbol tables of a file, by position, by value and, for the named functions, by address.
class CSymbolTable {
public:
  // False if a table of symbols lies outside the file, if tables lie over each other, or their names do.
  bool Parse(const CElfImage& Image);

  U32 Count() const { return static_cast<U32>(aSymbols.size()); }
  const ELF_SYMBOL* Get(U32 Index) const { return Index < aSymbols.size() ? &aSymbols[Index] : nullptr; }
  const char* Name(U32 Index) const;
  // Positions of the function symbols, by ascending value.
  const std::vector<U32>& Functions() const { return aFunctions; }
  I32 FindFunction(U32 Addr, bool bExact) const;
  I32 FindAt(U32 Addr, I32 Type) const;
  // The first symbol of that name, -1 if there is none.
  I32 FindName(const char* sName) const;
  // False for a symbol that names no address: one of another file, of a file's name or of a section that is not loaded.
  bool HasAddress(const ELF_SYMBOL& Symbol) const;
  // True for a range of code that the linker dropped, as debug information still has it: where no code can be, or from
  // 0 on with another length than the functions have that stand there. Where code without such a symbol stands at 0,
  // what ends within it is not dropped, and nothing is where the file has no symbols.
  bool IsDropped(U32 Low, U32 High) const;

private:
  struct PART {  // the symbols of one section, and where their names are
    U32 FirstSymbol;
    U32 StringSection;
  };

  const CElfImage* pImage = nullptr;
  std::vector<ELF_SYMBOL> aSymbols;
  std::vector<PART> aParts;
  std::vector<U32> aByValue;
  std::vector<U32> aFunctions;
  std::vector<U32> aSizesAtZero;  // of the functions there, ascending
  U32 EndAtZero = 0;              // of the code there that no function symbol describes

  bool AreNamesSound() const;
  bool SectionEnd(const ELF_SYMBOL& Symbol, U64& End) const;
  U32 ObjectSize(size_t Position) const;
  void SizeObjects();
  void SizeFunctions();
  void ListFunctions();
  bool IsInCode(const ELF_SYMBOL& Symbol) const;
  void ListSizesAtZero();
  U32 FindEndAtZero() const;
};
