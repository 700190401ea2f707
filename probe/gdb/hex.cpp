#include "probe/gdb/hex.h"

namespace {

constexpr size_t MAX_DIGITS = 16;  // of a U64
constexpr char DIGITS[] = "0123456789abcdef";

}  // namespace

int HexDigit(char Digit) {
  if (Digit >= '0' && Digit <= '9') return Digit - '0';
  if (Digit >= 'a' && Digit <= 'f') return Digit - 'a' + 10;
  if (Digit >= 'A' && Digit <= 'F') return Digit - 'A' + 10;
  return -1;
}

bool ParseHex(std::string_view sText, U64* pValue) {
  if (sText.empty() || sText.size() > MAX_DIGITS) return false;
  U64 Value = 0;
  for (char c : sText) {
    const int Digit = HexDigit(c);
    if (Digit < 0) return false;
    Value = Value << 4 | static_cast<U64>(Digit);
  }
  *pValue = Value;
  return true;
}

void AppendHex(std::string* psText, const void* pData, size_t NumBytes) {
  const U8* paBytes = static_cast<const U8*>(pData);
  for (size_t i = 0; i < NumBytes; ++i) {
    *psText += DIGITS[paBytes[i] >> 4];
    *psText += DIGITS[paBytes[i] & 15];
  }
}

bool ParseHexBytes(std::string_view sText, std::vector<U8>* paBytes) {
  if (sText.size() % 2 != 0) return false;
  std::vector<U8> Bytes;
  Bytes.reserve(sText.size() / 2);
  for (size_t i = 0; i < sText.size(); i += 2) {
    const int High = HexDigit(sText[i]);
    const int Low = HexDigit(sText[i + 1]);
    if (High < 0 || Low < 0) return false;
    Bytes.push_back(static_cast<U8>(High << 4 | Low));
  }
  *paBytes = std::move(Bytes);
  return true;
}
