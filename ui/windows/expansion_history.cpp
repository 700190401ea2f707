#include "ui/windows/expansion_history.h"

#include "ui/windows/source_editor.h"

void CExpansionHistory::OnToggled(U32 Line) {
  const CSrcLoc Loc{m_Editor.GetFileNo(), Line, 0};
  if (m_Editor.Rows().IsExpandedAt(m_Editor.RowOfLine(Line))) {
    m_Locs.insert(Loc);
  } else {
    m_Locs.remove(Loc);
  }
}

void CExpansionHistory::ExpandAll() {
  m_Editor.ExpandAll();
  for (const CSrcLoc& Loc : m_Editor.Rows().ExpandedLocs()) m_Locs.insert(Loc);
}

void CExpansionHistory::CollapseAll(bool bUpdateHistory) {
  m_Editor.CollapseAll();
  if (bUpdateHistory) m_Locs.removeIf([this](const CSrcLoc& Loc) { return Loc.File == m_Editor.GetFileNo(); });
}

void CExpansionHistory::Restore() {
  for (const CSrcLoc& Loc : m_Locs) {
    if (Loc.File == m_Editor.GetFileNo()) m_Editor.Expand(Loc);
  }
}
