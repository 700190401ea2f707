#include "core/decoder/inst_kind.h"

#include <bit>

#include "core/decoder/operand_text.h"
#include "core/decoder/simd_list.h"

namespace {

constexpr U32 SEMIHOST_NUMBER = 0xAB;  // of BKPT and of SVC in Thumb
constexpr U32 SEMIHOST_NUMBER_ARM = 0x123456;
// Up to this version SVC 0xAB is the way to request semihosting.
constexpr U32 LAST_ARCH_WITH_SVC_SEMIHOSTING = 5;

U32 SignExtended(U32 Value, U32 Width) {
  const U32 Sign = 1u << (Width - 1);
  return (Value ^ Sign) - Sign;
}

U32 TargetB8(const INST& Inst) {
  return Inst.PC + SignExtended(Inst.Bits(0, 8) << 1, 9);
}
U32 TargetB11(const INST& Inst) {
  return Inst.PC + SignExtended(Inst.Bits(0, 11) << 1, 12);
}
U32 TargetCBZ(const INST& Inst) {
  return Inst.PC + (Inst.Bits(9, 1) << 6 | Inst.Bits(3, 5) << 1);
}

U32 TargetB20(const INST& Inst) {
  const U32 Offset = Inst.Bits(26, 1) << 20 | Inst.Bits(11, 1) << 19 | Inst.Bits(13, 1) << 18 | Inst.Bits(16, 6) << 12 |
                     Inst.Bits(0, 11) << 1;
  return Inst.PC + SignExtended(Offset, 21);
}

U32 TargetB24(const INST& Inst) {
  const U32 S = Inst.Bits(26, 1);
  const U32 I1 = (Inst.Bits(13, 1) ^ S ^ 1u);
  const U32 I2 = (Inst.Bits(11, 1) ^ S ^ 1u);
  const U32 Offset = S << 24 | I1 << 23 | I2 << 22 | Inst.Bits(16, 10) << 12 | Inst.Bits(0, 11) << 1;
  return Inst.PC + SignExtended(Offset, 25);
}

U32 LoopOffset(const INST& Inst) {
  return Inst.Bits(1, 10) << 2 | Inst.Bits(11, 1) << 1;
}
U32 TargetLoopStart(const INST& Inst) {
  return Inst.PC + LoopOffset(Inst);
}
U32 TargetLoopEnd(const INST& Inst) {
  return Inst.PC - LoopOffset(Inst);
}

U32 TargetBLX(const INST& Inst) {
  return TargetB24(Inst) & ~3u;
}

U32 LiteralBase(const INST& Inst) {
  return Inst.PC & ~3u;
}
U32 TargetLiteral16(const INST& Inst) {
  return LiteralBase(Inst) + (Inst.Bits(0, 8) << 2);
}

U32 TargetLiteral32(const INST& Inst) {
  const U32 Offset = Inst.Bits(0, 12);
  return Inst.Bit(23) ? LiteralBase(Inst) + Offset : LiteralBase(Inst) - Offset;
}

U32 TargetLiteralDual(const INST& Inst) {
  const U32 Offset = Inst.Bits(0, 8) << 2;
  return Inst.Bit(23) ? LiteralBase(Inst) + Offset : LiteralBase(Inst) - Offset;
}

U32 TargetLiteralHalf(const INST& Inst) {
  const U32 Offset = Inst.Bits(0, 8) << 1;
  return Inst.Bit(23) ? LiteralBase(Inst) + Offset : LiteralBase(Inst) - Offset;
}

U32 WideImmediate(const INST& Inst) {
  return Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8);
}
U32 TargetAdrAdd(const INST& Inst) {
  return LiteralBase(Inst) + WideImmediate(Inst);
}
U32 TargetAdrSub(const INST& Inst) {
  return LiteralBase(Inst) - WideImmediate(Inst);
}

