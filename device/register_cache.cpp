#include "device/register_cache.h"

#include <cstring>

#include "base/stable_hash.h"

void CRegisterCache::SetSize(U32 Count) {
  if (Count != Size()) aEntry.assign(Count, ENTRY{});
}

void CRegisterCache::Clear() {
  aEntry.assign(aEntry.size(), ENTRY{});
}

U8 CRegisterCache::Get(U32 Index, U64& Value) const {
  if (Index >= aEntry.size()) {
    Value = 0;
    return MEM_UNAVAILABLE;
  }
  Value = aEntry[Index].Value;
  return aEntry[Index].Status;
}

void CRegisterCache::Set(U32 Index, U64 Value, U8 Status) {
  if (Index < aEntry.size()) aEntry[Index] = {Value, Status};
}

void CRegisterCache::SetStatus(U32 Index, U8 Status) {
  if (Index < aEntry.size()) aEntry[Index].Status = Status;
}

void CCPRegisterCache::Clear() {
  NumUsed = 0;
  NextIndex = 0;
}

int CCPRegisterCache::Find(U32 Key) const {
  for (U32 i = 0; i < NumUsed; ++i) {
    if (aEntry[i].Key == Key) return static_cast<int>(i);
  }
  return -1;
}

U8 CCPRegisterCache::Get(const char* sReg, U64& Value) const {
  const int Index = Find(StableHash32(sReg, std::strlen(sReg)));
  if (Index < 0) {
    Value = 0;
    return MEM_STALE;
  }
  Value = aEntry[Index].Value;
  return aEntry[Index].Status;
}

void CCPRegisterCache::Set(const char* sReg, U64 Value, U8 Status) {
  const U32 Key = StableHash32(sReg, std::strlen(sReg));
  int Index = Find(Key);
  if (Index < 0) {
    Index = static_cast<int>(NextIndex);
    NextIndex = (NextIndex + 1) % NUM_ENTRIES;
    if (NumUsed < NUM_ENTRIES) ++NumUsed;
  }
  aEntry[Index] = {Key, Value, Status};
}
