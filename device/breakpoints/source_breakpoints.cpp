#include "device/breakpoints/source_breakpoints.h"

#include <algorithm>

const SOURCE_BREAKPOINT* CSourceBreakpoints::Find(const CSrcLoc& Loc) const {
  const auto It = std::find_if(m_List.cbegin(), m_List.cend(),
                               [&Loc](const SOURCE_BREAKPOINT& Source) { return Source.Loc == Loc; });
  return It == m_List.cend() ? nullptr : &*It;
}

SOURCE_BREAKPOINT* CSourceBreakpoints::Find(const CSrcLoc& Loc) {
  return const_cast<SOURCE_BREAKPOINT*>(std::as_const(*this).Find(Loc));
}

const SOURCE_BREAKPOINT* CSourceBreakpoints::FindAt(U32 Addr) const {
  const auto It = std::find_if(m_List.cbegin(), m_List.cend(),
                               [Addr](const SOURCE_BREAKPOINT& Source) { return Source.Addrs.contains(Addr); });
  return It == m_List.cend() ? nullptr : &*It;
}

SOURCE_BREAKPOINT& CSourceBreakpoints::Add(const CSrcLoc& Loc, const QString& sPath) {
  if (SOURCE_BREAKPOINT* const pKnown = Find(Loc)) return *pKnown;
  SOURCE_BREAKPOINT& Source = m_List.emplace_back();
  Source.Loc = Loc;
  Source.Loc.Column = 0;
  Source.sPath = sPath;
  return Source;
}

void CSourceBreakpoints::Remove(const CSrcLoc& Loc) {
  m_List.removeIf([&Loc](const SOURCE_BREAKPOINT& Source) { return Source.Loc == Loc; });
}
