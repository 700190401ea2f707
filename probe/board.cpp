#include "probe/board.h"

#include <algorithm>

namespace {

// A slice is so much of the target's time, unless somebody wants the machine earlier.
constexpr U32 SLICES_PER_SECOND = 250;
constexpr std::chrono::milliseconds MAX_LAG{100};

}  // namespace

CBoard::CAccess::CAccess(CBoard& Board) : m_Board(Board) {
  // The runner clears the flag before it looks at the counter, so that one of the two always holds it back.
  ++m_Board.m_NumWaiting;
  m_Board.m_bStopSlice = true;
  m_Lock = std::unique_lock(m_Board.m_Mutex);
  --m_Board.m_NumWaiting;
}

CBoard::CAccess::~CAccess() {
  m_Lock.unlock();
  m_Board.m_Wake.notify_one();
}

CBoard::CBoard(const sim::BOARD_SPEC& Spec, CMessages& Messages) : m_Messages(Messages), m_Machine(Spec) {
  m_Machine.Reset();
  m_Runner = std::thread(&CBoard::RunnerMain, this);
}

CBoard::~CBoard() {
  {
    CAccess Access(*this);
    m_bQuit = true;
  }
  m_Runner.join();
}

void CBoard::Halt() {
  CAccess Access(*this);
  Access->SetHaltingDebug(true);  // a script may have turned it off
  m_bRunning = false;
}

void CBoard::Go(bool bSkipFirst) {
  CAccess Access(*this);
  m_bSkipFirst = bSkipFirst;
  m_bPowerOn = false;
  m_bLockup = false;
  m_NotBefore = std::chrono::steady_clock::now();
  m_bRunning = true;
}

void CBoard::Step() {
  CAccess Access(*this);
  Access->Step();
}

void CBoard::Reset(bool bHalt) {
  CAccess Access(*this);
  Access->Reset();
  m_bPowerOn = false;
  m_bLockup = false;
  m_bSkipFirst = false;
  m_NotBefore = std::chrono::steady_clock::now();
  m_bRunning = !bHalt;
}

void CBoard::RunnerMain() {
  std::unique_lock Lock(m_Mutex);
  for (;;) {
    m_Wake.wait(Lock, [this] { return m_NumWaiting == 0 && (m_bQuit || (m_bRunning && CanRun())); });
    if (m_bQuit) return;
    if (std::chrono::steady_clock::now() < m_NotBefore) {
      m_Wake.wait_until(Lock, m_NotBefore);
    } else {
      RunSlice();
    }
  }
}

bool CBoard::CanRun() const {
  return !m_bLockup || m_Machine.CanLeaveLockup();
}

U64 CBoard::SleptCycles() const {
  return m_Machine.CycleCount() - m_Machine.InstructionCount();
}

void CBoard::RunSlice() {
  m_bStopSlice = false;
  if (m_NumWaiting != 0) return;
  m_bLockup = false;
  const U32 ClockHz = Spec().ClockHz;
  const auto Begin = std::chrono::steady_clock::now();
  const U64 CyclesBefore = m_Machine.CycleCount();
  const U64 SleptBefore = SleptCycles();
  const sim::STOP Reason = m_Machine.Run(ClockHz / SLICES_PER_SECOND, &m_bStopSlice, m_bSkipFirst);
  m_bSkipFirst = false;
  // A busy core runs as fast as it can. One that slept keeps to real time, and makes up for a host that was late.
  m_NotBefore = std::max(m_NotBefore, Begin - MAX_LAG);
  if (SleptCycles() != SleptBefore) {
    const std::chrono::duration<double> TargetTime(static_cast<double>(m_Machine.CycleCount() - CyclesBefore) /
                                                   ClockHz);
    m_NotBefore += std::chrono::duration_cast<std::chrono::steady_clock::duration>(TargetTime);
  }
  if (Reason != sim::STOP::SLICE_END && Reason != sim::STOP::REQUESTED) OnStop(Reason);
}

void CBoard::OnStop(sim::STOP Reason) {
  if (Reason == sim::STOP::LOCKUP) {
    m_bLockup = true;
    // A board that comes without firmware locks up at power-on, which is no news to anybody.
    if (!m_bPowerOn) m_Messages.Add(MSG_KIND::WARNING, "The core is in lockup.");
  } else {
    m_bRunning = false;
  }
}
