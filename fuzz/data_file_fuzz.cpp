// libFuzzer target: reads the input as a file of S-records or of Intel HEX records and checks what holds for every
// text. The first byte says which of the two, and whether counts and checksums are put right first.
#include <cstdio>

#include "tests/data_files/record_rules.h"

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (NumBytes == 0) return 0;
  const VFile::FILE_CLASS Class = pData[0] & 1 ? VFile::FILE_CLASS_HEX : VFile::FILE_CLASS_SREC;
  QByteArray Text(reinterpret_cast<const char*>(pData) + 1, static_cast<qsizetype>(NumBytes) - 1);
  if (pData[0] & 2) Text = RepairRecords(Text, Class);
  const std::string sBroken = BrokenRecordRule(Text, Class);
  if (sBroken.empty()) return 0;
  std::fprintf(stderr, "%s\n", sBroken.c_str());
  __builtin_trap();
}
