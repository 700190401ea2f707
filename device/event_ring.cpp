#include "device/event_ring.h"

#include <algorithm>

#include "device/job_rings.h"

CEventRing::CEventRing() : paEvent(new DEVICE_EVENT[RING_SIZE]) {}

bool CEventRing::Put(const DEVICE_EVENT& Event, DEVICE_JOB* pFinished) {
  std::lock_guard Lock(Mutex);
  if (NumUsed == RING_SIZE) return false;
  paEvent[(ReadIndex + NumUsed) % RING_SIZE] = Event;
  ++NumUsed;
  if (pFinished != nullptr) CJobRings::ClearPending(*pFinished);
  return true;
}

std::optional<DEVICE_EVENT> CEventRing::Take() {
  std::lock_guard Lock(Mutex);
  if (NumUsed == 0) return std::nullopt;
  const DEVICE_EVENT Event = paEvent[ReadIndex];
  ReadIndex = (ReadIndex + 1) % RING_SIZE;
  --NumUsed;
  return Event;
}

bool CEventRing::IsEmpty() const {
  std::lock_guard Lock(Mutex);
  return NumUsed == 0;
}

bool CEventRing::HasStepEvent(U32 NumEvents) const {
  std::lock_guard Lock(Mutex);
  const U32 End = std::min(NumEvents, NumUsed);
  for (U32 i = 0; i < End; ++i) {
    const DEVICE_EVENT& Event = paEvent[(ReadIndex + i) % RING_SIZE];
    if (Event.Type == DE_JOB_FINISHED && IsStepJob(Event.Job()->Type)) return true;
  }
  return false;
}

U32 CTextRing::Add(std::string_view sText) {
  size_t Length = std::min<size_t>(sText.size(), MAX_TEXT_BYTES);
  const auto IsContinuation = [&](size_t Pos) { return (static_cast<U8>(sText[Pos]) & 0xC0) == 0x80; };
  if (Length < sText.size()) {
    while (Length > 0 && IsContinuation(Length)) --Length;
  }
  std::lock_guard Lock(Mutex);
  const U32 Index = NextIndex;
  NextIndex = (NextIndex + 1) % NUM_TEXTS;
  asText[Index].assign(sText.substr(0, Length));
  return Index;
}

std::string CTextRing::Get(U64 Index) const {
  if (Index >= NUM_TEXTS) return {};
  std::lock_guard Lock(Mutex);
  return asText[Index];
}
