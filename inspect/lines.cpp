// vexor-inspect lines: the rows of all line tables in the order of the file.
#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"

const char* InspectLines(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumSrcLines(File.Get()); ++i) {
    const U32 Addr = ELF_GetSrcLineAddr(File.Get(), i);
    if (!Options.Covers(Addr)) continue;
    const char* sFile = ELF_GetSrcLineFile(File.Get(), i);
    const U32 Flags = ELF_GetSrcLineFlags(File.Get(), i);
    std::printf("0x%08x\t%s\t%d\t%d\t%s%s%s\n", Addr, sFile ? sFile : "", ELF_GetSrcLineNumber(File.Get(), i),
                ELF_GetSrcLineColumn(File.Get(), i), Flags & ELF_LINE_IS_STMT ? "S" : "",
                Flags & ELF_LINE_END_SEQUENCE ? "E" : "", Flags & ELF_LINE_PROLOGUE_END ? "P" : "");
  }
  return nullptr;
}
