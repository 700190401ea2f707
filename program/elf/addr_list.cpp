#include "program/elf/addr_list.h"

#include <algorithm>

namespace {

constexpr U32 FIRST_VERSION_WITH_KINDS = 5;
constexpr U64 HIGHEST_ADDR = 0xFFFFFFFFu;

// Of locations. Those of ranges have no default, by which all that follow are one less, and no views.
enum LIST_ENTRY_KIND : U32 {
  LLE_END_OF_LIST = 0,
  LLE_BASE_ADDRESSX = 1,
  LLE_STARTX_ENDX = 2,
  LLE_STARTX_LENGTH = 3,
  LLE_OFFSET_PAIR = 4,
  LLE_DEFAULT_LOCATION = 5,
  LLE_BASE_ADDRESS = 6,
  LLE_START_END = 7,
  LLE_START_LENGTH = 8,
  LLE_GNU_VIEW_PAIR = 9,
  LLE_UNKNOWN = 10,
};

bool Covers(const LIST_ENTRY& Entry, U32 PC) {
  const U64 Low = std::min(Entry.Low, HIGHEST_ADDR), High = std::min(Entry.High, HIGHEST_ADDR);
  return Low == High ? PC == Low : PC >= Low && PC < High;
}

}  // namespace

bool CAddrListReader::Next(LIST_ENTRY& Entry) {
  Entry = {};
  return Version < FIRST_VERSION_WITH_KINDS ? NextOfPairs(Entry) : NextOfKinds(Entry);
}

bool CAddrListReader::NextOfPairs(LIST_ENTRY& Entry) {
  const U64 Selector = Context.AddrSize == 8 ? ~0ull : HIGHEST_ADDR;
  while (true) {
    const U64 Low = Address(), High = Address();
    if (!Bytes.Ok() || (Low == 0 && High == 0)) return false;
    if (Low == Selector) {
      Base = High;
      continue;
    }
    Entry.Low = Base + Low;
    Entry.High = Base + High;
    if (ListKind == LOCATIONS) Entry.Expr = Bytes.Take(Bytes.Int<U16>());
    return Bytes.Ok();
  }
}

U64 CAddrListReader::Indexed() {
  const std::optional<U64> Addr = Context.Pool.Get(Bytes.Leb());
  if (!Addr) Bytes.Spoil();
  return Addr.value_or(0);
}

U32 CAddrListReader::EntryKind() {
  const U32 Kind = static_cast<U32>(Bytes.Int<U8>());
  if (ListKind == LOCATIONS || Kind < LLE_DEFAULT_LOCATION) return Kind;
  return Kind < LLE_START_LENGTH ? Kind + 1 : U32(LLE_UNKNOWN);
}

bool CAddrListReader::NextOfKinds(LIST_ENTRY& Entry) {
  while (Bytes.More()) {
    switch (EntryKind()) {
      case LLE_END_OF_LIST:
        return false;
      case LLE_BASE_ADDRESSX:
        Base = Indexed();
        continue;
      case LLE_BASE_ADDRESS:
        Base = Address();
        continue;
      case LLE_GNU_VIEW_PAIR:
        Bytes.Leb();
        Bytes.Leb();
        continue;
      case LLE_STARTX_ENDX:
        Entry.Low = Indexed();
        Entry.High = Indexed();
        break;
      case LLE_STARTX_LENGTH:
        Entry.Low = Indexed();
        Entry.High = Entry.Low + Bytes.Leb();
        break;
      case LLE_OFFSET_PAIR:
        Entry.Low = Base + Bytes.Leb();
        Entry.High = Base + Bytes.Leb();
        break;
      case LLE_DEFAULT_LOCATION:
        Entry.bDefault = true;
        break;
      case LLE_START_END:
        Entry.Low = Address();
        Entry.High = Address();
        break;
      case LLE_START_LENGTH:
        Entry.Low = Address();
        Entry.High = Entry.Low + Bytes.Leb();
        break;
      default:
        Bytes.Spoil();
        return false;
    }
    if (ListKind == LOCATIONS) Entry.Expr = Bytes.Take(Bytes.Leb());
    return Bytes.Ok();
  }
  Bytes.Spoil();
  return false;
}

CByteCursor FindLocation(CAddrListReader Reader, U32 PC) {
  CByteCursor Default;
  LIST_ENTRY Entry;
  while (Reader.Next(Entry)) {
    if (!Entry.Expr.More()) continue;
    if (PC == 0 || (!Entry.bDefault && Covers(Entry, PC))) return Entry.Expr;
    if (Entry.bDefault) Default = Entry.Expr;
  }
  return Default;
}
