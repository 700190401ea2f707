#include "program/elf/line_reader.h"

#include <algorithm>

#include "program/elf/elf.h"
#include "program/elf/source_path.h"

namespace {

constexpr U64 MAX_COLUMN = 0xFFFF;
constexpr U64 MAX_ENTRIES = 1 << 24;      // of all headers
constexpr size_t MAX_LINES = 1 << 25;     // of a file; a damaged one can ask for a row with each byte
constexpr size_t MAX_PATH_LENGTH = 4096;  // bytes; longer ones are damage, and many of them would fill the memory

LINE_SECTIONS SectionsOf(const CDebugSections& Sections) {
  return {Sections.Bytes(DEBUG_SECTION::Line), Sections.Bytes(DEBUG_SECTION::LineStr),
          Sections.Bytes(DEBUG_SECTION::Str)};
}

U8 FlagsOf(const LINE_ROW& Row) {
  U8 Flags = 0;
  if (Row.bIsStmt) Flags |= ELF_LINE_IS_STMT;
  if (Row.bEndSequence) Flags |= ELF_LINE_END_SEQUENCE;
  if (Row.bPrologueEnd) Flags |= ELF_LINE_PROLOGUE_END;
  return Flags;
}

// Where the table counts directories from the one of compilation, and in tables of assemblers that name it again, a
// relative one is not joined to itself.
std::string_view DirOf(const LINE_HEADER& Header, const LINE_FILE& File, const std::string& sCompDir) {
  if (File.Dir >= Header.aDirs.size()) return "";
  const std::string_view sDir = Header.aDirs[File.Dir];
  const bool bCompDir = Header.FirstFile == 0 && sDir == Header.aDirs[0] && !IsAbsoluteSourcePath(std::string(sDir));
  return bCompDir && !sCompDir.empty() ? "" : sDir;
}

}  // namespace

CLineReader::TABLE_STATE* CLineReader::StateOf(const CDie& Unit, U32& Offset) {
  const std::optional<I64> StmtList = Reader.Integer(Unit, DW_AT_stmt_list);
  if (!StmtList || *StmtList < 0 || *StmtList > 0xFFFFFFFFll) return nullptr;
  Offset = static_cast<U32>(*StmtList);
  return &Tables[Offset];
}

bool CLineReader::ReadHeader(U32 Offset, LINE_HEADER& Header) const {
  const DWARF_DAMAGE Damage = ReadLineHeader(SectionsOf(Sections()), Offset, Header);
  if (Damage.sWhat) Complain(Damage);
  return !Damage.sWhat;
}

I32 CLineReader::PathOf(const LINE_HEADER& Header, const LINE_FILE& File, const std::string& sCompDir) {
  if (!File.sName || !*File.sName) return -1;
  const std::string_view sDir = DirOf(Header, File, sCompDir);
  const std::string_view sName = File.sName;
  const size_t Length = sCompDir.size() + sDir.size() + sName.size();
  if (Length > MAX_PATH_LENGTH) return Complain({"path of a source file is too long", "length", Length}), -1;
  return Table.Intern(JoinSourcePath(sCompDir, std::string(sDir), std::string(sName)));
}

I32 CLineReader::ReadFiles(const CDie& Unit) {
  U32 Offset = 0;
  TABLE_STATE* pState = StateOf(Unit, Offset);
  if (!pState || pState->bFilesRead) return pState ? pState->FileTable : -1;
  pState->bFilesRead = true;
  // Each entry takes a byte at least.
  if (NumEntriesRead > std::min(Sections().Bytes(DEBUG_SECTION::Line).Left(), MAX_ENTRIES)) {
    return Complain({"line tables lie over each other", "offset", Offset}), -1;
  }
  LINE_HEADER Header;
  const bool bGood = ReadHeader(Offset, Header);
  NumEntriesRead += Header.aDirs.size() + Header.aFiles.size();
  if (!bGood) return -1;
  const char* sCompDir = Reader.Text(Unit, DW_AT_comp_dir);
  std::vector<I32> aFiles;
  for (const LINE_FILE& File : Header.aFiles) aFiles.push_back(PathOf(Header, File, sCompDir ? sCompDir : ""));
  pState->FileTable = Table.AddFileTable(Header.FirstFile, std::move(aFiles));
  return pState->FileTable;
}

void CLineReader::ReadLines(const CDie& Unit) {
  U32 Offset = 0;
  TABLE_STATE* pState = StateOf(Unit, Offset);
  if (!pState || pState->FileTable < 0 || pState->bLinesRead) return;
  pState->bLinesRead = true;
  LINE_HEADER Header;
  if (!ReadHeader(Offset, Header)) return;
  NumBytesRead += Header.Program.Left();
  if (NumBytesRead > Sections().Bytes(DEBUG_SECTION::Line).Left()) {
    return Complain({"line tables lie over each other", "offset", Offset});
  }
  const char* sCompDir = Reader.Text(Unit, DW_AT_comp_dir);
  AppendRows(Header, pState->FileTable, sCompDir ? sCompDir : "");
}

void CLineReader::AppendRows(const LINE_HEADER& Header, I32 FileTable, const std::string& sCompDir) {
  const size_t NumBefore = Table.Lines().size();
  CLineProgram Program(Header);
  size_t NumDefined = 0;
  U64 Number = ~0ull;
  I32 File = -1;
  bool bStarts = true, bDropped = false;  // of the sequence
  for (LINE_ROW Row; Program.Next(Row);) {
    for (; NumDefined < Program.DefinedFiles().size(); ++NumDefined) {
      Table.AddToFileTable(FileTable, PathOf(Header, Program.DefinedFiles()[NumDefined], sCompDir));
      Number = ~0ull;
    }
    if (Row.File != Number) {
      Number = Row.File;
      File = Table.FileOf(FileTable, static_cast<I64>(Number));
    }
    if (bStarts) bDropped = Row.Addr >= LOWEST_TOMBSTONE;
    bStarts = Row.bEndSequence;
    if (bDropped || (Row.Addr > INVALID_ADDR && !Row.bEndSequence)) continue;
    if (Table.Lines().size() >= MAX_LINES) break;
    const U32 Addr = static_cast<U32>(std::min<U64>(Row.Addr, INVALID_ADDR));
    if (Row.bEndSequence) Table.EndRun(Addr);
    Table.AddLine({Addr, Row.Line, File, static_cast<U16>(std::min(Row.Column, MAX_COLUMN)), FlagsOf(Row)});
  }
  const bool bTooMany = Table.Lines().size() >= MAX_LINES;
  if (!Program.Damage().sWhat && !bTooMany) return;
  Complain(bTooMany ? DWARF_DAMAGE{"too many lines", "lines", MAX_LINES} : Program.Damage());
  Table.DropLinesFrom(NumBefore);
}
