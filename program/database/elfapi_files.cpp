// Source files: identifiers, ranges, redirection; and the state of the program as a whole.

#include <QSet>
#include <algorithm>

#include "program/database/core_link.h"
#include "program/database/database.h"
#include "program/database/file_finder.h"
#include "program/database/path_forms.h"
#include "program/elf/elf.h"

namespace {

// Files of the program for which the finder is to look.
struct FIND_ORDER {
  const ELF_FILE* pElf = nullptr;
  bool bAll = false;        // else only some that may have appeared
  U32 Generation = 0;       // of the finder's settings
  FILE_INDEX NumFiles = 0;  // of the program
  QList<std::pair<FILE_INDEX, QString>> Files;

  bool IsFor(const DATABASE& Db) const { return Db.pElf == pElf && Db.Files.Count() == NumFiles; }
};

// All files when the finder's settings have changed, otherwise those with the bare name of the path: a file that was
// not there may have been made since.
FIND_ORDER OrderFor(const DATABASE& Db, const QString& sPath) {
  FIND_ORDER Order{Db.pElf, false, CFileFinder::Get()->GetGeneration(), Db.Files.Count(), {}};
  Order.bAll = !Db.FoundPaths || Db.FoundPaths->Generation != Order.Generation;
  const QString sName = FileNameOf(sPath);
  if (!Order.bAll && sName.size() == sPath.size()) return Order;
  for (FILE_INDEX i = 0; i < Order.NumFiles; ++i) {
    const QString& sOwnPath = Db.Files.At(i).sOwnPath;
    if (Order.bAll || IsSamePath(FileNameOf(sOwnPath), sName)) Order.Files.append({i, sOwnPath});
  }
  return Order;
}

// May take long on a slow disk: without the database's mutex.
QHash<QString, FILE_INDEX> FindFiles(const FIND_ORDER& Order) {
  const CFindBurst Burst;
  QHash<QString, FILE_INDEX> Found;
  for (const auto& [File, sOwnPath] : Order.Files) {
    const QString sKey = FilePathKey(CFileFinder::Get()->FindFile(sOwnPath));
    if (!sKey.isEmpty() && !Found.contains(sKey)) Found.insert(sKey, File);
  }
  return Found;
}

U32 IdOfFoundPath(const DATABASE& Db, const QString& sPath) {
  const FILE_INDEX File = Db.FoundPaths ? Db.FoundPaths->Files.value(FilePathKey(sPath), -1) : -1;
  return File < 0 ? INVALID_FILE_ID : Db.Files.At(File).Id;
}

}  // namespace

void ELFAPI_ClearRelocations() {
  const CDatabaseLock Db;
  ELF_ClearRelocations();
}

bool ELFAPI_HasRelocations() {
  const CDatabaseLock Db;
  return ELF_HasRelocations();
}

int ELFAPI_AddRelocation(const QString& sText, I32 Delta) {
  {
    CDatabaseLock Db;
    if (ELF_AddRelocation(sText.toUtf8().constData(), Delta) != 0) return -1;
    if (!Db->pElf) return 0;
    if (!RebuildTables(Db)) return -1;
  }
  AnalyzeCoreProgram();
  return 0;
}

U32 ELFAPI_FileId(const QString& sPath) {
  FIND_ORDER Order;
  {
    const CDatabaseLock Db;
    U32 Id = Db->Files.IdOfPath(sPath);
    if (Id != INVALID_FILE_ID || sPath.isEmpty()) return Id;
    Order = OrderFor(*Db, sPath);
    if (!Order.bAll) Id = IdOfFoundPath(*Db, sPath);
    if (Id != INVALID_FILE_ID || Order.Files.isEmpty()) return Id;
  }
  QHash<QString, FILE_INDEX> Found = FindFiles(Order);
  const CDatabaseLock Db;
  // Another program may have been opened meanwhile.
  if (!Order.IsFor(*Db) || (!Order.bAll && !Db->FoundPaths)) return Db->Files.IdOfPath(sPath);
  if (Order.bAll) {
    Db->FoundPaths = {Order.Generation, std::move(Found)};
  } else {
    for (auto it = Found.cbegin(); it != Found.cend(); ++it) Db->FoundPaths->Files.insert(it.key(), it.value());
  }
  return IdOfFoundPath(*Db, sPath);
}

QString ELFAPI_GetFilePathOf(U32 FileId) {
  const CDatabaseLock Db;
  const QList<FILE_INDEX> Files = Db->Files.FindId(FileId);
  return Files.isEmpty() ? QString() : Db->Files.At(Files.first()).sPath;
}

CAddrRange ELFAPI_GetFileRange(U32 FileId) {
  const QAddrRanges Ranges = ELFAPI_GetFileRanges(FileId);
  return Ranges.isEmpty() ? CAddrRange() : CAddrRange{Ranges.first().Start, Ranges.last().End() - Ranges.first().Start};
}

QAddrRanges ELFAPI_GetFileRanges(U32 FileId) {
  const CDatabaseLock Db;
  QAddrRanges Ranges;
  for (const FILE_INDEX File : Db->Files.FindId(FileId)) Ranges += Db->Files.At(File).Ranges;
  return MergedRanges(Ranges);
}

