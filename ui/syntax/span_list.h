#pragma once
// The characters that both scanners tell apart, and the pair of lists into which they write.

#include <string_view>
#include <vector>

#include "ui/syntax/syntax_highlighter.h"

// Refers to the caller's lists.
struct SPAN_LIST {
  std::vector<TextSpan>& Spans;
  std::vector<SYNTAX_KIND>& Kinds;

  // [Start, End) in characters; an empty span is left out.
  void Add(size_t Start, size_t End, SYNTAX_KIND Kind) const {
    if (Start >= End) return;
    Spans.push_back({static_cast<I32>(Start), static_cast<I32>(End - Start)});
    Kinds.push_back(Kind);
  }
};

// ASCII only: every other character is an ordinary one.
constexpr bool IsAsciiDigit(char16_t Char) {
  return Char >= u'0' && Char <= u'9';
}
constexpr bool IsAsciiLetter(char16_t Char) {
  return (Char >= u'a' && Char <= u'z') || (Char >= u'A' && Char <= u'Z');
}
constexpr bool IsWordStart(char16_t Char) {
  return IsAsciiLetter(Char) || Char == u'_';
}
constexpr bool IsWordChar(char16_t Char) {
  return IsWordStart(Char) || IsAsciiDigit(Char);
}
