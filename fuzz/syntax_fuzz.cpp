// libFuzzer target: highlights the input as a text of any language, from any state, and checks what holds for every
// text. The first four bytes choose language, state and mnemonic columns; the rest is the text.
#include <cstdio>
#include <vector>

#include "tests/syntax/span_rules.h"

namespace {

constexpr size_t NUM_CHOICE_BYTES = 4;
constexpr U8 WIDE_TEXT = 0x80;   // of the first byte: two bytes make a character
constexpr U8 NUM_LANGUAGES = 6;  // one more than there are

// In a block of its own of the exact size, so that a read beyond it is seen.
std::vector<char16_t> CharsOf(const U8* pData, size_t NumBytes, bool bWide) {
  if (!bWide) return {pData, pData + NumBytes};
  std::vector<char16_t> aChar;
  aChar.reserve(NumBytes / 2);
  for (size_t i = 0; i + 1 < NumBytes; i += 2) aChar.push_back(static_cast<char16_t>(pData[i] | pData[i + 1] << 8));
  return aChar;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (NumBytes < NUM_CHOICE_BYTES) return 0;
  const auto Language = static_cast<SYNTAX_LANGUAGE>((pData[0] & ~WIDE_TEXT) % NUM_LANGUAGES);
  const CSyntaxHighlighter Highlighter(static_cast<I8>(pData[2]), static_cast<I8>(pData[3]));
  const std::vector<char16_t> aChar =
      CharsOf(pData + NUM_CHOICE_BYTES, NumBytes - NUM_CHOICE_BYTES, pData[0] & WIDE_TEXT);
  const QStringView sText(aChar.data(), static_cast<qsizetype>(aChar.size()));
  const std::string sBroken = BrokenRule(Highlighter, Language, sText, static_cast<I8>(pData[1]));
  if (sBroken.empty()) return 0;
  std::fprintf(stderr, "%s\n", sBroken.c_str());
  __builtin_trap();
}
