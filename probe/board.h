#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "probe/messages.h"
#include "probe/sim/machine.h"

// A simulated board: a machine and the thread that runs it. The firmware runs in slices; whoever wants the machine ends
// the slice, gets the machine for itself, and lets it run on. What the core sleeps takes real time; instructions take
// as long as they take. Any thread.
class CBoard {
public:
  // Powered on, and running from reset.
  CBoard(const sim::BOARD_SPEC& Spec, CMessages& Messages);
  ~CBoard();
  CBoard(const CBoard&) = delete;
  CBoard& operator=(const CBoard&) = delete;

  // The machine, stopped as long as this object lives. One at a time per thread.
  class CAccess {
  public:
    explicit CAccess(CBoard& Board);
    ~CAccess();
    CAccess(const CAccess&) = delete;
    CAccess& operator=(const CAccess&) = delete;
    sim::CMachine* operator->() { return &m_Board.m_Machine; }
    sim::CMachine& operator*() { return m_Board.m_Machine; }

  private:
    friend class CBoard;
    CBoard& m_Board;
    std::unique_lock<std::mutex> m_Lock;
  };

  const sim::BOARD_SPEC& Spec() const { return m_Machine.Spec(); }
  bool IsHalted() const { return !m_bRunning; }
  // Returns when the core has stopped, which takes less than a millisecond.
  void Halt();
  // Returns at once. With bSkipFirst a breakpoint at the present PC does not stop.
  void Go(bool bSkipFirst);
  // Both leave the core halted or, when it ran and bHalt is not set, running.
  void Step();
  void Reset(bool bHalt);

private:
  void RunnerMain();
  void RunSlice();
  void OnStop(sim::STOP Reason);
  bool CanRun() const;
  U64 SleptCycles() const;

  CMessages& m_Messages;
  std::mutex m_Mutex;  // held by whoever uses the machine
  std::condition_variable m_Wake;
  sim::CMachine m_Machine;
  std::atomic<int> m_NumWaiting{0};
  std::atomic<bool> m_bStopSlice{false};
  std::atomic<bool> m_bRunning{true};
  bool m_bSkipFirst = false;
  bool m_bPowerOn = true;  // neither resumed nor reset by the debugger yet
  bool m_bLockup = false;  // runs, but executes nothing until it is halted, reset or interrupted by an NMI
  bool m_bQuit = false;
  std::chrono::steady_clock::time_point m_NotBefore;  // the core has slept until then
  std::thread m_Runner;
};