U32 TargetArmB(const INST& Inst) {
  return Inst.PC + SignExtended(Inst.Bits(0, 24) << 2, 26);
}
U32 TargetArmBLX(const INST& Inst) {
  return TargetArmB(Inst) + (Inst.Bits(24, 1) << 1);
}
U32 RotatedImmediate(const INST& Inst) {
  return std::rotr(Inst.Bits(0, 8), static_cast<int>(2 * Inst.Bits(8, 4)));
}
U32 TargetArmAdrAdd(const INST& Inst) {
  return LiteralBase(Inst) + RotatedImmediate(Inst);
}
U32 TargetArmAdrSub(const INST& Inst) {
  return LiteralBase(Inst) - RotatedImmediate(Inst);
}
U32 TargetLiteralSplit(const INST& Inst) {
  const U32 Offset = Inst.Bits(8, 4) << 4 | Inst.Bits(0, 4);
  return Inst.Bit(23) ? LiteralBase(Inst) + Offset : LiteralBase(Inst) - Offset;
}

U32 FlagsBX(const INST& Inst) {
  return Inst.Bits(3, 4) == REG_LR ? IF_RETURN : IF_CALL;
}
U32 FlagsBXAUT(const INST& Inst) {
  return Inst.Bits(16, 4) == REG_LR ? IF_RETURN : IF_CALL;
}
U32 FlagsPop16(const INST& Inst) {
  return Inst.Bit(8) ? IF_BRANCH | IF_RETURN : 0u;
}
U32 FlagsPop32(const INST& Inst) {
  return Inst.Bit(REG_PC) ? IF_BRANCH | IF_RETURN : 0u;
}
U32 FlagsLDM32(const INST& Inst) {
  return Inst.Bit(REG_PC) ? IF_BRANCH : 0u;
}

U32 FlagsLDR32(const INST& Inst) {
  if (Inst.Bits(12, 4) != REG_PC) return 0;
  return Inst.Bits(16, 4) == REG_SP ? IF_BRANCH | IF_RETURN : IF_BRANCH;
}

U32 FlagsHighReg(const INST& Inst) {
  const U32 Rd = Inst.Bits(7, 1) << 3 | Inst.Bits(0, 3);
  return Rd == REG_PC ? IF_BRANCH | IF_DIRECT_BRANCH : 0u;
}

U32 FlagsBkpt(const INST& Inst) {
  return Inst.Bits(0, 8) == SEMIHOST_NUMBER ? IF_SEMIHOST : 0u;
}

U32 FlagsSVC(const INST& Inst) {
  const bool bOld = Inst.pContext->ArchVersion <= LAST_ARCH_WITH_SVC_SEMIHOSTING;
  return bOld && Inst.Bits(0, 8) == SEMIHOST_NUMBER ? IF_SEMIHOST : 0u;
}

U32 FlagsArmBX(const INST& Inst) {
  return Inst.Bits(0, 4) == REG_LR ? IF_RETURN : IF_CALL;
}
U32 FlagsALU(const INST& Inst) {
  return Inst.Bits(12, 4) == REG_PC ? U32(IF_BRANCH) : 0u;
}
U32 FlagsArmMov(const INST& Inst) {
  return Inst.Bits(12, 4) == REG_PC ? IF_BRANCH | IF_DIRECT_BRANCH : 0u;
}
U32 FlagsArmSVC(const INST& Inst) {
  return Inst.Bits(0, 24) == SEMIHOST_NUMBER_ARM ? U32(IF_SEMIHOST) : 0u;
}

bool IsBitFieldValid(const INST& Inst) {
  return Inst.Bits(0, 5) >= (Inst.Bits(12, 3) << 2 | Inst.Bits(6, 2));
}