void ELFAPI_RedirectFile(const QString& sOldPath, const QString& sNewPath) {
  const CDatabaseLock Db;
  if (!Db->Files.Redirect(sOldPath, sNewPath)) return;
  // What was remembered names the old identifier or path.
  Db->Caches.DeclLocs.clear();
  Db->Caches.CallLocs.clear();
  Db->Caches.FilesByName.reset();
}

bool ELFAPI_FileExists(U32 FileId) {
  const CDatabaseLock Db;
  const QList<FILE_INDEX> Files = Db->Files.FindId(FileId);
  return !Files.isEmpty() && Db->Files.At(Files.first()).bExists;
}

QList<U32> ELFAPI_GetFileIds() {
  const CDatabaseLock Db;
  QList<U32> Ids;
  QSet<U32> Known;  // files that were redirected to one path share it
  for (FILE_INDEX i = 0; i < Db->Files.Count(); ++i) {
    const U32 Id = Db->Files.At(i).Id;
    if (Known.contains(Id)) continue;
    Known.insert(Id);
    Ids << Id;
  }
  return Ids;
}

// A line's code reaches to the next line entry, or to the end of the code that its file takes part in.
QHash<U32, QAddrRanges> ELFAPI_GetFileCode() {
  const CDatabaseLock Db;
  QHash<FILE_INDEX, QAddrRanges> ByFile;
  const std::vector<LINE_ENTRY>& Entries = Db->Lines.Entries();
  for (size_t i = 0; i < Entries.size(); ++i) {
    const LINE_ENTRY& Entry = Entries[i];
    const QAddrRanges& Ranges = Db->Files.At(Entry.File).Ranges;
    const auto it = std::partition_point(Ranges.begin(), Ranges.end(),
                                         [&Entry](const CAddrRange& Range) { return Range.End() <= Entry.Addr; });
    if (it == Ranges.end() || !it->Contains(Entry.Addr)) continue;
    const U32 End = i + 1 < Entries.size() ? std::min(it->End(), Entries[i + 1].Addr) : it->End();
    QAddrRanges& Code = ByFile[Entry.File];
    if (!Code.isEmpty() && Code.last().End() == Entry.Addr) {
      Code.last().Size += End - Entry.Addr;
    } else if (End > Entry.Addr) {
      Code << CAddrRange{Entry.Addr, End - Entry.Addr};
    }
  }
  QHash<U32, QAddrRanges> ById;
  for (auto it = ByFile.cbegin(); it != ByFile.cend(); ++it) ById[Db->Files.At(it.key()).Id] += it.value();
  for (QAddrRanges& Ranges : ById) Ranges = MergedRanges(Ranges);
  return ById;
}

QStringList ELFAPI_GetSourceFiles() {
  const CDatabaseLock Db;
  QStringList Paths;
  QSet<U32> Known;  // files that were redirected to one path share it
  for (const bool bRedirected : {false, true}) {
    for (FILE_INDEX i = 0; i < Db->Files.Count(); ++i) {
      const FILE_ENTRY& File = Db->Files.At(i);
      if (File.bRedirected != bRedirected || (!bRedirected && !File.bExists) || Known.contains(File.Id)) continue;
      Known.insert(File.Id);
      Paths.append(File.sPath);
    }
  }
  return Paths;
}

U32 ELFAPI_GetFileAt(U32 Addr) {
  const CDatabaseLock Db;
  const QList<U64> Files = Db->FileTree.Find(Addr);
  return Files.isEmpty() ? INVALID_FILE_ID : Db->Files.At(static_cast<FILE_INDEX>(Files.last())).Id;
}

QString ELFAPI_GetFilePath() {
  const CDatabaseLock Db;
  return Db->sPath;
}

ELF_SRC_LANG ELFAPI_GetSrcLang() {
  const CDatabaseLock Db;
  return ELF_GetSrcLang(Db->pElf);
}

U32 ELFAPI_GetEncoding() {
  const CDatabaseLock Db;
  return Db->pElf ? ELF_GetEncoding(Db->pElf) : ELF_ENCODING_INVALID;
}

U32 ELFAPI_GetEntryPC() {
  const CDatabaseLock Db;
  return ELF_GetEntryPoint(Db->pElf);
}

ELF_SYM_HANDLE ELFAPI_GetEntryFunc() {
  const CDatabaseLock Db;
  return ELF_GetEntryFunc(Db->pElf);
}

std::pair<U32, U32> ELFAPI_GetProgramExtent() {
  const CDatabaseLock Db;
  return {Db->LowestAddr, Db->HighestAddr};
}

QMemBlocks ELFAPI_GetDataSegments() {
  const CDatabaseLock Db;
  return Db->DataSegments;
}

U32 ELFAPI_GetNumDiscardedLines() {
  const CDatabaseLock Db;
  return Db->NumDiscardedLines;
}

CAddrRange ELFAPI_GetCfiBlock(U32 PC) {
  const CDatabaseLock Db;
  return Db->Cfi.Find(PC);
}

U32 ELFAPI_GetNumCfiBlocks() {
  const CDatabaseLock Db;
  return Db->Cfi.Count();
}
