#include <gtest/gtest.h>

#include "decode_helper.h"

namespace {

constexpr U32 JUMP = IF_BRANCH | IF_DIRECT_BRANCH;
constexpr U32 JUMP_TO = JUMP | IF_TARGET;

struct FLAG_CASE {
  const char* sName;
  std::vector<U16> aHalfword;
  U32 Flags;  // without the condition field
  U32 Target;
  U32 Cond = 15;
};

const FLAG_CASE aCase[] = {
    {"BNE", {0xd1fe}, JUMP_TO, 0x08001002, 1},
    {"BWConditional", {0xf43f, 0xaffe}, JUMP_TO, 0x08001002, 0},
    {"BXLR", {0x4770}, JUMP | IF_RETURN, 0},
    {"BXR3", {0x4718}, JUMP | IF_CALL, 0},
    {"POPWithPC", {0xbd10}, IF_MEM | IF_BRANCH | IF_RETURN, 0},
    {"POPWideWithPC", {0xe8bd, 0x8010}, IF_MEM | IF_BRANCH | IF_RETURN, 0},
    {"LDMWithPC", {0xe890, 0x8006}, IF_MEM | IF_BRANCH, 0},
    {"LDRToPC", {0xf851, 0xf023}, IF_MEM | IF_BRANCH, 0},
    {"LDRToPCFromSP", {0xf85d, 0xfb04}, IF_MEM | IF_BRANCH | IF_RETURN, 0},
    {"LDRLiteral", {0x4801}, IF_MEM | IF_TARGET, 0x08001008},
    {"LDRLiteralDown", {0xf85f, 0x0008}, IF_MEM | IF_TARGET, 0x08000ffc},
    {"ADR", {0xa001}, IF_TARGET, 0x08001008},
    {"MOVToPC", {0x4687}, JUMP, 0},
    {"MOVToR8", {0x4680}, 0, 0},
    {"STR", {0x6008}, IF_MEM, 0},
    {"VLDR", {0xed91, 0x1a02}, IF_MEM, 0},
    {"TBH", {0xe8df, 0xf011}, JUMP | IF_MEM, 0},
    {"BKPTSemihosting", {0xbeab}, IF_BKPT | IF_SEMIHOST, 0},
    {"SVCIsNoSemihosting", {0xdfab}, 0, 0},
    {"IT", {0xbf08}, IF_MEM, 0},
    {"DMB", {0xf3bf, 0x8f5f}, 0, 0},
};

TEST(Flags, FlagsAndTarget) {
  for (const FLAG_CASE& Case : aCase) {
    SCOPED_TRACE(Case.sName);
    const DECODED Decoded = DecodeOne(0x08001002, Case.aHalfword);
    EXPECT_EQ(Decoded.Info.Flags, Case.Flags | Case.Cond << IF_COND_SHIFT | (Case.Cond < 15 ? IF_CONDITIONAL : 0u));
    if ((Case.Flags & IF_TARGET) != 0) {
      EXPECT_EQ(Decoded.Info.Target, Case.Target);
    }
  }
}

// What a core does not have is no instruction there.
TEST(Flags, ArchitectureGates) {
  const std::pair<std::vector<U16>, U32> aGate[] = {
      // an instruction, the first architecture that has it
      {{0x4780}, 5},         {{0xb200}, 6},         {{0xbf08}, 7}, {{0xb103}, 7},         {{0xf3bf, 0x8f5f}, 6},
      {{0xeb00, 0x0001}, 7}, {{0xe8d1, 0x0faf}, 8}, {{0x4774}, 4}, {{0xf000, 0xf800}, 4},
  };
  for (const auto& [aHalfword, FirstArch] : aGate) {
    for (U32 Arch = 4; Arch <= 8; ++Arch)
      EXPECT_EQ(DecodeOne(0, aHalfword, Arch).Length > 0, Arch >= FirstArch)
          << std::hex << aHalfword[0] << " on " << Arch;
  }
}

}  // namespace
