#pragma once
// Small text helpers of the probe library.

#include <string>
#include <string_view>
#include <vector>

#include "base/types.h"

std::string_view Trimmed(std::string_view sText);
// Pieces between the separators, each trimmed; an empty text gives one empty piece.
std::vector<std::string_view> SplitTrimmed(std::string_view sText, char Separator);
bool EqualsNoCase(std::string_view A, std::string_view B);
// Decimal, or hexadecimal with "0x". The whole text has to be the number.
bool ParseU32(std::string_view sText, U32* pValue);
// Decimal with an optional sign.
bool ParseInt(std::string_view sText, int* pValue);
// Cuts what does not fit; always terminated when Size is above 0.
void CopyText(std::string_view sText, char* acBuffer, size_t Size);
std::string FormatText(const char* sFormat, ...) __attribute__((format(printf, 1, 2)));
