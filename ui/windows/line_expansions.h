#pragma once

#include <vector>

#include "base/types.h"

// One instruction of an opened line.
struct INSTRUCTION_ROW {
  U32 Addr = INVALID_ADDR;
  U32 Length = 0;  // bytes
  int Group = 0;   // grows with each gap between two addresses
};
using INSTRUCTION_ROWS = std::vector<INSTRUCTION_ROW>;

// Where a row of the view comes from: a line, from 0, and for an instruction row the index among the line's ones.
struct ROW_ORIGIN {
  int Line = 0;
  int Inst = -1;
  bool operator==(const ROW_ORIGIN&) const = default;
};

// Which lines of a document are opened, and how that maps lines to rows. Costs are those of the opened lines alone, not
// those of the document.
class CLineExpansions {
public:
  void Clear() { m_List.clear(); }
  bool IsEmpty() const { return m_List.empty(); }
  // Replaces all; ascending by line, and none without rows.
  struct EXPANSION {
    int Line = 0;
    INSTRUCTION_ROWS Rows;
    int NumBefore = 0;  // instruction rows of the lines ahead
  };
  void SetAll(std::vector<EXPANSION> All);
  const std::vector<EXPANSION>& All() const { return m_List; }
  // False when the line is open already, or Rows is empty.
  bool Open(int Line, INSTRUCTION_ROWS Rows);
  bool Close(int Line);
  // Null for a closed line.
  const INSTRUCTION_ROWS* Find(int Line) const;
  // Instruction rows of all lines, and of the lines ahead of one.
  int NumRows() const { return NumRowsBefore(m_List.empty() ? 0 : m_List.back().Line + 1); }
  int NumRowsBefore(int Line) const;
  ROW_ORIGIN OriginOf(int Row) const;
  // The source row of a line, or one of its instruction rows; the nearest one that there is.
  int RowOf(const ROW_ORIGIN& Origin) const;
  // Lines were replaced: the opened ones behind move, those that went are closed. The first of the replaced lines stays
  // open as long as any comes in its place.
  void ReplaceLines(int First, int NumOld, int NumNew);

private:
  std::vector<EXPANSION>::const_iterator FirstFrom(int Line) const;
  void CountRows();

  std::vector<EXPANSION> m_List;  // ascending by line
};
