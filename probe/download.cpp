#include "probe/download.h"

#include <algorithm>
#include <cstring>

#include "probe/memory_access.h"

namespace {

constexpr U32 FLASH_PAGE_SIZE = 4096;

}  // namespace

bool CDownload::TakeFlashImage(sim::CMachine& Machine) {
  if (!m_Image.empty()) return true;
  const sim::MEM_RANGE& Flash = Machine.Spec().Flash;
  m_Image.resize(Flash.Size);
  m_From = Flash.Size;
  m_To = 0;
  return Machine.ReadMem(Flash.Start, Flash.Size, m_Image.data()) == Flash.Size;
}

U32 CDownload::Write(sim::CMachine& Machine, U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  const sim::MEM_RANGE& Flash = Machine.Spec().Flash;
  const U8* paBytes = static_cast<const U8*>(pData);
  const U32 Total = LimitToAddressSpace(Addr, NumBytes);
  U32 Done = 0;
  while (Done < Total) {
    const U32 From = Addr + Done;
    const U32 Rest = Total - Done;
    const U32 Offset = From - Flash.Start;
    if (From >= Flash.Start && Offset < Flash.Size) {
      if (!TakeFlashImage(Machine)) break;
      const U32 InFlash = std::min(Rest, Flash.Size - Offset);
      std::memcpy(m_Image.data() + Offset, paBytes + Done, InFlash);
      m_From = std::min(m_From, Offset);
      m_To = std::max(m_To, Offset + InFlash);
      Done += InFlash;
      continue;
    }
    const U32 OutsideFlash = Flash.Size && From < Flash.Start ? std::min(Rest, Flash.Start - From) : Rest;
    const U32 Written = WriteMachine(Machine, From, OutsideFlash, paBytes + Done, AccessWidth);
    Done += Written;
    if (Written < OutsideFlash) break;
  }
  return Done;
}

int CDownload::ProgramChanges(sim::CMachine& Machine) {
  const U32 Base = Machine.Spec().Flash.Start;
  std::vector<U8> Present(FLASH_PAGE_SIZE);
  for (U32 Offset = m_From & ~(FLASH_PAGE_SIZE - 1); Offset < m_To; Offset += FLASH_PAGE_SIZE) {
    const U32 Size = std::min<U32>(FLASH_PAGE_SIZE, static_cast<U32>(m_Image.size()) - Offset);
    const U8* pWanted = m_Image.data() + Offset;
    if (Machine.ReadMem(Base + Offset, Size, Present.data()) != Size) return VNODE_DOWNLOAD_COMPARE_FAILED;
    if (std::memcmp(Present.data(), pWanted, Size) == 0) continue;
    if (Machine.Program(Base + Offset, Size, pWanted) != Size) return VNODE_DOWNLOAD_PROGRAM_FAILED;
    m_NumProgrammed += Size;
    if (Machine.ReadMem(Base + Offset, Size, Present.data()) != Size) return VNODE_DOWNLOAD_VERIFY_FAILED;
    if (std::memcmp(Present.data(), pWanted, Size) != 0) return VNODE_DOWNLOAD_VERIFY_FAILED;
  }
  return VNODE_DOWNLOAD_OK;
}

int CDownload::End(sim::CMachine& Machine) {
  if (!m_bOpen) return m_LastResult;
  m_NumProgrammed = 0;
  Abandon(m_Image.empty() ? VNODE_DOWNLOAD_OK : ProgramChanges(Machine));
  return m_LastResult;
}

void CDownload::Abandon(int Result) {
  m_bOpen = false;
  m_LastResult = Result;
  m_Image = {};
}
