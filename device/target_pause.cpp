#include "device/target_pause.h"

CTargetPause::CTargetPause(CDeviceContext& Ctx, bool bWanted) : Ctx(Ctx) {
  if (!bWanted || !Ctx.IsConnected() || Ctx.State.Exec.bHalted || Ctx.QueryHalted() != 0) return;
  if (Ctx.Api.VNODEARM_Halt() == 0)
    bResume = true;
  else
    Ctx.TestConnectionLost();
}

CTargetPause::~CTargetPause() {
  if (bResume && Ctx.IsConnected() && !Ctx.IsConnectionLost()) Ctx.Api.VNODEARM_GoEx(0, 1);
}
