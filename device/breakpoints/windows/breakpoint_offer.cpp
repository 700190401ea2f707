#include "device/breakpoints/windows/breakpoint_offer.h"

#include "device/breakpoints/breakpoint_manager.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"

namespace {

constexpr U32 ROWS[] = {ACTION_BP_SET, ACTION_BP_CLEAR, ACTION_BP_ENABLE, ACTION_BP_DISABLE, ACTION_BP_EDIT_DIALOG};

const BREAKPOINT_LOCATION* pCurrent = nullptr;

// Nothing where no breakpoint stands. One that could not be set is cleared, but stands there.
std::optional<U32> StateAt(const BREAKPOINT_LOCATION& Place) {
  const CBreakpointManager& Breakpoints = CBreakpointManager::Get();
  BP Entry;
  BP_SETTING Setting;
  if (Place.IsSource()) return Breakpoints.GetOnSrc(Place.Loc, Setting) ? std::optional(Setting.State) : std::nullopt;
  return Place.IsValid() && Breakpoints.GetAt(Place.Addr, Entry) ? std::optional(Entry.State) : std::nullopt;
}

}  // namespace

CBreakpointOffer::CBreakpointOffer(const BREAKPOINT_LOCATION& Place) : m_Place(Place) {
  pCurrent = &m_Place;
  m_State = StateAt(m_Place);
  const bool bSet = m_State.has_value();
  m_bDerived =
      bSet && m_State != BP_STATE_CLEARED && !Place.IsSource() && CBreakpointManager::Get().IsDerived(Place.Addr);
  const bool aEnabled[] = {Place.IsValid() && !bSet, bSet && !m_bDerived, bSet && m_State != BP_STATE_ENABLED,
                           m_State == BP_STATE_ENABLED, bSet};
  static_assert(std::size(aEnabled) == std::size(ROWS));
  for (size_t i = 0; i < std::size(ROWS); ++i) {
    QAction* const pAction = GetAction(ROWS[i]);
    if (pAction == nullptr) continue;
    pAction->setEnabled(aEnabled[i]);
    pAction->setVisible(true);
  }
}

CBreakpointOffer::~CBreakpointOffer() {
  pCurrent = nullptr;
}

const BREAKPOINT_LOCATION* CBreakpointOffer::Current() {
  return pCurrent;
}

U32 CBreakpointOffer::ToggleID() const {
  if (!m_State) return ACTION_BP_SET;
  if (!m_bDerived) return ACTION_BP_CLEAR;
  return m_State == BP_STATE_ENABLED ? ACTION_BP_DISABLE : ACTION_BP_ENABLE;
}
