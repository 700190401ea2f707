// vexor-inspect disasm: the instructions and literals of all code sections, or of a file of plain bytes.
#include <QFile>
#include <cstdio>

#include "core/core_table.h"
#include "core/vcore.h"
#include "inspect/inspect.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 SHT_PROGRAM_BITS = 1;
constexpr U32 SHF_CODE = 2 | 4;  // allocated, executable
constexpr U32 CPSR_T = 1u << 5;
// The core for a file that names none. Its instructions include those of all others on the M profile.
constexpr U32 CORE_ID_CORTEX_M33 = 0x0E0200FF;
// The same for ARM code.
constexpr U32 CORE_ID_CORTEX_A8 = 0x080000FF;

constexpr char NO_SUCH_CORE[] = "there is no core of that name";

// 0 for a name that is no core's.
U32 CoreIdOf(const INSPECT_OPTIONS& Options) {
  if (Options.sCore.isEmpty()) return Options.bArm ? CORE_ID_CORTEX_A8 : CORE_ID_CORTEX_M33;
  for (const U32 CoreId : VCore::GetKnownCores()) {
    QString sName;
    VCore::GetCoreName(VCore::GetFamily(CoreId), VCore::GetSubFamily(CoreId), sName);
    if (sName.compare(Options.sCore, Qt::CaseInsensitive) == 0) return CoreId;
  }
  return 0;
}

bool InitCore(const INSPECT_OPTIONS& Options, U32 DataEncoding, U32 CodeEncoding) {
  VCORE_API API;
  API.pfReadProbeRegs = [bArm = Options.bArm](const U32*, U32* paValue, U8* paStatus, U32) {
    paValue[0] = bArm ? 0 : CPSR_T;
    paStatus[0] = 0;
    return 0;
  };
  const auto Endianness = [](U32 Encoding) { return Encoding == ELF_ENCODING_BIG ? 1u : 0u; };
  return VCore::Init({CoreIdOf(Options), Endianness(DataEncoding), Endianness(CodeEncoding)}, API) == 0;
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

const char* DisassembleRaw(const INSPECT_OPTIONS& Options) {
  QFile File(Options.sFile);
  if (!File.open(QIODevice::ReadOnly)) return "the file could not be opened";
  const QByteArray Data = File.readAll();
  if (Data.size() > static_cast<qsizetype>(INVALID_ADDR - Options.Base)) {
    return "the file reaches beyond the end of the address space";
  }
  if (!InitCore(Options, ELF_ENCODING_LITTLE, ELF_ENCODING_LITTLE)) return NO_SUCH_CORE;
  const U32 NumBytes = static_cast<U32>(Data.size());
  VCore::SetImage({{Options.Base, NumBytes, Options.Base, Data, {}}});
  VCore::SetAnchor(Options.Base + NumBytes);
  PrintRange(Options, Options.Base, Options.Base + NumBytes);
  VCore::Exit();
  return nullptr;
}

}  // namespace

const char* InspectDisasm(const INSPECT_OPTIONS& Options) {
  if (Options.bRaw) return DisassembleRaw(Options);
  const CInspectedFile File(Options);
  ELF_FILE* pFile = const_cast<ELF_FILE*>(File.Get());
  if (pFile == nullptr) return FILE_NOT_READ;
  if (!InitCore(Options, ELF_GetEncoding(pFile), ELF_GetCodeEncoding(pFile))) return NO_SUCH_CORE;
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
