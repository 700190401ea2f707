#include "core/inst_cache.h"

void CInstCache::Clear() {
  for (auto& pPage : apPage) pPage.reset();
}

void CInstCache::Store(U32 Addr, const VCORE_INST& Inst) {
  if (Addr == INVALID_ADDR) return;
  auto& pPage = apPage[Addr >> PAGE_SHIFT];
  if (pPage == nullptr) pPage = std::make_unique<PAGE>();
  SLOT& Slot = pPage->aSlot[(Addr & 0xFFFF) >> 1];
  Slot.Target = static_cast<U32>(Inst.Target);
  Slot.Flags = Inst.Flags & 0xFFFF;
  Slot.Length = Inst.Length & 0xFF;
  Slot.Mode = Inst.Mode & 0xFF;
}

const CInstCache::SLOT* CInstCache::SlotAt(U32 Addr) const {
  const auto& pPage = apPage[Addr >> PAGE_SHIFT];
  if (pPage == nullptr || (Addr & 1) != 0) return nullptr;
  const SLOT& Slot = pPage->aSlot[(Addr & 0xFFFF) >> 1];
  return Slot.Length != 0 ? &Slot : nullptr;
}

bool CInstCache::Find(U32 Addr, VCORE_INST& Inst) const {
  const SLOT* pSlot = SlotAt(Addr);
  if (pSlot == nullptr) return false;
  Inst = {pSlot->Mode, pSlot->Length, pSlot->Target, pSlot->Flags};
  return true;
}

U32 CInstCache::LengthAt(U32 Addr) const {
  const SLOT* pSlot = SlotAt(Addr);
  return pSlot != nullptr ? pSlot->Length : 0;
}

U32 CInstCache::NextStart(U32 Addr, U32 End) const {
  U64 Next = (static_cast<U64>(Addr) + 1) & ~1ull;
  while (Next < End) {
    if (apPage[Next >> PAGE_SHIFT] == nullptr) {
      Next = ((Next >> PAGE_SHIFT) + 1) << PAGE_SHIFT;
    } else if (SlotAt(static_cast<U32>(Next)) != nullptr) {
      return static_cast<U32>(Next);
    } else {
      Next += 2;
    }
  }
  return End;
}
