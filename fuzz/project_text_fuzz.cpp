// libFuzzer target: edits the input as a project's text and checks what holds for every text.
#include <cstdint>
#include <cstdio>

#include "tests/project/text_rules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, size_t NumBytes) {
  const QByteArray Bytes(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(NumBytes));
  const std::string sBroken = BrokenTextRule(QString::fromUtf8(Bytes));
  if (sBroken.empty()) return 0;
  std::fprintf(stderr, "%s\n", sBroken.c_str());
  __builtin_trap();
}
