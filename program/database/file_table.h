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
  QAddrRanges Ranges;  // code of the units that hold the file, sorted, apart from each other

  // From the start of the first to the end of the last range.
  CAddrRange Range() const;
};

// The source files of the program, their identifiers and redirections. A path's identifier stays the same for the life
// of the process; paths are compared without regard to case.
class CFileTable {
public:
  void Clear();
  // Position of the file, entered if new.
  FILE_INDEX Add(const QString& sPath);
  int Count() const { return static_cast<int>(m_Files.size()); }
  FILE_ENTRY& At(FILE_INDEX Index) { return m_Files[static_cast<size_t>(Index)]; }
  const FILE_ENTRY& At(FILE_INDEX Index) const { return m_Files[static_cast<size_t>(Index)]; }

  // File that the program itself names so; -1 if none.
  FILE_INDEX FindOwnPath(const QString& sPath) const { return m_ByOwnKey.value(sPath.toLower(), -1); }
  // Files that an identifier stands for: several once they were redirected to one path.
  QList<FILE_INDEX> FindId(U32 Id) const;
  // Identifier of the file that has this path now, or had it before a redirection; 0xFFFFFFFF if none.
  U32 IdOfPath(const QString& sPath) const;

  void TestExistence();
  // False when the program has no file sOldPath.
  bool Redirect(const QString& sOldPath, const QString& sNewPath);
  // Redirects what the other table has redirected.
  void RedirectLike(const CFileTable& Other);

private:
  std::vector<FILE_ENTRY> m_Files;
  QHash<QString, FILE_INDEX> m_ByOwnKey;  // lower-cased path in the program file
  QMultiHash<U32, FILE_INDEX> m_ById;     // identifiers past and present
};

// The ranges sorted, with overlapping and adjacent ones made one.
QAddrRanges MergedRanges(QAddrRanges Ranges);

// Identifier of a path; two paths that differ in more than case never share one.
U32 InternFileId(const QString& sPath);
