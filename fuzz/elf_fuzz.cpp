// libFuzzer target: opens the input as a program file and asks everything of it.
#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "fuzz/query_all.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  const int Handle = memfd_create("elf_fuzz", 0);
  if (Handle < 0 || write(Handle, pData, NumBytes) != static_cast<ssize_t>(NumBytes)) __builtin_trap();
  ELF_FILE* pFile = ELF_Open(("/proc/self/fd/" + std::to_string(Handle)).c_str());
  if (pFile) QueryAll(pFile);
  ELF_Close(pFile);
  close(Handle);
  return 0;
}
