#include "ui/windows/pc_highlights.h"

#include "device/device.h"
#include "program/database/elfapi.h"
#include "shell/settings/color_ids.h"
#include "ui/windows/source_editor.h"

void CPcHighlights::SetPc(U32 PC) {
  m_PcAddr = PC;
  m_PcLoc = ELFAPI_GetLastSrcLoc(PC);
  m_Editor.SetPcLoc(m_PcLoc, m_PcAddr);
}

void CPcHighlights::ClearPc() {
  m_PcAddr = INVALID_ADDR;
  m_PcLoc = CSrcLoc();
  m_Editor.SetPcLoc(m_PcLoc, m_PcAddr);
}

void CPcHighlights::Update(U32 FileNo) {
  m_Editor.ClearHighlights();
  const CDevice& Device = CDevice::Get();
  if (!Device.IsConnected() || !Device.IsHalted()) return;
  HighlightCallSites(FileNo);
  HighlightPcLine(FileNo);
}

void CPcHighlights::Highlight(U32 FileNo, const CSrcLoc& Loc, U32 Addr, U32 ColorID) {
  if (Loc.IsValid() && Loc.File == FileNo) m_Editor.SetLineHighlight(Loc.Line, ColorID);
  m_Editor.SetAddrHighlight(Addr, ColorID);
}

void CPcHighlights::HighlightPcLine(U32 FileNo) {
  if (m_PcAddr == INVALID_ADDR) return;
  Highlight(FileNo, m_PcLoc, m_PcAddr, m_bActive ? COLOR_PC_ACTIVE : COLOR_PC_INACTIVE);
}

void CPcHighlights::HighlightCallSites(U32 FileNo) {
  if (!m_ReturnAddrs) return;
  for (const U32 Addr : m_ReturnAddrs()) {
    Highlight(FileNo, ELFAPI_GetLastSrcLoc(Addr), Addr, m_bActive ? COLOR_CALL_SITE_ACTIVE : COLOR_CALL_SITE_INACTIVE);
  }
}
