// The core model over a real program: where instructions are, what they say, and how data lies between them.
#include <gtest/gtest.h>

#include <thread>

#include "fake_target.h"
#include "program/elf/elf.h"

namespace {

class ProgramTest : public testing::Test {
protected:
  void SetUp() override {
    pFile = ELF_Open(VEXOR_SOURCE_DIR "/tests/core/data/firmware.elf");
    ASSERT_NE(pFile, nullptr);
    ASSERT_EQ(VCore::Init({CORE_ID_M4, 0, 0}, Target.API()), 0);
    VCore::AttachElf(pFile);
    ASSERT_GT(VCore::BuildMappingSymbols(), 0);
    ASSERT_GT(VCore::AnalyzeProgram(), 0u);
  }
  void TearDown() override {
    VCore::Exit();
    ELF_Close(pFile);
  }
  static std::string Text(U32 Addr) {
    QString sText;
    VCore::Disassemble(Addr, sText);
    return sText.toStdString();
  }
  // The answer of one of the neighbour queries, INVALID_ADDR where it refuses.
  static U32 Neighbour(int (*pfGet)(U32, U32&), U32 Addr) {
    U32 Result = 0;
    return pfGet(Addr, Result) == 0 ? Result : INVALID_ADDR;
  }

  FAKE_TARGET Target;
  ELF_FILE* pFile = nullptr;
};

TEST_F(ProgramTest, Texts) {
  const std::tuple<U32, const char*, const char*> aCase[] = {
      {0x08000016, "ITE         GT", "BFCC"},
      {0x08000018, "ADDGT       R0, #0x01", "3001"},
      {0x0800001a, "SUBLE       R0, #0x01", "3801"},
      {0x0800001c, "LDR         R3, =counter ; [0x08000028] =0x20000000", "4B02"},
      {0x0800001e, "LDR         R2, =0x01234567 ; [0x0800002C]", "4A03"},
      {0x08000022, "MLA         R0, R2, R0, R3", "FB02 3000"},
      {0x08000028, "DC32        0x20000000", "20000000"},
      {0x08000066, "BL          twice ; 0x08000030", "F7FF FFE3"},
      {0x0800006c, "B           0x08000066 ; <reset>+0x06", "E7FB"},
      {0x0800002e, "DC16        0x0123", "0123"},  // the literal's second half
      {0x40000000, "?", "----"},
  };
  for (int Round = 0; Round < 2; ++Round) {  // the second round answers from the text cache
    for (const auto& [Addr, sText, sHex] : aCase) {
      QString sCode;
      EXPECT_EQ(Text(Addr), sText);
      VCore::GetCodeHex(Addr, sCode);
      EXPECT_EQ(sCode, QLatin1String(sHex));
    }
  }
}

TEST_F(ProgramTest, AnchorCutsTheInstructionAboveIt) {
  VCore::SetAnchor(0x08000024);
  EXPECT_EQ(Text(0x08000022), "DC16        0xFB02");
  VCore::SetAnchor(INVALID_ADDR);
  EXPECT_EQ(Text(0x08000022), "MLA         R0, R2, R0, R3");
}

TEST_F(ProgramTest, NeighbouringInstructions) {
  EXPECT_EQ(Neighbour(VCore::GetNextInst, 0x08000022), 0x08000026u);
  EXPECT_EQ(Neighbour(VCore::GetPrevInst, 0x08000026), 0x08000022u);
  EXPECT_EQ(Neighbour(VCore::GetPrevInst, 0x08000024), 0x08000022u);
  EXPECT_EQ(Neighbour(VCore::GetNextInst, 0x08000026), INVALID_ADDR) << "ten bytes of literals follow";
  EXPECT_EQ(VCore::GetInstLength(0x08000024), 2u);
  EXPECT_EQ(VCore::CountInstructions(0x08000000, 0x08001000), 36u);
  EXPECT_EQ(VCore::GetDataItemSize(0x08000022), 0u);
  EXPECT_EQ(VCore::GetDataItemSize(0x08000028), 4u);
}

TEST_F(ProgramTest, StraightRanges) {
  EXPECT_TRUE(VCore::IsStraightRange(0x08000014, 0x08000026));
  EXPECT_FALSE(VCore::IsStraightRange(0x08000014, 0x08000028));  // BX LR
  EXPECT_TRUE(VCore::IsStraightRange(0x08000060, 0x0800006c));   // a call inside
  EXPECT_FALSE(VCore::IsStraightRange(0x08000010, 0x08000012));  // semihosting request
  EXPECT_TRUE(VCore::IsStraightRange(0x08000014, 0x08000014));
  EXPECT_TRUE(VCore::IsStraightRange(0x20000000, 0xFFFFFFFF));  // nothing known there; ends at once
}

// Memory comes from the file first, so that disassembly shows the program while the target runs.
TEST_F(ProgramTest, FileThenStoreThenTarget) {
  Target.PutWord(0x08000028, 0x11111111);
  Target.PutWord(0x20001000, 0x22222222);
  CMemBlock Block;
  Block.Addr = Block.VirtAddr = 0x20001004;
  Block.Data = QByteArray("\x33\x33\x33\x33", 4);
  Block.NumBytes = 4;
  EXPECT_EQ(VCore::SetImage({Block}), 0);
  U32 Value = 0;
  for (const auto& [Addr, Expected] :
       {std::pair<U32, U32>{0x08000028, 0x20000000}, {0x20001000, 0x22222222}, {0x20001004, 0x33333333}}) {
    EXPECT_EQ(VCore::ReadData(Addr, 4, &Value), 0);
    EXPECT_EQ(Value, Expected);
  }
  EXPECT_EQ(VCore::ReadData(0x20001008, 4, &Value), -1);
  Block.NumBytes = 5;
  EXPECT_EQ(VCore::SetImage({Block}), -1);
}

// The device thread asks for flags while a window draws: neither disturbs the other's IT block.
TEST_F(ProgramTest, TwoThreads) {
  std::atomic<bool> bStop = false;
  std::thread Other([&] {
    VCORE_INST Inst;
    while (!bStop) {
      VCore::Analyze(0x08000066, Inst);
      VCore::GetInst(0x08000022, Inst);
    }
  });
  for (int i = 0; i < 2000; ++i) {
    Text(0x08000016);
    ASSERT_EQ(Text(0x08000018), "ADDGT       R0, #0x01");
  }
  bStop = true;
  Other.join();
}

}  // namespace
