#pragma once
// The core's data accesses. RAM is served here, everything else the long way round.

#include <cstring>
#include <type_traits>

#include "probe/sim/state.h"

namespace sim {

// False when the access failed; S.FaultCause and S.FaultAddr say why then.
bool LoadSlow(STATE& S, U32 Addr, U32 NumBytes, U32* pValue);
bool StoreSlow(STATE& S, U32 Addr, U32 NumBytes, U32 Value);

// Reads or writes bytes of flash or RAM without any check or side effect but the decode cache. Null when not memory.
const U8* FindMem(const STATE& S, U32 Addr, U32 NumBytes);
REGION* FindRegion(STATE& S, U32 Addr);
// The memories of the part, in one loop.
template <class F>
void ForEachRegion(STATE& S, F Func) {
  Func(S.Flash);
  for (REGION& RAM : S.aRAM) Func(RAM);
}

// Sets S.Fast and S.AlignMask for the present configuration. While memory is protected, S.Fast is opened by accesses.
void UpdateAccessPaths(STATE& S);

// Loads a value of type T, extended to 32 bits.
template <class T>
inline bool Load(STATE& S, U32 Addr, U32* pValue) {
  const U32 Offset = Addr - S.Fast.Start;
  if (Offset < S.Fast.Limit && !(Addr & S.AlignMask & (sizeof(T) - 1))) [[likely]] {
    T Value;
    std::memcpy(&Value, S.Fast.pData + Offset, sizeof(T));
    *pValue = static_cast<U32>(static_cast<std::conditional_t<std::is_signed_v<T>, I32, U32>>(Value));
    return true;
  }
  U32 Value;
  if (!LoadSlow(S, Addr, sizeof(T), &Value)) return false;
  *pValue = static_cast<U32>(static_cast<std::conditional_t<std::is_signed_v<T>, I32, U32>>(static_cast<T>(Value)));
  return true;
}

template <class T>
inline bool Store(STATE& S, U32 Addr, U32 Value) {
  const U32 Offset = Addr - S.Fast.Start;
  if (Offset < S.Fast.Limit && !(Addr & S.AlignMask & (sizeof(T) - 1)) &&
      !(S.Fast.paHasCode[Offset >> CODE_PAGE_SHIFT] | S.Fast.paHasCode[(Offset + sizeof(T) - 1) >> CODE_PAGE_SHIFT]))
      [[likely]] {
    const T Small = static_cast<T>(Value);
    std::memcpy(S.Fast.pData + Offset, &Small, sizeof(T));
    return true;
  }
  return StoreSlow(S, Addr, sizeof(T), Value);
}

}  // namespace sim
