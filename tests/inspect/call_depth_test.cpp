#include "inspect/call_depth.h"

#include <gtest/gtest.h>

namespace {

STACK_FUNCTION Function(U32 Frame, std::vector<U32> aCalls, std::vector<U32> aTailCalls = {}) {
  STACK_FUNCTION Result;
  Result.Frame = Frame;
  Result.aCalls = std::move(aCalls);
  Result.aTailCalls = std::move(aTailCalls);
  return Result;
}

struct DEPTH_CASE {
  const char* sWhat;
  std::vector<STACK_FUNCTION> aFunctions;
  std::vector<U32> aDepths;
  std::vector<I32> aDeepest;
  std::vector<bool> aRecursive;  // it or anything below it
};

TEST(CallDepth, AddsTheDeepestWay) {
  const DEPTH_CASE aCases[] = {
      {"a chain with a deeper side",
       {Function(8, {1, 2}), Function(16, {}), Function(4, {3}), Function(32, {})},
       {44, 16, 36, 32},
       {2, -1, 3, -1},
       {false, false, false, false}},
      {"a jump to another function leaves no frame behind",
       {Function(24, {}, {1}), Function(40, {}), Function(64, {}, {1})},
       {40, 40, 64},
       {1, -1, -1},
       {false, false, false}},
      {"a function that calls itself",
       {Function(8, {1}), Function(16, {1, 2}), Function(4, {})},
       {28, 20, 4},
       {1, 2, -1},
       {true, true, false}},
      {"a loop by a jump to its own start is no recursion", {Function(8, {}, {0})}, {8}, {-1}, {false}},
      {"two that call each other, and a way out of the second",
       {Function(8, {1}), Function(16, {2}), Function(32, {1, 3}), Function(64, {})},
       {120, 112, 112, 64},
       {1, 3, 3, -1},
       {true, true, true, false}},
      {"a callee that is met again",
       {Function(1, {1, 2}), Function(2, {3}), Function(4, {3}), Function(8, {})},
       {13, 10, 12, 8},
       {2, 3, 3, -1},
       {false, false, false, false}},
  };
  for (DEPTH_CASE Case : aCases) {
    SCOPED_TRACE(Case.sWhat);
    ComputeCallDepths(Case.aFunctions);
    for (size_t i = 0; i < Case.aFunctions.size(); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(Case.aDepths[i], Case.aFunctions[i].Depth);
      EXPECT_EQ(Case.aDeepest[i], Case.aFunctions[i].Deepest);
      EXPECT_EQ(Case.aRecursive[i], Case.aFunctions[i].bRecursiveBelow);
    }
  }
}

TEST(CallDepth, WhatIsNotKnownReachesAllCallers) {
  std::vector<STACK_FUNCTION> aFunctions = {Function(8, {1}), Function(8, {2}), Function(8, {}), Function(8, {})};
  aFunctions[1].bIndirect = true;
  aFunctions[2].bUnknown = true;
  ComputeCallDepths(aFunctions);
  EXPECT_TRUE(aFunctions[0].bIndirectBelow && aFunctions[0].bUnknownBelow);
  EXPECT_TRUE(aFunctions[1].bIndirectBelow && aFunctions[1].bUnknownBelow);
  EXPECT_TRUE(!aFunctions[2].bIndirectBelow && aFunctions[2].bUnknownBelow);
  EXPECT_FALSE(aFunctions[3].bIndirectBelow || aFunctions[3].bUnknownBelow);
}

// As many functions as a big program has, one under the other.
TEST(CallDepth, DeepChain) {
  constexpr U32 NUM_FUNCTIONS = 200'000;
  std::vector<STACK_FUNCTION> aFunctions;
  for (U32 i = 1; i <= NUM_FUNCTIONS; ++i) {
    aFunctions.push_back(Function(8, i < NUM_FUNCTIONS ? std::vector<U32>{i} : std::vector<U32>{}));
  }
  ComputeCallDepths(aFunctions);
  EXPECT_EQ(8 * NUM_FUNCTIONS, aFunctions[0].Depth);
}

}  // namespace
