// libFuzzer target: location expressions, location lists and range lists. Input: flags (1 big endian, 2 frame base,
// 4 addresses of 8 bytes, 8 offsets of 8 bytes), version (0 for an expression alone), pc (4 bytes), and bytes that are
// the list or expression and the addresses that it names by number.
#include <cstdlib>

#include "program/elf/addr_list.h"
#include "program/elf/elf_types.h"
#include "program/elf/location_expr.h"

namespace {

constexpr U64 HEAD_SIZE = 6;
constexpr U64 BASE_ADDR = 0x8000;

class CFuzzContext : public IExprContext {
public:
  explicit CFuzzContext(const ADDRESS_POOL& Pool) : Pool(Pool) {}

  std::optional<U64> IndexedAddress(U64 Index) override { return Pool.Get(Index); }
  ELF_SYM_LOC Cfa() override { return {}; }
  void Complain(const char*) override {}

private:
  const ADDRESS_POOL& Pool;
};

void Check(const ELF_SYM_LOC& Loc) {
  if (Loc.Type > ELF_LOC_STACK_VALUE || !*ELF_GetLocationText(Loc)) std::abort();
  if (Loc.BaseType != ELF_LOC_NONE) Check(ELF_GetInnerLocation(Loc));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  CByteCursor Input(pData, NumBytes, false);
  const U64 Flags = Input.Int<U8>();
  const U32 Version = static_cast<U32>(Input.Int<U8>()) % 6;
  const U32 PC = static_cast<U32>(Input.Int<U32>());
  if (!Input.Ok()) return 0;
  const bool bBigEndian = Flags & 1;
  const CByteCursor Bytes(pData + HEAD_SIZE, NumBytes - HEAD_SIZE, bBigEndian);
  const OPERAND_SIZES Sizes = {static_cast<U8>(Flags & 4 ? 8 : 4), static_cast<U8>(Flags & 8 ? 8 : 4)};
  const LIST_CONTEXT List = {BASE_ADDR, Sizes.AddrSize, {Bytes.Bytes(), Bytes.Left(), 0, Sizes.AddrSize, bBigEndian}};
  CFuzzContext Context(List.Pool);
  const auto Translate = [&](const CByteCursor& Expr) { Check(TranslateExpr(Expr, Sizes, Flags & 2, Context)); };
  if (Version == 0) {
    Translate(Bytes);
    return 0;
  }
  Translate(FindLocation({CAddrListReader::LOCATIONS, Bytes, Version, List}, PC));
  U64 NumEntries = 0;
  CAddrListReader Locations(CAddrListReader::LOCATIONS, Bytes, Version, List);
  for (LIST_ENTRY Entry; Locations.Next(Entry); ++NumEntries) Translate(Entry.Expr);
  CAddrListReader Ranges(CAddrListReader::RANGES, Bytes, Version, List);
  for (LIST_ENTRY Entry; Ranges.Next(Entry); ++NumEntries) {
  }
  if (NumEntries > 2 * NumBytes) std::abort();
  return 0;
}