bool IsArmBitFieldValid(const INST& Inst) {
  return Inst.Bits(16, 5) >= Inst.Bits(7, 5);
}
bool IsAlways(const INST& Inst) {
  return Inst.Cond == COND_ALWAYS;
}
bool IsDualValid(const INST& Inst) {
  return Inst.Bits(12, 4) != REG_PC;
}
bool IsDualStoreValid(const INST& Inst) {
  return Inst.Bits(0, 4) != REG_PC;
}
bool IsFixedValid(const INST& Inst) {
  return (Inst.Bits(0, 4) << 1 | Inst.Bits(5, 1)) <= (Inst.Bit(7) ? 32u : 16u);
}
bool IsBankedValid(const INST& Inst) {
  return BankedRegOf(Inst) != nullptr;
}
bool IsSelectValid(const INST& Inst) {
  return Inst.Bits(4, 4) < COND_ALWAYS;
}
bool IsFloatSystemValid(const INST& Inst) {
  return FloatSystemRegOf(Inst) != nullptr;
}

constexpr U32 ODD_D = 1u << 12;
constexpr U32 ODD_N = 1u << 16;
constexpr U32 ODD_M = 1u << 0;

bool AreQuadsValid(const INST& Inst, U32 QuadBit, U32 OddBits) {
  return !Inst.Bit(QuadBit) || (Inst.Word & OddBits) == 0;
}
bool IsSimdDNMValid(const INST& Inst) {
  return AreQuadsValid(Inst, 6, ODD_D | ODD_N | ODD_M);
}
bool IsSimdDNMSmallValid(const INST& Inst) {
  return Inst.Bits(20, 2) != 3 && IsSimdDNMValid(Inst);
}
bool IsSimdDMValid(const INST& Inst) {
  return AreQuadsValid(Inst, 6, ODD_D | ODD_M);
}
bool IsSimdDValid(const INST& Inst) {
  return AreQuadsValid(Inst, 6, ODD_D);
}
bool IsSimdDN24Valid(const INST& Inst) {
  return AreQuadsValid(Inst, 24, ODD_D | ODD_N);
}
bool IsSimdTableValid(const INST& Inst) {
  constexpr U32 LAST_DOUBLE = 31;
  return (Inst.Bits(7, 1) << 4 | Inst.Bits(16, 4)) + Inst.Bits(8, 2) <= LAST_DOUBLE;
}
bool IsSimdWholeValid(const INST& Inst) {
  return SimdWholeList(Inst).bValid;
}
bool IsSimdLaneValid(const INST& Inst) {
  return SimdLaneList(Inst).bValid;
}
bool IsSimdAllLanesValid(const INST& Inst) {
  return SimdAllLanesList(Inst).bValid;
}

bool IsFloatListValid(const INST& Inst) {
  constexpr U32 NUM_SINGLES = 32;
  constexpr U32 NUM_DOUBLES = 32;
  constexpr U32 MAX_DOUBLES_IN_LIST = 16;
  if (!Inst.Bit(8)) {
    const U32 Count = Inst.Bits(0, 8);
    return Count > 0 && (Inst.Bits(12, 4) << 1 | Inst.Bits(22, 1)) + Count <= NUM_SINGLES;
  }
  const U32 Count = Inst.Bits(1, 7);
  const U32 First = Inst.Bits(22, 1) << 4 | Inst.Bits(12, 4);
  return Count > 0 && Count <= MAX_DOUBLES_IN_LIST && First + Count <= NUM_DOUBLES;
}

// Where the condition stands: in the IT block or the top of an ARM word, nowhere, or in four bits of a Thumb word.
enum COND_SOURCE : U8 { COND_FROM_INST, COND_FROM_NOWHERE, COND_FROM_BITS_8, COND_FROM_BITS_22 };

struct KIND_INFO {
  U32 Flags = 0;
  COND_SOURCE Cond = COND_FROM_INST;
  U32 (*pfTarget)(const INST&) = nullptr;
  U32 (*pfFlags)(const INST&) = nullptr;  // flags that depend on operands
  bool (*pfIsValid)(const INST&) = nullptr;
};

constexpr U32 JUMP = IF_BRANCH | IF_DIRECT_BRANCH;
constexpr U32 JUMP_TO = JUMP | IF_TARGET;

