#include "device/breakpoints/breakpoint_entries.h"

#include <algorithm>

#include "device/device.h"
#include "device/device_context.h"

namespace {

constexpr U32 CHANGING_JOBS[] = {JT_SET_BP, JT_SET_BPS, JT_CLEAR_BP, JT_CLEAR_BPS, JT_CLEAR_ALL_BPS};

}  // namespace

bool CBreakpointEntries::IsUnderWay() const {
  if (IsSettled()) return false;
  return std::any_of(std::begin(CHANGING_JOBS), std::end(CHANGING_JOBS),
                     [this](U32 Type) { return m_Device.IsJobPending(Type); });
}

bool CBreakpointEntries::Get(U32 Addr, BP& Entry) const {
  if (IsUnderWay()) {
    const auto It = m_Wanted.constFind(Addr);
    if (It != m_Wanted.cend()) {
      Entry = *It;
      return Entry.State != BP_STATE_CLEARED;
    }
    if (m_bAllCleared) return false;
  }
  return m_Device.Context().Breakpoints.GetAt(Addr, Entry);
}

QList<BP> CBreakpointEntries::All() const {
  const QList<BP> Listed = m_Device.Context().Breakpoints.GetAll();
  if (!IsUnderWay()) return Listed;
  QList<BP> Entries;
  for (const BP& Entry : Listed) {
    if (!m_bAllCleared && !m_Wanted.contains(Entry.Addr)) Entries << Entry;
  }
  for (const BP& Wanted : m_Wanted) {
    if (Wanted.State != BP_STATE_CLEARED) Entries << Wanted;
  }
  std::sort(Entries.begin(), Entries.end(), [](const BP& A, const BP& B) { return A.Addr < B.Addr; });
  return Entries;
}

void CBreakpointEntries::Set(const QAddrList& Addrs, BP_STATES State, BP_TYPES Type) {
  if (Addrs.isEmpty()) return;
  for (const U32 Addr : Addrs) {
    BP& Wanted = m_Wanted[Addr];
    m_Device.Context().Breakpoints.GetAt(Addr, Wanted);
    Wanted.Addr = Addr;
    Wanted.bUsed = true;
    Wanted.State = State;
    Wanted.Type = Type;
  }
  if (Addrs.size() == 1) {
    m_Device.ScheduleSetBreakpoint(Addrs.first(), State, Type);
  } else {
    m_Device.ScheduleSetBreakpoints(static_cast<U32>(Addrs.size()), Addrs.constData(), State, Type);
  }
}

void CBreakpointEntries::Clear(const QAddrList& Addrs) {
  if (Addrs.isEmpty()) return;
  for (const U32 Addr : Addrs) m_Wanted.insert(Addr, {});
  if (Addrs.size() == 1) {
    m_Device.ScheduleClearBreakpoint(Addrs.first());
  } else {
    m_Device.ScheduleClearBreakpoints(static_cast<U32>(Addrs.size()), Addrs.constData());
  }
}

void CBreakpointEntries::ClearAll() {
  NoteCleared();
  m_Device.ScheduleClearAllBreakpoints();
}

void CBreakpointEntries::NoteCleared() {
  m_Wanted.clear();
  m_bAllCleared = true;
}

QList<CBreakpointEntries::FAILURE> CBreakpointEntries::Settle() {
  if (IsUnderWay()) return {};
  QList<FAILURE> Failures;
  for (auto It = m_Wanted.cbegin(); It != m_Wanted.cend(); ++It) {
    const BP& Wanted = *It;
    if (Wanted.State == BP_STATE_CLEARED) continue;
    BP Entry;
    const bool bListed = m_Device.Context().Breakpoints.GetAt(It.key(), Entry);
    if (bListed && Entry.State == Wanted.State && Entry.Type == Wanted.Type) continue;
    Failures << FAILURE{It.key(), static_cast<BP_STATES>(Wanted.State), static_cast<BP_TYPES>(Wanted.Type), bListed};
  }
  m_Wanted.clear();
  m_bAllCleared = false;
  std::sort(Failures.begin(), Failures.end(), [](const FAILURE& A, const FAILURE& B) { return A.Addr < B.Addr; });
  return Failures;
}
