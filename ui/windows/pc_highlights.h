#pragma once

#include <functional>

#include "base/addr_range.h"
#include "base/src_loc.h"
#include "base/types.h"

class CSourceEditor;

// Where the target stands, and the rows of the shown document that say so: the line and the instruction of the PC, and
// the calls on the way there.
class CPcHighlights {
public:
  using RETURN_ADDRS = std::function<QAddrList()>;

  explicit CPcHighlights(CSourceEditor& Editor) : m_Editor(Editor) {}

  void SetPc(U32 PC);
  void ClearPc();
  const CSrcLoc& PcLoc() const { return m_PcLoc; }
  U32 PcAddr() const { return m_PcAddr; }
  // The window stands for the PC, and not another code view.
  void SetActive(bool bActive) { m_bActive = bActive; }
  bool IsActive() const { return m_bActive; }
  // Who knows the return addresses of the call stack; until somebody has been plugged in no call is highlighted.
  void SetReturnAddrs(const RETURN_ADDRS& ReturnAddrs) { m_ReturnAddrs = ReturnAddrs; }

  // Colours the rows anew for a document of that number; nothing is coloured unless the target stands.
  void Update(U32 FileNo);

private:
  void HighlightPcLine(U32 FileNo);
  void HighlightCallSites(U32 FileNo);
  void Highlight(U32 FileNo, const CSrcLoc& Loc, U32 Addr, U32 ColorID);

  CSourceEditor& m_Editor;
  CSrcLoc m_PcLoc;
  U32 m_PcAddr = INVALID_ADDR;
  bool m_bActive = false;
  RETURN_ADDRS m_ReturnAddrs;
};
