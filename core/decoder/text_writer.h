#pragma once

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/types.h"

// Appends to a caller's buffer and never runs over its end; always terminated. Without a buffer nothing is written.
class CTextWriter {
public:
  CTextWriter(char* sBuffer, U32 BufferSize) : sText(sBuffer), Size(sBuffer != nullptr ? BufferSize : 0) {
    if (Size > 0) sText[0] = 0;
  }
  bool IsOff() const { return Size == 0; }

  void Add(std::string_view sPart) {
    if (Used + 1 >= Size) return;
    const U32 Count =
        static_cast<U32>(sPart.size()) < Size - 1 - Used ? static_cast<U32>(sPart.size()) : Size - 1 - Used;
    std::memcpy(sText + Used, sPart.data(), Count);
    Used += Count;
    sText[Used] = 0;
  }
  void Add(char c) {
    if (Used + 1 >= Size) return;
    sText[Used++] = c;
    sText[Used] = 0;
  }
  void AddDec(U32 Value) {
    char aDigit[10];
    U32 First = sizeof(aDigit);
    do {
      aDigit[--First] = static_cast<char>('0' + Value % 10);
      Value /= 10;
    } while (Value != 0);
    Add(std::string_view(aDigit + First, sizeof(aDigit) - First));
  }
  // Upper case, at least MinDigits digits.
  void AddHex(U32 Value, U32 MinDigits) {
    char aDigit[8];
    U32 First = sizeof(aDigit);
    while (First > 0 && (Value != 0 || sizeof(aDigit) - First < MinDigits)) {
      aDigit[--First] = "0123456789ABCDEF"[Value & 15];
      Value >>= 4;
    }
    Add(std::string_view(aDigit + First, sizeof(aDigit) - First));
  }

  __attribute__((format(printf, 2, 3))) void Format(const char* sFormat, ...) {
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
