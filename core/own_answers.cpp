// The callbacks that the core model answers itself when nobody else does.

#include <cstring>

#include "core/core_state.h"
#include "core/core_table.h"

namespace VCore {

namespace {

int OwnLabel(U32 Addr, char* sText, U32 TextSize, U32& Offset) {
  QString sName;
  if (TextSize == 0 || GetLabel(Addr, sName, Offset) == 0) return 0;
  const QByteArray Utf8 = sName.toUtf8();
  const size_t Length = std::min<size_t>(static_cast<size_t>(Utf8.size()), TextSize - 1);
  std::memcpy(sText, Utf8.constData(), Length);
  sText[Length] = 0;
  return 1;
}

// Literals come from what is known without the target.
int OwnData(U32 Addr, U32 NumBytes, void* pData) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const bool bRead = Core.Program.Read(Addr, NumBytes, pData) || Core.Image.Read(Addr, NumBytes, pData);
  return bRead ? static_cast<int>(NumBytes) : -1;
}

int OwnMappingSymbol(U32 Addr, QString& sName, U32& Start, U32& End) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const int Index = Core.Program.RegionAt(Addr);
  if (Index < 0) return -1;
  const VCORE_REGION& Region = Core.Program.Regions()[static_cast<size_t>(Index)];
  sName = Region.sName;
  Start = static_cast<U32>(Region.Addr);
  End = Core.Program.RegionEnd(Index);
  return 0;
}

int OwnRegs(VCORE_REGS& Regs) {
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr || !Core.pAPI->pfReadProbeRegs) return -1;
  const U32 Index = MapRegIndex(VCORE_REG_PSR);
  U32 Value = 0;
  U8 Status = 1;
  if (Core.pAPI->pfReadProbeRegs(&Index, &Value, &Status, 1) < 0 || Status != 0) return -1;
  Regs.aValue[VCORE_REG_PSR] = Value;
  Regs.aStatus[VCORE_REG_PSR] = 0;
  return 0;
}

}  // namespace

void FillOwnAnswers(VCORE_API& API) {
  if (!API.pfGetLabel) API.pfGetLabel = OwnLabel;
  if (!API.pfReadData) API.pfReadData = OwnData;
  if (!API.pfGetMappingSymbol) API.pfGetMappingSymbol = OwnMappingSymbol;
  if (!API.pfGetRegs) API.pfGetRegs = OwnRegs;
  if (!API.pfGetMemData) API.pfGetMemData = GetMemData;
}

int GetLabel(U32 Addr, QString& sText, U32& Offset) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return Core.Program.FindLabel(Addr, Core.Info.InstAlign, sText, Offset) ? 1 : 0;
}

}  // namespace VCore
