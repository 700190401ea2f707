// The part of a load that builds the tables of source files and lines.

#include <QSet>
#include <algorithm>

#include "program/database/core_link.h"
#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/source_path.h"

namespace {

// Positions in the file table of the reader's files, each looked up once.
class CReaderFiles {
public:
  CReaderFiles(DATABASE& Db) : m_Db(Db), m_Indices(ELF_GetNumSrcFiles(Db.pElf), -1) {}

  FILE_INDEX OfReaderFile(U32 ReaderFile) {
    FILE_INDEX& Index = m_Indices[ReaderFile];
    if (Index < 0) Index = m_Db.Files.Add(QString::fromUtf8(ELF_GetSrcFile(m_Db.pElf, ReaderFile)));
    return Index;
  }

  // -1 for a line entry without file.
  FILE_INDEX OfLine(U32 Line) {
    const I32 ReaderFile = ELF_GetSrcLineFileIndex(m_Db.pElf, Line);
    if (ReaderFile >= 0 && static_cast<size_t>(ReaderFile) < m_Indices.size()) {
      return OfReaderFile(static_cast<U32>(ReaderFile));
    }
    const char* sFile = ELF_GetSrcLineFile(m_Db.pElf, Line);
    return sFile && *sFile ? m_Db.Files.Add(QString::fromUtf8(sFile)) : -1;
  }

private:
  DATABASE& m_Db;
  std::vector<FILE_INDEX> m_Indices;
};

// True where a run of lines begins with code. The lines of a function that the linker dropped begin at 0, where a
// program for small addresses has its vectors: they would run over code that is not theirs.
bool IsRunOfCode(U32 Start, U32 Floor) {
  if (Start >= Floor) return true;
  const QString sMapping = ELFAPI_GetMappingName(Start, false);
  return sMapping == QLatin1String("$Thumb") || sMapping == QLatin1String("$ARM");
}

void AddLines(DATABASE& Db, CReaderFiles& ReaderFiles) {
  const U32 Floor = LowestFuncAddr(Db.pElf);
  const U32 NumLines = ELF_GetNumSrcLines(Db.pElf);
  Db.Lines.Reserve(NumLines);
  bool bStartsRun = true, bIsCode = true;
  for (U32 i = 0; i < NumLines; ++i) {
    const U32 Addr = ELF_GetSrcLineAddr(Db.pElf, i);
    if (bStartsRun) bIsCode = IsRunOfCode(Addr, Floor);
    const U32 Flags = ELF_GetSrcLineFlags(Db.pElf, i);
    bStartsRun = (Flags & ELF_LINE_END_SEQUENCE) != 0;
    // The end of a run of code would take the first address of whatever stands behind it.
    if (Flags & (ELF_LINE_END_SEQUENCE | ELF_LINE_WITHOUT_CODE)) continue;
    if (Addr < Floor || !bIsCode) {
      ++Db.NumDiscardedLines;
      continue;
    }
    // Line 0 is code of no line: what stands before it goes on.
    const I32 Line = ELF_GetSrcLineNumber(Db.pElf, i);
    const FILE_INDEX File = ReaderFiles.OfLine(i);
    if (File < 0 || Line <= 0) continue;
    const I32 Column = ELF_GetSrcLineColumn(Db.pElf, i);
    Db.Lines.Add({Addr, File, static_cast<U32>(Line), Column > 0 ? static_cast<U32>(Column) : 0});
  }
}

void SetFileExtents(DATABASE& Db) {
  for (const LINE_ENTRY& Entry : Db.Lines.Entries()) {
    FILE_ENTRY& File = Db.Files.At(Entry.File);
    File.LowAddr = std::min(File.LowAddr, Entry.Addr);
    File.HighAddr = std::max(File.HighAddr, Entry.Addr);
  }
  if (Db.Lines.Entries().empty()) return;
  Db.LowestAddr = std::min(Db.LowestAddr, Db.Lines.Entries().front().Addr);
  Db.HighestAddr = std::max(Db.HighestAddr, Db.Lines.Entries().back().Addr);
}

// The ranges of each unit and of its functions, which stand outside the unit's own where an old version of debug
// information has no words for more than one range of a unit.
class CUnitRanges {
public:
  explicit CUnitRanges(const ELF_FILE* pElf) {
    for (U32 i = 0; i < ELF_GetNumFunctions(pElf); ++i) {
      const ELF_SYM_HANDLE Func = ELF_GetFunction(pElf, i);
      m_Ranges[ELF_GetCompUnit(Func)] += CodeRangesOf(Func);
    }
  }

