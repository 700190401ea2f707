// libFuzzer target: reads the input as a user file, writes what was understood, plans the layout, and checks what holds
// for every text.
#include <cstdint>
#include <cstdio>

#include "tests/project/user_file_rules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, size_t NumBytes) {
  const QByteArray Bytes(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(NumBytes));
  const std::string sBroken = BrokenUserFileRule(QString::fromUtf8(Bytes));
  if (sBroken.empty()) return 0;
  std::fprintf(stderr, "%s\n", sBroken.c_str());
  __builtin_trap();
}
