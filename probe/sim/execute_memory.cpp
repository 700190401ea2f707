// Single loads and stores, pairs, exclusive access.

#include <array>
#include <utility>

#include "probe/sim/execute.h"
#include "probe/sim/protection.h"
#include "probe/sim/scs.h"

namespace sim {

namespace {

template <MEM_OP OP>
struct ACCESS;
template <>
struct ACCESS<MEM_OP::LDR> {
  using TYPE = U32;
};
template <>
struct ACCESS<MEM_OP::LDRB> {
  using TYPE = U8;
};
template <>
struct ACCESS<MEM_OP::LDRH> {
  using TYPE = U16;
};
template <>
struct ACCESS<MEM_OP::LDRSB> {
  using TYPE = I8;
};
template <>
struct ACCESS<MEM_OP::LDRSH> {
  using TYPE = I16;
};
template <>
struct ACCESS<MEM_OP::STR> {
  using TYPE = U32;
};
template <>
struct ACCESS<MEM_OP::STRB> {
  using TYPE = U8;
};
template <>
struct ACCESS<MEM_OP::STRH> {
  using TYPE = U16;
};

constexpr bool IsLoad(MEM_OP Op) {
  return Op < MEM_OP::STR;
}

template <MEM_MODE MODE>
U32 AddressOf(const STATE& S, const INST* pI) {
  switch (MODE) {
    case MEM_MODE::POST:
      return S.R[pI->Rn];
    case MEM_MODE::REG:
      return S.R[pI->Rn] + (S.R[pI->Rm] << pI->ShiftN);
    case MEM_MODE::LITERAL:
      return pI->Imm;
    default:
      return S.R[pI->Rn] + pI->Imm;
  }
}

template <MEM_MODE MODE>
void WriteBack(STATE& S, const INST* pI, U32 Base) {
  if constexpr (MODE == MEM_MODE::PRE || MODE == MEM_MODE::POST) S.R[pI->Rn] = Base + pI->Imm;
}

bool LoadAsUser(STATE& S, U32 Addr, U32 NumBytes, U32* pValue) {
  const CAccessAs User(S, {false, ExecutionPriority(S) < 0});
  return LoadSlow(S, Addr, NumBytes, pValue);
}

bool StoreAsUser(STATE& S, U32 Addr, U32 NumBytes, U32 Value) {
  const CAccessAs User(S, {false, ExecutionPriority(S) < 0});
  return StoreSlow(S, Addr, NumBytes, Value);
}

template <MEM_OP OP>
const INST* RunMemAsUser(STATE& S, const INST* pI) {
  using TYPE = typename ACCESS<OP>::TYPE;
  const U32 Addr = S.R[pI->Rn] + pI->Imm;
  if constexpr (IsLoad(OP)) {
    U32 Value;
    if (!LoadAsUser(S, Addr, sizeof(TYPE), &Value)) return RaiseAccessFault(S, pI);
    S.R[pI->Rd] = static_cast<U32>(static_cast<TYPE>(Value));
  } else if (!StoreAsUser(S, Addr, sizeof(TYPE), S.R[pI->Rd])) {
    if (const INST* pFault = RaiseStoreFault(S, pI)) return pFault;
  }
  return Next(pI);
}

template <MEM_OP OP, MEM_MODE MODE>
const INST* RunMem(STATE& S, const INST* pI) {
  if constexpr (MODE == MEM_MODE::USER) return RunMemAsUser<OP>(S, pI);
  using TYPE = typename ACCESS<OP>::TYPE;
  const U32 Base = S.R[pI->Rn];
  const U32 Addr = AddressOf<MODE>(S, pI);
  if constexpr (IsLoad(OP)) {
    U32 Value;
    if (!Load<TYPE>(S, Addr, &Value)) [[unlikely]]
      return RaiseAccessFault(S, pI);
    WriteBack<MODE>(S, pI, Base);
    S.R[pI->Rd] = Value;
  } else {
    if (!Store<TYPE>(S, Addr, S.R[pI->Rd])) [[unlikely]] {
      if (const INST* pFault = RaiseStoreFault(S, pI)) return pFault;
    }
    WriteBack<MODE>(S, pI, Base);
  }
  return Next(pI);
}

inline constexpr size_t NUM_MODES = static_cast<size_t>(MEM_MODE::NUM);
inline constexpr size_t NUM_OPS = static_cast<size_t>(MEM_OP::NUM);

template <size_t... I>
constexpr auto MakeTable(std::index_sequence<I...>) {
  return std::array<HANDLER, sizeof...(I)>{
      RunMem<static_cast<MEM_OP>(I / NUM_MODES), static_cast<MEM_MODE>(I % NUM_MODES)>...};
}
constexpr auto MEM_TABLE = MakeTable(std::make_index_sequence<NUM_OPS * NUM_MODES>());

template <MEM_MODE MODE>
const INST* RunLoadPC(STATE& S, const INST* pI) {
  const U32 Base = S.R[pI->Rn];
  U32 Value;
  if (!Load<U32>(S, AddressOf<MODE>(S, pI), &Value)) return RaiseAccessFault(S, pI);
  WriteBack<MODE>(S, pI, Base);
  return BranchExchange(S, Value);
}

inline constexpr U8 DUAL_PRE = 1;
inline constexpr U8 DUAL_WRITE_BACK = 2;

template <bool LOAD>
const INST* RunDual(STATE& S, const INST* pI) {
  const U32 Base = pI->Rn == PC ? (pI->Addr + 4) & ~3u : S.R[pI->Rn];
  const U32 Addr = pI->ShiftN & DUAL_PRE ? Base + pI->Imm : Base;
  if (Addr & 3) return RaiseUnaligned(S, pI, Addr);
  if constexpr (LOAD) {
    U32 First;
    U32 Second;
    if (!Load<U32>(S, Addr, &First) || !Load<U32>(S, Addr + 4, &Second)) return RaiseAccessFault(S, pI);
    if (pI->ShiftN & DUAL_WRITE_BACK) S.R[pI->Rn] = Base + pI->Imm;
    S.R[pI->Rd] = First;
    S.R[pI->Ra] = Second;
  } else {
    if (!Store<U32>(S, Addr, S.R[pI->Rd]) || !Store<U32>(S, Addr + 4, S.R[pI->Ra])) {
      if (const INST* pFault = RaiseStoreFault(S, pI)) return pFault;
    }
    if (pI->ShiftN & DUAL_WRITE_BACK) S.R[pI->Rn] = Base + pI->Imm;
  }
  return Next(pI);
}

template <class T>
const INST* LoadExclusiveAs(STATE& S, const INST* pI) {
  const U32 Addr = S.R[pI->Rn] + pI->Imm;
  if (Addr & (sizeof(T) - 1)) return RaiseUnaligned(S, pI, Addr);
  U32 Value;
  if (!Load<T>(S, Addr, &Value)) return RaiseAccessFault(S, pI);
  S.R[pI->Rd] = Value;
  S.bExclusive = true;
  S.ExclusiveAddr = Addr;
  return Next(pI);
}

// Rd is stored, Ra tells whether: 0 when it was.
template <class T>
const INST* StoreExclusiveAs(STATE& S, const INST* pI) {
  const U32 Addr = S.R[pI->Rn] + pI->Imm;
  if (Addr & (sizeof(T) - 1)) return RaiseUnaligned(S, pI, Addr);
  const bool bMine = S.bExclusive && S.ExclusiveAddr == Addr;
  if (bMine && !Store<T>(S, Addr, S.R[pI->Rd])) return RaiseAccessFault(S, pI);
  S.bExclusive = false;
  S.R[pI->Ra] = !bMine;
  return Next(pI);
}

}  // namespace

HANDLER MemHandler(MEM_OP Op, MEM_MODE Mode) {
  return MEM_TABLE[static_cast<size_t>(Op) * NUM_MODES + static_cast<size_t>(Mode)];
}

HANDLER LoadPCHandler(MEM_MODE Mode) {
  static constexpr HANDLER TABLE[NUM_MODES] = {RunLoadPC<MEM_MODE::OFFSET>,  RunLoadPC<MEM_MODE::PRE>,
                                               RunLoadPC<MEM_MODE::POST>,    RunLoadPC<MEM_MODE::REG>,
                                               RunLoadPC<MEM_MODE::LITERAL>, RunLoadPC<MEM_MODE::OFFSET>};
  return TABLE[static_cast<size_t>(Mode)];
}

HANDLER DualHandler(bool bLoad) {
  return bLoad ? RunDual<true> : RunDual<false>;
}

const INST* RunLoadExclusive(STATE& S, const INST* pI) {
  return LoadExclusiveAs<U32>(S, pI);
}

const INST* RunLoadExclusiveB(STATE& S, const INST* pI) {
  return LoadExclusiveAs<U8>(S, pI);
}

const INST* RunLoadExclusiveH(STATE& S, const INST* pI) {
  return LoadExclusiveAs<U16>(S, pI);
}

const INST* RunStoreExclusive(STATE& S, const INST* pI) {
  return StoreExclusiveAs<U32>(S, pI);
}

const INST* RunStoreExclusiveB(STATE& S, const INST* pI) {
  return StoreExclusiveAs<U8>(S, pI);
}

const INST* RunStoreExclusiveH(STATE& S, const INST* pI) {
  return StoreExclusiveAs<U16>(S, pI);
}

const INST* RunClearExclusive(STATE& S, const INST* pI) {
  S.bExclusive = false;
  return Next(pI);
}

}  // namespace sim
