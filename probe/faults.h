#pragma once

#include <string>
#include <string_view>

#include "base/types.h"

// Functions that can be made to fail, by the name of the library function without its prefix.
// clang-format off
#define VNODE_FAULT_POINTS(F)                                                                                        \
  F(Open) F(Connect) F(SelectUSB) F(EMU_SelectByUSBSN) F(Halt) F(Step) F(Reset) F(ReadReg) F(ReadRegs) F(WriteReg)   \
  F(ReadMem) F(WriteMem) F(EndDownload) F(MeasureCPUSpeedEx) F(SetBPEx) F(ClrBPEx) F(SetDataEvent) F(ClrDataEvent)
// clang-format on

enum class FAULT_POINT {
#define VNODE_FAULT_ENUM(Name) Name,
  VNODE_FAULT_POINTS(VNODE_FAULT_ENUM)
#undef VNODE_FAULT_ENUM
      NUM_POINTS
};

// The name of the library function without its prefix.
const char* FaultPointName(FAULT_POINT Point);

// Faults that tests and demonstrations inject through probe commands. Guarded by the session's lock.
//
//   sim.fail NAME N [CODE]   the next N calls of the function fail, all of them when N is negative; with CODE as result
//                            where the function has one
//   sim.refuse-connect N     the next N connects fail
//   sim.lose-connection N    the connection breaks at the N-th further call that reaches the target, 0: at once
//   sim.slow MS              every access to the target takes MS longer
//   sim.no-halt [0|1]        the target ignores halt requests and runs on after a reset
//   sim.clear-faults
class CFaults {
public:
  // True when the call has to fail; counts it. *pCode is set when the fault has a code of its own.
  bool Take(FAULT_POINT Point, int* pCode = nullptr);
  // Counts one access to the target; true when the connection breaks now.
  bool TakeConnectionLoss();

  U32 SlowMs() const { return m_SlowMs; }
  bool IsHaltIgnored() const { return m_bNoHalt; }

  // Executes a command of the list above. False when it is none of them; *psError is set when its arguments are wrong.
  bool Execute(std::string_view sCommand, std::string* psError);

private:
  struct POINT {
    int NumCalls = 0;  // negative: without end
    int Code = 0;
  };
  bool SetPoint(std::string_view sName, int NumCalls, int Code);

  POINT m_aPoints[static_cast<int>(FAULT_POINT::NUM_POINTS)];
  int m_CallsToLoss = -1;  // negative: none
  U32 m_SlowMs = 0;
  bool m_bNoHalt = false;
};
