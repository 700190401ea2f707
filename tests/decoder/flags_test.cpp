#include <gtest/gtest.h>

#include "decode_helper.h"

namespace {

constexpr U32 JUMP = IF_BRANCH | IF_DIRECT_BRANCH;
constexpr U32 JUMP_TO = JUMP | IF_TARGET;

enum BLOCK_COND { TAKES_COND, HAS_NONE, HAS_OWN };

struct FLAG_CASE {
  const char* sName;
  std::vector<U16> aHalfword;
  U32 Flags;  // without the condition field
  U32 Target = 0;
  BLOCK_COND Cond = TAKES_COND;
  U32 OwnCond = 15;
};

// What may write the PC, beside the same kind that doesn't, as far as the comparison with a peer doesn't say it.
const FLAG_CASE aCase[] = {
    {"BNE", {0xd1fe}, JUMP_TO, 0x08001002, HAS_OWN, 1},
    {"BWConditional", {0xf43f, 0xaffe}, JUMP_TO, 0x08001002, HAS_OWN, 0},
    {"B", {0xe7fe}, JUMP_TO, 0x08001002},
    {"CBZ", {0xb108}, JUMP_TO, 0x08001008, HAS_NONE},
    {"CBNZ", {0xb908}, JUMP_TO, 0x08001008, HAS_NONE},
    {"BL", {0xf000, 0xf801}, JUMP_TO | IF_CALL, 0x08001008},
    {"BLXImmediate", {0xf000, 0xe802}, JUMP_TO | IF_CALL, 0x08001008},
    {"BLXRegister", {0x4798}, JUMP | IF_CALL},
    {"BXLR", {0x4770}, JUMP | IF_RETURN},
    {"BXR3", {0x4718}, JUMP | IF_CALL},
    {"BXJ", {0xf3c3, 0x8f00}, JUMP | IF_CALL},
    {"BXAUT", {0xfb5e, 0xcf1d}, JUMP | IF_RETURN},
    {"WLS", {0xf041, 0xc803}, JUMP_TO, 0x0800100c, HAS_NONE},
    {"DLS", {0xf041, 0xe001}, 0, 0, HAS_NONE},
    {"LE", {0xf00f, 0xc003}, JUMP_TO, 0x08001002, HAS_NONE},
    {"POPWithPC", {0xbd10}, IF_MEM | IF_BRANCH | IF_RETURN},
    {"POPWideWithPC", {0xe8bd, 0x8010}, IF_MEM | IF_BRANCH | IF_RETURN},
    {"POPOfPCAlone", {0xf85d, 0xfb04}, IF_MEM | IF_BRANCH | IF_RETURN},
    {"LDRToPC", {0xf8d1, 0xf004}, IF_MEM | IF_BRANCH},
    {"LDRToPCFromSP", {0xf8dd, 0xf004}, IF_MEM | IF_BRANCH | IF_RETURN},
    {"LDRLiteralToPC", {0xf8df, 0xf004}, IF_MEM | IF_TARGET | IF_BRANCH, 0x08001008},
    {"HalfVLDRLiteral", {0xed9f, 0x0902}, IF_MEM | IF_TARGET, 0x08001008},
    {"ADR", {0xa001}, IF_TARGET, 0x08001008},
    {"MOVToPC", {0x4687}, JUMP},
    {"ADDToPC", {0x4487}, JUMP},
    {"MOVToR8", {0x4680}, 0},
    {"CMPWithPC", {0x4587}, 0},
    {"LDA", {0xe8d1, 0x0faf}, IF_MEM},
    {"VADD", {0xee30, 0x0a21}, 0},
    {"MUL", {0x4348}, 0},
    {"TBB", {0xe8df, 0xf001}, JUMP | IF_MEM},
    {"RFE", {0xe991, 0xc000}, IF_BRANCH | IF_MEM},
    {"SRS", {0xe98d, 0xc013}, IF_MEM},
    {"SUBSToPC", {0xf3de, 0x8f04}, IF_BRANCH | IF_RETURN},
    {"SMC", {0xf7f0, 0x8000}, IF_BRANCH},
    {"HVC", {0xf7e0, 0x8000}, IF_BRANCH},
    {"BKPT", {0xbe00}, IF_BKPT, 0, HAS_NONE},
    {"BKPTSemihosting", {0xbeab}, IF_BKPT | IF_SEMIHOST, 0, HAS_NONE},
    {"SVCIsNoSemihosting", {0xdfab}, 0},
    {"IT", {0xbf08}, IF_MEM, 0, HAS_NONE},
    {"DMB", {0xf3bf, 0x8f5f}, 0, 0, HAS_NONE},
    {"CPS", {0xb672}, 0, 0, HAS_NONE},
    {"SETEND", {0xb658}, 0, 0, HAS_NONE},
    {"CSEL", {0xea51, 0x8002}, 0, 0, HAS_NONE},
    {"VSEL", {0xfe00, 0x0a81}, 0, 0, HAS_NONE},
};

// Outside a block and in a block of each condition.
TEST(Flags, ThumbInEveryCondition) {
  for (const FLAG_CASE& Case : aCase) {
    for (U32 BlockCond = 0; BlockCond <= 15; ++BlockCond) {
      SCOPED_TRACE(testing::Message() << Case.sName << " in " << BlockCond);
      DISASM_CONTEXT Context;
      Context.ArchVersion = 8;
      DISASM_SetMode(Context, DISASM_THUMB);
      if (BlockCond < 15) Context.ITState = static_cast<U8>(BlockCond << 4 | 8);
      const DECODED Decoded = DecodeWith(Context, 0x08001002, Case.aHalfword);
      const U32 Cond = Case.Cond == TAKES_COND ? BlockCond : Case.OwnCond;
      EXPECT_EQ(Decoded.Info.Flags, Case.Flags | Cond << IF_COND_SHIFT | (Cond < 15 ? IF_CONDITIONAL : 0u));
      EXPECT_EQ(Decoded.Info.Target, Case.Target);
    }
  }
}

struct ARM_FLAG_CASE {
  const char* sName;
  U32 Word;  // with the condition "always"; 0xF at the top has no condition
  U32 Flags;
  U32 Target = 0;
};

// What may write the PC, beside the same kind that doesn't, as far as the comparison with a peer doesn't say it.
const ARM_FLAG_CASE aArmCase[] = {
    {"ADD", 0xe0810002, 0},
    {"ADDToPC", 0xe081f002, IF_BRANCH},
    {"SUBSToPC", 0xe25ef004, IF_BRANCH},
    {"MVNToPC", 0xe1e0f002, IF_BRANCH},
    {"LSLToPC", 0xe1a0f102, IF_BRANCH},
    {"ANDShiftedByRegisterToPC", 0xe001f312, IF_BRANCH},
    {"MOVToPC", 0xe1a0f00e, JUMP},
    {"MOV", 0xe1a0000e, 0},
    {"CMP", 0xe150000f, 0},
    {"ADR", 0xe28f0004, IF_TARGET, 0x0800100c},
    {"ADRToPC", 0xe28ff004, IF_TARGET | IF_BRANCH, 0x0800100c},
    {"MUL", 0xe0000291, 0},
    {"B", 0xea000002, JUMP_TO, 0x08001010},
    {"BBack", 0xeafffffe, JUMP_TO, 0x08001000},
    {"BL", 0xeb000002, JUMP_TO | IF_CALL, 0x08001010},
    {"BLXImmediate", 0xfb000002, JUMP_TO | IF_CALL, 0x08001012},
    {"BLXRegister", 0xe12fff33, JUMP | IF_CALL},
    {"BXLR", 0xe12fff1e, JUMP | IF_RETURN},
    {"BXR3", 0xe12fff13, JUMP | IF_CALL},
    {"BXJ", 0xe12fff23, JUMP | IF_CALL},
    {"POPWithPC", 0xe8bd8010, IF_MEM | IF_BRANCH | IF_RETURN},
    {"POPOfPCAlone", 0xe49df004, IF_MEM | IF_BRANCH | IF_RETURN},
    {"LDRToPCFromSP", 0xe59df004, IF_MEM | IF_BRANCH | IF_RETURN},
    {"LDRLiteralToPC", 0xe51ff004, IF_MEM | IF_TARGET | IF_BRANCH, 0x08001004},
    {"MRC", 0xee11ff10, 0},
    {"RFE", 0xf8910a00, IF_BRANCH | IF_MEM},
    {"SRS", 0xf94d0513, IF_MEM},
    {"SMC", 0xe1600070, IF_BRANCH},
    {"ERET", 0xe160006e, IF_BRANCH | IF_RETURN},
    {"SVC", 0xef000001, 0},
    {"SVCSemihosting", 0xef123456, IF_SEMIHOST},
    {"DMB", 0xf57ff05f, 0},
    {"CPS", 0xf1020013, 0},
};

TEST(Flags, ArmInEveryCondition) {
  for (const ARM_FLAG_CASE& Case : aArmCase) {
    SCOPED_TRACE(Case.sName);
    const bool bConditional = Case.Word >> 28 != 15;
    for (U32 Cond = bConditional ? 0 : 15; Cond <= (bConditional ? 14 : 15); ++Cond) {
      const DECODED Decoded = DecodeArm(0x08001000, (Case.Word & 0x0FFFFFFF) | Cond << 28);
      ASSERT_EQ(Decoded.Length, 4);
      EXPECT_EQ(Decoded.Info.Flags, Case.Flags | Cond << IF_COND_SHIFT | (Cond < 15 ? IF_CONDITIONAL : 0u));
      EXPECT_EQ(Decoded.Info.Target, Case.Target);
    }
  }
}

// A breakpoint and a call of the hypervisor have no condition, whatever stands in its place.
TEST(Flags, ArmWithoutCondition) {
  EXPECT_EQ(DecodeArm(0, 0xe1200a7b).Info.Flags, IF_BKPT | IF_UNCONDITIONAL);
  EXPECT_EQ(DecodeArm(0, 0xe1400070).Info.Flags, IF_BRANCH | IF_UNCONDITIONAL);
}

// What only other profiles have is no instruction on the M profile.
TEST(Flags, NotOnTheMProfile) {
  const std::vector<U16> aaWord[] = {
      {0xb658},         {0xba80},         {0xf000, 0xe802}, {0xe8d1, 0x017f}, {0xe991, 0xc000}, {0xe98d, 0xc013},
      {0xf3af, 0x8640}, {0xf3de, 0x8f00}, {0xf3ee, 0x8120}, {0xf3ff, 0x8000}, {0xf7f0, 0x8000}, {0xf3c3, 0x8f00},
      {0xfac1, 0xf082}, {0xeef8, 0x0a10}, {0xef00, 0x2844}, {0xf921, 0x0a8d},
  };
  for (const auto& aHalfword : aaWord) {
    DISASM_CONTEXT Context;
    Context.ArchVersion = 8;
    DISASM_SetMode(Context, DISASM_THUMB);
    EXPECT_GT(DecodeWith(Context, 0, aHalfword).Length, 0) << std::hex << aHalfword[0];
    Context.bMProfile = true;
    EXPECT_EQ(DecodeWith(Context, 0, aHalfword).Length, -1) << std::hex << aHalfword[0];
  }
}

}  // namespace
