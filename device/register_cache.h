#pragma once

#include <array>
#include <vector>

#include "device/device_types.h"

// Values of the core's registers by the probe's numbers, each with a MEM_STATUS. Before it has a size, and beyond it,
// every register counts as unavailable. Main thread.
class CRegisterCache {
public:
  // Makes room for the registers 0 to Count - 1, all stale, unless that is the size already.
  void SetSize(U32 Count);
  U32 Size() const { return static_cast<U32>(aEntry.size()); }
  // Everything is stale.
  void Clear();
  // Status of a register; Value is written in any case.
  U8 Get(U32 Index, U64& Value) const;
  void Set(U32 Index, U64 Value, U8 Status);
  void SetStatus(U32 Index, U8 Status);

private:
  struct ENTRY {
    U64 Value = 0;
    U8 Status = MEM_STALE;
  };
  std::vector<ENTRY> aEntry;
};

// Values of coprocessor registers by their identifier text; the 101st overwrites the oldest. Main thread.
class CCPRegisterCache {
public:
  static constexpr U32 NUM_ENTRIES = 100;

  void Clear();
  // Status of the register, stale when it is not known.
  U8 Get(const char* sReg, U64& Value) const;
  void Set(const char* sReg, U64 Value, U8 Status);

private:
  struct ENTRY {
    U32 Key = 0;
    U64 Value = 0;
    U8 Status = MEM_STALE;
  };
  int Find(U32 Key) const;

  std::array<ENTRY, NUM_ENTRIES> aEntry;
  U32 NumUsed = 0;
  U32 NextIndex = 0;
};
