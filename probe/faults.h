#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/types.h"

// Functions that can be made to fail, by the name of the library function without its prefix. ReadMem and WriteMem
// stand for every function that reads or writes memory.
// clang-format off
#define VNODE_FAULT_POINTS(F)                                                                                        \
  F(Open) F(Connect) F(SelectUSB) F(SelectIP) F(EMU_SelectByUSBSN)                                                   \
  F(Halt) F(IsHalted) F(GoEx) F(Step) F(Reset) F(ReadReg) F(ReadRegs) F(WriteReg) F(CP15_ReadEx) F(CP15_WriteEx)     \
  F(ReadMem) F(WriteMem) F(EndDownload) F(MeasureCPUSpeedEx) F(SetBPEx) F(ClrBPEx) F(SetDataEvent) F(ClrDataEvent)   \
  F(SWO_Control) F(SWO_EnableTarget) F(SWO_DisableTarget) F(SWO_GetCompatibleSpeeds) F(SWO_ReadStimulus)             \
  F(RAWTRACE_Control) F(RTTERMINAL_Control) F(RTTERMINAL_Read) F(RTTERMINAL_Write)                                   \
  F(HSS_Start) F(HSS_Stop) F(HSS_Read) F(STRACE_Config) F(STRACE_Start) F(STRACE_Stop) F(STRACE_Read)                \
  F(STRACE_GetInstStats)
// clang-format on

enum class FAULT_POINT {
#define VNODE_FAULT_ENUM(Name) Name,
  VNODE_FAULT_POINTS(VNODE_FAULT_ENUM)
#undef VNODE_FAULT_ENUM
      NUM_POINTS
};

// The name of the library function without its prefix.
const char* FaultPointName(FAULT_POINT Point);

// How a target that does not halt answers.
enum class HALT_FAULT { None, Refused, Silent };

// Faults that tests and demonstrations inject through probe commands. Guarded by the session's lock.
//
//   sim.fail NAME N [CODE] [AFTER M]  M calls of the function work, the next N fail, all of them when N is negative;
//                                     with CODE as result where the function has one
//   sim.fail-download PHASE [N]       the next N downloads (1) fail in the phase: compare, program, verify, other
//   sim.refuse-connect N              the next N connects fail
//   sim.lose-connection N             the connection breaks at the N-th further call to the target; 0: at once
//   sim.slow MS                       every access to the target takes MS longer
//   sim.no-halt [0|1|silent]          the target runs on when it should halt, also after a reset; "silent": the halt
//                                     function reports success all the same
//   sim.bad-memory ADDR SIZE          the debugger's accesses to the range get no answer; may be given several times
//   sim.clear-faults
class CFaults {
public:
  // True when the call has to fail; counts it. *pCode is set when the fault has a code of its own.
  bool Take(FAULT_POINT Point, int* pCode = nullptr);
  // Counts one access to the target; true when the connection breaks now.
  bool TakeConnectionLoss();

  U32 SlowMs() const { return m_SlowMs; }
  HALT_FAULT HaltFault() const { return m_HaltFault; }
  // Number of bytes from Addr on that answer: NumBytes unless the range reaches a bad one.
  U32 NumAnswering(U32 Addr, U32 NumBytes) const;

  // Executes a command of the list above. False when it is none of them; *psError is set when its arguments are wrong.
  bool Execute(std::string_view sCommand, std::string* psError);
  // What is injected at present, each as the command that injects it.
  std::vector<std::string> Describe() const;

private:
  struct POINT {
    int NumCalls = 0;  // negative: without end
    int Code = 0;
    int NumGood = 0;  // calls that work before
  };
  struct RANGE {
    U32 Addr = 0;
    U32 Size = 0;  // bytes
  };
  using ARGS = std::vector<std::string_view>;

  bool Fail(const ARGS& Args);
  bool FailDownload(const ARGS& Args);
  bool RefuseConnect(const ARGS& Args);
  bool LoseConnection(const ARGS& Args);
  bool Slow(const ARGS& Args);
  bool NoHalt(const ARGS& Args);
  bool BadMemory(const ARGS& Args);
  bool Clear(const ARGS& Args);
  POINT& At(FAULT_POINT Point) { return m_aPoints[static_cast<int>(Point)]; }

  POINT m_aPoints[static_cast<int>(FAULT_POINT::NUM_POINTS)];
  std::vector<RANGE> m_BadRanges;
  int m_CallsToLoss = -1;  // negative: none
  U32 m_SlowMs = 0;
  HALT_FAULT m_HaltFault = HALT_FAULT::None;
};
