#include "program/elf/line_reader.h"

#include "program/elf/elf.h"
#include "program/elf/line_header_check.h"
#include "program/elf/source_path.h"

namespace {

constexpr U32 FIRST_VERSION_WITH_DIR_0 = 5;  // of line tables: from here on directory 0 is the compilation directory
constexpr U32 MAX_COLUMN = 0xFFFF;

// Owner of one decoded line table.
class CLineContext {
public:
  CLineContext(const CDwarfSession& Session, const CDie& Unit) {
    Dwarf_Error Error = nullptr;
    const int Found = dwarf_offdie_b(Session.Handle(), Unit.Unit().FirstEntry, !Unit.Unit().bTypes, &pUnit, &Error);
    if (Found == DW_DLV_ERROR) Session.Report(Error, "dwarf_offdie_b");
    if (Found != DW_DLV_OK) return;
    Dwarf_Unsigned Version = 0;
    Dwarf_Small NumTables = 0;
    const int Result = dwarf_srclines_b(pUnit, &Version, &NumTables, &pContext, &Error);
    if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_srclines_b");
    if (Result != DW_DLV_OK) pContext = nullptr;
  }
  ~CLineContext() {
    if (pContext) dwarf_srclines_dealloc_b(pContext);
    if (pUnit) dwarf_dealloc_die(pUnit);
  }
  CLineContext(const CLineContext&) = delete;
  CLineContext& operator=(const CLineContext&) = delete;
  Dwarf_Line_Context Get() const { return pContext; }

private:
  Dwarf_Die pUnit = nullptr;
  Dwarf_Line_Context pContext = nullptr;
};

std::string IncludeDir(const CDwarfSession& Session, Dwarf_Line_Context pContext, U64 Index) {
  Dwarf_Error Error = nullptr;
  Dwarf_Signed Count = 0;
  const char* sDir = nullptr;
  if (dwarf_srclines_include_dir_count(pContext, &Count, &Error) != DW_DLV_OK || Index > static_cast<U64>(Count)) {
    Session.Drop(Error);
    return std::string();
  }
  if (dwarf_srclines_include_dir_data(pContext, static_cast<Dwarf_Signed>(Index), &sDir, &Error) != DW_DLV_OK) {
    Session.Drop(Error);
  }
  return sDir ? sDir : "";
}

}  // namespace

CLineReader::TABLE_STATE* CLineReader::StateOf(const CDie& Unit, U32& Offset) {
  const std::optional<I64> StmtList = Reader.Integer(Unit, DW_AT_stmt_list);
  if (!StmtList || *StmtList < 0 || *StmtList > 0xFFFFFFFFll) return nullptr;
  Offset = static_cast<U32>(*StmtList);
  return &Tables[Offset];
}

I32 CLineReader::ReadFiles(const CDie& Unit) {
  U32 Offset = 0;
  TABLE_STATE* pState = StateOf(Unit, Offset);
  if (!pState) return -1;
  if (pState->FileTable >= 0) return pState->FileTable;
  const CDwarfSession& Session = Reader.Libdwarf();
  U32 SectionSize = 0;
  const U8* pSection = Session.Section(".debug_line", SectionSize);
  if (!IsLineHeaderSound(pSection, SectionSize, Offset, Session.IsBigEndian())) return -1;
  const CLineContext Context(Session, Unit);
  if (Context.Get()) DecodeFiles(Context.Get(), *pState);
  return pState->FileTable;
}

