#include "program/database/file_table.h"

#include <QFileInfo>
#include <algorithm>
#include <mutex>
#include <optional>

#include "base/stable_hash.h"
#include "base/text.h"

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
  const auto it = Table.IdOfKey.constFind(FilePathKey(sPath));
  return it != Table.IdOfKey.cend() ? std::optional(it.value()) : std::nullopt;
}

}  // namespace

QString FilePathKey(const QString& sPath) {
  return NormalisedPath(sPath).toLower();
}

U32 InternFileId(const QString& sPath) {
  const QString sKey = FilePathKey(sPath);
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
  m_BySpelling.clear();
  m_ByOwnKey.clear();
  m_ById.clear();
}

FILE_INDEX CFileTable::Add(const QString& sPath) {
  const QString sKey = FilePathKey(sPath);
  const FILE_INDEX Known = m_ByOwnKey.value(sKey, -1);
  const FILE_INDEX Index = Known >= 0 ? Known : Count();
  m_BySpelling.insert(sPath, Index);
  if (Known >= 0) return Known;
  FILE_ENTRY Entry;
  Entry.sPath = Entry.sOwnPath = sPath;
  Entry.Id = InternFileId(sPath);
  m_ByOwnKey.insert(sKey, Index);
  m_ById.insert(Entry.Id, Index);
  m_Files.push_back(Entry);
  return Index;
}

FILE_INDEX CFileTable::FindOwnPath(const QString& sPath) const {
  const auto it = m_BySpelling.constFind(sPath);
  return it != m_BySpelling.cend() ? it.value() : m_ByOwnKey.value(FilePathKey(sPath), -1);
}

QList<FILE_INDEX> CFileTable::FindPresentId(U32 Id) const {
  QList<FILE_INDEX> Indices;
  const auto [First, End] = m_ById.equal_range(Id);
  for (auto it = First; it != End; ++it) {
    if (At(it.value()).Id == Id) Indices.append(it.value());
  }
  std::sort(Indices.begin(), Indices.end());
  return Indices;
}

QList<FILE_INDEX> CFileTable::FindId(U32 Id) const {
  QList<FILE_INDEX> Indices = FindPresentId(Id);
  if (!Indices.isEmpty()) return Indices;
  Indices = m_ById.values(Id);
  std::sort(Indices.begin(), Indices.end());
  return Indices;
}

U32 CFileTable::IdOfPath(const QString& sPath) const {
  const FILE_INDEX Own = FindOwnPath(sPath);
  if (Own >= 0) return At(Own).Id;
  const std::optional<U32> Id = InternedId(sPath);
  const QList<FILE_INDEX> Files = Id ? FindPresentId(*Id) : QList<FILE_INDEX>();
  return Files.isEmpty() ? NO_FILE_ID : At(Files.first()).Id;
}

void CFileTable::TestExistence() {
  for (FILE_ENTRY& Entry : m_Files) {
    if (!Entry.bRedirected) Entry.bExists = QFileInfo::exists(Entry.sPath);
  }
}

bool CFileTable::Redirect(const QString& sOldPath, const QString& sNewPath) {
  const FILE_INDEX Own = FindOwnPath(sOldPath);
  const QList<FILE_INDEX> Files = Own >= 0 ? QList<FILE_INDEX>{Own} : FindPresentId(IdOfPath(sOldPath));
  const U32 NewId = InternFileId(sNewPath);
  const bool bExists = QFileInfo::exists(sNewPath);
  for (const FILE_INDEX Index : Files) {
    FILE_ENTRY& Entry = At(Index);
    Entry.sPath = sNewPath;
    Entry.Id = NewId;
    Entry.bExists = bExists;
    Entry.bRedirected = FilePathKey(Entry.sOwnPath) != FilePathKey(sNewPath);
    if (!m_ById.contains(NewId, Index)) m_ById.insert(NewId, Index);
  }
  return !Files.isEmpty();
}

void CFileTable::RedirectLike(const CFileTable& Other) {
  for (const FILE_ENTRY& File : Other.m_Files) {
    if (File.bRedirected) Redirect(File.sOwnPath, File.sPath);
  }
  for (auto it = Other.m_ById.cbegin(); it != Other.m_ById.cend(); ++it) {
    const FILE_INDEX Index = FindOwnPath(Other.At(it.value()).sOwnPath);
    if (Index >= 0 && !m_ById.contains(it.key(), Index)) m_ById.insert(it.key(), Index);
  }
}
