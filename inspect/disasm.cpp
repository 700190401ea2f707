// vexor-inspect disasm: the instructions and literals of all code sections.
#include <cstdio>

#include "core/core_table.h"
#include "core/vcore.h"
#include "inspect/inspect.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 SHT_PROGRAM_BITS = 1;
constexpr U32 SHF_CODE = 2 | 4;  // allocated, executable
// The one Thumb core whose instructions include those of all others on the M profile.
constexpr U32 CORE_ID_CORTEX_M33 = 0x0E0200FF;

// 0 for a name that is no core's.
U32 CoreIdOf(const QString& sCore) {
  if (sCore.isEmpty()) return CORE_ID_CORTEX_M33;
  for (const U32 CoreId : VCore::GetKnownCores()) {
    QString sName;
    VCore::GetCoreName(VCore::GetFamily(CoreId), VCore::GetSubFamily(CoreId), sName);
    if (sName.compare(sCore, Qt::CaseInsensitive) == 0) return CoreId;
  }
  return 0;
}

void PrintRange(const INSPECT_OPTIONS& Options, U32 Start, U32 End) {
  U32 Addr = std::max(Start, Options.From);
  End = std::min(End, Options.To);
  while (Addr < End) {
    QString sHex;
    QString sText;
    VCore::GetCodeHex(Addr, sHex);
    const int Length = VCore::Disassemble(Addr, sText);
    if (Length <= 0) break;
    std::printf("0x%08x\t%s\t%s\n", Addr, qPrintable(sHex), qPrintable(sText));
    if (static_cast<U32>(Length) > End - Addr) break;
    Addr += static_cast<U32>(Length);
  }
}

}  // namespace

const char* InspectDisasm(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  ELF_FILE* pFile = const_cast<ELF_FILE*>(File.Get());
  if (pFile == nullptr) return FILE_NOT_READ;
  const U32 CoreId = CoreIdOf(Options.sCore);
  const U32 Endianness = ELF_GetEncoding(pFile) == ELF_ENCODING_BIG ? 1 : 0;
  if (VCore::Init({CoreId, Endianness, Endianness}, {}) != 0) return "there is no core of that name";
  VCore::AttachElf(pFile);
  VCore::BuildMappingSymbols();
  for (U32 i = 0; i < ELF_GetNumSections(pFile); ++i) {
    if (ELF_GetSectionType(pFile, i) != SHT_PROGRAM_BITS) continue;
    if ((ELF_GetSectionFlags(pFile, i) & SHF_CODE) != SHF_CODE) continue;
    const U32 Start = ELF_GetSectionAddr(pFile, i);
    const U32 End = Start + ELF_GetSectionSize(pFile, i);
    VCore::SetAnchor(End);
    PrintRange(Options, Start, End);
  }
  VCore::Exit();
  return nullptr;
}
