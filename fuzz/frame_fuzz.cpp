// libFuzzer target: entries and programs of call frame information. Input: flags (1 big endian, 2 .eh_frame), and the
// section.
#include <cstdlib>

#include "program/elf/frame_program.h"

namespace {

constexpr U32 SECTION_ADDR = 0x4000;
constexpr size_t MAX_ENTRIES = 32;  // whose programs are run: many may share one long common program

void Run(const FRAME_SECTION& Section, const FRAME_CIE& Cie, const FRAME_FDE& Fde) {
  if (Fde.High < Fde.Low) std::abort();
  FRAME_ROW Row;
  for (const U32 PC : {Fde.Low, Fde.Low + (Fde.High - Fde.Low) / 2, Fde.High}) {
    RunFrameProgram(Section, Cie, Fde, PC, Row);
    if (Row.NumRules > NUM_FRAME_REGS) std::abort();
  }
  if (static_cast<I32>(GreatestCfaOffset(Section, Cie, Fde)) < 0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (NumBytes < 1) return 0;
  FRAME_SECTION Section;
  Section.pData = pData + 1;
  Section.Size = static_cast<U32>(NumBytes - 1);
  Section.Addr = SECTION_ADDR;
  Section.bBigEndian = pData[0] & 1;
  Section.bEh = pData[0] & 2;
  Section.ReadWord = [&](U32 Addr) -> std::optional<U32> {
    CByteCursor Bytes = Section.Bytes();
    Bytes.Skip(Addr - SECTION_ADDR);
    const U64 Word = Bytes.Int<U32>();
    return Bytes.Ok() ? std::optional<U32>(static_cast<U32>(Word)) : std::nullopt;
  };
  std::vector<FRAME_CIE> aCies;
  std::vector<FRAME_FDE> aFdes;
  CFrameSectionReader(aCies, aFdes, [](const char*, const char*, U64) {}).Read(Section);
  if (aFdes.size() > NumBytes || aCies.size() > NumBytes) std::abort();
  for (size_t i = 0; i < aFdes.size() && i < MAX_ENTRIES; ++i) {
    if (aFdes[i].Cie >= aCies.size()) std::abort();
    Run(Section, aCies[aFdes[i].Cie], aFdes[i]);
  }
  return 0;
}
