#pragma once

#include <array>

#include <QStringList>

#include "base/types.h"

inline constexpr U32 NUM_TRACE_DELAYS = 4;
inline constexpr I32 TRACE_DELAY_DEFAULT_PS = 2000;

// What the trace settings dialog edits.
struct TRACE_SETTINGS {
  U32 Source = 0;        // TRACE_SOURCE
  U32 PortWidth = 4;     // in bits
  bool bTiming = false;  // the project gives the delays of the data lines
  std::array<I32, NUM_TRACE_DELAYS> aDelay = {TRACE_DELAY_DEFAULT_PS, TRACE_DELAY_DEFAULT_PS, TRACE_DELAY_DEFAULT_PS,
                                              TRACE_DELAY_DEFAULT_PS};  // in ps
  U32 CPUSpeed = 0;                                                     // in Hz, 0 automatic
  U32 SWOSpeed = 0;                                                     // in Hz, 0 automatic

  bool operator==(const TRACE_SETTINGS&) const = default;
};

// The system variables of now. bTiming: whether the project file has a command for the delays.
TRACE_SETTINGS GetTraceSettings(bool bTiming);
// Every setting that the source uses, as the commands that a project stores.
QStringList TraceCommands(const TRACE_SETTINGS& Settings);

// Those of them that say something new, for the running session: empty if nothing differs.
QStringList TraceChanges(const TRACE_SETTINGS& From, const TRACE_SETTINGS& To);
