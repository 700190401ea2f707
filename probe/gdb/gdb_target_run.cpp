// Run control through a GDB server.

#include "probe/gdb/gdb_target.h"
#include "probe/gdb/gdb_target_pause.h"
#include "probe/text.h"

namespace {

constexpr int STOP_LIMIT_MS = 2000;  // from an interrupt to the stop
constexpr int STEP_LIMIT_MS = 1000;  // for a step; an instruction that sleeps is interrupted then
constexpr int MAX_PACKETS_PER_POLL = 100;
constexpr int FILE_IO_ERROR_UNKNOWN = 9999;

}  // namespace

bool CGdbTarget::TakeStop(const std::string& sPacket) {
  const GDB_STOP Stop = ParseStopReply(sPacket);
  switch (Stop.Kind) {
    case GDB_STOP::KIND::STOPPED:
      m_bRunning = false;
      m_LastStop = Stop;
      m_Registers.Invalidate();
      m_Server.SelectCore();
      return true;
    case GDB_STOP::KIND::ENDED:
      m_bRunning = false;
      m_Server.Connection().Close("The GDB server's target has ended");
      return true;
    case GDB_STOP::KIND::FILE_IO:
      m_Server.Connection().Send(FormatText("F-1,%d", FILE_IO_ERROR_UNKNOWN), DeadlineIn(CGdbServer::REPLY_LIMIT_MS));
      return false;
    default:
      return false;
  }
}

bool CGdbTarget::WaitForStop(int LimitMs) {
  const DEADLINE Deadline = DeadlineIn(LimitMs);
  std::string sPacket;
  for (;;) {
    const int Result = m_Server.Connection().Poll(&sPacket, Deadline);
    if (Result < 0) Fail(m_Server.Connection().Error());
    if (Result <= 0) return false;
    if (TakeStop(sPacket)) return IsAlive();
  }
}

int CGdbTarget::IsHalted() {
  CRspConnection& Connection = m_Server.Connection();
  if (!m_bRunning) return Connection.IsOpen() ? 1 : -1;
  std::string sPacket;
  const DEADLINE Now = DeadlineIn(0);
  for (int i = 0; i < MAX_PACKETS_PER_POLL; ++i) {
    if (Connection.Poll(&sPacket, Now) <= 0 || TakeStop(sPacket)) break;
  }
  if (!Connection.IsOpen()) return Fail(Connection.Error());
  return !m_bRunning;
}

bool CGdbTarget::Interrupt() {
  if (!m_Server.Connection().SendInterrupt(DeadlineIn(CGdbServer::REPLY_LIMIT_MS))) return false;
  return WaitForStop(STOP_LIMIT_MS);
}

int CGdbTarget::Halt() {
  const int Halted = IsHalted();
  if (Halted != 0) return Halted > 0 ? 0 : -1;
  if (Interrupt()) return 0;
  return IsAlive() ? Fail("Halt: the GDB server does not stop the core") : -1;
}

bool CGdbTarget::IsAtBreakpoint() {
  U32 PC = 0;
  return m_Registers.ReadPC(&PC) && m_Breakpoints.contains(PC);
}

// What would stop the core where it stands: a breakpoint there, and all watches when one of them has stopped it, for
// most servers stop ahead of the access. The points that the server has given up.
std::vector<CGdbTarget::STOP_POINT> CGdbTarget::LiftStopPoints() {
  std::vector<STOP_POINT> Wanted, Lifted;
  U32 PC = 0;
  if (m_Registers.ReadPC(&PC) && m_Breakpoints.contains(PC)) Wanted.push_back(m_Breakpoints[PC]);
  if (m_LastStop.bWatch) Wanted.insert(Wanted.end(), m_Watches.begin(), m_Watches.end());
  for (const STOP_POINT& Point : Wanted) {
    if (Point.Type && Remove(Point)) Lifted.push_back(Point);
  }
  return Lifted;
}

// One instruction, whatever would stop at it.
bool CGdbTarget::StepOne() {
  const std::vector<STOP_POINT> Lifted = LiftStopPoints();
  CRspConnection& Connection = m_Server.Connection();
  m_Registers.Invalidate();
  m_bRunning = true;
  const bool bStepped = Connection.Send(m_Server.ResumePacket('s'), DeadlineIn(CGdbServer::REPLY_LIMIT_MS)) &&
                        (WaitForStop(STEP_LIMIT_MS) || (Connection.IsOpen() && Interrupt()));
  for (const STOP_POINT& Point : Lifted) {
    if (bStepped && !Insert(Point)) {
      Fail(FormatText("The breakpoint @ 0x%08X could not be set again", Point.Addr));
    }
  }
  if (!bStepped && IsAlive()) Fail("Step: the GDB server does not step the core");
  return bStepped;
}

bool CGdbTarget::Resume() {
  m_Registers.Invalidate();
  m_bToldRunning = false;
  if (!m_Server.Connection().Send(m_Server.ResumePacket('c'), DeadlineIn(CGdbServer::REPLY_LIMIT_MS))) return false;
  m_bRunning = true;
  return true;
}

int CGdbTarget::Go(bool bSkipFirst) {
  const int Halted = IsHalted();
  if (Halted <= 0) return Halted;
  if (bSkipFirst && (m_LastStop.bWatch || IsAtBreakpoint())) {
    if (!StepOne()) return -1;
    // The next instruction has a breakpoint too, or an access of this one was watched for: the core has arrived.
    if (m_LastStop.bWatch || IsAtBreakpoint()) return 0;
  }
  return Resume() ? 0 : Fail(m_Server.Connection().Error());
}

int CGdbTarget::Step() {
  return StepOne() ? 0 : -1;
}

CGdbTarget::CPause::CPause(CGdbTarget& Target) : m_Target(Target) {
  const bool bRan = Target.IsHalted() == 0;
  m_bStopped = Target.Halt() == 0;
  // A server may report an interrupt like a trap. It was one, unless the core stands where it had to stop anyway.
  const GDB_STOP& Stop = Target.m_LastStop;
  m_bResume =
      bRan && m_bStopped && (Stop.IsInterrupt() || (!Stop.bWatch && !Stop.bBreakpoint && !Target.IsAtBreakpoint()));
}

CGdbTarget::CPause::~CPause() {
  if (m_bResume && m_Target.IsAlive()) m_Target.Resume();
}
