#pragma once
// Whether a halt at a conditional breakpoint stands.

#include <functional>

#include "device/breakpoints/breakpoint_rec.h"

enum CONDITION_OUTCOME { CONDITION_NOT_PARSED, CONDITION_FAILED, CONDITION_WITHOUT_VALUE, CONDITION_HAS_VALUE };

struct CONDITION_RESULT {
  CONDITION_OUTCOME Outcome = CONDITION_NOT_PARSED;
  U64 Value = 0;
  QString sReason;  // of a failure
};

// What the evaluation asks of the layers above; main thread, with the target halted. A function that nobody has plugged
// in can't judge, so that the halt stands.
struct BREAKPOINT_EVALUATOR {
  // Whether a text is an expression; for dialogs, with the reason where it isn't.
  std::function<bool(const QString& sCondition, QString* psReason)> CheckCondition;
  std::function<CONDITION_RESULT(const QString& sCondition)> EvalCondition;
  // The identifier of the task of that name; false if there is none.
  std::function<bool(const QString& sName, U64* pTaskID)> FindTask;
  // The task that the target halted in; false when it isn't known.
  std::function<bool(U64* pTaskID)> CurrentTask;
};

// The verdict for the HitCount-th halt, counted from 1. Stores the condition's value in Props. Log gets what the
// evaluation has to say, bWarning for failures.
bool EvalHalt(CBreakpointProps& Props, U64 HitCount, const BREAKPOINT_EVALUATOR& Evaluator,
              const std::function<void(const QString& sText, bool bWarning)>& Log);
