#include "device/probe_info.h"

namespace {

constexpr int FIRMWARE_BUFFER_BYTES = 256;
constexpr U16 CORE_NAME_BUFFER_BYTES = 33;
constexpr int MAX_SUPPORTED_CORES = 1024;
constexpr U32 DEFAULT_WEB_PORT = 19080;

// Version fields of the library: major * 10000 + minor * 100 + revision.
constexpr U32 MAJOR_UNIT = 10000;
constexpr U32 MINOR_UNIT = 100;

bool IsSupportedFamily(U32 Family) {
  return Family == 1 || Family == 3 || (Family >= 6 && Family <= 12) || Family == 14 || Family == 15;
}

// These versions report port 0 although they serve the web control on the default port.
bool HasUnreportedWebPort(U32 Version) {
  return Version < 62006 || Version == 62100 || Version == 62101;
}

VNODEARM_DEVICE_INFO EmptyInfo() {
  VNODEARM_DEVICE_INFO Record = {};
  Record.SizeOfStruct = sizeof(Record);
  return Record;
}

}  // namespace

QString LibraryVersionText(U32 Version) {
  const U32 Minor = Version / MINOR_UNIT % MINOR_UNIT;
  const U32 Revision = Version % MINOR_UNIT;
  QString sText = QString::asprintf("%u.%s%u", Version / MAJOR_UNIT, Minor < 10 ? "0" : "", Minor);
  if (Revision != 0) sText += QChar('a' + Revision - 1);
  return sText;
}

QString CoreNameText(const VNODE_API& Api, U32 Core) {
  char acName[CORE_NAME_BUFFER_BYTES] = {};
  Api.VNODEARM_Core2CoreName(Core, acName, sizeof(acName));
  acName[sizeof(acName) - 1] = '\0';
  return QString::fromUtf8(acName);
}

void CProbeInfo::UpdateAll() {
  UpdateVNodeLibVersion();
  UpdateVNodeLibPath();
  UpdateVNodeNumDevices();
  UpdateSupportedCoresList();
  UpdateVNodeFuncPtrs();
}

void CProbeInfo::UpdateVNodeLibPath() {
  Ctx.Facts.Change([this](PROBE_FACTS& Facts) { Facts.sLibraryPath = Ctx.Library.Path(); });
}

void CProbeInfo::UpdateVNodeLibVersion() {
  const U32 Version = Ctx.Api.VNODEARM_GetDLLVersion();
  Ctx.Facts.Change([Version](PROBE_FACTS& Facts) { Facts.LibraryVersion = Version; });
}

void CProbeInfo::UpdateVNodeFirmwareStr() {
  char acText[FIRMWARE_BUFFER_BYTES] = {};
  Ctx.Api.VNODEARM_GetFirmwareString(acText, sizeof(acText));
  acText[sizeof(acText) - 1] = '\0';
  QString sText = QString::fromUtf8(acText);
  const qsizetype Compiled = sText.indexOf(QLatin1String("compiled"));
  if (Compiled >= 0) {
    sText.truncate(Compiled);
    while (sText.endsWith(QLatin1Char(' '))) sText.chop(1);
  }
  Ctx.Facts.Change([&sText](PROBE_FACTS& Facts) { Facts.sFirmware = sText; });
}

void CProbeInfo::UpdateVNodeSerialNo() {
  const U32 SerialNo = Ctx.Api.VNODEARM_GetSN();
  Ctx.Facts.Change([SerialNo](PROBE_FACTS& Facts) { Facts.SerialNo = SerialNo; });
}

void CProbeInfo::UpdateVNodeNumDevices() {
  const int Count = std::max(0, Ctx.Api.VNODEARM_DEVICE_GetInfo(-1, nullptr));
  Ctx.Facts.Change([Count](PROBE_FACTS& Facts) { Facts.NumDevices = static_cast<U32>(Count); });
}

void CProbeInfo::UpdateSupportedCoresList() {
  QList<U32> Cores;
  const U32 NumDevices = Ctx.Facts.Get().NumDevices;
  for (U32 i = 0; i < NumDevices; ++i) {
    VNODEARM_DEVICE_INFO Record = EmptyInfo();
    if (Ctx.Api.VNODEARM_DEVICE_GetInfo(static_cast<int>(i), &Record) < 0) continue;
    if (!IsSupportedFamily(Record.Core >> 24) || Cores.contains(Record.Core)) continue;
    if (Cores.size() >= MAX_SUPPORTED_CORES) {
      Ctx.LogErrorMsg(QStringLiteral("Internal error. supported cores list has insufficent size."));
      break;
    }
    Cores.append(Record.Core);
  }
  Ctx.Facts.Change([&Cores](PROBE_FACTS& Facts) { Facts.SupportedCores = Cores; });
}

