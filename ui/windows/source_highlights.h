#pragma once

#include <optional>

#include <QHash>

#include "base/types.h"

// What the ground of a row depends on.
struct ROW_GROUND {
  bool bInstruction = false;
  bool bEmpty = false;           // no text
  bool bHoldsCursor = false;     // and nothing is selected
  bool bMarksCursor = false;     // the same, and the editor has the focus: goes before the colours that are given
  U32 Line = 0;                  // of the source row
  U32 Addr = INVALID_ADDR;       // of the instruction row
  int Group = 0;                 // of the instruction row
  bool bExpanded = false;        // the source row's instruction rows are shown,
  bool bColorBelow = false;      // and one of them has a colour
  bool bOneInstruction = false;  // they span one instruction at most
};

// A colour's identifier, and whether it is to be a little darker.
struct ROW_COLOR {
  U32 ColorID;
  bool bDarker = false;
  bool operator==(const ROW_COLOR&) const = default;
};

// The colours given to lines and to addresses, and which of them a row shows.
class CSourceHighlights {
public:
  void SetLine(U32 Line, U32 ColorID) { m_Lines[Line] = ColorID; }
  void SetAddr(U32 Addr, U32 ColorID) { m_Addrs[Addr] = ColorID; }
  void Remove(U32 ColorID);
  void Clear();
  // The lines from First on move by a number; those that went ahead of it lose their colour.
  void MoveLines(U32 First, int NumLines);
  bool HasAddr(U32 Addr) const { return m_Addrs.contains(Addr); }
  void SetBacktraceActive(bool bActive) { m_bBacktrace = bActive; }
  // None for the window's own ground.
  std::optional<ROW_COLOR> ColorOf(const ROW_GROUND& Row) const;

private:
  std::optional<ROW_COLOR> SourceColor(const ROW_GROUND& Row) const;

  QHash<U32, U32> m_Lines;
  QHash<U32, U32> m_Addrs;
  bool m_bBacktrace = false;
};
