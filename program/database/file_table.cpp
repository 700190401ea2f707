#include "program/database/file_table.h"

#include <QFileInfo>
#include <algorithm>
#include <mutex>
#include <optional>

#include "base/stable_hash.h"

namespace {

constexpr U32 NO_FILE_ID = 0xFFFFFFFFu;

// Identifiers given out by this process, and whose they are.
struct INTERNED {
  std::mutex Mutex;
  QHash<QString, U32> IdOfKey;
  QHash<U32, QString> KeyOfId;
};

INTERNED& Interned() {
  static INTERNED Table;
  return Table;
}

std::optional<U32> InternedId(const QString& sPath) {
  INTERNED& Table = Interned();
  const std::lock_guard Lock(Table.Mutex);
  const auto it = Table.IdOfKey.constFind(sPath.toLower());
  return it != Table.IdOfKey.cend() ? std::optional(it.value()) : std::nullopt;
}

}  // namespace

U32 InternFileId(const QString& sPath) {
  const QString sKey = sPath.toLower();
  INTERNED& Table = Interned();
  const std::lock_guard Lock(Table.Mutex);
  const auto it = Table.IdOfKey.constFind(sKey);
  if (it != Table.IdOfKey.cend()) return it.value();
  U32 Id = StableHash32(sKey);
  while (Id == 0 || Id == NO_FILE_ID || Table.KeyOfId.contains(Id)) ++Id;
  Table.IdOfKey.insert(sKey, Id);
  Table.KeyOfId.insert(Id, sKey);
  return Id;
}

QAddrRanges MergedRanges(QAddrRanges Ranges) {
  std::sort(Ranges.begin(), Ranges.end(), [](const CAddrRange& A, const CAddrRange& B) { return A.Start < B.Start; });
  QAddrRanges Merged;
  for (const CAddrRange& Range : Ranges) {
    if (Merged.isEmpty() || Range.Start > Merged.last().End()) {
      Merged.append(Range);
    } else {
      CAddrRange& Last = Merged.last();
      Last.Size = std::max(Last.End(), Range.End()) - Last.Start;
    }
  }
  return Merged;
}

CAddrRange FILE_ENTRY::Range() const {
  if (Ranges.isEmpty()) return {};
  return {Ranges.first().Start, Ranges.last().End() - Ranges.first().Start};
}

void CFileTable::Clear() {
  m_Files.clear();
  m_ByOwnKey.clear();
  m_ById.clear();
}

FILE_INDEX CFileTable::Add(const QString& sPath) {
  const QString sKey = sPath.toLower();
  const auto it = m_ByOwnKey.constFind(sKey);
  if (it != m_ByOwnKey.cend()) return it.value();
  const FILE_INDEX Index = Count();
  FILE_ENTRY Entry;
  Entry.sPath = Entry.sOwnPath = sPath;
  Entry.Id = InternFileId(sPath);
  m_ByOwnKey.insert(sKey, Index);
  m_ById.insert(Entry.Id, Index);
  m_Files.push_back(Entry);
  return Index;
}

QList<FILE_INDEX> CFileTable::FindId(U32 Id) const {
  QList<FILE_INDEX> Indices = m_ById.values(Id);
  std::sort(Indices.begin(), Indices.end());
  return Indices;
}

U32 CFileTable::IdOfPath(const QString& sPath) const {
  const FILE_INDEX Own = FindOwnPath(sPath);
  if (Own >= 0) return At(Own).Id;
  const std::optional<U32> Id = InternedId(sPath);
  const QList<FILE_INDEX> Files = Id ? FindId(*Id) : QList<FILE_INDEX>();
  return Files.isEmpty() ? NO_FILE_ID : At(Files.first()).Id;
}

void CFileTable::TestExistence() {
  for (FILE_ENTRY& Entry : m_Files) {
    if (!Entry.bRedirected) Entry.bExists = QFileInfo::exists(Entry.sPath);
  }
}

bool CFileTable::Redirect(const QString& sOldPath, const QString& sNewPath) {
  const QList<FILE_INDEX> Files = FindId(IdOfPath(sOldPath));
  const U32 NewId = InternFileId(sNewPath);
  const bool bExists = QFileInfo::exists(sNewPath);
  for (const FILE_INDEX Index : Files) {
    FILE_ENTRY& Entry = At(Index);
    Entry.sPath = sNewPath;
    Entry.Id = NewId;
    Entry.bExists = bExists;
    Entry.bRedirected = Entry.sOwnPath.compare(sNewPath, Qt::CaseInsensitive) != 0;
    if (!m_ById.contains(NewId, Index)) m_ById.insert(NewId, Index);
  }
  return !Files.isEmpty();
}

void CFileTable::RedirectLike(const CFileTable& Other) {
  for (const FILE_ENTRY& File : Other.m_Files) {
    if (File.bRedirected) Redirect(File.sOwnPath, File.sPath);
  }
}
