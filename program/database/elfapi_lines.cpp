// Addresses to source locations and back.

#include "core/vcore.h"
#include "program/database/core_link.h"
#include "program/database/database.h"

namespace {

constexpr U32 MAX_DISTANCE_TO_ENTRY = 256;  // bytes from a line entry to an address that still belongs to it
constexpr U32 MAX_LINES_AHEAD = 1000;       // lines searched for the next one with code
constexpr U32 MAX_BYTES_AHEAD = 1000;       // bytes searched for the next line's address
constexpr U32 MAX_BLOCK_BYTES = 256;        // extent of one block of a line

const LINE_ENTRY* FindEntry(const CDatabaseLock& Db, U32 Addr) {
  if (Addr == 0 || Addr == INVALID_ADDR) return nullptr;
  const LINE_ENTRY* pEntry = Db->Lines.AtOrBelow(Addr);
  if (!pEntry || pEntry->Addr == Addr) return pEntry;
  if (Addr - pEntry->Addr > MAX_DISTANCE_TO_ENTRY) return nullptr;
  const ELF_SYM_HANDLE Func = ELFAPI_GetFuncAt(Addr, true);
  return Func != 0 && Func == ELFAPI_GetFuncAt(pEntry->Addr, true) ? pEntry : nullptr;
}

bool IsLineOf(const CDatabaseLock& Db, U32 Addr, const CSrcLoc& Loc) {
  const LINE_ENTRY* pEntry = FindEntry(Db, Addr);
  return pEntry && pEntry->Line == Loc.Line && Db->Files.FindId(Loc.File).contains(pEntry->File);
}

// Instruction addresses of the line that follow one another from Addr on.
QAddrList ExpandBlock(const CDatabaseLock& Db, const CSrcLoc& Loc, U32 Addr) {
  QAddrList Addrs;
  const U32 Start = AlignedToInst(Addr);
  for (U32 Offset = 0; Offset < MAX_BLOCK_BYTES; Offset += InstAlignment()) {
    if (!VCore::IsInstruction(Start + Offset)) continue;
    if (!IsLineOf(Db, Start + Offset, Loc)) break;
    Addrs.append(Start + Offset);
  }
  return Addrs;
}

}  // namespace

CSrcLoc SrcLocOf(const DATABASE& Db, const LINE_ENTRY& Entry) {
  return {Db.Files.At(Entry.File).Id, Entry.Line, Entry.Column};
}

QSrcLocs ELFAPI_GetSrcLocsAt(U32 Addr) {
  const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
  return Loc.IsValid() ? QSrcLocs{Loc} : QSrcLocs();
}

CSrcLoc ELFAPI_GetFirstSrcLoc(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = FindEntry(Db, Addr);
  return pEntry ? SrcLocOf(*Db, *pEntry) : CSrcLoc();
}

// The table holds one location for an address.
CSrcLoc ELFAPI_GetLastSrcLoc(U32 Addr) {
  return ELFAPI_GetFirstSrcLoc(Addr);
}

CSrcLoc ELFAPI_GetSrcLocExact(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = Db->Lines.At(Addr);
  return pEntry ? SrcLocOf(*Db, *pEntry) : CSrcLoc();
}

bool ELFAPI_HasSrcLoc(U32 Addr) {
  const CDatabaseLock Db;
  return FindEntry(Db, Addr) != nullptr;
}

bool ELFAPI_RangeHasSrcLoc(const CAddrRange& Range) {
  const CDatabaseLock Db;
  if (Range.Size == 0) return false;
  if (FindEntry(Db, Range.Start)) return true;
  const LINE_ENTRY* pNext = Db->Lines.Above(Range.Start);
  return pNext && Range.Contains(pNext->Addr);
}

bool ELFAPI_IsFileLoc(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = FindEntry(Db, Addr);
  return pEntry && Db->Files.At(pEntry->File).bExists;
}

QAddrList ELFAPI_GetAddrsOfLoc(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  QAddrList Addrs;
  const QList<FILE_INDEX> Files = Db->Files.FindId(Loc.File);
  for (const FILE_INDEX File : Files) Addrs += Db->Lines.AddrsOf(File, Loc.Line);
  if (Files.size() > 1) std::sort(Addrs.begin(), Addrs.end());
  return Addrs;
}

