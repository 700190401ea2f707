#include "elf_fixture.h"
#include "hex_bytes.h"
#include "program/elf/elf_frames.h"
#include "program/elf/elf_types.h"
#include "program/elf/frame_program.h"

namespace {

// The section that stands at address 0x4000, from entries without their lengths.
std::vector<U8> SectionOf(const std::vector<const char*>& aEntries) {
  std::vector<U8> aSection;
  for (const char* sEntry : aEntries) {
    const std::vector<U8> aEntry = HexBytes(sEntry);
    const size_t At = aSection.size();
    aSection.resize(At + 4);
    StoreInt<U32>(aSection.data() + At, static_cast<U32>(aEntry.size()), false);
    aSection.insert(aSection.end(), aEntry.begin(), aEntry.end());
  }
  return aSection;
}

class CFrames {
public:
  CFrames(const std::vector<U8>& aBytes, bool bEh, bool bBigEndian = false) {
    Section = {aBytes.data(), static_cast<U32>(aBytes.size()), 0x4000, bEh, bBigEndian, [](U32) { return 0x9000u; }};
    CFrameSectionReader(aCies, aFdes, [this](const char* sWhat, const char*, U64) { sDamage = sWhat; }).Read(Section);
  }

  // "R13+8 r4=c-8" at PC, with a "!" for damage.
  std::string RowAt(U32 PC, size_t Index = 0) const {
    FRAME_ROW Row;
    const bool bOk = RunFrameProgram(Section, aCies[aFdes[Index].Cie], aFdes[Index], PC, Row);
    std::string sRow = Row.Cfa.Kind == CFA_KIND::Expression ? "exp" : Row.Cfa.Kind == CFA_KIND::None ? "?" : "";
    if (sRow.empty())
      sRow = "R" + std::to_string(Row.Cfa.Reg) + (Row.Cfa.Offset < 0 ? "" : "+") + std::to_string(Row.Cfa.Offset);
    for (U32 Reg = 0; Reg < Row.NumRules; ++Reg) {
      static const char* const apKinds[] = {nullptr, "u", "c", "v", "r", "exp", "vexp"};
      const char* sKind = apKinds[static_cast<U32>(Row.aRules[Reg].Kind)];
      if (sKind) sRow += " r" + std::to_string(Reg) + "=" + sKind + std::to_string(Row.aRules[Reg].Value);
    }
    return bOk ? sRow : sRow + " !";
  }
  std::string Ranges() const {
    std::string sRanges;
    for (const FRAME_FDE& Fde : aFdes) {
      char acText[32];
      std::snprintf(acText, sizeof(acText), "%X-%X ", Fde.Low, Fde.High);
      sRanges += acText;
    }
    return sRanges;
  }
  U32 FrameSize() const { return GreatestCfaOffset(Section, aCies[aFdes[0].Cie], aFdes[0]); }

  FRAME_SECTION Section;
  std::vector<FRAME_CIE> aCies;
  std::vector<FRAME_FDE> aFdes;
  std::string sDamage;
};

// Version 1, code alignment 2, data alignment -4, return address in r14; CFA is r13, r7 is kept.
const char CIE[] = "ffffffff 01 00 02 7c 0e  0c 0d 00 08 07";
const char CODE[] = "00000000 00800000 00010000 ";  // from 0x8000 up to 0x8100

}  // namespace

