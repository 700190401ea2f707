#pragma once

#include <memory>
#include <vector>

#include "core/vcore.h"

// Instruction records by address in two levels: one page for each 64 KiB of address space that holds code, one slot for
// each halfword. No lock.
class CInstCache {
public:
  CInstCache() : apPage(NUM_PAGES) {}
  void Clear();
  // The address is taken down to a halfword. An instruction beyond the 32-bit space is not kept.
  void Store(U32 Addr, const VCORE_INST& Inst);
  bool Find(U32 Addr, VCORE_INST& Inst) const;
  U32 LengthAt(U32 Addr) const;
  // First address in [Addr, End) with a record, End if there is none. Empty pages cost one step each.
  U32 NextStart(U32 Addr, U32 End) const;

private:
  // A record packed into 8 bytes.
  struct SLOT {
    U32 Target = 0;
    U32 Flags : 16 = 0;
    U32 Length : 8 = 0;
    U32 Mode : 8 = 0;
  };
  static constexpr U32 PAGE_SHIFT = 16;
  static constexpr U32 NUM_PAGES = 1u << 16;
  static constexpr U32 SLOTS_PER_PAGE = 1u << (PAGE_SHIFT - 1);
  struct PAGE {
    SLOT aSlot[SLOTS_PER_PAGE];
  };
  const SLOT* SlotAt(U32 Addr) const;

  std::vector<std::unique_ptr<PAGE>> apPage;
};
