// Data processing with flags: logic, addition, shifts.

#include <array>
#include <utility>

#include "probe/sim/execute.h"

namespace sim {

namespace {

constexpr bool IsArithmetic(ALU_OP Op) {
  return Op >= ALU_OP::ADD;
}
constexpr bool HasResult(ALU_OP Op) {
  return Op != ALU_OP::TST && Op != ALU_OP::TEQ && Op != ALU_OP::CMP && Op != ALU_OP::CMN;
}

template <ALU_OP OP>
U32 Logic(U32 A, U32 B) {
  switch (OP) {
    case ALU_OP::AND:
    case ALU_OP::TST:
      return A & B;
    case ALU_OP::BIC:
      return A & ~B;
    case ALU_OP::ORR:
      return A | B;
    case ALU_OP::ORN:
      return A | ~B;
    case ALU_OP::EOR:
    case ALU_OP::TEQ:
      return A ^ B;
    case ALU_OP::MVN:
      return ~B;
    default:
      return B;
  }
}

template <ALU_OP OP, bool SETFLAGS>
U32 Arithmetic(STATE& S, U32 A, U32 B) {
  switch (OP) {
    case ALU_OP::ADC:
      return AddWithCarry<SETFLAGS>(S, A, B, S.C);
    case ALU_OP::SBC:
      return AddWithCarry<SETFLAGS>(S, A, ~B, S.C);
    case ALU_OP::SUB:
    case ALU_OP::CMP:
      return AddWithCarry<SETFLAGS>(S, A, ~B, 1);
    case ALU_OP::RSB:
      return AddWithCarry<SETFLAGS>(S, ~A, B, 1);
    default:
      return AddWithCarry<SETFLAGS>(S, A, B, 0);
  }
}

template <ALU_OP OP, ALU_FORM FORM, bool SETFLAGS>
const INST* RunAlu(STATE& S, const INST* pI) {
  U32 B;
  U32 Carry = S.C;
  if constexpr (FORM == ALU_FORM::IMM) {
    B = pI->Imm;
    if (pI->ShiftN != CARRY_UNCHANGED) Carry = pI->ShiftN;
  } else if constexpr (FORM == ALU_FORM::REG) {
    B = S.R[pI->Rm];
  } else {
    const SHIFTED Shifted = ShiftBy(S.R[pI->Rm], pI->ShiftType, pI->ShiftN, S.C);
    B = Shifted.Value;
    Carry = Shifted.Carry;
  }
  U32 Result;
  if constexpr (IsArithmetic(OP)) {
    Result = Arithmetic<OP, SETFLAGS>(S, S.R[pI->Rn], B);
  } else {
    Result = Logic<OP>(S.R[pI->Rn], B);
    if constexpr (SETFLAGS) {
      SetNZ(S, Result);
      if constexpr (FORM != ALU_FORM::REG) S.C = Carry;
    }
  }
  if constexpr (HasResult(OP)) S.R[pI->Rd] = Result;
  return Next(pI);
}

inline constexpr size_t NUM_OPS = static_cast<size_t>(ALU_OP::NUM);
inline constexpr size_t NUM_FORMS = static_cast<size_t>(ALU_FORM::NUM);

// One handler for each operation, form and flag setting, in this order.
template <size_t... I>
constexpr auto MakeTable(std::index_sequence<I...>) {
  return std::array<HANDLER, sizeof...(I)>{
      RunAlu<static_cast<ALU_OP>(I / (NUM_FORMS * 2)), static_cast<ALU_FORM>(I / 2 % NUM_FORMS), I % 2 != 0>...};
}
constexpr auto ALU_TABLE = MakeTable(std::make_index_sequence<NUM_OPS * NUM_FORMS * 2>());

template <U32 TYPE, bool SETFLAGS>
const INST* RunShiftReg(STATE& S, const INST* pI) {
  const SHIFTED Shifted = ShiftBy(S.R[pI->Rn], TYPE, S.R[pI->Rm] & 0xFF, S.C);
  if constexpr (SETFLAGS) {
    SetNZ(S, Shifted.Value);
    S.C = Shifted.Carry;
  }
  S.R[pI->Rd] = Shifted.Value;
  return Next(pI);
}

template <HIGH_OP OP, bool TO_PC>
const INST* RunHighReg(STATE& S, const INST* pI) {
  S.R[PC] = pI->Addr + 4;
  const U32 B = S.R[pI->Rm];
  if constexpr (OP == HIGH_OP::CMP) {
    AddWithCarry<true>(S, S.R[pI->Rn], ~B, 1);
    return Next(pI);
  }
  const U32 Result = OP == HIGH_OP::ADD ? S.R[pI->Rn] + B : B;
  if constexpr (TO_PC) return At(S, Result & ~1u);
  S.R[pI->Rd] = pI->Rd == SP ? Result & ~3u : Result;
  return Next(pI);
}

}  // namespace

HANDLER AluHandler(ALU_OP Op, ALU_FORM Form, bool bSetFlags) {
  return ALU_TABLE[(static_cast<size_t>(Op) * NUM_FORMS + static_cast<size_t>(Form)) * 2 + bSetFlags];
}

HANDLER ShiftRegHandler(U32 ShiftType, bool bSetFlags) {
  static constexpr HANDLER TABLE[4][2] = {
      {RunShiftReg<SHIFT_LSL, false>, RunShiftReg<SHIFT_LSL, true>},
      {RunShiftReg<SHIFT_LSR, false>, RunShiftReg<SHIFT_LSR, true>},
      {RunShiftReg<SHIFT_ASR, false>, RunShiftReg<SHIFT_ASR, true>},
      {RunShiftReg<SHIFT_ROR, false>, RunShiftReg<SHIFT_ROR, true>},
  };
  return TABLE[ShiftType & 3][bSetFlags];
}

HANDLER HighRegHandler(HIGH_OP Op, bool bToPC) {
  switch (Op) {
    case HIGH_OP::ADD:
      return bToPC ? RunHighReg<HIGH_OP::ADD, true> : RunHighReg<HIGH_OP::ADD, false>;
    case HIGH_OP::MOV:
      return bToPC ? RunHighReg<HIGH_OP::MOV, true> : RunHighReg<HIGH_OP::MOV, false>;
    default:
      return RunHighReg<HIGH_OP::CMP, false>;
  }
}

}  // namespace sim
