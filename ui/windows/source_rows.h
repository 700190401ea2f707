#pragma once

#include "base/addr_range.h"
#include "base/src_loc.h"
#include "ui/windows/instruction_texts.h"
#include "ui/windows/line_expansions.h"
#include "ui/windows/source_text.h"
#include "ui/windows/source_types.h"

// A document as rows: the lines of its text, and the instructions of those lines that are opened. Asks the program
// database what code a line has. Rows count from 0, lines from 1. A row, line or address that there is not is answered
// with -1, 0, INVALID_ADDR or nothing.
class CSourceRows {
public:
  // FileNo: of the program database; the number of a file that is not the program's gives lines without code.
  void SetText(const QString& sText, U32 FileNo, bool bOpenEnd);
  const CSourceText& Text() const { return m_Text; }
  U32 FileNo() const { return m_FileNo; }

  int NumRows() const { return m_Text.NumLines() + m_Expansions.NumRows(); }
  bool IsSource(int Row) const;
  bool IsInstruction(int Row) const { return InstructionAt(Row) != nullptr; }
  const INSTRUCTION_ROW* InstructionAt(int Row) const;
  // Valid until the next change, or the next question for an instruction's text.
  QStringView RowText(int Row) const;
  int RowLength(int Row) const { return static_cast<int>(RowText(Row).size()); }
  int RowOfLine(U32 Line) const;
  // Of an instruction row, the line that it belongs to.
  U32 LineOfRow(int Row) const;
  CSrcLoc LocOfRow(int Row) const;
  // An instruction's address, or the first address of a line with code.
  U32 AddrOfRow(int Row) const;
  // The instruction row of an address, or the source row of a closed line whose first address it is.
  int RowOfAddr(U32 Addr) const;
  // Instruction row of an address if its line is open, else its source row.
  int RowOfCode(U32 Addr) const;
  // The code that a row stands for: a line's addresses in runs without a gap, or one instruction.
  QAddrRanges RangesOfRow(int Row) const;
  // The line of the row has code; is open.
  bool HasCodeAt(int Row) const { return HasCode(LineOfRow(Row)); }
  bool IsExpandedAt(int Row) const { return IsExpanded(LineOfRow(Row)); }

  // Instruction addresses of a line, ascending; empty while they can't be told.
  QAddrList CodeOf(U32 Line) const;
  // First address of a line, INVALID_ADDR for one without code.
  U32 FirstAddrOf(U32 Line) const;
  bool HasCode(U32 Line) const { return FirstAddrOf(Line) != INVALID_ADDR; }
  bool IsExpanded(U32 Line) const { return m_Expansions.Find(static_cast<int>(Line) - 1) != nullptr; }
  const INSTRUCTION_ROWS* InstructionsOf(U32 Line) const { return m_Expansions.Find(static_cast<int>(Line) - 1); }
  bool Expand(U32 Line);
  bool Collapse(U32 Line) { return m_Expansions.Close(static_cast<int>(Line) - 1); }
  void ExpandAll();
  void CollapseAll() { m_Expansions.Clear(); }
  QSrcLocs ExpandedLocs() const;
  // Opened lines stay open as far as they have code still.
  void UpdateInstructions();
  void SetEncodingsShown(bool bShown) { m_Instructions.SetEncodingsShown(bShown); }
  int MnemonicColumn() const { return m_Instructions.MnemonicColumn(); }
  // In characters.
  int LongestInstruction() const;

  // Where a row comes from and where it stands now: keeps a place over any change of rows.
  ROW_ORIGIN OriginOf(int Row) const { return m_Expansions.OriginOf(Row); }
  int RowOf(const ROW_ORIGIN& Origin) const { return m_Expansions.RowOf(Origin); }

  // Positions in the text; an instruction row's is the end of its line.
  int PositionOf(TEXT_POS Pos) const;
  TEXT_POS PosOf(int Position) const;
  LINE_CHANGE Replace(int Position, int NumRemoved, QStringView sAdded);
  void OpenEnd() { m_Text.OpenEnd(); }

private:
  CSrcLoc LocOf(U32 Line) const { return {m_FileNo, Line, 0}; }
  bool IsRow(int Row) const { return Row >= 0 && Row < NumRows(); }
  U32 FirstLineOf(U32 Addr) const;

  CSourceText m_Text;
  CLineExpansions m_Expansions;
  mutable CInstructionTexts m_Instructions;
  U32 m_FileNo = 0;
};