TEST(Frames, Programs) {
  // program, rows at 0x8000, 0x8002, 0x8004 and 0x80FE, greatest offset
  const std::tuple<std::string, std::array<const char*, 4>, U32> aCases[] = {
      {"41 0e 10 84 02 8e 01",
       {"R13+0", "R13+16 r4=c-8 r14=c-4", "R13+16 r4=c-8 r14=c-4", "R13+16 r4=c-8 r14=c-4"},
       16},
      {"02 02 0e 08", {"R13+0", "R13+0", "R13+8", "R13+8"}, 8},
      {"03 0100 0d 07 04 01000000 0e 04 1d 0100000000000000 0e 0c", {"R13+0", "R7+0", "R7+4", "R7+12"}, 12},
      {"41 0e 08 0a 84 02 41 0b 0e 18", {"R13+0", "R13+8 r4=c-8", "R13+24", "R13+24"}, 24},
      {"84 02 85 01 07 00 41 c4 06 05 08 00", {"R13+0 r0=u0 r4=c-8 r5=c-4", "R13+0", "R13+0", "R13+0"}, 0},
      {"05 8802 03 11 05 7e 2f 06 03 14 01 02 15 02 01 09 03 0c",
       {"R13+0 r1=v-8 r2=v-4 r3=r12 r5=c8 r6=c12 r264=c-12", nullptr, nullptr, nullptr},
       0},
      {"12 0b 7e 41 13 7c", {"R11+8", "R11+16", "R11+16", "R11+16"}, 16},
      {"0f 02 7d 08 10 04 01 9c 16 05 02 70 00 0e 10", {"exp r4=exp0 r5=vexp0", nullptr, nullptr, nullptr}, 16},
      {"01 04800000 0c 07 20 2d 2e 10 00", {"R13+0", "R13+0", "R7+32", "R7+32"}, 32},
      {"0e 08 05 ff7f 01 0b 0b", {"R13+8", nullptr, nullptr, nullptr}, 8},  // register not kept, nothing to restore
      // Damage leaves what was read before.
      {"0e 08 3c 0e 10", {"R13+8 !", nullptr, nullptr, nullptr}, 8},
      {"0e 08 16 05 20 00", {"R13+8 !", nullptr, nullptr, nullptr}, 8},
  };
  for (const auto& [sProgram, asRows, FrameSize] : aCases) {
    SCOPED_TRACE(sProgram);
    const std::vector<U8> aBytes = SectionOf({CIE, (CODE + sProgram).c_str()});
    const CFrames Frames(aBytes, false);
    ASSERT_EQ(Frames.Ranges(), "8000-8100 ");
    for (size_t i = 0; i < asRows.size(); ++i) {
      if (!asRows[i]) continue;
      EXPECT_EQ(Frames.RowAt(i == 3 ? 0x80FE : 0x8000 + 2 * static_cast<U32>(i)), asRows[i]) << i;
    }
    EXPECT_EQ(Frames.FrameSize(), FrameSize);
  }
}

