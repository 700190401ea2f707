#pragma once

#include <string>
#include <vector>

#include "inspect/inspect.h"

// One range of a function, [Low, High).
struct FUNCTION_ROW {
  U32 Low;
  U32 High;
  std::string sName;
  std::string sFile;  // of the declaration; empty without debug information
  I64 Line;
};

// True in a function that the linker dropped.
bool IsInDroppedCode(const ELF_FILE* pFile, ELF_SYM_HANDLE hScope);
// Every range of every function that the linker kept, by ascending start.
std::vector<FUNCTION_ROW> FunctionRows(const ELF_FILE* pFile);
