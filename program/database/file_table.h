#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <vector>

#include "base/addr_range.h"
#include "base/types.h"

// Position of a source file in the table; the line table speaks of files by it. -1 is none.
using FILE_INDEX = I32;

// One source file of the program.
struct FILE_ENTRY {
  QString sPath;     // as the program file gives it, or as redirected
  QString sOwnPath;  // as the program file gives it
  U32 Id = 0;        // identifier of sPath
  bool bExists = false;
  bool bRedirected = false;
  U32 LowAddr = INVALID_ADDR;  // extent of the file's line entries; HighAddr below LowAddr without any
  U32 HighAddr = 0;
  QAddrRanges Ranges;      // code of the units that hold the file, sorted, apart from each other
  QAddrRanges MainRanges;  // code of the units whose main file it is

  // From the start of the first to the end of the last range.
  CAddrRange Range() const;
};

// The source files of the program, their identifiers and redirections. A path's identifier stays the same for the life
// of the process. All spellings of a path are one file, see FilePathKey.
class CFileTable {
public:
  void Clear();
  // Position of the file, entered if new.
  FILE_INDEX Add(const QString& sPath);
  int Count() const { return static_cast<int>(m_Files.size()); }
  FILE_ENTRY& At(FILE_INDEX Index) { return m_Files[static_cast<size_t>(Index)]; }
  const FILE_ENTRY& At(FILE_INDEX Index) const { return m_Files[static_cast<size_t>(Index)]; }

  // File that the program itself names so; -1 if none.
  FILE_INDEX FindOwnPath(const QString& sPath) const;
  // Files that an identifier stands for: several once they were redirected to one path. One that no file has any more
  // stands for those that had it.
  QList<FILE_INDEX> FindId(U32 Id) const;
  // Identifier of the file that the program names so, or that was redirected to this path; 0xFFFFFFFF if none.
  U32 IdOfPath(const QString& sPath) const;

  void TestExistence();
  // The file that the program names so, or those that were redirected to sOldPath. False when there is none.
  bool Redirect(const QString& sOldPath, const QString& sNewPath);
  // Redirects what the other table has redirected; identifiers of the past are kept, too.
  void RedirectLike(const CFileTable& Other);

private:
  QList<FILE_INDEX> FindPresentId(U32 Id) const;

  std::vector<FILE_ENTRY> m_Files;
  QHash<QString, FILE_INDEX> m_BySpelling;  // as the program file spells it
  QHash<QString, FILE_INDEX> m_ByOwnKey;
  QMultiHash<U32, FILE_INDEX> m_ById;  // identifiers past and present
};

// The ranges sorted, with overlapping and adjacent ones made one.
QAddrRanges MergedRanges(QAddrRanges Ranges);

// What all spellings of a path share: without "." and "..", with single slashes, in lower case.
QString FilePathKey(const QString& sPath);
// Identifier of a path; two paths with different keys never share one.
U32 InternFileId(const QString& sPath);
