#include "shell/vnode_commands.h"

#include "device/device_config.h"
#include "device/probe_api/records.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/command_text.h"
#include "shell/settings/named_constants.h"

namespace {

QString HostInterfaceCommand(const CDeviceConfig& Config) {
  const I32 Mode = Config.Value(DCP_CONNECT_MODE);
  QString sName;
  QString sIdent;
  if (Mode == HOST_IF_USB) {
    sName = QStringLiteral("USB");
    if (Config.Value(DCP_USE_SERIAL_NO) != 0) {
      sIdent = QString::number(static_cast<U32>(Config.Value(DCP_USB_SERIAL_NO)));
    }
  } else if (Mode == HOST_IF_IP) {
    sName = QStringLiteral("IP");
    sIdent = QString::fromUtf8(Config.Text(DCP_HOST_NAME));
  }
  return MakeCommandText(ACTION_SET_HOST_INTERFACE, {sName, sIdent});
}

QString TargetInterfaceCommand(const CDeviceConfig& Config) {
  QString sName;
  if (Config.Value(DCP_TARGET_IF) == VNODE_TIF_JTAG) sName = QStringLiteral("JTAG");
  if (Config.Value(DCP_TARGET_IF) == VNODE_TIF_SWD) sName = QStringLiteral("SWD");
  return MakeCommandText(ACTION_SET_TARGET_INTERFACE, {sName});
}

}  // namespace

QStringList VNodeCommands(const CDeviceConfig& Config) {
  QStringList Commands = {
      MakeCommandText(ACTION_SET_DEVICE, {QString::fromUtf8(Config.Text(DCP_DEVICE_NAME))}),
      HostInterfaceCommand(Config),
      TargetInterfaceCommand(Config),
      MakeCommandText(ACTION_SET_TIF_SPEED, {FrequencyText(static_cast<U32>(Config.Value(DCP_SPEED)))}),
  };
  if (Config.Value(DCP_TARGET_IF) == VNODE_TIF_JTAG && Config.Value(DCP_MULTIPLE_TARGETS) != 0) {
    Commands << MakeCommandText(ACTION_SET_JTAG_CONFIG,
                                {QString::number(Config.Value(DCP_DR_PRE)), QString::number(Config.Value(DCP_IR_PRE))});
  }
  if (Config.Value(DCP_ENDIAN) == ENDIAN_BIG)
    Commands << MakeCommandText(ACTION_TARGET_SET_ENDIANESS, {QStringLiteral("1")});
  return Commands;
}
