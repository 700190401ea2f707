// Queries about the places of values, in addresses of the target.
#include "program/elf/die_location.h"
#include "program/elf/elf_file.h"
#include "program/elf/elf_types.h"
#include "program/elf/handle.h"
#include "program/elf/reader_state.h"

namespace {

ELF_SYM_LOC SymbolLocation(ELF_SYM_HANDLE hSym) {
  U32 Index;
  const ELF_FILE* pFile = FileOfSymbol(hSym, Index);
  ELF_SYM_LOC Loc;
  if (!pFile || pFile->Symbols.Get(Index)->IsFunction()) return Loc;
  Loc.Type = ELF_LOC_MEM;
  Loc.Addr = AddrToTarget(pFile->Symbols.Get(Index)->Value);
  return Loc;
}

}  // namespace

ELF_SYM_LOC ELF_GetLocation(ELF_SYM_HANDLE hSym, U32 PC) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return SymbolLocation(hSym);
  ELF_SYM_LOC Loc = LocationOf(*pFile->pDwarf, Entry, PC == 0 ? 0 : AddrToFile(PC));
  if (Loc.Type == ELF_LOC_MEM) Loc.Addr = AddrToTarget(Loc.Addr);
  if (Loc.BaseType == ELF_LOC_MEM) Loc.BaseAddr = AddrToTarget(Loc.BaseAddr);
  return Loc;
}
