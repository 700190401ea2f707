// libFuzzer target: headers and programs of line tables. Input: flags (1 big endian), number of bytes of texts (2
// bytes, little endian), texts, .debug_line.
#include <cstdlib>
#include <cstring>

#include "program/elf/line_program.h"

namespace {

constexpr U64 HEAD_SIZE = 3;

U64 UseTexts(const LINE_HEADER& Header) {
  U64 Sum = 0;
  for (const char* sDir : Header.aDirs) Sum += std::strlen(sDir);
  for (const LINE_FILE& File : Header.aFiles) Sum += (File.sName ? std::strlen(File.sName) : 0) + File.Dir;
  return Sum;
}

// Every row, directory and file takes a byte at least.
void Run(const LINE_HEADER& Header, U64 TableSize) {
  if (Header.aDirs.size() + Header.aFiles.size() > TableSize + 1) std::abort();
  CLineProgram Program(Header);
  U64 NumRows = 0;
  for (LINE_ROW Row; Program.Next(Row);) ++NumRows;
  if (NumRows + Program.DefinedFiles().size() > Header.Program.Left()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  CByteCursor Input(pData, NumBytes, false);
  const bool bBigEndian = Input.Int<U8>() & 1;
  const U64 TextSize = Input.Int<U16>();
  if (!Input.Ok() || TextSize > Input.Left()) return 0;
  const CByteCursor Texts(pData + HEAD_SIZE, TextSize, bBigEndian);
  const CByteCursor Line(pData + HEAD_SIZE + TextSize, NumBytes - HEAD_SIZE - TextSize, bBigEndian);
  volatile U64 Sum = 0;
  for (CByteCursor Bytes = Line; Bytes.More();) {
    LINE_HEADER Header;
    if (!ReadLineHeader({Line, Texts, Texts}, Bytes.Position(), Header).sWhat) {
      Sum = Sum + UseTexts(Header);
      Run(Header, Bytes.Left());
    }
    bool b64 = false;
    Bytes.Skip(Bytes.UnitLength(b64));
  }
  return 0;
}
