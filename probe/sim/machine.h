#pragma once
// The simulated board: one core with its memories, system control space and debug units. It knows no threads and no
// probe: the board's runner calls Run in slices on a thread of its own and everything else while it is stopped.

#include <atomic>
#include <functional>
#include <memory>

#include "base/types.h"

namespace sim {

enum class ARCH { ARMV6M, ARMV7M, ARMV7EM };

// The floating point unit: version 4 in single precision, version 5 in single or in both precisions.
enum class FPU { NONE, V4_SINGLE, V5_SINGLE, V5_DOUBLE };

struct MEM_RANGE {
  U32 Start = 0;
  U32 Size = 0;  // bytes
};

// What the machine is built from: the core and the part's memories, each of at most 64 MiB (what is above is not
// there). The vector table of a reset is at the start of flash, wherever that is.
struct BOARD_SPEC {
  ARCH Arch = ARCH::ARMV7EM;
  FPU Fpu = FPU::NONE;
  U32 CpuId = 0x410FC241;  // what the core says of itself in CPUID
  MEM_RANGE Flash;
  MEM_RANGE RAM[2];
  U32 NumCodeBreakpoints = 6;  // comparators of the core's breakpoint unit
  U32 NumDataWatches = 4;
  bool bCodeBreakpointsAnywhere = false;  // comparators of the second kind, which compare whole addresses
  U32 NumIRQs = 64;
  U32 ClockHz = 64'000'000;
  U32 NumMpuRegions = 8;    // of the memory protection unit; 0: there is none
  U32 NumPriorityBits = 0;  // of the interrupt controller; 0: 2 for ARMv6-M, 4 for ARMv7-M
};

enum class STOP {
  SLICE_END,   // the instruction budget is used up
  REQUESTED,   // *pStop was set
  BREAKPOINT,  // a breakpoint unit matched; the PC is at the instruction, which has not run
  BKPT,        // a BKPT instruction, semihosting requests among them; the PC is at it
  DATA_WATCH,  // a data event matched; the access is done
  VECTOR_CATCH,
  LOCKUP,
};

// What a comparator of the data watchpoint unit compares.
struct DATA_WATCH {
  U32 Addr = 0;
  U32 AddrMask = 0;  // address bits that are not compared
  U32 Data = 0;
  U32 DataMask = 0xFFFFFFFF;  // bits of the accessed value that are not compared
  U32 NumBytes = 0;           // width of the access, 0 for any
  bool bOnRead = true;
  bool bOnWrite = true;
};

// Results of SetDataWatch below 0.
enum WATCH_ERRORS : int { WATCH_NO_FREE_UNIT = -1, WATCH_NO_VALUES = -2 };

// What the trace has seen.
struct TRACE_TOTALS {
  U64 NumFetched = 0;  // instructions, the skipped ones among them
  U64 NumSkipped = 0;  // instructions whose condition failed
};

// A range of registers outside flash and RAM. Called on the thread that runs the machine; Offset is relative to the
// range, Width is 1, 2 or 4, values are right-aligned. A null function: reads give 0, writes are ignored.
struct PERIPHERAL {
  MEM_RANGE Range;
  std::function<U32(U32 Offset, U32 Width)> Read;
  std::function<void(U32 Offset, U32 Value, U32 Width)> Write;
};

struct STATE;  // private to the engine

class CMachine {
public:
  explicit CMachine(const BOARD_SPEC& Spec);
  ~CMachine();
  CMachine(const CMachine&) = delete;
  CMachine& operator=(const CMachine&) = delete;

  const BOARD_SPEC& Spec() const;

  // Power-on or system reset: registers and system control space to their reset values, MSP and PC from the vector
  // table. Flash and RAM keep their contents.
  void Reset();

  // Runs at most MaxInstructions, or until a stop. With bSkipFirst a breakpoint at the present PC does not stop.
  STOP Run(U64 MaxInstructions, const std::atomic<bool>* pStop, bool bSkipFirst);
  // One instruction, exactly: an IT block is as many steps as it has instructions, a skipped one is a step too, a
  // pending exception is entered by the step. Breakpoints do not stop it.
  STOP Step();