U32 ELFAPI_GetAddrOfLoc(const CSrcLoc& Loc) {
  const QAddrList Addrs = ELFAPI_GetAddrsOfLoc(Loc);
  return Addrs.isEmpty() ? INVALID_ADDR : Addrs.first();
}

QAddrList ELFAPI_GetLocBlocks(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  const QAddrList Starts = ELFAPI_GetAddrsOfLoc(Loc);
  QAddrList Result;
  I64 LastMet = -1;  // address of the blocks so far
  for (qsizetype i = 0; i < Starts.size(); ++i) {
    if (i > 0 && Starts[i] - Starts[i - 1] <= MaxInstLength()) continue;
    if (Starts[i] <= LastMet) continue;
    QAddrList Block = ExpandBlock(Db, Loc, Starts[i]);
    if (Block.isEmpty()) continue;
    LastMet = Block.last();
    if (ELFAPI_ClassifyAddr(Block.last()) == 1) Block.removeLast();
    Result += Block;
  }
  return Result;
}

QAddrList ELFAPI_GetLocAddrs(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  const U32 Lowest = ELFAPI_GetAddrOfLoc(Loc);
  return Lowest == INVALID_ADDR ? QAddrList() : ExpandBlock(Db, Loc, Lowest);
}

CSrcLoc ELFAPI_NextSrcLoc(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  I64 Nearest = -1;
  const QList<FILE_INDEX> Files = Db->Files.FindId(Loc.File);
  for (const FILE_INDEX File : Files) {
    const I64 Line = Db->Lines.NextLine(File, Loc.Line);
    if (Line >= 0 && (Nearest < 0 || Line < Nearest)) Nearest = Line;
  }
  if (Nearest < 0 || Nearest - Loc.Line > MAX_LINES_AHEAD) return {};
  return {Db->Files.At(Files.first()).Id, static_cast<U32>(Nearest), 0};
}

CSrcLoc ELFAPI_PrevSrcLoc(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  I64 Nearest = -1;
  const QList<FILE_INDEX> Files = Db->Files.FindId(Loc.File);
  for (const FILE_INDEX File : Files) {
    Nearest = std::max(Nearest, Db->Lines.PrevLine(File, Loc.Line));
  }
  return Nearest < 0 ? CSrcLoc() : CSrcLoc{Db->Files.At(Files.first()).Id, static_cast<U32>(Nearest), 0};
}

U32 ELFAPI_NextProgramAddr(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = Db->Lines.Above(Addr);
  return pEntry ? pEntry->Addr : INVALID_ADDR;
}

U32 ELFAPI_PrevProgramAddr(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = Db->Lines.Below(Addr);
  return pEntry ? pEntry->Addr : INVALID_ADDR;
}

int ELFAPI_NextSrcAddr(U32 Addr, U32& NextAddr) {
  const CDatabaseLock Db;
  const CSrcLoc Start = ELFAPI_GetFirstSrcLoc(Addr);
  for (const LINE_ENTRY* pEntry = Db->Lines.Above(Addr); pEntry; pEntry = Db->Lines.Above(pEntry->Addr)) {
    if (pEntry->Addr - Addr > MAX_BYTES_AHEAD || pEntry->Addr >= Db->HighestAddr) break;
    if (SrcLocOf(*Db, *pEntry).IsSameLine(Start)) continue;
    NextAddr = pEntry->Addr;
    return 0;
  }
  return -1;
}

bool ELFAPI_IsLocExecutable(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  const QAddrList Addrs = Loc.IsValid() ? ELFAPI_GetAddrsOfLoc(Loc) : QAddrList();
  if (Addrs.isEmpty()) return false;
  const CSrcLoc Next = ELFAPI_NextSrcLoc(Loc);
  if (!Next.IsValid()) return true;
  const QAddrList NextAddrs = ELFAPI_GetAddrsOfLoc(Next);
  return std::none_of(Addrs.begin(), Addrs.end(),
                      [&NextAddrs](U32 Addr) { return std::binary_search(NextAddrs.begin(), NextAddrs.end(), Addr); });
}

bool ELFAPI_IsStatementStart(U32 Addr) {
  const CDatabaseLock Db;
  const LINE_ENTRY* pEntry = Db->Lines.At(Addr);
  if (!pEntry) return false;
  const LINE_ENTRY* pBelow = Db->Lines.Below(Addr);
  return !pBelow || !pBelow->IsSameLine(*pEntry);
}
