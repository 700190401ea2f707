#include "program/elf/reader_state.h"

#include <cstdarg>
#include <cstdio>

#include "program/elf/elf_file.h"

namespace {

constexpr size_t MAX_MESSAGE_SIZE = 2048;

thread_local READER_STATE* pReaderOfThread = nullptr;

READER_STATE& CommonReader() {
  static READER_STATE State;
  return State;
}

}  // namespace

READER_STATE& ReaderState() {
  return pReaderOfThread ? *pReaderOfThread : CommonReader();
}

std::shared_ptr<READER_STATE> ELF_NewReader() {
  const READER_STATE& Common = CommonReader();
  auto pReader = std::make_shared<READER_STATE>();
  pReader->InstAlignment = Common.InstAlignment;
  pReader->pfMessage = Common.pfMessage;
  if (!Common.pFile) pReader->Relocations = Common.Relocations;
  return pReader;
}

void ELF_UseReader(READER_STATE* pReader) {
  pReaderOfThread = pReader;
}

void ELF_ExchangeReader(READER_STATE& Reader) {
  std::swap(CommonReader(), Reader);
}

bool GoOnOpening(U64 Done, U64 Total) {
  const READER_STATE& State = ReaderState();
  return !State.pfProgress || State.pfProgress(Done, Total);
}

const ELF_FILE* LoadedFile(const ELF_FILE* pFile) {
  const READER_STATE& State = ReaderState();
  return pFile && pFile == State.pFile.get() && !State.bBusy && pFile->bLoaded ? pFile : nullptr;
}

void SendMessage(const char* sText, U32 Flags) {
  const READER_STATE& State = ReaderState();
  if (State.pfMessage) State.pfMessage(sText, Flags);
}

void SendMessageF(const char* sFormat, ...) {
  char acText[MAX_MESSAGE_SIZE];
  va_list Arguments;
  va_start(Arguments, sFormat);
  std::vsnprintf(acText, sizeof(acText), sFormat, Arguments);
  va_end(Arguments);
  SendMessage(acText);
}

U32 AddrToTarget(U32 Addr) {
  return ReaderState().Relocations.ToTarget(Addr, 1, 0);
}
U32 EndToTarget(U32 End) {
  return ReaderState().Relocations.ToTarget(End, 0, 1);
}
U32 AddrToFile(U32 Addr) {
  return ReaderState().Relocations.ToFile(Addr, 1, 0);
}
