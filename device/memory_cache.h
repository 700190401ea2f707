#pragma once

#include <array>
#include <memory>

#include "device/device_types.h"

// The worse of two statuses; the order is stale, pending, unavailable, valid.
inline U8 WorseStatus(U8 A, U8 B) {
  return A > B ? A : B;
}

// Target memory with a status (MEM_STATUS) per byte, in pages that are made on first touch. Ranges may cross pages;
// what lies beyond the 32-bit address space is cut off. Main thread.
class CMemoryCache {
public:
  static constexpr U32 PAGE_BYTES = 0x10000;
  static constexpr U64 SPACE_BYTES = 0x100000000ull;

  // Everything is stale; the pages stay.
  void Clear();
  // Copies data and status bytes of a range (each NumBytes, each may be null); returns the worst status.
  U8 Read(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) const;
  // Worst status of the range.
  U8 Status(U32 Addr, U32 NumBytes) const { return Read(Addr, NumBytes, nullptr, nullptr); }
  // Stores data with its status bytes; without them everything is valid.
  void Write(U32 Addr, U32 NumBytes, const U8* paData, const U8* paStatus);
  void SetStatus(U32 Addr, U32 NumBytes, U8 Status);
  // Gives every byte of the status From the status To.
  void ReplaceStatus(U8 From, U8 To);
  // Address of the first byte in [Addr, End) with the status, End when there is none.
  U64 Find(U64 Addr, U64 End, U8 Status) const;

private:
  struct PAGE {
    std::array<U8, PAGE_BYTES> aData;
    std::array<U8, PAGE_BYTES> aStatus;
    PAGE() { Clear(); }
    void Clear();
  };

  template <typename F>
  static void ForEachPiece(U32 Addr, U32 NumBytes, F&& Call);
  PAGE& Page(U64 Number);

  std::array<std::unique_ptr<PAGE>, SPACE_BYTES / PAGE_BYTES> apPage;
};
