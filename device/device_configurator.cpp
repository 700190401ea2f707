#include "device/device_configurator.h"

namespace {

bool IsSpeed(DEV_CONFIG_PARAMS Param) {
  return Param == DCP_SPEED || Param == DCP_USE_MAX_SPEED || Param == DCP_USE_ADAPTIVE;
}

}  // namespace

int CDeviceConfigurator::Configure(const char* sXmlConfigStr) {
  QList<CONFIG_ENTRY> Entries;
  QString sError;
  if (sXmlConfigStr == nullptr || !ParseConfigXML(sXmlConfigStr, Entries, sError)) {
    Ctx.LogWarnMsg(QStringLiteral("Invalid device configuration: %1").arg(sError));
    return -1;
  }
  // The speed has three values: all are there before the probe gets it, and before anybody hears of it.
  const U32 OldSpeed = Ctx.Config.SpeedForProbe();
  for (const CONFIG_ENTRY& Entry : Entries) {
    if (IsSpeed(Entry.Param)) Ctx.Config.SetValue(Entry.Param, Entry.Value);
  }
  if (Ctx.Config.SpeedForProbe() != OldSpeed) ApplySpeed();
  int Result = 0;
  for (const CONFIG_ENTRY& Entry : Entries) {
    if (Entry.Param == DCP_DEVICE_NAME) {
      SetConfigParam(Entry.Param, Entry.sText.constData());
    } else if (Entry.Param > NUM_CONFIG_VALUES) {
      Result |= SetConfigParam(Entry.Param, Entry.sText.constData());
    } else if (Entry.Param == DCP_ENDIAN) {
      Result |= SetConfigParam(Entry.Param, Entry.Value);
    } else {
      Store(Entry.Param, Entry.Value);
    }
  }
  return Result;
}

void CDeviceConfigurator::Store(DEV_CONFIG_PARAMS Param, int Value) {
  Ctx.Config.SetValue(Param, Value);
  Ctx.Sink.RaiseConfigParamChanged(Param, Value);
}

void CDeviceConfigurator::ApplySpeed() {
  if (!Ctx.IsConnected()) return;
  Ctx.Api.VNODEARM_SetSpeed(Ctx.Config.SpeedForProbe());
  Capabilities.UpdateTIFSpeed();
}

void CDeviceConfigurator::SetSpeedValue(DEV_CONFIG_PARAMS Param, int Value) {
  CDeviceConfig& Config = Ctx.Config;
  if (Param == DCP_SPEED) {
    Config.SetValue(DCP_USE_MAX_SPEED, static_cast<U32>(Value) == VNODE_SPEED_AUTO);
    Config.SetValue(DCP_USE_ADAPTIVE, static_cast<U32>(Value) == VNODE_SPEED_ADAPTIVE);
  } else if (Value > 0) {
    const bool bMax = Param == DCP_USE_MAX_SPEED;
    Config.SetValue(DCP_SPEED, bMax ? VNODE_SPEED_AUTO : VNODE_SPEED_ADAPTIVE);
    Config.SetValue(bMax ? DCP_USE_ADAPTIVE : DCP_USE_MAX_SPEED, 0);
  }
  Config.SetValue(Param, Value);
  ApplySpeed();
  Ctx.Sink.RaiseConfigParamChanged(Param, Value);
}

int CDeviceConfigurator::SetConfigParam(DEV_CONFIG_PARAMS Param, int Value) {
  if (Param > NUM_CONFIG_VALUES && Param <= DCP_LAST) return SetConfigParam(Param, nullptr);
  if (Param < 0 || Param >= NUM_CONFIG_VALUES) {
    Ctx.LogWarnMsg(QString::asprintf("Unknown configuration parameter with ID %d", static_cast<int>(Param)));
    return -1;
  }
  if (Param == DCP_DEVICE_INDEX) {
    StoreDevice(Value);
  } else if (Param == DCP_ENDIAN) {
    return SetEndian(Value);
  } else if (IsSpeed(Param)) {
    SetSpeedValue(Param, Value);
  } else {
    Store(Param, Value);
  }
  return 0;
}

int CDeviceConfigurator::SetEndian(int Value) {
  Ctx.Config.SetValue(DCP_ENDIAN, Value);
  const int Result = Capabilities.ApplyDataEndianess(static_cast<ENDIAN>(Value));
  Ctx.Sink.RaiseConfigParamChanged(DCP_ENDIAN, Value);
  return Result;
}

int CDeviceConfigurator::SetConfigParam(DEV_CONFIG_PARAMS Param, const char* sText) {
  if (Param < 0 || Param > DCP_LAST) {
    Ctx.LogWarnMsg(QString::asprintf("Unknown configuration parameter with ID %d", static_cast<int>(Param)));
    return -1;
  }
  if (sText == nullptr) {
    Ctx.LogWarnMsg(QStringLiteral("Invalid configuration parameter string value"));
    return -1;
  }
  if (!Ctx.Config.SetText(Param, sText)) {
    Ctx.LogWarnMsg(QStringLiteral("Invalid configuration parameter"));
    return -1;
  }
  Ctx.Sink.RaiseConfigParamChanged(Param, 0);
  if (Param == DCP_DEVICE_NAME) ResolveDevice();
  if (Param == DCP_LOG_FILE) Ctx.Api.VNODEARM_SetLogFile(Ctx.Config.Text(Param).constData());
  return 0;
}

void CDeviceConfigurator::ResolveDevice() {
  const QByteArray sName = Ctx.Config.Text(DCP_DEVICE_NAME);
  const int Index = sName.isEmpty() ? -1 : Ctx.Api.VNODEARM_DEVICE_GetIndex(sName.constData());
  StoreDevice(std::max(Index, -1));
}

// Who hears of a device finds what is known of it.
void CDeviceConfigurator::StoreDevice(int Index) {
  Ctx.Config.SetValue(DCP_DEVICE_INDEX, Index);
  Info.UpdateDeviceInfo();
  Info.UpdateVNodeFuncPtrs();
  Ctx.Sink.RaiseConfigParamChanged(DCP_DEVICE_INDEX, Index);
}
