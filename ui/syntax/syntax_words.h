#pragma once
// The words that have a meaning of their own, all compared exactly. Constant tables: any thread.

#include <string_view>

// One of the keywords of C and C++, and the usual short names of unsigned types.
bool IsKeyword(std::u16string_view sWord);
// A preprocessor directive with its "#" and without blanks, as in "#ifdef".
bool IsDirective(std::u16string_view sWord);
// A core register as listings name it: "R0" to "R11", "SP", "LR", "PC".
bool IsRegister(std::u16string_view sWord);
