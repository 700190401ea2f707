#include "device/device_context.h"

#include <chrono>
#include <thread>

namespace {

constexpr U32 LOG_DEBUG = MSG_SRC_TARGET | MSG_TO_FILE | MSG_TO_STDOUT | MSG_INFO;
constexpr U32 LOG_WARN = MSG_SRC_TARGET | MSG_TO_FILE | MSG_TO_STDOUT | MSG_WARNING;
constexpr U32 LOG_INFO = MSG_SRC_TARGET | MSG_TO_ALL | MSG_INFO;
constexpr U32 LOG_ERROR = MSG_SRC_TARGET | MSG_TO_ALL | MSG_ERROR;
constexpr qsizetype MAX_ERR_MSG_CHARS = 2047;

constexpr U32 LOGIC_REG_SP = 13;
constexpr U32 LOGIC_REG_PC = 15;

}  // namespace

DEVICE_CLOCK::DEVICE_CLOCK()
    : NowMs([] {
        using namespace std::chrono;
        return static_cast<U64>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
      }),
      SleepMs([](U32 Milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(Milliseconds)); }) {}

CDeviceContext::CDeviceContext(DEVICE_EVENT_SINK& Sink, IProgramAccess& Program)
    : Api(CVNodeLibrary::MissingApi()), Sink(Sink), Program(Program) {}

int CDeviceContext::LoadLibrary(const QString& sFolder) {
  const int Result = Library.Load(sFolder);
  Api = Library.Api();
  if (Result < 0) LogErrorMsg(Library.ErrorText());
  return Result;
}

U32 CDeviceContext::PCIndex() {
  return Program.MapRegIndex(LOGIC_REG_PC);
}

U32 CDeviceContext::SPIndex() {
  return Program.MapRegIndex(LOGIC_REG_SP);
}

U32 CDeviceContext::AlignInst(U32 Addr) {
  const U32 Align = Program.InstAlign();
  return Align > 1 ? Addr & ~(Align - 1) : Addr;
}

int CDeviceContext::QueryHalted() {
  if (!IsConnected()) return -1;
  const int Result = Api.VNODEARM_IsHalted();
  if (Result < 0) OnInvalidHaltStatus();
  return Result < 0 ? -1 : Result > 0;
}

void CDeviceContext::OnInvalidHaltStatus() {
  if (!IsConnected()) return;
  LogWarnMsg(QStringLiteral("Invalid connection status received"));
  if (State.Connection.bConnectionLost.exchange(true)) return;
  State.Exec.bAccessible = false;
  Sink.CancelAllJobs();
  Sink.RaiseConnectionLost();
}

void CDeviceContext::TestConnectionLost() {
  QueryHalted();
}

void CDeviceContext::LogDebugMsg(const QString& sText) {
  Sink.Log(sText, LOG_DEBUG);
}

void CDeviceContext::LogWarnMsg(const QString& sText) {
  Sink.Log(sText, LOG_WARN);
}

void CDeviceContext::LogInfoMsg(const QString& sText) {
  Sink.Log(sText, LOG_INFO);
}

void CDeviceContext::LogErrorMsg(const QString& sText) {
  Sink.Log(sText, LOG_ERROR);
}

void CDeviceContext::SetErrorMsg(DEVICE_ERR_MSGS Index, const QString& sText) {
  if (Index >= NUM_ERR_MSGS) return;
  {
    std::lock_guard Lock(ErrMsgMutex);
    aErrMsg[Index] = sText.left(MAX_ERR_MSG_CHARS);
  }
  LogWarnMsg(sText);
}

QString CDeviceContext::ErrorMsg(DEVICE_ERR_MSGS Index) const {
  std::lock_guard Lock(ErrMsgMutex);
  return Index < NUM_ERR_MSGS ? aErrMsg[Index] : QString();
}
