// Prints what the program database answers about the code of a program file, for comparison with other tools: for
// every halfword of every function its line and the functions around it, and for every line its addresses.
#include <cstdio>

#include "program/database/elfapi.h"

namespace {

constexpr U32 STEP = 2;         // bytes, the shortest instruction
constexpr U32 MAX_LINE = 2000;  // longer than any source file of the corpus

void PrintAddress(U32 Addr) {
  const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
  const QString sFile = Loc.IsValid() ? ELFAPI_GetFilePathOf(Loc.File) : QString();
  std::printf("at\t0x%08x\t%s\t%u\t%s\t%s\n", Addr, qPrintable(sFile), Loc.Line,
              qPrintable(ELFAPI_GetName(ELFAPI_GetFuncAt(Addr))),
              qPrintable(ELFAPI_GetName(ELFAPI_GetFuncAt(Addr, true))));
}

void PrintLines(const QString& sFile) {
  const U32 FileId = ELFAPI_FileId(sFile);
  for (U32 Line = 1; Line < MAX_LINE; ++Line) {
    for (const U32 Addr : ELFAPI_GetAddrsOfLoc({FileId, Line, 0})) {
      std::printf("line\t%s\t%u\t0x%08x\n", qPrintable(sFile), Line, Addr);
    }
  }
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  if (NumArguments != 2 || ELFAPI_Load(QString::fromLocal8Bit(ppArguments[1])) != 0) return 1;
  QStringList aFiles;
  for (const ELF_SYM_HANDLE hFunc : ELFAPI_GetFunctions()) {
    for (const CAddrRange& Range : ELFAPI_GetAddrRanges(hFunc)) {
      for (U32 Addr = Range.Start; Addr < Range.End(); Addr += STEP) {
        PrintAddress(Addr);
        const QString sFile = ELFAPI_GetFilePathOf(ELFAPI_GetFirstSrcLoc(Addr).File);
        if (!sFile.isEmpty() && !aFiles.contains(sFile)) aFiles.append(sFile);
      }
    }
  }
  for (const QString& sFile : aFiles) PrintLines(sFile);
  ELFAPI_Unload();
  return 0;
}
