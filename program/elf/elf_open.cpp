#include <cstdio>
#include <cstring>
#include <ctime>
#include <new>

#include "base/endian.h"
#include "program/elf/elf_file.h"
#include "program/elf/reader_state.h"
#include "program/elf/unit_walker.h"

namespace {

struct FILE_CLOSER {
  void operator()(std::FILE* pStream) const { std::fclose(pStream); }
};

constexpr long MAX_FILE_SIZE = 0x7FFFFFFF;  // bytes; offsets in a file are 32 bits wide

// Null, or the message for what went wrong.
const char* ReadWholeFile(const char* sPath, std::unique_ptr<U8[]>& pData, U32& Size) {
  const std::unique_ptr<std::FILE, FILE_CLOSER> pStream(std::fopen(sPath, "rb"));
  if (!pStream) return "failed to open file.";
  if (std::fseek(pStream.get(), 0, SEEK_END) != 0) return "invalid file size detected. Could not parse file.";
  const long NumBytes = std::ftell(pStream.get());
  if (NumBytes < 1 || NumBytes > MAX_FILE_SIZE) return "invalid file size detected. Could not parse file.";
  std::rewind(pStream.get());
  Size = static_cast<U32>(NumBytes);
  pData.reset(new (std::nothrow) U8[Size]);
  if (!pData) return "could not allocate file data buffer.";
  return std::fread(pData.get(), 1, Size, pStream.get()) == Size ? nullptr : "could not read file data.";
}

bool ParseElf(ELF_FILE& File) {
  if (const char* sError = File.Image.ParseHeader()) {
    SendMessage(sError);
    SendMessage("could not parse file header.");
    return false;
  }
  if (const char* sError = File.Image.ParseSegments()) return SendMessage(sError), false;
  if (const char* sError = File.Image.ParseSections()) return SendMessage(sError), false;
  if (!File.Symbols.Parse(File.Image)) return SendMessage("could not parse symbols."), false;
  return true;
}

long Milliseconds(std::clock_t Ticks) {
  return static_cast<long>(Ticks * 1000 / CLOCKS_PER_SEC);
}

void LogParse(const ELF_FILE& File, const WALK_TIMES& Spent, std::clock_t Frames, std::clock_t Total) {
  const DWARF_INFO& Info = *File.pDwarf;
  static const char* const apEncodings[] = {"Little Endian", "Big Endian", "Unknown data encoding"};
  SendMessageF("parsed type unit tree in ms:   %ld", Milliseconds(Spent.TypeUnits));
  SendMessageF("parsed debug info tree in ms:  %ld", Milliseconds(Spent.Entries));
  SendMessageF("parsed source file info in ms: %ld", Milliseconds(Spent.Files));
  SendMessageF("parsed source line info in ms: %ld", Milliseconds(Spent.Lines));
  SendMessageF("parsed call frame info in ms:  %ld", Milliseconds(Frames));
  SendMessageF("File Size: %u", File.Image.Size());
  SendMessageF("Dwarf Symbol Count: %u", Info.NumWanted);
  SendMessageF("ELF Symbol Count: %u", File.Symbols.Count());
  SendMessageF("Data Encoding: %s", apEncodings[File.Image.Encoding()]);
  SendMessageF("Source Language: %s", Info.Language == ELF_SRC_LANG_CPP ? "C++" : "C");
  SendMessageF("total init time: %ld ms", Milliseconds(Total));
  SendMessageF("Dwarf Version: %d", static_cast<int>(Info.MaxVersion));
}

bool ParseDwarf(ELF_FILE& File) {
  const std::clock_t Start = std::clock();
  const U32 MaxEntries = ReaderState().MaxEntries;
  auto pDwarf = std::make_unique<DWARF_INFO>(File.Image, MaxEntries);
  CUnitWalker Walker(*pDwarf);
  if (!Walker.Walk()) {
    SendMessageF("debug info has more than %u entries, which is more than can be numbered.", MaxEntries);
    return false;
  }
  if (!GoOnOpening(1, 1)) return true;
  const std::clock_t FrameStart = std::clock();
  pDwarf->Frames.Load(pDwarf->Sections, File.Image, File.Symbols);
  File.pDwarf = std::move(pDwarf);
  LogParse(File, Walker.Times(), std::clock() - FrameStart, std::clock() - Start);
  return true;
}

bool Parse(ELF_FILE& File) {
  try {
    if (!ParseElf(File)) return false;
    if (!ParseDwarf(File)) SendMessage("debug info could not be parsed.");
    return true;
  } catch (const std::bad_alloc&) {
    SendMessage("could not allocate file structure.");
    return false;
  }
}

// The address range that the name of a section or symbol stands for.
bool ResolveRange(const ELF_FILE& File, const char* sName, CRelocationMap::RANGE& Range) {
  const I32 Section = File.Image.FindSection(sName);
  if (Section >= 0) {
    const ELF_SECTION& Found = File.Image.Sections()[Section];
    Range = {Found.Addr, Found.Addr + Found.Size};
    return true;
  }
  const I32 Index = File.Symbols.FindName(sName);
  if (Index < 0) return false;
  const ELF_SYMBOL& Symbol = *File.Symbols.Get(static_cast<U32>(Index));
  const U32 Mask = Symbol.IsFunction() ? ~(ReaderState().InstAlignment - 1) : ~0u;
  Range = {Symbol.Value & Mask, (Symbol.Value + Symbol.Size) & Mask};
  return static_cast<I32>(Symbol.Value) >= 0;
}

CRelocationMap::RESOLVER ResolverOf(const ELF_FILE* pFile) {
  if (!pFile) return {};
  return [pFile](const char* sName, CRelocationMap::RANGE& Range) { return ResolveRange(*pFile, sName, Range); };
}

void CloseFile() {
  READER_STATE& State = ReaderState();
  State.Relocations.Clear();
  State.bBusy = true;
  State.pFile.reset();
  State.bBusy = false;
}

}  // namespace

