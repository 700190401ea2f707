// The decoder held against an independent one: which patterns are instructions, how long, where they branch to.
#include <capstone/capstone.h>
#include <gtest/gtest.h>

#include <random>

#include "decode_helper.h"

namespace {

constexpr U32 ADDR = 0x1000;

enum WHO { ONLY_WE, ONLY_PEER };

// Why one of the two decodes a word that the other refuses.
struct DIFFERENCE {
  U32 Mask;
  U32 Value;
  WHO Who;
  const char* sReason;
};

const DIFFERENCE aDifference16[] = {
    {0xFFF7, 0xB650, ONLY_WE, "SETEND: the peer is set to the M profile, we decode for all"},
    {0xFFF0, 0xBFF0, ONLY_PEER, "IT with condition 15 is unpredictable"},
};

const DIFFERENCE aDifference32[] = {
    {0xF800D001, 0xF000C000, ONLY_WE, "BLX immediate: not on the M profile"},
    {0xFFFFF800, 0xF3AF8000, ONLY_WE, "CPS with a mode: not on the M profile"},
    {0xFFE000F0, 0xE8C00070, ONLY_WE, "LDREXD, STREXD: not on the M profile"},
    {0xFFFFFF00, 0xF3DE8F00, ONLY_WE, "exception return: not on the M profile"},
    {0xFFD0FFFF, 0xE990C000, ONLY_WE, "RFE: not on the M profile"},
    {0xFFD0FFFF, 0xE810C000, ONLY_WE, "RFE: not on the M profile"},
    {0xFF70F000, 0xF830F000, ONLY_WE, "PLDW: only with the multiprocessing extension"},
    {0xFFE0F000, 0xF3E08000, ONLY_WE, "MRS: special register numbers without a name are shown as numbers"},
    {0xFFE0F000, 0xF3808000, ONLY_WE, "MSR: as MRS"},
    {0xFF30F000, 0xF930F000, ONLY_WE, "reserved hints behave as NOP"},
    {0xFFD00000, 0xE8900000, ONLY_WE, "LDM with SP, or with LR and PC, runs on hardware"},
    {0xFF70F0C0, 0xF3200000, ONLY_WE, "saturation with ASR #32"},
    {0xFE400F00, 0xEC400B00, ONLY_WE, "registers above D15, which M profile cores lack"},
    {0xFFBA0ED0, 0xEEBA0A40, ONLY_PEER, "fixed point numbers of 16 bits with a fraction of more"},
    {0xFE008000, 0xEA008000, ONLY_PEER, "data processing with a bit set that should be zero"},
    {0xFF80F0C0, 0xFA00F0C0, ONLY_PEER, "extension with a bit set that should be zero"},
    {0xFBF08000, 0xF3600000, ONLY_PEER, "bit field that ends below its start"},
    {0xFE000E00, 0xEC000A00, ONLY_PEER, "floating point list past the last register or in the obsolete X form"},
    {0xFE000E00, 0xFC000A00, ONLY_PEER, "LDC2, STC2 on the floating point coprocessor are undefined"},
    {0xFFE0D000, 0xF3E08000, ONLY_PEER, "MRS with bits set that should be zero"},
    {0xFFE0D000, 0xF3808000, ONLY_PEER, "MSR with bits set that should be zero"},
    {0xFF108000, 0xF7000000, ONLY_PEER, "bit field and saturation with bits set that should be zero"},
    {0xFF108020, 0xF3000020, ONLY_PEER, "bit field and saturation with bits set that should be zero"},
    {0xFF000F10, 0xEE000B10, ONLY_PEER, "vector element transfers: Advanced SIMD"},
    {0xFFF00F10, 0xEEE00A10, ONLY_PEER, "VMSR to privileged registers of the A profile"},
};

bool IsAdvancedSIMD(U32 Word) {
  return (Word & 0xEF000000) == 0xEF000000 || (Word & 0xFF100000) == 0xF9000000;
}

class CPeer {
public:
  CPeer() {
    cs_open(CS_ARCH_ARM, static_cast<cs_mode>(CS_MODE_THUMB | CS_MODE_MCLASS), &Handle);
    cs_option(Handle, CS_OPT_DETAIL, CS_OPT_ON);
    pInst = cs_malloc(Handle);
  }
  ~CPeer() {
    cs_free(pInst, 1);
    cs_close(&Handle);
  }
  // Null for no instruction.
  const cs_insn* Decode(const std::vector<U8>& aByte) {
    const U8* pCode = aByte.data();
    size_t Size = aByte.size();
    uint64_t Addr = ADDR;
    return cs_disasm_iter(Handle, &pCode, &Size, &Addr, pInst) ? pInst : nullptr;
  }

private:
  csh Handle = 0;
  cs_insn* pInst = nullptr;
};

bool HasReg(const cs_arm& Arm, U32 First, U32 Reg) {
  for (U32 i = First; i < Arm.op_count; ++i) {
    if (Arm.operands[i].type == ARM_OP_REG && static_cast<U32>(Arm.operands[i].reg) == Reg) return true;
  }
  return false;
}

// Branch, call and breakpoint properties that the peer's record gives.
void CompareFlow(U32 Word, const DECODED& Ours, const cs_insn& Theirs) {
  const cs_arm& Arm = Theirs.detail->arm;
  const U32 Flags = Ours.Info.Flags;
  const cs_arm_op* pLast = Arm.op_count > 0 ? &Arm.operands[Arm.op_count - 1] : nullptr;
  switch (Theirs.id) {
    case ARM_INS_B:
    case ARM_INS_CBZ:
    case ARM_INS_CBNZ:
    case ARM_INS_BL:
      ASSERT_EQ(Flags & (IF_BRANCH | IF_DIRECT_BRANCH | IF_TARGET), U32(IF_BRANCH | IF_DIRECT_BRANCH | IF_TARGET));
      ASSERT_EQ((Flags & IF_CALL) != 0, Theirs.id == ARM_INS_BL) << std::hex << Word;
      ASSERT_EQ(static_cast<U32>(Ours.Info.Target), static_cast<U32>(pLast->imm)) << std::hex << Word;
      break;
    case ARM_INS_BX:
    case ARM_INS_BLX:
      ASSERT_NE(Flags & IF_BRANCH, 0u);
      break;
    case ARM_INS_BKPT:
      ASSERT_EQ((Flags & IF_SEMIHOST) != 0, pLast->imm == 0xAB);
      break;
    case ARM_INS_POP:
    case ARM_INS_LDM:
    case ARM_INS_LDMDB:  // their first operand is the base
      ASSERT_EQ((Flags & IF_BRANCH) != 0, HasReg(Arm, Theirs.id == ARM_INS_POP ? 0 : 1, ARM_REG_PC))
          << std::hex << Word;
      break;
    case ARM_INS_LDR:
      ASSERT_EQ((Flags & IF_BRANCH) != 0, Arm.operands[0].reg == ARM_REG_PC) << std::hex << Word;
      break;
    default:
      break;
  }
}

template <size_t Size>
const DIFFERENCE* Explain(const DIFFERENCE (&aDifference)[Size], U32 Word, WHO Who) {
  for (const DIFFERENCE& Difference : aDifference) {
    if (Difference.Who == Who && (Word & Difference.Mask) == Difference.Value) return &Difference;
  }
  return nullptr;
}

template <size_t Size>
void Compare(CPeer& Peer, U32 Word, const std::vector<U16>& aHalfword, const DIFFERENCE (&aDifference)[Size]) {
  const DECODED Ours = DecodeOne(ADDR, aHalfword);
  const cs_insn* pTheirs = Peer.Decode(BytesOf(aHalfword));
  if (Ours.Length > 0 && pTheirs != nullptr) {
    ASSERT_EQ(Ours.Length, static_cast<int>(pTheirs->size)) << std::hex << Word;
    CompareFlow(Word, Ours, *pTheirs);
  } else if (Ours.Length > 0 || pTheirs != nullptr) {
    const WHO Who = Ours.Length > 0 ? ONLY_WE : ONLY_PEER;
    ASSERT_NE(Explain(aDifference, Word, Who), nullptr)
        << std::hex << Word << " we: " << Ours.sText << " they: " << (pTheirs != nullptr ? pTheirs->mnemonic : "-");
  }
}

TEST(Peer, AllHalfwords) {
  CPeer Peer;
  for (U32 Word = 0; Word < 0xE800; ++Word) {
    ASSERT_NO_FATAL_FAILURE(Compare(Peer, Word, {static_cast<U16>(Word)}, aDifference16));
  }
}

TEST(Peer, SampleOfWords) {
  constexpr int NUM_WORDS = 400'000;
  CPeer Peer;
  std::mt19937 Random(20260);
  int NumBoth = 0;
  for (int i = 0; i < NUM_WORDS; ++i) {
    const U32 Word = Random() | 0xE0000000u;
    if ((Word & 0x18000000) == 0 || IsAdvancedSIMD(Word)) continue;
    ASSERT_NO_FATAL_FAILURE(Compare(Peer, Word, {static_cast<U16>(Word >> 16), static_cast<U16>(Word)}, aDifference32));
    NumBoth += Peer.Decode(BytesOf({static_cast<U16>(Word >> 16), static_cast<U16>(Word)})) != nullptr ? 1 : 0;
  }
  EXPECT_GT(NumBoth, NUM_WORDS / 3);  // otherwise the sample says little
}

}  // namespace
