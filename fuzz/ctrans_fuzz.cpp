// libFuzzer target: loads the input as a script and runs every function that it defines.
#include "tests/script/run_any.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (!RunAnyScript(std::string(reinterpret_cast<const char*>(pData), NumBytes)).empty()) __builtin_trap();
  return 0;
}
