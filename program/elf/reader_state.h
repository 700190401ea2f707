#pragma once

#include <memory>

#include "program/elf/handle.h"
#include "program/elf/relocation_map.h"

// What the reader keeps apart from any file.
struct READER_STATE {
  std::unique_ptr<ELF_FILE> pFile;  // the open file
  bool bBusy = false;               // a file is being opened or closed
  bool bBigEndianTarget = false;
  U32 InstAlignment = 2;               // bytes
  U32 MaxEntries = MAX_HANDLE_NUMBER;  // of a file; tests set a lower limit
  CRelocationMap Relocations;
  ELF_MESSAGE_FUNC pfMessage;
  ELF_PROGRESS_FUNC pfProgress;
};

// The reader that this thread uses.
READER_STATE& ReaderState();
// False when the opening of the file shall end. To be asked every few milliseconds.
bool GoOnOpening(U64 Done, U64 Total);

// The file itself if it is open, loaded and neither being opened nor closed; else null.
const ELF_FILE* LoadedFile(const ELF_FILE* pFile);

void SendMessage(const char* sText, U32 Flags = ELF_MSG_FLAGS);
[[gnu::format(printf, 1, 2)]] void SendMessageF(const char* sFormat, ...);

// Relocation of addresses going out: of anything but ends of ranges, and of ends.
U32 AddrToTarget(U32 Addr);
U32 EndToTarget(U32 End);
// Relocation of an address coming in.
U32 AddrToFile(U32 Addr);
