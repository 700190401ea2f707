// Prints what the program database answers about the code of a program file, for comparison with other tools: for
// every halfword of every function its line and the functions around it.
#include <cstdio>

#include "program/database/elfapi.h"

namespace {

constexpr U32 STEP = 2;  // bytes, the shortest instruction

void PrintAddress(U32 Addr) {
  const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
  const QString sFile = Loc.IsValid() ? ELFAPI_GetFilePathOf(Loc.File) : QString();
  std::printf("at\t0x%08x\t%s\t%u\t%s\t%s\n", Addr, qPrintable(sFile), Loc.Line,
              qPrintable(ELFAPI_GetName(ELFAPI_GetFuncAt(Addr))),
              qPrintable(ELFAPI_GetName(ELFAPI_GetFuncAt(Addr, true))));
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  if (NumArguments != 2 || ELFAPI_Load(QString::fromLocal8Bit(ppArguments[1])) != 0) return 1;
  for (const ELF_SYM_HANDLE hFunc : ELFAPI_GetFunctions()) {
    for (const CAddrRange& Range : ELFAPI_GetAddrRanges(hFunc)) {
      for (U32 Addr = Range.Start; Addr < Range.End(); Addr += STEP) PrintAddress(Addr);
    }
  }
  ELFAPI_Unload();
  return 0;
}
