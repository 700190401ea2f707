#pragma once
// Numbers and bytes in hexadecimal, as the remote serial protocol writes them.

#include <string>
#include <string_view>
#include <vector>

#include "base/types.h"

// -1 when it is none.
int HexDigit(char Digit);
// 1 to 16 digits and nothing else.
bool ParseHex(std::string_view sText, U64* pValue);
// Two digits a byte, most significant first.
void AppendHex(std::string* psText, const void* pData, size_t NumBytes);
// False, and nothing stored, when a character is no digit or the last byte is incomplete.
bool ParseHexBytes(std::string_view sText, std::vector<U8>* paBytes);
