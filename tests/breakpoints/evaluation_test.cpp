// Whether halts at conditional breakpoints stand.

#include <gtest/gtest.h>

#include "device/breakpoints/breakpoint_evaluator.h"

namespace {

constexpr U32 MAX = 0xFFFFFFFF;

QString Verdicts(CBreakpointProps Props, int NumHalts, const BREAKPOINT_EVALUATOR& Evaluator) {
  QString sText;
  for (int Hit = 1; Hit <= NumHalts; ++Hit)
    sText += EvalHalt(Props, static_cast<U64>(Hit), Evaluator, [](const QString&, bool) {}) ? 'H' : '-';
  return sText;
}

TEST(Evaluation, SkipCountsAndTasks) {
  const struct {
    U32 SkipCount;
    const char* sTask;
    bool bTasksKnown;
    const char* sWanted;
  } aCases[] = {
      {0, "", true, "HHHHHH"},        {1, "", true, "-H-H-H"},        {2, "", true, "--H--H"},
      {MAX, "", true, "------"},      {0, "0x20", true, "HHHHHH"},    {0, "32", true, "HHHHHH"},
      {0, "33", true, "------"},      {0, "idle", true, "HHHHHH"},    {0, "other", true, "------"},
      {0, "nobody", true, "------"},  {2, "idle", true, "--H--H"},    {2, "other", true, "------"},
      {0, "nobody", false, "HHHHHH"}, {2, "nobody", false, "--H--H"},
  };
  for (const auto& Case : aCases) {
    BREAKPOINT_EVALUATOR Evaluator;
    if (Case.bTasksKnown) {
      Evaluator.CurrentTask = [](U64* pTask) {
        *pTask = 32;
        return true;
      };
      Evaluator.FindTask = [](const QString& sName, U64* pTask) {
        *pTask = sName == QLatin1String("idle") ? 32 : 7;
        return sName != QLatin1String("nobody");
      };
    }
    CBreakpointProps Props;
    Props.SkipCount = Case.SkipCount;
    Props.FilterTaskID = QLatin1String(Case.sTask);
    EXPECT_TRUE(Verdicts(Props, 6, Evaluator) == QLatin1String(Case.sWanted)) << Case.SkipCount << " " << Case.sTask;
  }
}

// The values of the condition at the halts in turn; -1: fails, -2: has no value, -3: is no expression.
TEST(Evaluation, Conditions) {
  const struct {
    bool bOnChange;
    U32 SkipCount;
    std::vector<int> Values;
    const char* sWanted;
  } aCases[] = {
      {false, 0, {0, 1, 0, 7}, "-H-H"},      {false, 0, {-1, -1, 5}, "--H"},
      {false, 0, {-2, -3, 0}, "HH-"},        {false, 1, {0, 9}, "---H"},  // evaluated at every other halt only
      {true, 0, {5, 5, 6, 6, 5}, "--H-H"},   {true, 0, {0, 0, 1, -1, 1, 2}, "--H--H"},  // a failure is no change
      {true, 0, {-3, 4, -3, 4, 3}, "H-H-H"},
  };
  for (const auto& Case : aCases) {
    size_t Next = 0;
    BREAKPOINT_EVALUATOR Evaluator;
    Evaluator.EvalCondition = [&](const QString&) {
      const int Value = Case.Values[Next++];
      CONDITION_RESULT Result;
      Result.Outcome = Value >= 0    ? CONDITION_HAS_VALUE
                       : Value == -1 ? CONDITION_FAILED
                       : Value == -2 ? CONDITION_WITHOUT_VALUE
                                     : CONDITION_NOT_PARSED;
      Result.Value = static_cast<U64>(Value);
      return Result;
    };
    CBreakpointProps Props;
    Props.Condition = QStringLiteral("x");
    Props.DoTriggerOnChange = Case.bOnChange;
    Props.SkipCount = Case.SkipCount;
    const int NumHalts = static_cast<int>(Case.Values.size() * (Case.SkipCount + 1));
    EXPECT_EQ(Verdicts(Props, NumHalts, Evaluator).toStdString(), Case.sWanted);
    EXPECT_EQ(Next, Case.Values.size());
  }
  CBreakpointProps Props;
  Props.Condition = QStringLiteral("x");
  EXPECT_EQ(Verdicts(Props, 2, {}).toStdString(), "HH") << "nobody to evaluate it";
}

}  // namespace