TEST(Frames, FormsOfEntries) {
  // .eh_frame, entries, ranges of code, row at the start of the last one
  const std::tuple<bool, std::vector<const char*>, const char*, const char*> aCases[] = {
      {false, {CIE, "00000000 00800000 10000000", "00000000 00900000 ffffffff"}, "8000-8010 9000-FFFFFFFF ", "R13+0"},
      // Version 4 with sizes of its own, 8-byte addresses; version 3; a description in front of what it refers to.
      {false,
       {"ffffffff 04 00 08 00 02 7c 0e 0c 0d 04", "00000000 0080000000000000 1000000000000000"},
       "8000-8010 ",
       "R13+4"},
      {false, {"10000000 00800000 10000000", "ffffffff 03 00 02 7c 8e01 0c 0d 08"}, "8000-8010 ", "R13+8"},
      {false,
       {"ffffffff 01 61726d63632b00 02 7c 0e 0c 0d 00", "00000000 00800000 10000000 0e 08"},
       "8000-8010 ",
       "R13+8"},
      // pcrel|sdata4 with personality and language data: 0x4000 + 0x21 - 0x20 = 0x4001
      {true,
       {"00000000 01 7a504c5200 01 7c 0e 07 00 10000000 00 1b 0c 0d 00", "20000000 e0ffffff 10000000 04 44332211 0e 08",
        ""},
       "4004-4014 ",
       "R13+8"},
      {true, {"00000000 01 7a5200 01 7c 0e 01 0a 0c 0d 00", "18000000 0040 0010 00"}, "4000-5000 ", "R13+0"},
      {true, {"00000000 01 7a5200 01 7c 0e 01 80 0c 0d 00", "18000000 00200000 10000000 00"}, "9000-9010 ", "R13+0"},
      {true, {"00000000 01 6568 00 12345678 01 7c 0e 0c 0d 00", "1a000000 00800000 10000000"}, "8000-8010 ", "R13+0"},
      {true, {"00000000 01 7a5200 01 7c 0e 01 3b 0c 0d 00", "18000000 00200000 10000000 00"}, "", nullptr},  // data
      // Damage: no such common entry, one of another version, an entry beyond the section.
      {false, {CIE, "04000000 00800000 10000000"}, "", nullptr},
      {false, {"ffffffff 05 00 02 7c 0e", "00000000 00800000 10000000"}, "", nullptr},
      {false, {CIE, "00000000 00800000"}, "", nullptr},
  };
  for (const auto& [bEh, aEntries, sRanges, sRow] : aCases) {
    SCOPED_TRACE(aEntries.back());
    const std::vector<U8> aBytes = SectionOf(aEntries);
    const CFrames Frames(aBytes, bEh);
    EXPECT_EQ(Frames.Ranges(), sRanges);
    EXPECT_EQ(Frames.sDamage.empty(), sRow != nullptr) << Frames.sDamage;
    if (sRow && !Frames.aFdes.empty()) {
      EXPECT_EQ(Frames.RowAt(Frames.aFdes.back().Low, Frames.aFdes.size() - 1), sRow);
    }
  }
  // The 64-bit format.
  const std::vector<U8> aWide = HexBytes(
      "ffffffff 1300000000000000 ffffffffffffffff 01 00 02 7c 0e 0c 0d 00 00 00 00"
      "ffffffff 1200000000000000 0000000000000000 00800000 10000000 0e 08");
  EXPECT_EQ(CFrames(aWide, false).Ranges(), "8000-8010 ");
  EXPECT_EQ(CFrames(aWide, false).RowAt(0x8000), "R13+8");
  const std::vector<U8> aBig = HexBytes(
      "0000000c ffffffff 01 00 02 7c 0e 0c 0d 00"
      "00000011 00000000 00008000 00001000 03 0001 0e 08");
  EXPECT_EQ(CFrames(aBig, false, true).Ranges(), "8000-9000 ");
  EXPECT_EQ(CFrames(aBig, false, true).RowAt(0x8000), "R13+0");
  EXPECT_EQ(CFrames(aBig, false, true).RowAt(0x8002), "R13+8");
}

using ElfFrames = CElfTest;

TEST_F(ElfFrames, CfaFrameSizeAndRelocation) {
  Open("gcc_dwarf5_O0.elf");
  const U32 Entry = ELF_GetRangeLow(Function("main"), 0), Last = ELF_GetRangeHigh(Function("main"), 0) - 2;
  ELF_SYM_LOC aRegs[20];
  for (const U32 PC : {Entry, Entry + 2, Entry, Last}) {
    EXPECT_EQ(ELF_GetCfiRegs(pFile, PC, 14, aRegs), 14u);
    EXPECT_EQ(ELF_GetCfa(pFile, PC), aRegs[ELF_CFI_SP]) << std::hex << PC;
  }
  EXPECT_EQ(ELF_GetFrameSize(pFile, Last), 8);
  EXPECT_EQ(ELF_GetFrameSize(pFile, 0x20), -1);
  EXPECT_EQ(ELF_GetCfiRegs(pFile, 0x20, 20, aRegs), 0u);
  ELF_AddRelocation("*", 0x1000);
  EXPECT_EQ(ELF_GetFrameSize(pFile, Last + 0x1000), 8);
  EXPECT_STREQ(ELF_GetLocationText(ELF_GetCfa(pFile, Entry + 0x1002)), "R13 + 8");
}

