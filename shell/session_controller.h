#pragma once

#include <QObject>
#include <QTimer>

#include "base/types.h"
#include "device/device_event_listener.h"

// What the session shows and asks of the window around it.
class ISessionView {
public:
  virtual ~ISessionView() = default;
  // The state has changed: enable rules, halt and continue buttons, title.
  virtual void OnSessionStateChanged() = 0;
  // While it is on, the halt and continue buttons follow the target by themselves.
  virtual void WatchTarget(bool bOn) = 0;
  // Brings the code at the PC into view.
  virtual void ShowPC(U32 PC) = 0;
  // The contents of memory may have changed altogether.
  virtual void RefreshWindows() = 0;
  virtual void FocusSourceWindow() = 0;
  // False when the user does not want to go on with sources that differ from the program.
  virtual bool ConfirmModifiedSources() = 0;
  // False when the user does not want to start with these errors in the project.
  virtual bool ConfirmProjectErrors(const QStringList& Errors) = 0;
  virtual bool IsClosing() const = 0;
  // Whether a window shows what instruction trace tells.
  virtual bool NeedsTrace() const = 0;
  // Brings the console to the front.
  virtual void RaiseConsole() = 0;
};

// What a download is for.
enum DOWNLOAD_KINDS : int {
  DOWNLOAD_PROGRAM = 0,   // the program of a session
  DOWNLOAD_FILE = 1,      // File.Load
  DOWNLOAD_INTERNAL = 2,  // Exec.Download
};

// The script's error as the console shows it: text, line, statement.
void PrintProjectError();

// Turns user commands into device jobs, and the events of those jobs into the next step of the session: connect, reset,
// download, run to the start symbol. At each step the project may replace the operation or run a hook. Main thread.
class CSessionController : public QObject, public CDeviceEventListener {
  Q_OBJECT

public:
  explicit CSessionController(ISessionView& View);

  // --- Steps, called by the commands
  void Start();  // Debug.Start
  void ConnectDevice(CONNECT_MODES Mode);
  void DisconnectDevice();
  void ResetDevice(RESET_MODES Mode);
  void ResumeDevice();
  // 0 when the run was started, -1 otherwise.
  int RunToBreakSymbol();
  // Addr: base address of a binary file, -1 for the program's own.
  void DownloadFile(const QString& sFile, DOWNLOAD_KINDS Kind, I64 Addr);
  // Schedules the writes of a file's data, and the end of the download. Returns 0, or -1 when there is nothing to
  // write.
  int WriteFileToTarget(const QString& sFile, I64 Addr);
  void SetDownloadKind(DOWNLOAD_KINDS Kind) { m_DownloadKind = Kind; }
  // A halt whose hook has yet to run, or a box that has yet to come up.
  bool IsBusy() const;
  // Runs a hook of the project, if it has it; shows the console when that fails. See VScript::ExecFunction.
  int ExecScriptFunc(int FuncID);
  // Finds the address of VAR_BREAK_AT_THIS_SYMBOL in the present program and tells the device. False: no such symbol.
  bool EvalBreakSymbol();
  // Base address that was chosen for a binary program file.
  void SetLoadAddress(U32 Addr) { m_LoadAddress = Addr; }
  U32 GetLoadAddress() const { return m_LoadAddress; }
  // "CPU halted" or "CPU running...", or without connection "Ready", in the status bar.
  void ShowRunState();
  void SetLoadingProject(bool bLoading) { m_bLoadingProject = bLoading; }

  // --- Device events
  void OnDeviceConnectDone(CONNECT_MODES Mode) override;
  void OnDeviceConnectFailed(CONNECT_MODES Mode) override;
  // The user went back from the start of a session.
  void OnDeviceConnectCanceled(CONNECT_MODES Mode);
  void OnDeviceDisconnectDone() override;
  void OnDeviceAboutToDisconnect() override;
  void OnDeviceConnectionLost() override;
  void OnDeviceResumeDone(RESUME_MODES Mode) override;
  void OnDeviceResetDone(U32 PC, RESET_MODES Mode) override;
  void OnDeviceResetFailed(U32 PC, RESET_MODES Mode) override;
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override;
  void OnDeviceStepped(U32 PC) override;
  void OnDeviceRunToSymbolDone(U32 Addr) override;
  void OnDeviceRunToSymbolFailed(U32 Addr) override;
  void OnDeviceEndDownloadDone(const char* sFileName) override;
  void OnDeviceEndDownloadFailed(const char* sFileName, int Error) override;
  void OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS Flags) override;
  void OnDeviceConfigParamChanged(int Param, int Value) override;
  void OnDeviceStartProgress(int Min, int Max) override;
  void OnDeviceEndProgress() override;
  void OnDeviceSetProgressValue(int Value) override;
  void OnDeviceSetProgressMsg(const char* sText) override;
  void OnDeviceSetStatusMsg(const char* sText) override;

Q_SIGNALS:
  // The selected device's core has changed.
  void DeviceChanged();

private Q_SLOTS:
  void OnTargetHaltedAndTOElapsed();
  void OnMessageBoxTimerTimeout();

private:
  void ShowTargetState();
  void OnDownloadFailed(int Error);
  void ShowDownloadError(int Error);
  void EndWritingStatus();
  void ContinueAfterDownload();
  void FinishDownload();
  void StartProgram();
  void UpdateConnectionInfo();
  // A bar that pulses for as long as the target runs; that of a transfer meanwhile takes its place for a time.
  void StartPulse();
  void EndPulse();

  ISessionView& m_View;
  DOWNLOAD_KINDS m_DownloadKind = DOWNLOAD_PROGRAM;
  U32 m_LoadAddress = 0;
  bool m_bLoadingProject = false;
  bool m_bBeforeDownload = false;  // the next halt is that of a reset ahead of a download, which is not shown
  bool m_bPulsing = false;
  int m_DeviceIndex = -1;
  U32 m_CoreId = 0;
  QTimer m_HaltedTimer;
  QTimer m_MessageBoxTimer;
};
