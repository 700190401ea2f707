// Whether halts at conditional breakpoints stand.

#include <gtest/gtest.h>

#include "device/breakpoints/breakpoint_evaluator.h"

namespace {

constexpr U32 MAX = 0xFFFFFFFF;
const std::vector<int> NONE;

// The halts that stand, by skip count, task filter, and the values of the condition at the halts that ask for it: -1
// fails, -2 has no value, -3 is no expression. The target is in task 32, which is "idle".
TEST(Evaluation, OfSixHalts) {
  const struct {
    U32 SkipCount;
    const char* sTask;
    bool bTasksKnown;
    bool bOnChange;
    std::vector<int> Values;
    const char* sWanted;
  } aCases[] = {
      {0, "", true, false, NONE, "HHHHHH"},
      {1, "", true, false, NONE, "-H-H-H"},
      {2, "", true, false, NONE, "--H--H"},
      {MAX, "", true, false, NONE, "------"},
      {0, "0x20", true, false, NONE, "HHHHHH"},
      {0, "32", true, false, NONE, "HHHHHH"},
      {0, "33", true, false, NONE, "------"},
      {0, "idle", true, false, NONE, "HHHHHH"},
      {0, "other", true, false, NONE, "------"},
      {0, "nobody", true, false, NONE, "------"},
      {2, "idle", true, false, NONE, "--H--H"},
      {0, "nobody", false, false, NONE, "HHHHHH"},
      {0, "", true, false, {0, 1, 0, 7, -1, 5}, "-H-H-H"},
      {0, "", true, false, {-2, -3, 0, -1, -1, 3}, "HH---H"},
      {1, "", true, false, {0, 9, 1}, "---H-H"},
      {0, "", true, true, {5, 5, 6, 6, 5, 5}, "--H-H-"},
      {0, "", true, true, {0, 0, 1, -1, 1, 2}, "--H--H"},  // a failure is no change
      {0, "", true, true, {-3, 4, -3, 4, 3, 3}, "H-H-H-"},
  };
  for (const auto& Case : aCases) {
    BREAKPOINT_EVALUATOR Evaluator;
    if (Case.bTasksKnown) {
      Evaluator.CurrentTask = [](U64* pTask) { return *pTask = 32, true; };
      Evaluator.FindTask = [](const QString& sName, U64* pTask) {
        *pTask = sName == QLatin1String("idle") ? 32 : 7;
        return sName != QLatin1String("nobody");
      };
    }
    size_t Next = 0;
    Evaluator.EvalCondition = [&](const QString&) {
      const int Value = Case.Values.at(Next++);
      constexpr CONDITION_OUTCOME WITHOUT[] = {CONDITION_FAILED, CONDITION_WITHOUT_VALUE, CONDITION_NOT_PARSED};
      return CONDITION_RESULT{Value < 0 ? WITHOUT[-1 - Value] : CONDITION_HAS_VALUE, static_cast<U64>(Value), {}};
    };
    CBreakpointProps Props;
    Props.SkipCount = Case.SkipCount;
    Props.FilterTaskID = QLatin1String(Case.sTask);
    Props.DoTriggerOnChange = Case.bOnChange;
    if (!Case.Values.empty()) Props.Condition = QStringLiteral("x");
    QString sVerdicts;
    for (U64 Hit = 1; Hit <= 6; ++Hit)
      sVerdicts += EvalHalt(Props, Hit, Evaluator, [](const QString&, bool) {}) ? 'H' : '-';
    EXPECT_EQ(sVerdicts.toStdString(), Case.sWanted) << &Case - aCases;
    EXPECT_EQ(Next, Case.Values.size());
  }
  CBreakpointProps Props;
  Props.Condition = QStringLiteral("x");
  EXPECT_TRUE(EvalHalt(Props, 1, {}, {})) << "nobody to evaluate it";
}

}  // namespace
