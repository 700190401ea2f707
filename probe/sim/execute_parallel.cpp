// Additions and subtractions of bytes and halfwords in parallel.

#include <algorithm>
#include <array>
#include <utility>

#include "probe/sim/execute.h"

namespace sim {

namespace {

// By the instruction's field.
enum OPERATION : U32 { ADD8 = 0, ADD16 = 1, ADD_SUB_X = 2, SUB8 = 4, SUB16 = 5, SUB_ADD_X = 6 };
enum OVERFLOW_KIND : U32 { WRAPS = 0, SATURATES = 1, HALVES = 2 };
inline constexpr U32 KIND_UNSIGNED = 4;
inline constexpr size_t NUM_OPERATIONS = 8;
inline constexpr size_t NUM_KINDS = 8;

template <bool UNSIGNED, U32 WIDTH>
I32 Lane(U32 Value, U32 Index) {
  const U32 Raw = Value >> (Index * WIDTH) & ((1u << WIDTH) - 1);
  if constexpr (UNSIGNED) return static_cast<I32>(Raw);
  return static_cast<I32>(Raw << (32 - WIDTH)) >> (32 - WIDTH);
}

template <U32 KIND, U32 WIDTH>
I32 Finish(I32 Value) {
  constexpr bool UNSIGNED = KIND & KIND_UNSIGNED;
  constexpr I32 MAX = UNSIGNED ? (1 << WIDTH) - 1 : (1 << (WIDTH - 1)) - 1;
  constexpr I32 MIN = UNSIGNED ? 0 : -(1 << (WIDTH - 1));
  if constexpr ((KIND & 3) == SATURATES) return std::clamp(Value, MIN, MAX);
  if constexpr ((KIND & 3) == HALVES) return Value >> 1;
  return Value;
}

// Whether a lane sets its GE bits.
template <bool UNSIGNED, U32 WIDTH>
bool IsGE(I32 Value, bool bSubtract) {
  return UNSIGNED && !bSubtract ? Value >= 1 << WIDTH : Value >= 0;
}

constexpr bool Subtracts(U32 Operation, U32 LaneIndex) {
  switch (Operation) {
    case ADD_SUB_X:
      return LaneIndex == 0;
    case SUB_ADD_X:
      return LaneIndex == 1;
    default:
      return Operation >= SUB8;
  }
}

template <U32 OPERATION, U32 KIND>
const INST* RunParallel(STATE& S, const INST* pI) {
  constexpr U32 WIDTH = (OPERATION & 3) == 0 ? 8 : 16;
  constexpr U32 NUM_LANES = 32 / WIDTH;
  constexpr bool EXCHANGE = (OPERATION & 3) == 2;
  constexpr bool UNSIGNED = KIND & KIND_UNSIGNED;
  constexpr U32 GE_PER_LANE = 4 / NUM_LANES;
  U32 Result = 0;
  U32 GE = 0;
  for (U32 i = 0; i < NUM_LANES; i++) {
    const bool bSubtract = Subtracts(OPERATION, i);
    const I32 A = Lane<UNSIGNED, WIDTH>(S.R[pI->Rn], i);
    const I32 B = Lane<UNSIGNED, WIDTH>(S.R[pI->Rm], EXCHANGE ? i ^ 1 : i);
    const I32 Value = bSubtract ? A - B : A + B;
    if (IsGE<UNSIGNED, WIDTH>(Value, bSubtract)) GE |= ((1u << GE_PER_LANE) - 1) << (i * GE_PER_LANE);
    Result |= (static_cast<U32>(Finish<KIND, WIDTH>(Value)) & ((1u << WIDTH) - 1)) << (i * WIDTH);
  }
  S.R[pI->Rd] = Result;
  if constexpr ((KIND & 3) == WRAPS) S.GE = static_cast<U8>(GE);
  return Next(pI);
}

template <U32 OPERATION, U32 KIND>
constexpr HANDLER Pick() {
  if constexpr ((KIND & 3) == 3 || OPERATION == 3 || OPERATION == 7) return RunUndefined;
  return RunParallel<OPERATION, KIND>;
}

template <size_t... I>
constexpr auto MakeTable(std::index_sequence<I...>) {
  return std::array<HANDLER, sizeof...(I)>{Pick<I / NUM_KINDS, I % NUM_KINDS>()...};
}
constexpr auto PARALLEL_TABLE = MakeTable(std::make_index_sequence<NUM_OPERATIONS * NUM_KINDS>());

}  // namespace

HANDLER ParallelHandler(U32 Operation, U32 Kind) {
  return PARALLEL_TABLE[(Operation & 7) * NUM_KINDS + (Kind & 7)];
}

}  // namespace sim
