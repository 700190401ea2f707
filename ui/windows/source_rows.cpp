#include "ui/windows/source_rows.h"

#include <algorithm>

#include "program/database/elfapi.h"

void CSourceRows::SetText(const QString& sText, U32 FileNo, bool bOpenEnd) {
  m_Text.Set(sText, bOpenEnd);
  m_FileNo = FileNo;
  m_Expansions.Clear();
  m_Instructions.Clear();
}

bool CSourceRows::IsSource(int Row) const {
  return IsRow(Row) && m_Expansions.OriginOf(Row).Inst < 0;
}

const INSTRUCTION_ROW* CSourceRows::InstructionAt(int Row) const {
  if (!IsRow(Row)) return nullptr;
  const ROW_ORIGIN Origin = m_Expansions.OriginOf(Row);
  if (Origin.Inst < 0) return nullptr;
  return &(*m_Expansions.Find(Origin.Line))[static_cast<size_t>(Origin.Inst)];
}

QStringView CSourceRows::RowText(int Row) const {
  if (!IsRow(Row)) return {};
  const INSTRUCTION_ROW* const pInstruction = InstructionAt(Row);
  return pInstruction ? QStringView(m_Instructions.Text(pInstruction->Addr))
                      : m_Text.Line(m_Expansions.OriginOf(Row).Line);
}

int CSourceRows::RowOfLine(U32 Line) const {
  if (Line == 0 || Line > static_cast<U32>(m_Text.NumLines())) return -1;
  return m_Expansions.RowOf({static_cast<int>(Line) - 1});
}

U32 CSourceRows::LineOfRow(int Row) const {
  return IsRow(Row) ? static_cast<U32>(m_Expansions.OriginOf(Row).Line) + 1 : 0;
}

CSrcLoc CSourceRows::LocOfRow(int Row) const {
  return IsRow(Row) ? LocOf(LineOfRow(Row)) : CSrcLoc();
}

U32 CSourceRows::AddrOfRow(int Row) const {
  if (const INSTRUCTION_ROW* const pInstruction = InstructionAt(Row)) return pInstruction->Addr;
  return FirstAddrOf(LineOfRow(Row));
}

U32 CSourceRows::FirstAddrOf(U32 Line) const {
  return Line == 0 ? INVALID_ADDR : ELFAPI_GetAddrOfLoc(LocOf(Line));
}

QAddrList CSourceRows::CodeOf(U32 Line) const {
  if (!HasCode(Line)) return {};
  QAddrList Addrs = ELFAPI_GetLocBlocks(LocOf(Line));
  std::ranges::sort(Addrs);
  Addrs.erase(std::unique(Addrs.begin(), Addrs.end()), Addrs.end());
  return Addrs;
}

// The line of this document that an address belongs to; where there are several, an opened one.
U32 CSourceRows::FirstLineOf(U32 Addr) const {
  U32 Result = 0;
  for (const CSrcLoc& Loc : ELFAPI_GetSrcLocsAt(Addr)) {
    if (Loc.File == m_FileNo && RowOfLine(Loc.Line) >= 0) Result = Loc.Line;
    if (Result == Loc.Line && IsExpanded(Result)) return Result;
  }
  return Result;
}

int CSourceRows::RowOfAddr(U32 Addr) const {
  const U32 Line = FirstLineOf(Addr);
  if (Line == 0) return -1;
  const INSTRUCTION_ROWS* const pRows = InstructionsOf(Line);
  if (pRows == nullptr) return FirstAddrOf(Line) == Addr ? RowOfLine(Line) : -1;
  const auto Place = std::ranges::find(*pRows, Addr, &INSTRUCTION_ROW::Addr);
  return Place == pRows->end() ? -1 : RowOfLine(Line) + 1 + static_cast<int>(Place - pRows->begin());
}

int CSourceRows::RowOfCode(U32 Addr) const {
  const int Row = RowOfAddr(Addr);
  return Row >= 0 ? Row : RowOfLine(FirstLineOf(Addr));
}

QAddrRanges CSourceRows::RangesOfRow(int Row) const {
  if (const INSTRUCTION_ROW* const pInstruction = InstructionAt(Row))
    return {{pInstruction->Addr, pInstruction->Length}};
  QAddrRanges Result;
  for (const INSTRUCTION_ROW& Instruction : CInstructionTexts::RowsOf(CodeOf(LineOfRow(Row)))) {
    if (!Result.isEmpty() && Result.last().End() == Instruction.Addr) {
      Result.last().Size += Instruction.Length;
    } else {
      Result.append({Instruction.Addr, Instruction.Length});
    }
  }
  return Result;
}

bool CSourceRows::Expand(U32 Line) {
  if (RowOfLine(Line) < 0 || IsExpanded(Line)) return false;
  return m_Expansions.Open(static_cast<int>(Line) - 1, m_Instructions.Rows(CodeOf(Line)));
}

void CSourceRows::ExpandAll() {
  std::vector<CLineExpansions::EXPANSION> All;
  for (int Line = 0; Line < m_Text.NumLines(); ++Line) {
    INSTRUCTION_ROWS Rows = m_Instructions.Rows(CodeOf(static_cast<U32>(Line) + 1));
    if (!Rows.empty()) All.push_back({Line, std::move(Rows)});
  }
  m_Expansions.SetAll(std::move(All));
}

QSrcLocs CSourceRows::ExpandedLocs() const {
  QSrcLocs Result;
  for (const CLineExpansions::EXPANSION& Expansion : m_Expansions.All()) {
    Result.append(LocOf(static_cast<U32>(Expansion.Line) + 1));
  }
  return Result;
}

void CSourceRows::UpdateInstructions() {
  m_Instructions.Clear();
  std::vector<CLineExpansions::EXPANSION> All;
  for (const CLineExpansions::EXPANSION& Expansion : m_Expansions.All()) {
    INSTRUCTION_ROWS Rows = m_Instructions.Rows(CodeOf(static_cast<U32>(Expansion.Line) + 1));
    if (!Rows.empty()) All.push_back({Expansion.Line, std::move(Rows)});
  }
  m_Expansions.SetAll(std::move(All));
}

int CSourceRows::LongestInstruction() const {
  qsizetype Longest = 0;
  for (const CLineExpansions::EXPANSION& Expansion : m_Expansions.All()) {
    for (const INSTRUCTION_ROW& Row : Expansion.Rows) Longest = std::max(Longest, m_Instructions.Text(Row.Addr).size());
  }
  return static_cast<int>(Longest);
}

int CSourceRows::PositionOf(TEXT_POS Pos) const {
  if (m_Text.NumLines() == 0) return 0;
  const ROW_ORIGIN Origin = m_Expansions.OriginOf(std::clamp(Pos.y(), 0, NumRows() - 1));
  const int Length = static_cast<int>(m_Text.Line(Origin.Line).size());
  return m_Text.StartOf(Origin.Line) + (Origin.Inst < 0 ? std::clamp(Pos.x(), 0, Length) : Length);
}

TEXT_POS CSourceRows::PosOf(int Position) const {
  const int Line = m_Text.LineAt(Position);
  const int Length = static_cast<int>(m_Text.Line(Line).size());
  return {std::clamp(Position - m_Text.StartOf(Line), 0, Length), m_Expansions.RowOf({Line})};
}

LINE_CHANGE CSourceRows::Replace(int Position, int NumRemoved, QStringView sAdded) {
  const LINE_CHANGE Change = m_Text.Replace(Position, NumRemoved, sAdded);
  m_Expansions.ReplaceLines(Change.First, Change.NumOld, Change.NumNew);
  return Change;
}
