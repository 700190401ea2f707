#include "shell/register_files.h"

#include <QFileInfo>

#include "device/device.h"
#include "device/device_context.h"
#include "device/device_ops.h"
#include "shell/directories.h"

CRegisterFiles& CRegisterFiles::Get() {
  static CRegisterFiles Instance;
  return Instance;
}

bool CRegisterFiles::Add(const QString& sPath) {
  CCpuRegisterFile File;
  if (File.Load(sPath) < 0 || File.Registers().isEmpty()) return false;
  m_CpuRegisters = std::move(File);
  return true;
}

void CRegisterFiles::Clear() {
  m_CpuRegisters.Clear();
}

QString CRegisterFiles::DefaultFile() {
  return CCpuRegisterFile::GetSVDFileNameForCore(ConfigDir(), CDevice::Get().Context().Facts.Get().Core);
}

QStringList CRegisterFiles::FilesOfDevice(const QString& sDevice) {
  QStringList Files;
  U32 Core = 0;
  if (CDevice::Get().Ops().Info.GetDeviceInfo(sDevice.toUtf8().constData(), &Core) == 0) {
    Files << CCpuRegisterFile::GetSVDFileNameForCore(ConfigDir(), Core);
  }
  for (const char* const sSuffix : {".svd", ".xml"}) {
    const QString sFile = PeripheralsDir() + QLatin1Char('/') + sDevice + QLatin1String(sSuffix);
    if (!QFileInfo(sFile).isFile()) continue;
    Files << sFile;
    break;
  }
  Files.removeAll(QString());
  for (QString& sFile : Files) {
    if (sFile.startsWith(ApplicationDir() + QLatin1Char('/'))) {
      sFile.replace(0, ApplicationDir().size(), QStringLiteral("$(InstallDir)"));
    }
  }
  return Files;
}

int CRegisterFiles::FindRegister(const QString& sName) const {
  bool bNumber = false;
  const int Number = sName.toInt(&bNumber, 0);
  return bNumber ? Number : m_CpuRegisters.GetVNodeRegIdx(sName);
}
