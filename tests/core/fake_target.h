#pragma once

#include <map>
#include <vector>

#include "core/vcore.h"

inline constexpr U32 CORE_ID_M4 = 0x0E0000FF;
inline constexpr U32 CORE_ID_ARM9 = 0x092601FF;
inline constexpr U32 CORE_ID_M33 = 0x0E0200FF;

// A target in memory behind the callbacks of the core model.
struct FAKE_TARGET {
  std::map<U32, U8> Memory;
  std::map<U32, U32> ProbeRegs;
  std::vector<std::pair<U32, U32>> aWritten;  // probe index, value
  QStringList Errors;

  void PutWord(U32 Addr, U32 Value, bool bBigEndian = false) {
    for (U32 i = 0; i < 4; ++i) Memory[Addr + i] = static_cast<U8>(Value >> (8 * (bBigEndian ? 3 - i : i)));
  }
  void PutHalfword(U32 Addr, U32 Value) {
    Memory[Addr] = static_cast<U8>(Value);
    Memory[Addr + 1] = static_cast<U8>(Value >> 8);
  }

  VCORE_API API() {
    VCORE_API Result;
    Result.pfReadTarget = [this](U32 Addr, U32 NumBytes, void* pData) {
      for (U32 i = 0; i < NumBytes; ++i) {
        const auto Byte = Memory.find(Addr + i);
        if (Byte == Memory.end()) return -1;
        static_cast<U8*>(pData)[i] = Byte->second;
      }
      return 0;
    };
    Result.pfReadProbeRegs = [this](const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
      for (U32 i = 0; i < Count; ++i) {
        const auto Reg = ProbeRegs.find(paIndex[i]);
        paStatus[i] = Reg == ProbeRegs.end() ? 1 : 0;
        paValue[i] = Reg == ProbeRegs.end() ? 0 : Reg->second;
      }
      return 0;
    };
    Result.pfWriteReg = [this](U32 Index, U32 Value) {
      aWritten.emplace_back(Index, Value);
      return 0;
    };
    Result.pfLogError = [this](const QString& sText) { Errors.append(sText); };
    return Result;
  }
};