void CProbeInfo::UpdateVNodeFuncPtrs() {
  const auto Get = [this](VNODE_OPTIONAL_FUNCS No) { return Ctx.Api.VNODE_GetpFunc(No); };
  pfHasBMA = reinterpret_cast<VNODE_GET_INT_FUNC>(Get(VNODE_FUNC_HAS_BMA));
  pfGetEndian = reinterpret_cast<VNODE_GET_INT_FUNC>(Get(VNODE_FUNC_GET_ENDIANNESS));
  pfWebInfo = reinterpret_cast<VNODE_WEB_INFO_FUNC>(Get(VNODE_FUNC_WEB_PORT));
}

void CProbeInfo::UpdateVNodeWebserverURL() {
  U32 Port = DEFAULT_WEB_PORT;
  if (pfWebInfo != nullptr) {
    VNODE_WEB_INFO Record = {};
    pfWebInfo(&Record);
    Port = Record.Port;
    if (Port == 0 && HasUnreportedWebPort(Ctx.Facts.Get().LibraryVersion)) Port = DEFAULT_WEB_PORT;
  }
  const QString sURL = Port != 0 ? QStringLiteral("http://127.0.0.1:%1").arg(Port) : QString();
  Ctx.Facts.Change([&sURL](PROBE_FACTS& Facts) { Facts.sWebURL = sURL; });
}

int CProbeInfo::UpdateDeviceInfo() {
  // In one change, so that nobody sees a device without core in between.
  const auto Forget = [this] {
    Ctx.Facts.Change([](PROBE_FACTS& Facts) {
      Facts.sCoreName.clear();
      Facts.sCoreVariant.clear();
      Facts.Core = 0;
      Facts.CoreFamily = 0;
      Facts.RAMAddr = INVALID_ADDR;
      Facts.RAMSize = 0;
    });
    return -1;
  };
  int Index = Ctx.Config.Value(DCP_DEVICE_INDEX);
  if (Index < 0) {
    const QByteArray sName = Ctx.Config.Text(DCP_DEVICE_NAME);
    Index = sName.isEmpty() ? -1 : Ctx.Api.VNODEARM_DEVICE_GetIndex(sName.constData());
    if (Index < 1) return Forget();
    Ctx.Config.SetValue(DCP_DEVICE_INDEX, Index);
  }
  VNODEARM_DEVICE_INFO Record = EmptyInfo();
  if (Ctx.Api.VNODEARM_DEVICE_GetInfo(Index, &Record) < 0) return Forget();
  const QString sCore = CoreNameText(Ctx.Api, Record.Core);
  const QString sVariant = Ctx.Program.CoreVariant(Record.Core);
  Ctx.Facts.Change([&](PROBE_FACTS& Facts) {
    Facts.sDeviceName = Record.sName != nullptr ? QString::fromUtf8(Record.sName) : QStringLiteral("Unspecified");
    Facts.Core = Record.Core;
    Facts.CoreFamily = Record.Core >> 24;
    Facts.RAMAddr = Record.RAMSize != 0 ? Record.RAMAddr : INVALID_ADDR;
    Facts.RAMSize = Record.RAMSize;
    Facts.sCoreName = sCore;
    Facts.sCoreVariant = sVariant;
  });
  Ctx.Program.SetCpuInfo(Record.Core, Ctx.State.DataEndian, Ctx.State.InstEndian);
  return 0;
}

int CProbeInfo::GetDeviceInfo(const char* sDevice, U32* pCore) const {
  if (sDevice == nullptr || pCore == nullptr) return -1;
  const int Index = Ctx.Api.VNODEARM_DEVICE_GetIndex(sDevice);
  VNODEARM_DEVICE_INFO Record = EmptyInfo();
  if (Index < 0 || Ctx.Api.VNODEARM_DEVICE_GetInfo(Index, &Record) < 0) return -1;
  *pCore = Record.Core;
  return 0;
}
