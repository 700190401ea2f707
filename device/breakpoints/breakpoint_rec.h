#pragma once
// What is known of the user's breakpoints on the main thread, beyond the device's list of addresses.

#include <optional>

#include <QList>
#include <QString>

#include "base/src_loc.h"
#include "device/device_types.h"

// The addresses of a source breakpoint differ in it.
inline constexpr U32 BP_STATE_MIXED = 4;
inline constexpr U32 BP_TYPE_MIXED = 0xFFFFFFFFu;
// A line with more addresses than the device's list holds.
inline constexpr const char* LIST_FULL_TEXT = "breakpoint list full.";
// How windows write what differs.
inline const QString MULTIPLE_TEXT = QStringLiteral("<multiple>");

// What a halt at a breakpoint goes through, and what it does beside halting.
struct CBreakpointProps {
  QString Condition;               // an expression, empty for none
  QString FilterTaskID;            // number or name of a task; empty for all tasks
  bool DoTriggerOnChange = false;  // halts when the condition's value changes instead of when it isn't 0
  U32 SkipCount = 0;               // halts to skip between two that are reported
  QString ExtraActionMsgBoxText;   // shown in a message box
  QString ExtraActionConsoleText;  // printed to the console
  std::optional<U64> LastValue;    // of the condition; none before its first evaluation

  // A halt has to be evaluated on the main thread.
  bool IsConditional() const { return SkipCount > 0 || !Condition.isEmpty() || !FilterTaskID.isEmpty(); }
  // What the user has entered; LastValue does not count.
  bool IsSame(const CBreakpointProps& Other) const;
};

// How one address is set, or a source breakpoint that has no address.
struct BP_SETTING {
  U32 State = BP_STATE_ENABLED;  // BP_STATES
  U32 Type = BP_TYPE_ANY;        // BP_TYPES
  CBreakpointProps Props;

  bool IsSame(const BP_SETTING& Other) const {
    return State == Other.State && Type == Other.Type && Props.IsSame(Other.Props);
  }
};

// One breakpoint as windows show it: a source breakpoint with a child for each of its addresses, or a single address.
struct CBreakpointRec {
  U32 Addr = 0;                  // of a source breakpoint the first, INVALID_ADDR while it has none
  U32 State = BP_STATE_ENABLED;  // BP_STATES or BP_STATE_MIXED
  U32 Type = BP_TYPE_ANY;        // BP_TYPES or BP_TYPE_MIXED
  QString ActualImp;             // what the probe library made of it; empty where it has nothing
  bool bIsSource = false;
  bool bIsDerived = false;
  CSrcLoc Loc;                     // all-zero for an address that belongs to no source line
  QString sLocation;               // "main.c:12", or the address
  QString Context;                 // function, or why there is nothing
  QString sProblem;                // why it could not be set; empty if it could
  U64 HitCount = 0;                // of all its addresses
  CBreakpointProps Props;          // of a source breakpoint those of its first address
  bool bPropsDiffer = false;       // its addresses have different ones
  QList<CBreakpointRec> Children;  // of a source breakpoint, in the order of addresses
};

// A breakpoint as it is put aside, over a reload of the program or in the user file. A source breakpoint has one
// setting, or one for each address in their order.
struct STORED_BREAKPOINT {
  QString sPath;  // of the source file as the program names it; empty for an address
  U32 Line = 0;
  QString sLineText;  // what the line read, trimmed; empty if it isn't known
  U32 Addr = 0;
  QList<BP_SETTING> Settings;
};
