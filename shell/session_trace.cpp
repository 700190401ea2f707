#include "shell/session_trace.h"

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/inst_trace_channel.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

bool IsStreamWanted() {
  const U32 Source = GetVarValue(VAR_TRACE_SOURCE);
  return Source == TRACE_SOURCE_ETM || Source == TRACE_SOURCE_ETB;
}

}  // namespace

void UpdateTrace(bool bNeedsTrace) {
  const bool bOn = bNeedsTrace && IsStreamWanted();
  if (bOn == CDevice::Get().Context().State.Exec.bTraceEnabled) return;
  bOn ? CDevice::Get().ScheduleEnableInstTrace() : CDevice::Get().ScheduleDisableInstTrace();
}

void StartTrace() {
  if (CDevice::Get().Context().State.Exec.bTraceEnabled) CDevice::Get().ScheduleStartInstTrace();
}

void InitTraceCache() {
  if (!CDevice::Get().Context().State.Exec.bTraceEnabled || GetVarValue(VAR_TRACE_INIT_ON_ATTACH) == 0) return;
  for (const CMemBlock& Block : VCore::GetImage()) ReadIntoTraceCache(Block.Addr, static_cast<U32>(Block.Data.size()));
}

void ReadIntoTraceCache(U32 Addr, U32 NumBytes) {
  const QByteArray sCommand = QString::asprintf("ReadIntoTraceCache 0x%X 0x%X", Addr, NumBytes).toLatin1();
  CDevice::Get().ScheduleExecVNodeCmd(sCommand.constData());
}
