#include "program/database/cfi_blocks.h"

#include <algorithm>
#include <map>

#include "program/elf/elf.h"

void CCfiBlocks::Build(const ELF_FILE* pElf) {
  std::map<U32, U32> EndOfStart;
  for (U32 i = 0; i < ELF_GetNumFdes(pElf); ++i) {
    const U32 Start = ELF_GetFdeLow(pElf, i);
    const U32 End = ELF_GetFdeHigh(pElf, i);
    if (Start > End) continue;
    U32& Greatest = EndOfStart[Start];
    Greatest = std::max(Greatest, End);
  }
  for (const auto& [Start, End] : EndOfStart) m_Blocks.push_back({Start, End - Start});
}

CAddrRange CCfiBlocks::Find(U32 Addr) const {
  const auto it = std::upper_bound(m_Blocks.begin(), m_Blocks.end(), Addr,
                                   [](U32 Value, const CAddrRange& Block) { return Value < Block.Start; });
  if (it == m_Blocks.begin() || !std::prev(it)->Contains(Addr)) return {};
  return *std::prev(it);
}
