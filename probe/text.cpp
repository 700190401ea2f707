#include "probe/text.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>

std::string_view Trimmed(std::string_view sText) {
  constexpr std::string_view BLANKS = " \t\r\n";
  const size_t First = sText.find_first_not_of(BLANKS);
  if (First == std::string_view::npos) return {};
  return sText.substr(First, sText.find_last_not_of(BLANKS) - First + 1);
}

std::vector<std::string_view> SplitTrimmed(std::string_view sText, char Separator) {
  std::vector<std::string_view> Pieces;
  for (;;) {
    const size_t End = sText.find(Separator);
    Pieces.push_back(Trimmed(sText.substr(0, End)));
    if (End == std::string_view::npos) return Pieces;
    sText.remove_prefix(End + 1);
  }
}

bool EqualsNoCase(std::string_view A, std::string_view B) {
  return A.size() == B.size() && strncasecmp(A.data(), B.data(), A.size()) == 0;
}

bool ParseU32(std::string_view sText, U32* pValue) {
  int Base = 10;
  if (sText.size() > 2 && sText[0] == '0' && (sText[1] == 'x' || sText[1] == 'X')) {
    sText.remove_prefix(2);
    Base = 16;
  }
  const auto [pEnd, Error] = std::from_chars(sText.data(), sText.data() + sText.size(), *pValue, Base);
  return Error == std::errc() && pEnd == sText.data() + sText.size();
}

bool ParseInt(std::string_view sText, int* pValue) {
  const auto [pEnd, Error] = std::from_chars(sText.data(), sText.data() + sText.size(), *pValue, 10);
  return Error == std::errc() && pEnd == sText.data() + sText.size();
}

void CopyText(std::string_view sText, char* acBuffer, size_t Size) {
  if (!acBuffer || Size == 0) return;
  const size_t Length = std::min(sText.size(), Size - 1);
  std::memcpy(acBuffer, sText.data(), Length);
  acBuffer[Length] = 0;
}

std::string FormatText(const char* sFormat, ...) {
  va_list Args;
  va_start(Args, sFormat);
  va_list ArgsCopy;
  va_copy(ArgsCopy, Args);
  const int Length = std::vsnprintf(nullptr, 0, sFormat, ArgsCopy);
  va_end(ArgsCopy);
  std::string sText(Length > 0 ? static_cast<size_t>(Length) : 0, 0);
  if (Length > 0) std::vsnprintf(sText.data(), sText.size() + 1, sFormat, Args);
  va_end(Args);
  return sText;
}
