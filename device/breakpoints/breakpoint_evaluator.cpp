#include "device/breakpoints/breakpoint_evaluator.h"

#include <utility>

namespace {

bool IsWantedTask(const QString& sFilter, const BREAKPOINT_EVALUATOR& Evaluator) {
  if (!Evaluator.CurrentTask) return true;
  bool bIsNumber = false;
  U64 Wanted = sFilter.toULongLong(&bIsNumber, 0);
  if (!bIsNumber && (!Evaluator.FindTask || !Evaluator.FindTask(sFilter, &Wanted))) return false;
  U64 Current = 0;
  return Evaluator.CurrentTask(&Current) && Current == Wanted;
}

}  // namespace

bool EvalHalt(CBreakpointProps& Props, U64 HitCount, const BREAKPOINT_EVALUATOR& Evaluator,
              const std::function<void(const QString& sText, bool bWarning)>& Log) {
  if (Props.SkipCount > 0 && HitCount % (U64{Props.SkipCount} + 1) != 0) return false;
  if (!Props.FilterTaskID.isEmpty() && !IsWantedTask(Props.FilterTaskID, Evaluator)) return false;
  if (Props.Condition.isEmpty() || !Evaluator.EvalCondition) return true;
  const CONDITION_RESULT Result = Evaluator.EvalCondition(Props.Condition);
  if (Result.Outcome == CONDITION_NOT_PARSED) return true;
  Log(QStringLiteral("Evaluating BP condition: ") + Props.Condition, false);
  switch (Result.Outcome) {
    case CONDITION_FAILED:
      Log(QStringLiteral("error: ") + Result.sReason, true);
      return false;
    case CONDITION_HAS_VALUE: {
      Log(QStringLiteral("result: %1").arg(Result.Value), false);
      const std::optional<U64> Before = std::exchange(Props.LastValue, Result.Value);
      return Props.DoTriggerOnChange ? Before && *Before != Result.Value : Result.Value != 0;
    }
    default:
      return true;
  }
}
