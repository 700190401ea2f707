#include "device/device_ops.h"

#include "device/device_job.h"

CDeviceOps::CDeviceOps(CDeviceContext& Ctx)
    : Ctx(Ctx),
      Info(Ctx),
      Capabilities(Ctx, Info),
      Configurator(Ctx, Info, Capabilities),
      Commands(Ctx),
      Target(Ctx),
      Breakpoints(Ctx),
      Registers(Ctx),
      Download(Ctx),
      Memory(Ctx, Download),
      Locations(Ctx, Memory, Registers),
      Control(Ctx, Capabilities, Breakpoints, Target),
      Halts(Ctx, Breakpoints, Target, Control),
      Stepper(Ctx, Control, Halts),
      Connection(Ctx, Info, Capabilities, Commands, Breakpoints, Target),
      Channels(Ctx, Commands, Capabilities) {
  Ctx.pChannels = &Channels;
}

void CDeviceOps::CheckHandleNotifications() {
  DEVICE_REQUESTS& Requests = Ctx.State.Requests;
  if (Requests.PendingConnectMode == NO_REQUEST && Requests.PendingResetMode == NO_REQUEST &&
      !Requests.bInitRegsPending)
    return;
  Requests.bHandling = true;
  const U64 ConnectMode = Requests.PendingConnectMode.exchange(NO_REQUEST);
  if (ConnectMode != NO_REQUEST) {
    Connection.FinishConnect(static_cast<CONNECT_MODES>(ConnectMode));
    const U32 Status = Ctx.IsConnected() ? JS_DONE : JS_FAILED;
    Ctx.Sink.PostJobEvent(JT_CONNECT, Status, ConnectMode, Ctx.State.Target.PC);
    // A target that was found halted before the session was ready has not been reported.
    const DEVICE_EXEC_FLAGS& Exec = Ctx.State.Exec;
    if (Status == JS_DONE && Exec.bSessionReady && Exec.bAccessible) {
      Ctx.Sink.PostJobEvent(JT_HALT, JS_DONE, HR_GENERAL, Ctx.State.Target.PC);
    }
  }
  const U64 ResetMode = Requests.PendingResetMode.exchange(NO_REQUEST);
  if (ResetMode != NO_REQUEST) {
    const int Result = Control.FinishReset(static_cast<RESET_MODES>(ResetMode));
    Ctx.Sink.PostJobEvent(JT_RESET, Result < 0 ? JS_FAILED : JS_DONE, ResetMode, Ctx.State.Target.PC);
  }
  if (Requests.bInitRegsPending.exchange(false)) {
    Control.InitRegsAfterDownload();
    Ctx.Sink.PostJobEvent(JT_HALT, JS_DONE, HR_STATE_CHANGED, Ctx.State.Target.PC);
  }
  Requests.bHandling = false;
}