  U64 InstructionCount() const;  // since construction
  U64 CycleCount() const;        // since construction: instructions and the time that was slept

  // VNODE_REG_INDEX numbers. False for a register that the core does not have.
  bool ReadReg(U32 Index, U32* pValue) const;
  bool WriteReg(U32 Index, U32 Value);

  // Debugger's access, side effects of peripherals included; AccessWidth 1, 2 or 4. Returns the number of bytes that
  // were read or written before the first address that does not answer. Flash is not written.
  U32 ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth = 1);
  U32 WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth = 1);
  // Programs flash (and RAM alike): what a download or a flash breakpoint does. Returns the number of bytes written.
  U32 Program(U32 Addr, U32 NumBytes, const void* pData);
  void EraseFlash();  // to 0xFF

  // Hardware breakpoint comparators. False when none is free.
  bool SetCodeBreakpoint(U32 Addr);
  void ClearCodeBreakpoint(U32 Addr);
  // Breakpoints without a unit: as many as one likes, in flash too; reads see the original contents. They stop with
  // BREAKPOINT. Several settings of one address need as many clearings; both kinds alike.
  void SetSoftBreakpoint(U32 Addr);
  void ClearSoftBreakpoint(U32 Addr);

  // Takes comparators of the data watchpoint unit, and switches it on: one for an address, on ARMv7-M comparator 1 for
  // a value and another one for its address. WATCH_ERRORS, otherwise what ClearDataWatch takes.
  int SetDataWatch(const DATA_WATCH& Watch);
  void ClearDataWatch(int Index);

  // Called on the thread that runs the machine with everything that firmware writes into its enabled stimulus ports, 1,
  // 2 or 4 bytes at a time; null for nobody. False when the core has no such ports.
  bool SetStimulusSink(std::function<void(U32 Port, U32 Value, U32 NumBytes)> Sink);

  // Trace memory: a ring of the addresses of executed instructions, and counters for each. Start empties both.
  // NumEntries: a power of two, or rounded up to one; 0 for the default. Running code pays for it only while it is on.
  void StartTrace(U32 NumEntries = 0);
  void StopTrace();
  // Newest first; goes on where the last call ended, unless an instruction has run since. The number of addresses.
  U32 ReadTrace(U32* paAddr, U32 NumItems);
  // Counters of the instructions at NumHalfwords addresses from Addr on, and of everything since the start.
  TRACE_TOTALS ReadTraceCounters(U32 Addr, U32 NumHalfwords, U64* paFetched, U64* paSkipped) const;

  // Has Function called every PeriodCycles of target time while the core runs or sleeps, on the thread that runs the
  // machine, between two instructions and for the first time at once; the machine's memory may be read then. A period
  // of 0 ends it.
  void SetSampler(U64 PeriodCycles, std::function<void(CMachine& Machine, U64 Cycle)> Function);

  void AddPeripheral(PERIPHERAL Peripheral);
  // Makes an external interrupt pending, as its line would. Numbers that the part does not have are ignored.
  void RaiseIRQ(U32 Index);

  // While set, PendSV, SysTick and external interrupts stay pending: what a debugger asks for while it steps.
  void MaskInterrupts(bool bMask);

  // Without it, which is how a core runs when no debugger is connected, breakpoints are for the debug monitor's handler
  // or a hard fault. On at first; resets leave it alone.
  void SetHaltingDebug(bool bOn);

  // After WFI or WFE, until something wakes the core. A slice passes without instructions then; a stop wakes the core.
  bool IsSleeping() const;
  bool IsInLockup() const;
  // A non-maskable interrupt is pending that ends the lockup.
  bool CanLeaveLockup() const;

private:
  std::unique_ptr<STATE> m_pState;
};

}  // namespace sim
