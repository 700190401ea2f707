#pragma once

#include <optional>

#include "device/breakpoints/breakpoint_location.h"

// While it exists, the actions of the Breakpoints window act on a place of another window, and are enabled as they make
// sense there: for a menu, or for a click. The window sets them for itself again afterwards, by its OnContentChanged.
class CBreakpointOffer {
public:
  explicit CBreakpointOffer(const BREAKPOINT_LOCATION& Place);
  ~CBreakpointOffer();
  CBreakpointOffer(const CBreakpointOffer&) = delete;
  CBreakpointOffer& operator=(const CBreakpointOffer&) = delete;

  // What is offered just now, null for nothing: the actions act on what is selected in their own window then.
  static const BREAKPOINT_LOCATION* Current();
  // The row of the action that a click on the margin stands for: sets a breakpoint, or clears the one that is there; a
  // derived one is disabled or enabled instead.
  U32 ToggleID() const;

private:
  BREAKPOINT_LOCATION m_Place;
  std::optional<U32> m_State;  // BP_STATE, nothing without a breakpoint
  bool m_bDerived;
};
