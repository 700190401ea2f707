#include "program/elf/range_list.h"

namespace {

constexpr U32 FIRST_VERSION_WITH_KINDS = 5;

enum RANGE_ENTRY_KIND : U32 {
  RLE_END_OF_LIST = 0,
  RLE_BASE_ADDRESSX = 1,
  RLE_STARTX_ENDX = 2,
  RLE_STARTX_LENGTH = 3,
  RLE_OFFSET_PAIR = 4,
  RLE_BASE_ADDRESS = 5,
  RLE_START_END = 6,
  RLE_START_LENGTH = 7,
};

}  // namespace

bool CRangeListReader::Next(RANGE_ENTRY& Entry) {
  return Version < FIRST_VERSION_WITH_KINDS ? NextOfPairs(Entry) : NextOfKinds(Entry);
}

bool CRangeListReader::NextOfPairs(RANGE_ENTRY& Entry) {
  const U64 Selector = Context.AddrSize == 8 ? ~0ull : 0xFFFFFFFFull;
  while (true) {
    const U64 Low = Address(), High = Address();
    if (!Bytes.Ok() || (Low == 0 && High == 0)) return false;
    if (Low == Selector) {
      Base = High;
      continue;
    }
    Entry = {Base + Low, Base + High};
    return true;
  }
}

U64 CRangeListReader::Indexed() {
  const std::optional<U64> Addr = Context.Pool.Get(Bytes.Leb());
  if (!Addr) Bytes.Spoil();
  return Addr.value_or(0);
}

bool CRangeListReader::NextOfKinds(RANGE_ENTRY& Entry) {
  while (Bytes.Ok()) {
    switch (Bytes.Int<U8>()) {
      case RLE_END_OF_LIST:
        return false;
      case RLE_BASE_ADDRESSX:
        Base = Indexed();
        continue;
      case RLE_BASE_ADDRESS:
        Base = Address();
        continue;
      case RLE_STARTX_ENDX:
        Entry.Low = Indexed();
        Entry.High = Indexed();
        return Bytes.Ok();
      case RLE_STARTX_LENGTH:
        Entry.Low = Indexed();
        Entry.High = Entry.Low + Bytes.Leb();
        return Bytes.Ok();
      case RLE_OFFSET_PAIR:
        Entry.Low = Base + Bytes.Leb();
        Entry.High = Base + Bytes.Leb();
        return Bytes.Ok();
      case RLE_START_END:
        Entry.Low = Address();
        Entry.High = Address();
        return Bytes.Ok();
      case RLE_START_LENGTH:
        Entry.Low = Address();
        Entry.High = Entry.Low + Bytes.Leb();
        return Bytes.Ok();
      default:
        Bytes.Spoil();
    }
  }
  return false;
}
