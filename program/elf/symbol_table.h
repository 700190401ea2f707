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
  ELF_SYMBOL_EXTENT Extent() const;

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

  bool AreNamesSound() const;
  bool SectionEnd(const ELF_SYMBOL& Symbol, U64& End) const;
  U32 ObjectSize(size_t Position) const;
  void SizeObjects();
  void SizeFunctions();
  void ListFunctions();
};
