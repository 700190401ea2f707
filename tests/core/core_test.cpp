#include <gtest/gtest.h>

#include "core/core_table.h"
#include "fake_target.h"

namespace {

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

TEST_F(CoreTest, FirstInvalidFieldIsReported) {
  Init(CORE_ID_M4);
  const struct {
    void (*pfSpoil)(VCORE_INFO&);
    const char* sText;
  } aCase[] = {
      {[](VCORE_INFO& I) { I.MinInstLen = 5; }, "invalid minimum instruction length."},
      {[](VCORE_INFO& I) { I.RegSize = 16, I.PCSize = 16; }, "Warning: register sizes > 64 bit are not yet supported"},
      {[](VCORE_INFO& I) { I.LRReg = 64, I.PCReg = 64; }, "invalid PC register index"},
      {[](VCORE_INFO& I) { I.NumRegs = 17; }, "invalid maximum unwindable register index"},
  };
  for (const auto& Case : aCase) {
    VCORE_INFO Info;
    Case.pfSpoil(Info);
    Target.Errors.clear();
    EXPECT_EQ(VCore::SetInfo(Info), -1);
    EXPECT_EQ(Target.Errors, QStringList(QString::fromLatin1(Case.sText)));
  }
}

TEST_F(CoreTest, CoreTables) {
  const struct {
    U32 CoreId;
    const char* sName;
    const char* sArch;
    U32 ThumbLevel;
  } aCase[] = {
      {0x060000FF, "Cortex-M0", "ARMv6", 2},   {0x060100FF, "Cortex-M23", "ARMv8", 2},
      {0x03000020, "Cortex-M3", "ARMv7M", 2},  {0x0E0100FF, "Cortex-M7", "ARMv7M", 2},
      {0x0E0200FF, "Cortex-M33", "ARMv8", 2},  {0x0700013F, "ARM7", "ARMv4", 1},
      {0x07FFFFFF, "ARM7", "ARMv3", 0},        {0x092601FF, "ARM9", "ARMv5", 1},
      {0x0B3680FF, "ARM11", "ARMv6", 1},       {0x0B7680FF, "ARM11", "ARMv6", 2},
      {0x080C00FF, "Cortex-A17", "ARMv7A", 2}, {0x0C0100FF, "Cortex-R5", "ARMv7R", 2},
      {0x0E0000AA, "Cortex-M4", "", 2},
  };
  for (const auto& Case : aCase) {
    QString sName;
    EXPECT_EQ(VCore::GetCoreName(VCore::GetFamily(Case.CoreId), VCore::GetSubFamily(Case.CoreId), sName), 0);
    EXPECT_EQ(sName, QString::fromLatin1(Case.sName));
    EXPECT_EQ(VCore::GetArchName(Case.CoreId), QString::fromLatin1(Case.sArch)) << Case.sName;
    EXPECT_EQ(VCore::GetThumbLevel(Case.CoreId), Case.ThumbLevel) << Case.sName;
  }
  QString sName;
  bool bUnknown = false;
  EXPECT_EQ(VCore::GetCoreName(14, 9, sName, &bUnknown), 0);
  EXPECT_EQ(sName, QStringLiteral("Cortex-M4"));
  EXPECT_TRUE(bUnknown);
  EXPECT_EQ(VCore::GetCoreName(16, 0, sName), -1);
}

TEST_F(CoreTest, RegisterNumbersByMode) {
  Init(CORE_ID_ARM9);
  const U32 None = INVALID_REG_INDEX;
  const struct {
    U32 CPSR;
    U32 R7, R8, R13, R14, R15, PSR, SPSR;
  } aCase[] = {
      {0x10, 7, 10, 15, 16, 9, 8, None}, {0x1F, 7, 10, 15, 16, 9, 8, None}, {0x11, 7, 18, 23, 24, 9, 8, 17},
      {0x12, 7, 10, 32, 33, 9, 8, 31},   {0x13, 7, 10, 26, 27, 9, 8, 25},   {0x17, 7, 10, 29, 30, 9, 8, 28},
      {0x1B, 7, 10, 35, 36, 9, 8, 34},   {0x00, 7, 10, 35, 36, 9, 8, 34},  // no mode counts as undefined
  };
  for (const auto& Case : aCase) {
    Target.ProbeRegs[8] = 0x60000000 | Case.CPSR;
    const U32 aGot[] = {VCore::MapRegIndex(7),  VCore::MapRegIndex(8),  VCore::MapRegIndex(13), VCore::MapRegIndex(14),
                        VCore::MapRegIndex(15), VCore::MapRegIndex(16), VCore::MapRegIndex(17)};
    const U32 aWant[] = {Case.R7, Case.R8, Case.R13, Case.R14, Case.R15, Case.PSR, Case.SPSR};
    for (size_t i = 0; i < std::size(aGot); ++i) EXPECT_EQ(aGot[i], aWant[i]) << std::hex << Case.CPSR << " " << i;
  }
  EXPECT_EQ(VCore::MapRegIndex(64), None);
  Init(CORE_ID_M4);
  EXPECT_EQ(VCore::MapRegIndex(13), 13u);
}

TEST_F(CoreTest, ReadRegsSpreadsValuesAndMarksTheMissing) {
  Init(CORE_ID_ARM9);
  Target.ProbeRegs = {{8, 0x13}, {9, 0x8000}, {26, 0x1234}};
  U64 aValue[18];
  U8 aStatus[18];
  EXPECT_EQ(VCore::ReadRegs(18, sizeof(aValue), aValue, aStatus), 0);
  EXPECT_EQ(aValue[13], 0x1234u);
  EXPECT_EQ(aValue[15], 0x8000u);
  EXPECT_EQ(aStatus[13], 0);
  EXPECT_EQ(aStatus[15], 0);
  EXPECT_EQ(aStatus[0], 1);
  EXPECT_EQ(VCore::ReadRegs(18, 18, aValue, aStatus), -1);
}

TEST_F(CoreTest, ResetState) {
  const struct {
    const char* sName;
    U32 CoreId;
    U32 Endianness;
    bool bHasVectors;
    int Result;
    std::vector<std::pair<U32, U32>> aWritten;
  } aCase[] = {
      {"from VTOR", CORE_ID_M4, 0, true, 0, {{13, 0x20001000}, {15, 0x4000}}},
      {"big endian", CORE_ID_M4, 1, true, 0, {{13, 0x20001000}, {15, 0x4000}}},
      {"Cortex-M0 has no VTOR", CORE_ID_CORTEX_M0, 0, true, 0, {{13, 0x20000800}, {15, 0x100}}},
      {"no vectors", CORE_ID_M4, 0, false, -1, {}},
      {"banked", CORE_ID_ARM9, 0, false, 0, {{9, 0}}},
  };
  for (const auto& Case : aCase) {
    Target = {};
    if (Case.bHasVectors) {
      Target.PutWord(0xE000ED08, 0x4000, Case.Endianness != 0);
      Target.PutWord(0x4000, 0x20001000, Case.Endianness != 0);
      Target.PutWord(0x4004, 0x4001, Case.Endianness != 0);
      Target.PutWord(0, 0x20000800);
      Target.PutWord(4, 0x101);
    }
    Init(Case.CoreId, Case.Endianness);
    EXPECT_EQ(VCore::SetResetState(), Case.Result) << Case.sName;
    EXPECT_EQ(Target.aWritten, Case.aWritten) << Case.sName;
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
  EXPECT_EQ(sText, QStringLiteral("ADD.W       R0, R1, R1"));
  Target.PutHalfword(0x20000000, 0x4770);
  EXPECT_EQ(VCore::Disassemble(0x20000000, sText), 2);
  EXPECT_EQ(sText, QStringLiteral("BX          LR"));
}

TEST_F(CoreTest, AnalyzeAddRefusesBadRanges) {
  Init(CORE_ID_M4);
  EXPECT_EQ(VCore::AnalyzeAdd(0x100, 0x100), 0u);
  EXPECT_EQ(VCore::AnalyzeAdd(0xFFFFFF00, 0xFFFFFFFF), 0u);
  EXPECT_EQ(Target.Errors,
            QStringList({QStringLiteral("Invalid address range input to function Core::AnalyzeAdd"),
                         QStringLiteral("Cannot add to instruction cache outside 32-bit address range")}));
}

TEST_F(CoreTest, ModeOfOlderCoresComesFromTheStatusRegister) {
  Init(CORE_ID_ARM9);
  Target.ProbeRegs[8] = 0x13;
  EXPECT_TRUE(VCore::IsArm(0x100));
  EXPECT_EQ(VCore::GetInstSize(0x100), 4u);
  Target.ProbeRegs[8] = 0x33;
  EXPECT_FALSE(VCore::IsArm(0x100));
  Target.ProbeRegs.clear();
  EXPECT_FALSE(VCore::IsArm(0x100));
}

TEST(CoreTexts, CoprocessorRegisters) {
  VCore::CP_REG Reg;
  EXPECT_EQ(VCore::ParseCPReg(QStringLiteral("15, 1,2, 0x8 ,0"), Reg), 0);
  EXPECT_EQ(Reg.CRm, 8);
  for (const char* sText : {"15,1,2,3", "15,1,2,3,4,5", "16,0,0,0,0", "15,0,0,9,0", "15,0,0,0,9", "15,0,,0,0",
                            "15,0,x,0,0", "15,0,00000000000,0,0"}) {
    EXPECT_EQ(VCore::ParseCPReg(QString::fromLatin1(sText), Reg), -1) << sText;
  }
}

TEST(CoreTexts, Exceptions) {
  VCORE_REGS Regs;
  QString sText;
  EXPECT_EQ(VCore::GetExceptionLabel(Regs, sText), -1);
  Regs.aStatus[VCORE_REG_PSR] = 0;
  Regs.aValue[VCORE_REG_PSR] = 0x61000003;
  EXPECT_EQ(VCore::GetExceptionLabel(Regs, sText), 0);
  EXPECT_EQ(sText, QStringLiteral("<HardFault Exception>"));
  Regs.aValue[VCORE_REG_PSR] = 40;
  VCore::GetExceptionLabel(Regs, sText);
  EXPECT_EQ(sText, QStringLiteral("<ExternalIRQ Exception>"));
}

}  // namespace
