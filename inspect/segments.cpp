// vexor-inspect segments: the program headers that have bytes in memory.
#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 LOADABLE = 1;  // segment type
constexpr U32 FLAG_EXECUTE = 1, FLAG_WRITE = 2, FLAG_READ = 4;

}  // namespace

const char* InspectSegments(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumSegments(File.Get()); ++i) {
    if (ELF_GetSegmentType(File.Get(), i) != LOADABLE) continue;
    const U32 Addr = ELF_GetSegmentPAddr(File.Get(), i);
    if (!Options.Covers(Addr)) continue;
    const U32 Flags = ELF_GetSegmentFlags(File.Get(), i);
    std::printf("0x%08x\t0x%08x\t%u\t%u\t%s%s%s\n", Addr, ELF_GetSegmentVAddr(File.Get(), i),
                ELF_GetSegmentFileSize(File.Get(), i), ELF_GetSegmentMemSize(File.Get(), i),
                Flags & FLAG_READ ? "R" : "", Flags & FLAG_WRITE ? "W" : "", Flags & FLAG_EXECUTE ? "X" : "");
  }
  return nullptr;
}
