#include "probe/data_event_access.h"

namespace {

constexpr U32 TYPE_DATA_BREAKPOINT = 1;
constexpr U8 ACCESS_WRITE = 0x01;
constexpr U8 ACCESS_SIZE = 0x06;  // twice the binary logarithm of the number of bytes

}  // namespace

bool IsDataBreakpoint(const VNODEARM_DATA_EVENT& Event) {
  return Event.Type == TYPE_DATA_BREAKPOINT && (Event.Access & ACCESS_SIZE) != ACCESS_SIZE;
}

DATA_EVENT_ACCESS AccessOf(const VNODEARM_DATA_EVENT& Event) {
  DATA_EVENT_ACCESS Result;
  const bool bAnyDirection = Event.AccessMask & ACCESS_WRITE;
  Result.bOnWrite = bAnyDirection || (Event.Access & ACCESS_WRITE);
  Result.bOnRead = bAnyDirection || !(Event.Access & ACCESS_WRITE);
  const bool bAnySize = (Event.AccessMask & ACCESS_SIZE) == ACCESS_SIZE;
  Result.NumBytes = bAnySize ? 0 : 1u << ((Event.Access & ACCESS_SIZE) >> 1);
  return Result;
}