void CLineReader::DecodeFiles(Dwarf_Line_Context pContext, TABLE_STATE& State) {
  const CDwarfSession& Session = Reader.Libdwarf();
  Dwarf_Error Error = nullptr;
  Dwarf_Signed First = 0, Count = 0, End = 0;
  Dwarf_Unsigned Version = 0;
  Dwarf_Small NumTables = 0;
  const char* sCompDir = nullptr;
  if (dwarf_srclines_files_indexes(pContext, &First, &Count, &End, &Error) != DW_DLV_OK ||
      dwarf_srclines_version(pContext, &Version, &NumTables, &Error) != DW_DLV_OK) {
    return Session.Report(Error, "dwarf_srclines_files_indexes");
  }
  if (dwarf_srclines_comp_dir(pContext, &sCompDir, &Error) != DW_DLV_OK) Session.Drop(Error);
  std::vector<I32> aFiles;
  for (Dwarf_Signed i = First; i < End; ++i) {
    const char* sName = nullptr;
    Dwarf_Unsigned Dir = 0, Time = 0, Length = 0;
    Dwarf_Form_Data16* pMd5 = nullptr;
    if (dwarf_srclines_files_data_b(pContext, i, &sName, &Dir, &Time, &Length, &pMd5, &Error) != DW_DLV_OK) {
      Session.Report(Error, "dwarf_srclines_files_data_b", "index", static_cast<U64>(i));
      break;
    }
    const bool bHasDir = Dir != 0 || Version >= FIRST_VERSION_WITH_DIR_0;
    const std::string sDir = bHasDir ? IncludeDir(Session, pContext, Dir) : std::string();
    const bool bNamed = sName && *sName;
    aFiles.push_back(bNamed ? Table.Intern(JoinSourcePath(sCompDir ? sCompDir : "", sDir, sName)) : -1);
  }
  State.FileTable = Table.AddFileTable(static_cast<U32>(First), std::move(aFiles));
}

void CLineReader::ReadLines(const CDie& Unit) {
  U32 Offset = 0;
  TABLE_STATE* pState = StateOf(Unit, Offset);
  if (!pState || pState->FileTable < 0 || pState->bLinesRead) return;
  pState->bLinesRead = true;
  const CLineContext Context(Reader.Libdwarf(), Unit);
  if (!Context.Get()) return;
  Dwarf_Error Error = nullptr;
  Dwarf_Line* paLines = nullptr;
  Dwarf_Signed NumLines = 0;
  const int Result = dwarf_srclines_from_linecontext(Context.Get(), &paLines, &NumLines, &Error);
  if (Result == DW_DLV_ERROR) return Reader.Libdwarf().Report(Error, "dwarf_srclines_from_linecontext");
  if (Result != DW_DLV_OK) return;
  for (Dwarf_Signed i = 0; i < NumLines; ++i) AppendRow(paLines[i], pState->FileTable);
}

void CLineReader::AppendRow(Dwarf_Line pLine, I32 FileTable) {
  Dwarf_Error Error = nullptr;
  Dwarf_Addr Addr = 0;
  Dwarf_Unsigned Line = 0, Column = 0, File = 0, Isa = 0, Discriminator = 0;
  Dwarf_Bool bStatement = 0, bEnd = 0, bPrologueEnd = 0, bEpilogue = 0;
  const bool bRead =
      dwarf_lineaddr(pLine, &Addr, &Error) == DW_DLV_OK && dwarf_lineno(pLine, &Line, &Error) == DW_DLV_OK &&
      dwarf_lineoff_b(pLine, &Column, &Error) == DW_DLV_OK && dwarf_line_srcfileno(pLine, &File, &Error) == DW_DLV_OK &&
      dwarf_linebeginstatement(pLine, &bStatement, &Error) == DW_DLV_OK &&
      dwarf_lineendsequence(pLine, &bEnd, &Error) == DW_DLV_OK &&
      dwarf_prologue_end_etc(pLine, &bPrologueEnd, &bEpilogue, &Isa, &Discriminator, &Error) == DW_DLV_OK;
  if (!bRead) return Reader.Libdwarf().Report(Error, "dwarf_lineaddr");
  SRC_LINE Row;
  Row.Addr = static_cast<U32>(Addr);
  Row.Line = static_cast<U32>(Line);
  Row.File = Table.FileOf(FileTable, static_cast<I64>(File));
  Row.Column = static_cast<U16>(std::min<U64>(Column, MAX_COLUMN));
  Row.Flags = 0;
  if (bStatement) Row.Flags |= ELF_LINE_IS_STMT;
  if (bEnd) Row.Flags |= ELF_LINE_END_SEQUENCE;
  if (bPrologueEnd) Row.Flags |= ELF_LINE_PROLOGUE_END;
  Table.AddLine(Row);
}