ELF_FILE* ELF_Open(const char* sPath) {
  READER_STATE& State = ReaderState();
  if (State.pFile) return SendMessage("maximum number of files already open."), nullptr;
  std::unique_ptr<U8[]> pData;
  U32 Size = 0;
  if (const char* sError = ReadWholeFile(sPath, pData, Size)) return SendMessage(sError), nullptr;
  if (Size >= 4 && LoadInt<U32>(pData.get(), false) != ELF_MAGIC) SendMessage("not an elf file.");
  State.bBusy = true;
  State.pFile = std::make_unique<ELF_FILE>();
  ELF_FILE& File = *State.pFile;
  File.Image.SetData(std::move(pData), Size);
  if (!Parse(File) || !GoOnOpening(1, 1)) {
    CloseFile();
    return nullptr;
  }
  File.bLoaded = true;
  State.bBusy = false;
  State.Relocations.ResolveAll(ResolverOf(&File));
  State.bBigEndianTarget = File.Image.Encoding() == ELF_ENCODING_BIG;
  return &File;
}

void ELF_Close(ELF_FILE* pFile) {
  if (pFile && pFile == ReaderState().pFile.get()) CloseFile();
}

void ELF_SetMessageCallback(ELF_MESSAGE_FUNC pfMessage) {
  ReaderState().pfMessage = std::move(pfMessage);
}

void ELF_SetProgressCallback(ELF_PROGRESS_FUNC pfProgress) {
  ReaderState().pfProgress = std::move(pfProgress);
}

void ELF_SetInstAlignment(U32 NumBytes) {
  const bool bPowerOfTwo = NumBytes != 0 && (NumBytes & (NumBytes - 1)) == 0;
  if (bPowerOfTwo) ReaderState().InstAlignment = NumBytes;
}

bool ELF_IsTargetBigEndian() {
  return ReaderState().bBigEndianTarget;
}

void ELF_ClearRelocations() {
  READER_STATE& State = ReaderState();
  if (!State.pFile) State.Relocations.Clear();
}

bool ELF_HasRelocations() {
  return !ReaderState().Relocations.IsEmpty();
}

int ELF_AddRelocation(const char* sText, I32 Delta) {
  READER_STATE& State = ReaderState();
  return sText && State.Relocations.Add(sText, Delta, ResolverOf(LoadedFile(State.pFile.get()))) ? 0 : -1;
}

U32 ELF_RelocToFile(U32 Addr, U32 LowAdjust, U32 HighAdjust) {
  return ReaderState().Relocations.ToTarget(Addr, LowAdjust, HighAdjust);
}

U32 ELF_RelocFromFile(U32 Addr, U32 LowAdjust, U32 HighAdjust) {
  return ReaderState().Relocations.ToFile(Addr, LowAdjust, HighAdjust);
}

U32 ELF_NextRelocEdge(U32 Addr) {
  return ReaderState().Relocations.NextEdge(Addr);
}
