// The flags and targets held against an independent decoder. Texts are the subject of decoder_compare.
#include <capstone/capstone.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "decode_helper.h"

namespace {

constexpr U32 ADDR = 0xE0100000;  // targets keep all their bits
constexpr U32 FIRST_WIDE = 0xE8000000;

class CPeer {
public:
  explicit CPeer(int Mode) {
    cs_open(CS_ARCH_ARM, static_cast<cs_mode>(Mode), &Handle);
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

// Whether memory is accessed, and where a literal is.
void CompareMemory(U32 Base, const DECODED& Ours, const cs_insn& Theirs) {
  const std::string_view sName = Theirs.mnemonic;
  const auto BeginsWith = [&](auto... s) { return (sName.starts_with(s) || ...); };
  if (BeginsWith("it")) return;
  const cs_arm& Arm = Theirs.detail->arm;
  const cs_arm_op* pEnd = Arm.operands + Arm.op_count;
  const cs_arm_op* pMem = std::find_if(Arm.operands, pEnd, [](const cs_arm_op& Op) { return Op.type == ARM_OP_MEM; });
  const bool bList = BeginsWith("ldm", "stm", "pop", "push", "vldm", "vstm", "fldm", "fstm", "vpush", "vpop");
  ASSERT_EQ((Ours.Info.Flags & IF_MEM) != 0, bList || (pMem != pEnd && !BeginsWith("pl"))) << Ours.sText;
  const bool bByPc = pMem != pEnd && pMem->mem.base == ARM_REG_PC && pMem->mem.index == ARM_REG_INVALID;
  const bool bLiteral = BeginsWith("ldr", "vldr", "pld") && !BeginsWith("ldrex", "pldw");
  if (!bByPc || !bLiteral || !std::string_view(Theirs.op_str).ends_with(']')) return;
  ASSERT_NE(Ours.Info.Flags & IF_TARGET, 0u) << Ours.sText;
  ASSERT_EQ(Ours.Info.Target, Base + static_cast<U32>(pMem->mem.disp)) << Ours.sText;
}

// True when both decode it.
bool Compare(CPeer& Peer, bool bArm, U32 Word) {
  std::vector<U16> aHalfword = {static_cast<U16>(Word >> 16), static_cast<U16>(Word)};
  if (bArm) std::swap(aHalfword[0], aHalfword[1]);
  if (!bArm && Word < FIRST_WIDE) aHalfword.erase(aHalfword.begin());
  const DECODED Ours = bArm ? DecodeArm(ADDR, Word) : DecodeOne(ADDR, aHalfword);
  const cs_insn* pTheirs = Peer.Decode(BytesOf(aHalfword));
  if (Ours.Length < 0 || pTheirs == nullptr) return false;
  CompareFlow(Word, Ours, *pTheirs);
  CompareMemory(ADDR + (bArm ? 8 : 4), Ours, *pTheirs);
  return true;
}

TEST(Peer, AllHalfwordsAndSamplesOfWords) {
  constexpr U32 NUM_WORDS = 400'000;
  CPeer Thumb(CS_MODE_THUMB | CS_MODE_MCLASS), Arm(CS_MODE_ARM);
  for (U32 Word = 0; Word < 0xE800 && !HasFatalFailure(); ++Word) Compare(Thumb, false, Word);
  std::mt19937 Random(20260);
  for (const bool bArm : {false, true}) {
    U32 NumBoth = 0;
    for (U32 i = 0; i < NUM_WORDS && !HasFatalFailure(); ++i) {
      NumBoth += Compare(bArm ? Arm : Thumb, bArm, Random() | (bArm ? 0 : FIRST_WIDE)) ? 1 : 0;
    }
    EXPECT_GT(NumBoth, NUM_WORDS / 3);  // otherwise the sample says little
  }
}

}  // namespace
