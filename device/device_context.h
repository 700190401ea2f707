#pragma once
// What all operations on the target share.

#include <array>
#include <functional>
#include <mutex>

#include <QString>

#include "base/msg_flags.h"
#include "device/breakpoint_list.h"
#include "device/device_config.h"
#include "device/device_types.h"
#include "device/probe_facts.h"
#include "device/program_access.h"
#include "device/vnode_library.h"

// What the operations need of the job layer. Log may come from any thread, the rest from the device thread or from the
// main thread while it finishes a halt sequence.
class DEVICE_EVENT_SINK {
public:
  virtual ~DEVICE_EVENT_SINK() = default;

  virtual void RaiseEvalBPCondition(U32 Addr) = 0;
  virtual void RaiseConfigParamChanged(int Param, int Value) = 0;
  virtual void RaiseHWCapabilityChanged(int Capability, int Value) = 0;
  virtual void RaiseConnectionLost() = 0;
  virtual void RaiseEndianessChanged(int InstEndian, int DataEndian) = 0;

  // Reports a finished job that nobody scheduled. JT_HALT: P0 HALT_REASONS, Result PC. JT_CONTINUE: P0 RESUME_MODES.
  // JT_RUN_TO: P0 address. JT_CONNECT, JT_RESET: P0 mode, Result PC. Step jobs: Result PC.
  virtual void PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result) = 0;
  // Puts a JT_CONTINUE into the ring, so that the listeners hear of the resume.
  virtual void ScheduleContinue(RESUME_MODES Mode) = 0;
  // Takes back all pending jobs of all rings.
  virtual void CancelAllJobs() = 0;

  // Flags: MSG_INFO_FLAGS.
  virtual void Log(const QString& sText, U32 Flags) = 0;
  virtual void SetStatusMsg(const QString& sText) = 0;
  // A progress text; with Max above Min a bar, with both 0 an indefinite one.
  virtual void StartProgress(const QString& sText, int Min, int Max) = 0;
  virtual void SetProgressMsg(const QString& sText) = 0;
  virtual void SetProgressValue(int Value) = 0;
  virtual void EndProgress() = 0;
};

// Serves semihosting requests of the halted target while DEVICE_SETTINGS::bSemihosting is set; device thread.
class ISemihostHandler {
public:
  virtual ~ISemihostHandler() = default;
  // Whether the target is to run on once the request is served.
  virtual void SetAutoResume(bool bResume) = 0;
  virtual bool IsAutoResuming() const = 0;
  // Executes the request at the PC: 0 when it is finished, any other value when the target has to stay halted.
  virtual U8 HandleInterrupt(U32 PC) = 0;
};

// Completes a source step whose hidden breakpoint was hit.
class ISourceStepper {
public:
  virtual ~ISourceStepper() = default;
  // PendingJob is JT_STEP_INTO or JT_STEP_OVER. 1 when the target runs again, else 0. Device thread, or main thread
  // while bHaltPending is set.
  virtual int CompleteSrcStepOnHiddenBP(U32 PC) = 0;
};

// Trace, terminal and sampling channels and data breakpoints, as far as a connection drives them; device thread. Each
// can be told to stop whether it was started or not.
class IDeviceChannels {
public:
  virtual ~IDeviceChannels() = default;
  // After a connect: sets every entry of the list of data breakpoints again.
  virtual void ReapplyWatchpoints() {}
  // Before a disconnect, in this order.
  virtual void StopRTT() {}
  virtual void StopHSS() {}
  virtual void StopSWOTrace(U32 /*PortMask*/) {}
  virtual void StopSimpleInstTrace() {}
};

// Process clock in ms and sleeping; replaced in tests.
struct DEVICE_CLOCK {
  std::function<U64()> NowMs;
  std::function<void(U32 Milliseconds)> SleepMs;
  DEVICE_CLOCK();
};

class CDeviceContext {
public:
  CDeviceContext(DEVICE_EVENT_SINK& Sink, IProgramAccess& Program);

  // The probe library's functions; always callable, see CVNodeLibrary.
  VNODE_API Api;
  CVNodeLibrary Library;
  DEVICE_STATE State;
  DEVICE_SETTINGS Settings;
  CDeviceConfig Config;
  CProbeFacts Facts;
  CBreakpointList Breakpoints;
  DEVICE_CLOCK Clock;
  DEVICE_EVENT_SINK& Sink;
  IProgramAccess& Program;
  ISemihostHandler* pSemihost = nullptr;     // null: a request to be served is left as the halt that it is
  ISourceStepper* pSourceStepper = nullptr;  // null: a step ends at its hidden breakpoint
  IDeviceChannels* pChannels = nullptr;

  // Loads the library and takes over its functions; a failure is logged once and leaves the device unconnectable.
  int LoadLibrary(const QString& sFolder = QString());

  bool IsConnected() const { return State.Connection.bConnected; }
  bool IsConnectionLost() const { return State.Connection.bConnectionLost; }
  // Probe register numbers of the program counter and the stack pointer in the current mode.
  U32 PCIndex();
  U32 SPIndex();
  U32 AlignInst(U32 Addr);

  // Asks the library whether the target is halted: 1, 0, or -1 (not connected or connection failure, which is
  // followed up). Costs a probe call and leaves the time of the last poll alone.
  int QueryHalted();
  // A library call has told that the connection is gone. The first time marks the connection lost, cancels all jobs
  // and reports it. No-op when not connected.
  void OnInvalidHaltStatus();
  // Asks the library and follows a loss up; no-op when not connected.
  void TestConnectionLost();

  // Messages: state messages, failures of the probe, for the user, errors for the user.
  void LogDebugMsg(const QString& sText);
  void LogWarnMsg(const QString& sText);
  void LogInfoMsg(const QString& sText);
  void LogErrorMsg(const QString& sText);
  // Stores the latest failure text of a domain and logs it as a warning.
  void SetErrorMsg(DEVICE_ERR_MSGS Index, const QString& sText);
  QString ErrorMsg(DEVICE_ERR_MSGS Index) const;

private:
  mutable std::mutex ErrMsgMutex;
  std::array<QString, NUM_ERR_MSGS> aErrMsg;
};