// In the order of INST_KIND.
constexpr KIND_INFO aKind[] = {
    /* PLAIN */ {},
    /* NOCOND */ {0, COND_FROM_NOWHERE},
    /* MEM */ {IF_MEM},
    /* MEM_NOCOND */ {IF_MEM, COND_FROM_NOWHERE},
    /* IT */ {IF_MEM, COND_FROM_NOWHERE},
    /* B8 */ {JUMP_TO, COND_FROM_BITS_8, TargetB8},
    /* B11 */ {JUMP_TO, COND_FROM_INST, TargetB11},
    /* B20 */ {JUMP_TO, COND_FROM_BITS_22, TargetB20},
    /* B24 */ {JUMP_TO, COND_FROM_INST, TargetB24},
    /* CBZ */ {JUMP_TO, COND_FROM_NOWHERE, TargetCBZ},
    /* LOOP_START */ {JUMP_TO, COND_FROM_NOWHERE, TargetLoopStart},
    /* LOOP_END */ {JUMP_TO, COND_FROM_NOWHERE, TargetLoopEnd},
    /* BL */ {JUMP_TO | IF_CALL, COND_FROM_INST, TargetB24},
    /* BLX_IMM */ {JUMP_TO | IF_CALL, COND_FROM_INST, TargetBLX},
    /* BX */ {JUMP, COND_FROM_INST, nullptr, FlagsBX},
    /* BLX */ {JUMP | IF_CALL},
    /* BXJ */ {JUMP | IF_CALL},
    /* BXAUT */ {JUMP, COND_FROM_INST, nullptr, FlagsBXAUT},
    /* TABLE_BRANCH */ {JUMP | IF_MEM},
    /* POP16 */ {IF_MEM, COND_FROM_INST, nullptr, FlagsPop16},
    /* POP32 */ {IF_MEM, COND_FROM_INST, nullptr, FlagsPop32},
    /* LDM32 */ {IF_MEM, COND_FROM_INST, nullptr, FlagsLDM32},
    /* LDR32 */ {IF_MEM, COND_FROM_INST, nullptr, FlagsLDR32},
    /* LITERAL16 */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteral16},
    /* LITERAL32 */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteral32, FlagsLDR32},
    /* LITERAL_DUAL */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteralDual},
    /* LITERAL_HALF */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteralHalf},
    /* PRELOAD_LITERAL */ {IF_TARGET, COND_FROM_INST, TargetLiteral32},
    /* ADR16 */ {IF_TARGET, COND_FROM_INST, TargetLiteral16},
    /* ADR_ADD */ {IF_TARGET, COND_FROM_INST, TargetAdrAdd},
    /* ADR_SUB */ {IF_TARGET, COND_FROM_INST, TargetAdrSub},
    /* HIGH_REG */ {0, COND_FROM_INST, nullptr, FlagsHighReg},
    /* BKPT */ {IF_BKPT, COND_FROM_NOWHERE, nullptr, FlagsBkpt},
    /* SVC16 */ {0, COND_FROM_INST, nullptr, FlagsSVC},
    /* SMC */ {IF_BRANCH},
    /* RFE */ {IF_BRANCH | IF_MEM},
    /* ERET */ {IF_BRANCH | IF_RETURN},
    /* SELECT */ {0, COND_FROM_NOWHERE, nullptr, nullptr, IsSelectValid},
    /* BIT_FIELD */ {0, COND_FROM_INST, nullptr, nullptr, IsBitFieldValid},
    /* FLOAT_LIST */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsFloatListValid},
    /* FLOAT_CLEAR */ {0, COND_FROM_INST, nullptr, nullptr, IsFloatListValid},
    /* FLOAT_SYSTEM */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsFloatSystemValid},
    /* FLOAT_FIXED */ {0, COND_FROM_INST, nullptr, nullptr, IsFixedValid},
    /* DUAL */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsDualValid},
    /* DUAL_STORE */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsDualStoreValid},
    /* BANKED */ {0, COND_FROM_INST, nullptr, nullptr, IsBankedValid},
    /* ALU */ {0, COND_FROM_INST, nullptr, FlagsALU},
    /* ARM_MOV */ {0, COND_FROM_INST, nullptr, FlagsArmMov},
    /* ARM_ADR_ADD */ {IF_TARGET, COND_FROM_INST, TargetArmAdrAdd, FlagsALU},
    /* ARM_ADR_SUB */ {IF_TARGET, COND_FROM_INST, TargetArmAdrSub, FlagsALU},
    /* ARM_LITERAL */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteral32, FlagsLDR32},
    /* ARM_LITERAL_SPLIT */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteralSplit},
    /* ARM_LITERAL_DUAL */ {IF_MEM | IF_TARGET, COND_FROM_INST, TargetLiteralSplit, nullptr, IsDualValid},
    /* ARM_PRELOAD_LITERAL */ {IF_TARGET, COND_FROM_NOWHERE, TargetLiteral32},
    /* ARM_B */ {JUMP_TO, COND_FROM_INST, TargetArmB},
    /* ARM_BL */ {JUMP_TO | IF_CALL, COND_FROM_INST, TargetArmB},
    /* ARM_BLX_IMM */ {JUMP_TO | IF_CALL, COND_FROM_NOWHERE, TargetArmBLX},
    /* ARM_BX */ {JUMP, COND_FROM_INST, nullptr, FlagsArmBX},
    /* ARM_SVC */ {0, COND_FROM_INST, nullptr, FlagsArmSVC},
    /* ARM_ALWAYS */ {0, COND_FROM_NOWHERE, nullptr, nullptr, IsAlways},
    /* ARM_BKPT */ {IF_BKPT, COND_FROM_NOWHERE, nullptr, nullptr, IsAlways},
    /* ARM_HVC */ {IF_BRANCH, COND_FROM_NOWHERE, nullptr, nullptr, IsAlways},
    /* ARM_BIT_FIELD */ {0, COND_FROM_INST, nullptr, nullptr, IsArmBitFieldValid},
    /* SIMD_DNM */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdDNMValid},
    /* SIMD_DNM_SMALL */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdDNMSmallValid},
    /* SIMD_DM */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdDMValid},
    /* SIMD_D */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdDValid},
    /* SIMD_DN24 */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdDN24Valid},
    /* SIMD_TABLE */ {0, COND_FROM_INST, nullptr, nullptr, IsSimdTableValid},
    /* SIMD_MULTIPLE */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsSimdWholeValid},
    /* SIMD_LANE */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsSimdLaneValid},
    /* SIMD_ALL */ {IF_MEM, COND_FROM_INST, nullptr, nullptr, IsSimdAllLanesValid},
    /* REFUSED */ {},
};
static_assert(std::size(aKind) == KIND_COUNT);

U32 CondOf(const INST& Inst, COND_SOURCE Source) {
  switch (Source) {
    case COND_FROM_INST:
      return Inst.Cond;
    case COND_FROM_BITS_8:
      return Inst.Bits(8, 4);
    case COND_FROM_BITS_22:
      return Inst.Bits(22, 4);
    case COND_FROM_NOWHERE:
      break;
  }
  return COND_NONE;
}

}  // namespace

bool ClassifyInst(INST& Inst, INST_KIND Kind) {
  const KIND_INFO& Info = aKind[Kind];
  if (Info.pfIsValid != nullptr && !Info.pfIsValid(Inst)) return false;
  const U32 Cond = CondOf(Inst, Info.Cond);
  Inst.Info.Flags = Info.Flags | Cond << IF_COND_SHIFT | (Cond < COND_NONE ? IF_CONDITIONAL : 0u);
  if (Info.pfFlags != nullptr) Inst.Info.Flags |= Info.pfFlags(Inst);
  if (Info.pfTarget != nullptr) Inst.Info.Target = Info.pfTarget(Inst);
  return true;
}
