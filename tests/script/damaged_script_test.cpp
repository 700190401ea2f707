// Damaged scripts: whatever the text, the engine ends, reports one error at most and stays within its memory.

#include <random>

#include <gtest/gtest.h>

#include "run_any.h"

namespace {

const std::string SCRIPTS[] = {
    "void OnProjectLoad (void) {\n  int i; char a[7]; __int64 w;\n  i = 0;\n  while (i < 7) { a[i] = i * i; i += 1; }\n"
    "  do { i -= 1; w = a[i] << 3 | 1; Out(w / (i + 1)); } while (i > 0);\n"
    "  if (w == 1 && i != 2) { Util.Log(\"one\\n\"); } else if (TEN > 0x0a) Util.Log(\"\"); else Out(g());\n}\n"
    "int g (void) { Out(f(3, 4)); return 5; }\n",
    "int f (int a, const char* b) { if (a <= 1) return 1; return f(a - 1, \"x\") + f(a - 2, \"y\") ^ a; }\n"
    "/* { */ void main (void) { // }\n  const unsigned int x; x = Nest(); x <<= 2; x ^= f(9, \"\\t\\\\\"); Out(x); }\n"
    "int g () { int *p; int a[3]; a[2] = Nest() - -2; return a[2] >> 1; }\n",
};
constexpr const char *OVERFLOWS = "-9223372036854775808 / -1", *HUGE_ARRAY = "int a[999999];";
constexpr const char* PIECES[] = {"{",      "}",   "(",      ")",        "\"",     "/*",    "*/", "//",    "while (1)",
                                  "return", "g()", "Nest()", HUGE_ARRAY, "\\",     "[",     "0x", "-",     OVERFLOWS,
                                  ";",      "do",  "else",   "if (",     "const ", "void ", "*",  "1 / 0", "<<"};

std::string Damage(std::string sText, std::mt19937& Random) {
  const auto Below = [&Random](size_t Limit) { return Limit ? static_cast<size_t>(Random() % Limit) : 0; };
  for (size_t Edits = 1 + Below(4); Edits > 0; --Edits) {
    const size_t At = Below(sText.size());
    switch (Below(5)) {
      case 0:
        sText.erase(At, 1 + Below(20));
        break;
      case 1:
        sText.insert(At, PIECES[Below(std::size(PIECES))]);
        break;
      case 2:
        sText.insert(At, sText.substr(Below(sText.size()), Below(60)));
        break;
      case 3:
        sText.resize(At);
        break;
      default:
        if (!sText.empty()) sText[At] = static_cast<char>(Random());
        break;
    }
  }
  return sText;
}

TEST(DamagedScripts, EndWithOneErrorAtMost) {
  constexpr int NUM_DAMAGED = 3000;
  std::mt19937 Random(1);
  for (const std::string& sScript : SCRIPTS) EXPECT_EQ("", RunAnyScript(sScript));
  for (int i = 0; i < NUM_DAMAGED; ++i) {
    const std::string sText = Damage(SCRIPTS[static_cast<size_t>(i) % std::size(SCRIPTS)], Random);
    ASSERT_EQ("", RunAnyScript(sText)) << "script " << i << ":\n" << sText;
  }
}

}  // namespace
