#include "device/breakpoints/breakpoint_rec.h"

bool CBreakpointProps::IsSame(const CBreakpointProps& Other) const {
  return Condition == Other.Condition && FilterTaskID == Other.FilterTaskID &&
         DoTriggerOnChange == Other.DoTriggerOnChange && SkipCount == Other.SkipCount &&
         ExtraActionMsgBoxText == Other.ExtraActionMsgBoxText && ExtraActionConsoleText == Other.ExtraActionConsoleText;
}
