#include <gtest/gtest.h>

#include "core/core_table.h"
#include "fake_target.h"

namespace {

using namespace Qt::StringLiterals;

class CoreTest : public testing::Test {
protected:
  void Init(U32 CoreId, U32 Endianness = 0) {
    ASSERT_EQ(VCore::Init({CoreId, Endianness, Endianness}, Target.API()), 0);
  }
  void TearDown() override { VCore::Exit(); }
  FAKE_TARGET Target;
};

TEST_F(CoreTest, LifeOfTheCore) {
  EXPECT_EQ(VCore::Init({0, 0, 0}, Target.API()), -1);
  EXPECT_EQ(VCore::Init({0x80000000, 0, 0}, Target.API()), -1);
  EXPECT_EQ(VCore::GetInfo().InstAlign, 1u);
  Init(CORE_ID_M4);
  EXPECT_EQ(VCore::GetInfo().InstAlign, 2u);
  EXPECT_EQ(VCore::SetCpuInfo({CORE_ID_M4, 0, 0}), -1);
  Target.PutWord(0x100, 0x47704770);
  EXPECT_EQ(VCore::AnalyzeAdd(0x100, 0x104), 4u);
  EXPECT_TRUE(VCore::IsInstruction(0x102));
  EXPECT_EQ(VCore::SetCpuInfo({CORE_ID_CORTEX_M0, 0, 0}), 0);
  EXPECT_FALSE(VCore::IsInstruction(0x102));
  VCore::Exit();
  EXPECT_EQ(VCore::GetInfo().InstAlign, 1u);
}

TEST_F(CoreTest, AnUnknownSubfamilyIsToldAndNamedLikeItsFamily) {
  QString sName;
  Init(CORE_ID_M4);
  EXPECT_EQ(VCore::GetCoreName(14, 9, sName), 0);
  EXPECT_EQ(sName, u"Cortex-M4"_s);
  EXPECT_EQ(VCore::GetCoreName(7, 1, sName), 0);
  EXPECT_EQ(VCore::GetCoreName(12, 9, sName), 0);
  EXPECT_EQ(Target.Errors, QStringList({u"Unknown device subfamily."_s, u"Unknown device subfamily"_s}));
  EXPECT_EQ(VCore::GetCoreName(16, 0, sName), -1);
}

TEST_F(CoreTest, ReadRegsSpreadsValuesAndMarksTheMissing) {
  Init(CORE_ID_ARM9);
  Target.ProbeRegs = {{8, 0x60000013}, {9, 0x8000}, {26, 0x1234}};
  U64 aValue[18];
  U8 aStatus[18];
  EXPECT_EQ(VCore::ReadRegs(18, sizeof(aValue), aValue, aStatus), 0);
  EXPECT_TRUE(aValue[13] == 0x1234 && aValue[15] == 0x8000);
  EXPECT_TRUE(aStatus[13] == 0 && aStatus[15] == 0 && aStatus[0] == 1);
  EXPECT_EQ(VCore::ReadRegs(18, 18, aValue, aStatus), -1);
}

TEST_F(CoreTest, AModeThatCannotBeToldHasTheRegistersOfTheLastOne) {
  Init(CORE_ID_ARM9);
  EXPECT_EQ(VCore::MapRegIndex(VCORE_REG_SP), 35u);
  Target.ProbeRegs[8] = 0;
  EXPECT_EQ(VCore::MapRegIndex(VCORE_REG_SP), 35u);
  Init(0x0C0000FF);  // Cortex-R
  Target.ProbeRegs[8] = 0x12;
  EXPECT_EQ(VCore::MapRegIndex(VCORE_REG_SP), 32u);
}

TEST_F(CoreTest, ResetState) {
  using WRITTEN = std::vector<std::pair<U32, U32>>;
  const std::tuple<const char*, U32, U32, bool, int, WRITTEN> aCase[] = {
      // core, byte order, whether there are vectors; result, registers
      {"from VTOR", CORE_ID_M4, 0, true, 0, {{13, 0x20001000}, {15, 0x4000}}},
      {"big endian", CORE_ID_M4, 1, true, 0, {{13, 0x20001000}, {15, 0x4000}}},
      {"Cortex-M0 has no VTOR", CORE_ID_CORTEX_M0, 0, true, 0, {{13, 0x20000800}, {15, 0x100}}},
      {"no vectors", CORE_ID_M4, 0, false, -1, {}},
      {"Cortex-M33", CORE_ID_M33, 0, true, 0, {{13, 0x20001000}, {15, 0x4000}}},
      {"ARM7", 0x0700004F, 0, false, 0, {{9, 0}}},
      {"ARM9", CORE_ID_ARM9, 0, true, 0, {{9, 0}}},
      {"Cortex-R", 0x0C0000FF, 0, false, 0, {{9, 0}}},
  };
  for (const auto& [sName, CoreId, Endianness, bVectors, Result, aWritten] : aCase) {
    Target = {};
    if (bVectors) {
      for (const auto& [Addr, Value] : WRITTEN{{0xE000ED08, 0x4000}, {0x4000, 0x20001000}, {0x4004, 0x4001}})
        Target.PutWord(Addr, Value, Endianness != 0);
      Target.PutWord(0, 0x20000800);
      Target.PutWord(4, 0x101);
    }
    Init(CoreId, Endianness);
    EXPECT_EQ(VCore::SetResetState(), Result) << sName;
    EXPECT_EQ(Target.aWritten, aWritten) << sName;
  }
}

TEST_F(CoreTest, LastHalfwordOfMemoryDecodes) {
  Init(CORE_ID_M4);
  Target.PutHalfword(0xFFE, 0x4770);
  VCORE_INST Inst;
  EXPECT_EQ(VCore::Analyze(0xFFE, Inst), 0);
  EXPECT_EQ(Inst.Length, 2u);
  EXPECT_NE(Inst.Flags & IF_RETURN, 0u);
  EXPECT_EQ(VCore::Analyze(0x1000, Inst), -1);
}

// Code outside the program is known by decoding, and a text follows the bytes when they change.
TEST_F(CoreTest, CodeInRAM) {
  Init(CORE_ID_M4);
  Target.PutWord(0x20000000, 0x0001EB01);  // ADD.W R0, R1, R1
  EXPECT_EQ(VCore::GetInstLength(0x20000000), 4u);
  QString sText;
  VCore::Disassemble(0x20000000, sText);
  EXPECT_EQ(sText, u"ADD.W       R0, R1, R1"_s);
  Target.PutHalfword(0x20000000, 0x4770);
  EXPECT_EQ(VCore::Disassemble(0x20000000, sText), 2);
  EXPECT_EQ(sText, u"BX          LR"_s);
  Target.PutWord(0x20000000, 0x3001bf08);  // IT EQ, ADDEQ R0, #1
  VCORE_INST Inst;
  VCore::Disassemble(0x20000000, sText);
  EXPECT_TRUE(VCore::GetInst(0x20000002, Inst));  // a question in between does not end the listing's block
  VCore::Disassemble(0x20000002, sText);
  EXPECT_EQ(sText, u"ADDEQ       R0, #0x01"_s);
}

TEST_F(CoreTest, AnalyzeAddRefusesBadRanges) {
  Init(CORE_ID_M4);
  EXPECT_EQ(VCore::AnalyzeAdd(0x100, 0x100), 0u);
  EXPECT_EQ(VCore::AnalyzeAdd(0xFFFFFF00, 0xFFFFFFFF), 0u);
  EXPECT_EQ(Target.Errors, QStringList({u"Invalid address range input to function Core::AnalyzeAdd"_s,
                                        u"Cannot add to instruction cache outside 32-bit address range"_s}));
}

TEST_F(CoreTest, ModeOfOlderCoresComesFromTheStatusRegister) {
  Init(CORE_ID_ARM9);
  Target.ProbeRegs[8] = 0x13;
  EXPECT_TRUE(VCore::IsArm(0x100));
  EXPECT_EQ(VCore::GetInstSize(0x100), 4u);
  Target.ProbeRegs[8] = 0x33;
  EXPECT_FALSE(VCore::IsArm(0x100));
  Target.PutWord(0x100, 0xf800f000);
  QString sCode;
  EXPECT_EQ(VCore::GetCodeHex(0x100, sCode), 4);  // a call of two halfwords is shown as one
  EXPECT_EQ(sCode, u"F000 F800"_s);
  Target.ProbeRegs.clear();
  EXPECT_FALSE(VCore::IsArm(0x100));
}

// What a core has is more than its version number says.
TEST_F(CoreTest, InstructionsOfTheCore) {
  const std::tuple<U32, U32, const char16_t*> aCase[] = {
      // identifier, word in memory, text
      {0x0700004F, 0xe12fff1e, u"BX          LR"},          // version 4 with Thumb
      {0x07FFFFFF, 0xe0821003, u"ADD         R1, R2, R3"},  // version 3
      {0x080000FF, 0xf2002844, u"VADD.I8     Q1, Q0, Q2"},
      {CORE_ID_M4, 0x2844ef00, u"?"},                        // the same in Thumb
      {CORE_ID_M4, 0x8fc0f3de, u"?"},                        // a return from an exception of other profiles
      {0x0B7680FF, 0xe3012234, u"MOVW        R2, #0x1234"},  // version 6 with Thumb-2
  };
  for (const auto& [CoreId, Word, sText] : aCase) {
    constexpr U32 PROBE_INDEX_CPSR = 8;
    Target.ProbeRegs[PROBE_INDEX_CPSR] = 0x10;  // ARM state
    Target.PutWord(0x1000, Word);
    Init(CoreId);
    QString sFound;
    EXPECT_EQ(VCore::Disassemble(0x1000, sFound), 4);
    EXPECT_EQ(sFound, sText);
    VCore::Exit();
  }
}

// Big-endian data beside little-endian code: the literal is read in its own order.
TEST_F(CoreTest, LiteralsOfLittleEndianCodeWithBigEndianData) {
  constexpr U32 PROBE_INDEX_CPSR = 8;
  Target.ProbeRegs[PROBE_INDEX_CPSR] = 0x10;
  Target.PutWord(0x1000, 0xe59f1000);  // LDR R1, [PC, #0]
  Target.PutWord(0x1008, 0x12345678, true);
  VCORE_API API = Target.API();
  API.pfReadData = [this](U32 Addr, U32 NumBytes, void* pData) {
    return Target.API().pfReadTarget(Addr, NumBytes, pData) == 0 ? static_cast<int>(NumBytes) : -1;
  };
  ASSERT_EQ(VCore::Init({CORE_ID_ARM9, 1, 0}, API), 0);
  QString sText;
  VCore::Disassemble(0x1000, sText);
  EXPECT_EQ(sText, u"LDR         R1, [PC, #0x00] ; [0x00001008] =0x12345678"_s);
}

TEST(CoreTexts, CoprocessorRegisters) {
  VCore::CP_REG Reg;
  EXPECT_EQ(VCore::ParseCPReg(u"15, 1,2, 0x8 ,0"_s, Reg), 0);
  EXPECT_EQ(Reg.CRm, 8);
  for (const char* sText : {"15,1,2,3", "15,1,2,3,4,5", "16,0,0,0,0", "15,0,0,9,0", "15,0,0,0,9", "15,0,,0,0",
                            "15,0,x,0,0", "15,0,00000000000,0,0"}) {
    EXPECT_EQ(VCore::ParseCPReg(QString::fromLatin1(sText), Reg), -1) << sText;
  }
}

}  // namespace
