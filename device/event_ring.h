#pragma once
// What travels from the device thread to the main thread. Plain C++ without Qt.

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "device/device_job.h"

enum DEVICE_EVENT_TYPES : U32 {
  DE_NONE = 0,
  DE_JOB_FINISHED = 1,         // Param1 DEVICE_JOB*
  DE_EVAL_BP_CONDITION = 2,    // Param1 address
  DE_CONFIG_CHANGED = 3,       // parameter, value
  DE_CAPABILITY_CHANGED = 4,   // capability, value
  DE_CONNECTION_LOST = 5,      //
  DE_ABOUT_TO_DISCONNECT = 6,  // 6 to 8 are delivered at once when raised on the main thread
  DE_BEFORE_RESUME = 7,        //
  DE_BEFORE_STEP = 8,          //
  DE_ENDIANNESS_CHANGED = 9,   // instruction, data
  DE_LOG_MSG = 11,             // text index, MSG_INFO_FLAGS
  DE_STATUS_TEXT = 12,         // text index
  DE_PROGRESS_TEXT = 13,       // text index
  DE_PROGRESS_START = 14,      // minimum, maximum
  DE_PROGRESS_END = 15,        //
  DE_PROGRESS_VALUE = 16,      // value
};

struct DEVICE_EVENT {
  U32 Type = DE_NONE;
  U64 Param1 = 0;
  U64 Param2 = 0;

  DEVICE_JOB* Job() const { return reinterpret_cast<DEVICE_JOB*>(static_cast<uintptr_t>(Param1)); }
};

inline DEVICE_EVENT JobFinishedEvent(const DEVICE_JOB* pJob) {
  return {DE_JOB_FINISHED, static_cast<U64>(reinterpret_cast<uintptr_t>(pJob)), 0};
}

// A ring of events with a fixed number of entries; any thread may put, the main thread takes.
class CEventRing {
public:
  static constexpr U32 RING_SIZE = 10000;

  CEventRing();
  // Appends the event; false when the ring is full. For a finished job the pending bit of the job is cleared in the
  // same step, so that whoever sees the bit clear finds the event, and nobody can release the slot before.
  bool Put(const DEVICE_EVENT& Event, DEVICE_JOB* pFinished = nullptr);
  std::optional<DEVICE_EVENT> Take();
  bool IsEmpty() const;
  // Whether the event of a finished step job lies within the next NumEvents entries.
  bool HasStepEvent(U32 NumEvents) const;

private:
  mutable std::mutex Mutex;
  std::unique_ptr<DEVICE_EVENT[]> paEvent;
  U32 ReadIndex = 0;
  U32 NumUsed = 0;
};

// Texts of events. An entry is overwritten after NUM_TEXTS further texts.
class CTextRing {
public:
  static constexpr U32 NUM_TEXTS = 1000;
  static constexpr U32 MAX_TEXT_BYTES = 1000;

  // Stores a text, cut at MAX_TEXT_BYTES, never within a UTF-8 character; returns its index. Any thread.
  U32 Add(std::string_view sText);
  // The text of an index; empty for an index out of range.
  std::string Get(U64 Index) const;

private:
  mutable std::mutex Mutex;
  std::array<std::string, NUM_TEXTS> asText;
  U32 NextIndex = 0;
};
