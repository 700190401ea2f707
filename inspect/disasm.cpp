// vexor-inspect disasm: the instructions and literals of all code sections, or of a file of plain bytes.
#include <QFile>
#include <cstdio>

#include "core/vcore.h"
#include "inspect/core_setup.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 SHT_PROGRAM_BITS = 1;
constexpr U32 SHF_CODE = 2 | 4;  // allocated, executable

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
  const ELF_FILE* pFile = File.Get();
  if (!pFile) return FILE_NOT_READ;
  if (const char* sError = AttachCore(Options, pFile)) return sError;
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
