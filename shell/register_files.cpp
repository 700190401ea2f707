#include "shell/register_files.h"

#include "device/device.h"
#include "device/device_context.h"
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

int CRegisterFiles::FindRegister(const QString& sName) const {
  bool bNumber = false;
  const int Number = sName.toInt(&bNumber, 0);
  return bNumber ? Number : m_CpuRegisters.GetVNodeRegIdx(sName);
}