// Some compilers count what stands on the stack in words.
TEST_F(ElfFrames, OffsetsInWords) {
  std::vector<char> aBytes = BytesOf("gcc_dwarf5_O0.elf");
  const std::string_view sSection = ".ARM.attributes", sMark(".note.iar\0", 10);
  const auto At = std::search(aBytes.begin(), aBytes.end(), sSection.begin(), sSection.end());
  ASSERT_NE(At, aBytes.end());
  std::copy(sMark.begin(), sMark.end(), At);
  OpenBytes(aBytes);
  ELF_SYM_LOC aRegs[14];
  const U32 PC = ELF_GetRangeLow(Function("main"), 0) + 2;
  ELF_GetCfiRegs(pFile, PC, 14, aRegs);
  EXPECT_STREQ(ELF_GetLocationText(aRegs[ELF_CFI_SP]), "R13 + 32");
  EXPECT_STREQ(ELF_GetLocationText(ELF_GetCfa(pFile, PC)), "R13 + 8");
}

// They stand at 0, where a program may have code without any entry, or where no code can be.
TEST_F(ElfFrames, EntriesOfDroppedFunctionsAreLeftOut) {
  const char LOW[] = "../../database/data/low.elf";                 // 0 to 10 dropped, code of an assembler from 8 on
  const char AT_ZERO[] = "../../probe_gdb/firmware/cortex-r5.elf";  // a function of 12 bytes at 0, an entry at C
  // program, range of an entry (with what is in front of it) and what it becomes, frame size at 8
  const std::tuple<const char*, const char*, const char*, I32> aCases[] = {
      {LOW, "00000000 10000000", "00000000 10000000", -1},
      {AT_ZERO, "00000000 0c000000 08000000", "00000000 00000000 0c000000", 0},
      {AT_ZERO, "00000000 0c000000 08000000", "00000000 00000000 10000000", -1},
      {AT_ZERO, "0c000000 08000000", "ffffffff 08000000", -1},
      {AT_ZERO, "00000000 0c000000 08000000", "00000000 feffffff 08000000", -1},
  };
  for (const auto& [sFile, sRange, sChanged, Size] : aCases) {
    SCOPED_TRACE(std::string(sFile) + " " + sChanged);
    OpenBytes(WithBytes(BytesOf(sFile), sRange, sChanged));
    EXPECT_EQ(ELF_GetFrameSize(pFile, 8), Size);
    for (U32 i = 0; i < ELF_GetNumFdes(pFile); ++i) {
      const U32 Low = ELF_GetFdeLow(pFile, i);
      EXPECT_TRUE(Size == 0 || (Low != 0 && Low < 0xFFFFFFFE)) << i;
    }
  }
  const std::vector<char> aLabel = WithBytes(BytesOf(AT_ZERO), "00000000 0c000000 1200", "00000000 0c000000 1000");
  OpenBytes(WithBytes(aLabel, "00000000 0c000000 08000000", "00000000 00000000 0c000000"));
  EXPECT_EQ(ELF_GetFrameSize(pFile, 8), 0) << "a label without size at 0";
}

// Each is said once, however often it is asked.
TEST_F(ElfFrames, RulesThatAreNotKnown) {
  Open("gcc_dwarf5_O0.elf");
  const U32 PC = ELF_GetRangeLow(Function("main"), 0) + 4;
  // end of main's program, registers that are told, message
  const std::tuple<const char*, U32, const char*> aCases[] = {
      {"87 02 8e 01 41", 14, nullptr},
      {"16 07 01 30 41", 14, "LibDwarf: evaluation of 'DW_EXPR_VAL_EXPRESSION' not implemented"},
      {"3c 02 8e 01 41", 0, "libdwarf: frame program is damaged in func CFrameTable::RowAt (pc, 0x806C)"},
  };
  for (const auto& [sProgram, NumRegs, sMessage] : aCases) {
    OpenBytes(WithBytes(BytesOf("gcc_dwarf5_O0.elf"), "87 02 8e 01 41", sProgram));
    aMessages.clear();
    ELF_SYM_LOC aRegs[14];
    for (int i = 0; i < 3; ++i) EXPECT_EQ(ELF_GetCfiRegs(pFile, PC, 14, aRegs), NumRegs) << sProgram;
    EXPECT_EQ(ELF_GetCfa(pFile, PC).Type == ELF_LOC_NONE, NumRegs == 0);
    EXPECT_EQ(aMessages, sMessage ? std::vector<std::string>{sMessage} : std::vector<std::string>());
  }
}
