#pragma once

#include <QSet>

#include "base/src_loc.h"

class CSourceEditor;

// The lines that the user has opened to their instructions, over changes of the document and reloads.
class CExpansionHistory {
public:
  explicit CExpansionHistory(CSourceEditor& Editor) : m_Editor(Editor) {}

  // The user has opened or closed a line (from 1) of the shown document.
  void OnToggled(U32 Line);
  // Every line with code. The view stays at its text.
  void ExpandAll();
  // All lines of the shown document; with bUpdateHistory they stay closed.
  void CollapseAll(bool bUpdateHistory);
  // Opens the lines of the shown document again.
  void Restore();
  const QSet<CSrcLoc>& Locs() const { return m_Locs; }
  void SetLocs(const QSet<CSrcLoc>& Locs) { m_Locs = Locs; }
  void Clear() { m_Locs.clear(); }

private:
  CSourceEditor& m_Editor;
  QSet<CSrcLoc> m_Locs;
};
