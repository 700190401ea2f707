#include "inspect/call_depth.h"

#include <algorithm>

namespace {

// Groups of functions that can reach each other, found in the order in which callees come first (Tarjan's algorithm,
// with a stack of its own: a program's calls may be nested deeper than ours).
class CCallGroups {
public:
  explicit CCallGroups(const std::vector<STACK_FUNCTION>& aFunctions)
      : aFunctions(aFunctions), aNodes(aFunctions.size()) {
    for (U32 i = 0; i < aNodes.size(); ++i) {
      if (aNodes[i].Order == 0) Walk(i);
    }
  }

  const std::vector<std::vector<U32>>& Groups() const { return aGroups; }

private:
  struct NODE {
    U32 Order = 0;  // of the first visit, from 1
    U32 Low = 0;    // lowest order that is reachable
    U32 NextCall = 0;
    bool bOpen = false;
  };

  const std::vector<STACK_FUNCTION>& aFunctions;
  std::vector<NODE> aNodes;
  std::vector<U32> aOpen;
  std::vector<std::vector<U32>> aGroups;
  U32 LastOrder = 0;

  U32 NumCalls(U32 Function) const {
    return static_cast<U32>(aFunctions[Function].aCalls.size() + aFunctions[Function].aTailCalls.size());
  }

  U32 Call(U32 Function, U32 Index) const {
    const STACK_FUNCTION& F = aFunctions[Function];
    return Index < F.aCalls.size() ? F.aCalls[Index] : F.aTailCalls[Index - F.aCalls.size()];
  }

  void Enter(U32 Function, std::vector<U32>& aWay) {
    aNodes[Function].Order = aNodes[Function].Low = ++LastOrder;
    aNodes[Function].bOpen = true;
    aOpen.push_back(Function);
    aWay.push_back(Function);
  }

  void Close(U32 Function) {
    std::vector<U32> aGroup;
    while (aGroup.empty() || aGroup.back() != Function) {
      aGroup.push_back(aOpen.back());
      aNodes[aOpen.back()].bOpen = false;
      aOpen.pop_back();
    }
    aGroups.push_back(std::move(aGroup));
  }

  void Walk(U32 First) {
    std::vector<U32> aWay;
    Enter(First, aWay);
    while (!aWay.empty()) {
      const U32 Function = aWay.back();
      NODE& Node = aNodes[Function];
      if (Node.NextCall < NumCalls(Function)) {
        const U32 Callee = Call(Function, Node.NextCall++);
        if (aNodes[Callee].Order == 0) {
          Enter(Callee, aWay);
        } else if (aNodes[Callee].bOpen) {
          Node.Low = std::min(Node.Low, aNodes[Callee].Order);
        }
        continue;
      }
      if (Node.Low == Node.Order) Close(Function);
      aWay.pop_back();
      if (!aWay.empty()) aNodes[aWay.back()].Low = std::min(aNodes[aWay.back()].Low, Node.Low);
    }
  }
};

bool Contains(const std::vector<U32>& aList, U32 Value) {
  return std::find(aList.begin(), aList.end(), Value) != aList.end();
}

void TakeCallee(STACK_FUNCTION& Function, U32 Callee, const STACK_FUNCTION& Below, U32 Own) {
  Function.bUnknownBelow |= Below.bUnknownBelow;
  Function.bIndirectBelow |= Below.bIndirectBelow;
  Function.bRecursiveBelow |= Below.bRecursiveBelow;
  if (Own + Below.Depth <= Function.Depth) return;
  Function.Depth = Own + Below.Depth;
  Function.Deepest = static_cast<I32>(Callee);
}

void ComputeOne(std::vector<STACK_FUNCTION>& aFunctions, U32 Index) {
  STACK_FUNCTION& Function = aFunctions[Index];
  Function.Depth = Function.Frame;
  Function.bUnknownBelow = Function.bUnknown || Function.bUnbounded;
  Function.bIndirectBelow = Function.bIndirect;
  for (const U32 Callee : Function.aCalls) TakeCallee(Function, Callee, aFunctions[Callee], Function.Frame);
  for (const U32 Callee : Function.aTailCalls) TakeCallee(Function, Callee, aFunctions[Callee], 0);
}

// Functions that call each other: one round through all of them, then the deepest way out.
void ComputeRound(std::vector<STACK_FUNCTION>& aFunctions, const std::vector<U32>& aGroup) {
  STACK_FUNCTION Round;
  Round.bRecursiveBelow = true;
  for (const U32 Index : aGroup) Round.Frame += aFunctions[Index].Frame;
  Round.Depth = Round.Frame;
  for (const U32 Index : aGroup) {
    const STACK_FUNCTION& Function = aFunctions[Index];
    Round.bUnknownBelow |= Function.bUnknown || Function.bUnbounded;
    Round.bIndirectBelow |= Function.bIndirect;
    for (const std::vector<U32>* pCalls : {&Function.aCalls, &Function.aTailCalls}) {
      for (const U32 Callee : *pCalls) {
        if (!Contains(aGroup, Callee)) TakeCallee(Round, Callee, aFunctions[Callee], Round.Frame);
      }
    }
  }
  for (const U32 Index : aGroup) {
    STACK_FUNCTION& Function = aFunctions[Index];
    Function.bRecursive = Function.bRecursiveBelow = true;
    Function.bUnknownBelow = Round.bUnknownBelow;
    Function.bIndirectBelow = Round.bIndirectBelow;
    Function.Depth = Round.Depth;
    Function.Deepest = Round.Deepest;
  }
}

}  // namespace

void ComputeCallDepths(std::vector<STACK_FUNCTION>& aFunctions) {
  const CCallGroups Groups(aFunctions);
  for (const std::vector<U32>& aGroup : Groups.Groups()) {
    const STACK_FUNCTION& First = aFunctions[aGroup.front()];
    const bool bCallsItself = Contains(First.aCalls, aGroup.front());
    if (aGroup.size() > 1 || bCallsItself) {
      ComputeRound(aFunctions, aGroup);
    } else {
      ComputeOne(aFunctions, aGroup.front());
    }
  }
}
