#include "ui/syntax/syntax_words.h"

#include <algorithm>

namespace {

constexpr std::u16string_view KEYWORDS[] = {
    u"alignas",
    u"alignof",
    u"and",
    u"and_eq",
    u"asm",
    u"auto",
    u"bitand",
    u"bitor",
    u"bool",
    u"break",
    u"case",
    u"catch",
    u"char",
    u"char16_t",
    u"char32_t",
    u"class",
    u"compl",
    u"const",
    u"const_cast",
    u"constexpr",
    u"continue",
    u"decltype",
    u"default",
    u"delete",
    u"do",
    u"double",
    u"dynamic_cast",
    u"else",
    u"enum",
    u"explicit",
    u"export",
    u"extern",
    u"false",
    u"final",
    u"float",
    u"for",
    u"friend",
    u"goto",
    u"if",
    u"inline",
    u"int",
    u"long",
    u"mutable",
    u"namespace",
    u"new",
    u"noexcept",
    u"not",
    u"not_eq",
    u"null",
    u"nullptr",
    u"operator",
    u"or",
    u"or_eq",
    u"override",
    u"private",
    u"protected",
    u"public",
    u"register",
    u"reinterpret_cast",
    u"return",
    u"short",
    u"signed",
    u"sizeof",
    u"static",
    u"static_assert",
    u"static_cast",
    u"struct",
    u"switch",
    u"template",
    u"this",
    u"thread_local",
    u"throw",
    u"true",
    u"try",
    u"typedef",
    u"typeid",
    u"typename",
    u"uchar",
    u"uint",
    u"ulong",
    u"union",
    u"unsigned",
    u"ushort",
    u"using",
    u"virtual",
    u"void",
    u"volatile",
    u"wchar_t",
    u"while",
    u"xor",
    u"xor_eq",
};

constexpr std::u16string_view DIRECTIVES[] = {u"#define", u"#elif",   u"#else",    u"#endif",  u"#error", u"#if",
                                              u"#ifdef",  u"#ifndef", u"#include", u"#pragma", u"#undef"};

constexpr std::u16string_view REGISTERS[] = {u"LR", u"PC", u"R0", u"R1", u"R10", u"R11", u"R2", u"R3",
                                             u"R4", u"R5", u"R6", u"R7", u"R8",  u"R9",  u"SP"};

static_assert(std::ranges::is_sorted(KEYWORDS) && std::ranges::is_sorted(DIRECTIVES) &&
              std::ranges::is_sorted(REGISTERS));

}  // namespace

bool IsKeyword(std::u16string_view sWord) {
  return std::ranges::binary_search(KEYWORDS, sWord);
}
bool IsDirective(std::u16string_view sWord) {
  return std::ranges::binary_search(DIRECTIVES, sWord);
}
bool IsRegister(std::u16string_view sWord) {
  return std::ranges::binary_search(REGISTERS, sWord);
}
