#pragma once

#include <QList>

#include "base/addr_range.h"
#include "device/breakpoints/breakpoint_rec.h"

// A breakpoint on a source line; it stands for all the addresses of the line.
struct SOURCE_BREAKPOINT {
  CSrcLoc Loc;
  QString sPath;       // of the file as the program names it
  QString sLineText;   // what the line reads, trimmed
  QAddrList Addrs;     // empty: pending, the line has no code
  BP_SETTING Pending;  // how it is to be set while it has no address
};

// The source lines with a breakpoint, in the order in which they were set; one a line.
class CSourceBreakpoints {
public:
  // Null if there is none. Pointers hold until the next change of the list.
  SOURCE_BREAKPOINT* Find(const CSrcLoc& Loc);
  const SOURCE_BREAKPOINT* Find(const CSrcLoc& Loc) const;
  const SOURCE_BREAKPOINT* FindAt(U32 Addr) const;
  // The one of the line, made if there is none.
  SOURCE_BREAKPOINT& Add(const CSrcLoc& Loc, const QString& sPath);
  void Remove(const CSrcLoc& Loc);
  void Clear() { m_List.clear(); }
  const QList<SOURCE_BREAKPOINT>& All() const { return m_List; }
  QList<SOURCE_BREAKPOINT>& All() { return m_List; }

private:
  QList<SOURCE_BREAKPOINT> m_List;
};
