#pragma once

#include <cstdarg>
#include <cstdio>

#include "base/types.h"

// Appends to a caller's buffer and never runs over its end; always terminated. Without a buffer nothing is written.
class CTextWriter {
public:
  CTextWriter(char* sBuffer, U32 BufferSize) : sText(sBuffer), Size(sBuffer != nullptr ? BufferSize : 0) {
    if (Size > 0) sText[0] = 0;
  }
  bool IsOff() const { return Size == 0; }

  __attribute__((format(printf, 2, 3))) void Add(const char* sFormat, ...) {
    if (Used + 1 >= Size) return;
    va_list Args;
    va_start(Args, sFormat);
    const int Count = std::vsnprintf(sText + Used, Size - Used, sFormat, Args);
    va_end(Args);
    if (Count > 0) Used = Used + static_cast<U32>(Count) < Size ? Used + static_cast<U32>(Count) : Size - 1;
  }

private:
  char* sText;
  U32 Size;
  U32 Used = 0;
};
