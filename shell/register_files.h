#pragma once

#include <QStringList>

#include "peripherals/cpu_register_file.h"

// The register description files in use: which of them describes the processor, and registers by name. One instance,
// main thread.
class CRegisterFiles {
public:
  static CRegisterFiles& Get();

  // Takes a description file in use. False when it does not describe the processor's registers (it may describe
  // peripherals).
  bool Add(const QString& sPath);
  void Clear();

  bool HasCpuRegisters() const { return !m_CpuRegisters.Registers().isEmpty(); }
  const CCpuRegisterFile& CpuRegisters() const { return m_CpuRegisters; }
  // Path of the description of the present device's core; empty if there is none.
  static QString DefaultFile();
  // The descriptions of a device's core and of its peripherals, as projects name them: below "$(InstallDir)". Those
  // that exist.
  static QStringList FilesOfDevice(const QString& sDevice);
  // Probe register number by name or number, -1 if there is none.
  int FindRegister(const QString& sName) const;

private:
  CCpuRegisterFile m_CpuRegisters;
};
