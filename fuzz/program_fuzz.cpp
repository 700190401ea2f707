// libFuzzer target: loads the input into the program database and asks everything of it.
#include <sys/mman.h>
#include <unistd.h>

#include "tests/corpus/ask_program.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  const int Handle = memfd_create("program_fuzz", 0);
  if (Handle < 0 || write(Handle, pData, NumBytes) != static_cast<ssize_t>(NumBytes)) __builtin_trap();
  if (ELFAPI_Load(QStringLiteral("/proc/self/fd/%1").arg(Handle)) == 0) AskProgram();
  ELFAPI_Unload();
  close(Handle);
  return 0;
}
