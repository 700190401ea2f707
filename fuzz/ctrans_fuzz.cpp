// libFuzzer target: loads the input as a script and runs functions of it, a bounded number of steps. Seeds:
//   fuzz/ctrans_seeds.py CORPUS
#include <cstdio>

#include "tests/script/run_any.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  // Small, so that scripts run out of it and a run is quick.
  constexpr U32 HEAP_SIZE = 24'000;
  const std::string sBroken = RunAnyScript(std::string(reinterpret_cast<const char*>(pData), NumBytes), HEAP_SIZE);
  if (sBroken.empty()) return 0;
  std::fprintf(stderr, "%s\n", sBroken.c_str());
  __builtin_trap();
}