  void AddTo(FILE_ENTRY& File, ELF_SYM_HANDLE Unit, bool bIsMain) {
    QAddrRanges& Ranges = m_Ranges[Unit];
    if (!m_Merged.contains(Unit)) {
      Ranges = MergedRanges(Ranges + CodeRangesOf(Unit));
      m_Merged.insert(Unit);
    }
    if (m_Effort > MAX_EFFORT) return;
    const qsizetype NumBefore = File.Ranges.size();
    for (const CAddrRange& Range : Ranges) {
      if (Range.Start <= File.HighAddr && Range.End() > File.LowAddr) File.Ranges.append(Range);
    }
    if (bIsMain) File.MainRanges += File.Ranges.mid(NumBefore);
    m_Effort += File.Ranges.size() - NumBefore + Ranges.size() / COMPARISONS_OF_RANGE;
  }

private:
  // Each of the many files of a damaged program could stand in one unit of many ranges: files after the limit have
  // none.
  static constexpr qsizetype MAX_EFFORT = 1 << 25;  // ranges of all files
  static constexpr qsizetype COMPARISONS_OF_RANGE = 32;

  qsizetype m_Effort = 0;
  QHash<ELF_SYM_HANDLE, QAddrRanges> m_Ranges;
  QSet<ELF_SYM_HANDLE> m_Merged;  // those that are complete
};

// Tells the main files of units, by the paths that lines have: several files of a program may have one bare name.
class CMainFiles {
public:
  explicit CMainFiles(const CFileTable& Files) : m_Files(Files) {}

  bool IsMain(FILE_INDEX File, ELF_SYM_HANDLE Unit) {
    const auto it = m_Units.constFind(Unit);
    const UNIT_FILE& Main = it != m_Units.cend() ? *it : *m_Units.insert(Unit, Find(Unit));
    if (Main.File >= 0) return File == Main.File;
    return !Main.sEnd.isEmpty() && FilePathKey(m_Files.At(File).sOwnPath).endsWith(Main.sEnd);
  }

private:
  struct UNIT_FILE {
    FILE_INDEX File = -1;
    QString sEnd;  // of its path's key, where the directory is unknown
  };

  UNIT_FILE Find(ELF_SYM_HANDLE Unit) const {
    const char* sName = ELF_GetName(Unit);
    const char* sDir = ELF_GetCompDir(Unit);
    if (!sName || !*sName) return {};
    const QString sPath = QString::fromStdString(JoinSourcePath(sDir ? sDir : "", "", sName));
    return {m_Files.FindOwnPath(sPath), QLatin1Char('/') + FilePathKey(QString::fromUtf8(sName))};
  }

  const CFileTable& m_Files;
  QHash<ELF_SYM_HANDLE, UNIT_FILE> m_Units;
};

void SetFileRanges(DATABASE& Db, CReaderFiles& ReaderFiles) {
  CUnitRanges UnitRanges(Db.pElf);
  CMainFiles MainFiles(Db.Files);
  for (U32 i = 0; i < ELF_GetNumSrcFiles(Db.pElf); ++i) {
    const FILE_INDEX Index = ReaderFiles.OfReaderFile(i);
    FILE_ENTRY& File = Db.Files.At(Index);
    if (File.HighAddr < File.LowAddr) continue;
    for (U32 Unit = 0; Unit < ELF_GetSrcFileNumUnits(Db.pElf, i); ++Unit) {
      const ELF_SYM_HANDLE hUnit = ELF_GetSrcFileUnit(Db.pElf, i, Unit);
      UnitRanges.AddTo(File, hUnit, MainFiles.IsMain(Index, hUnit));
    }
    File.Ranges = MergedRanges(File.Ranges);
  }
}

void RemoveStrayLines(DATABASE& Db) {
  std::vector<CAddrRange> Ranges;
  for (FILE_INDEX i = 0; i < Db.Files.Count(); ++i) Ranges.push_back(Db.Files.At(i).Range());
  Db.Lines.Remove([&Ranges](const LINE_ENTRY& Entry) {
    const CAddrRange& Range = Ranges[static_cast<size_t>(Entry.File)];
    return !Range.IsNone() && !Range.Contains(Entry.Addr);
  });
  Db.Lines.BuildIndex();
}

}  // namespace

bool LoadFilesAndLines(DATABASE& Db, const STEP_DONE& StepDone) {
  CReaderFiles ReaderFiles(Db);
  for (U32 i = 0; i < ELF_GetNumSrcLines(Db.pElf); ++i) ReaderFiles.OfLine(i);
  if (!StepDone("Parsed source file paths found in address mapping table")) return false;
  for (U32 i = 0; i < ELF_GetNumSrcFiles(Db.pElf); ++i) ReaderFiles.OfReaderFile(i);
  if (!StepDone("Parsed source file paths found in source files table")) return false;
  Db.Files.TestExistence();
  if (!StepDone("Initialized file exists flags")) return false;
  AddLines(Db, ReaderFiles);
  if (!StepDone("Parsed source to address mapping table")) return false;
  Db.Lines.Sort();
  SetFileExtents(Db);
  if (!StepDone("Sorted program address list")) return false;
  SetFileRanges(Db, ReaderFiles);
  if (!StepDone("parsed file address ranges")) return false;
  RemoveStrayLines(Db);
  return StepDone("Cleaned up address mapping table");
}
