#include "peripherals/cpu_register_file.h"

#include <QFile>

#include "core/core_table.h"
#include "core/vcore.h"
#include "peripherals/cpu_register_reader.h"

namespace {

constexpr qint64 MAX_FILE_SIZE = 64 << 20;  // bytes; no description of a processor comes near

QString Key(const QString& sName) {
  return sName.trimmed().toUpper();
}

}  // namespace

int CCpuRegisterFile::Load(const QString& sPath) {
  Clear();
  QFile File(sPath);
  if (!File.open(QIODevice::ReadOnly)) {
    sError = File.errorString();
    return -1;
  }
  if (File.size() > MAX_FILE_SIZE) {
    sError = QStringLiteral("the file is too large");
    return -1;
  }
  return Parse(File.readAll());
}

int CCpuRegisterFile::Parse(const QByteArray& Text) {
  Clear();
  sError = ReadCpuRegisters(Text, aRegister);
  if (!sError.isEmpty()) return -1;
  for (int i = 0; i < aRegister.size(); ++i) {
    const CPU_REGISTER& Register = aRegister[i];
    for (const QString& sName : {Register.sName, Register.sAliasName}) {
      if (!sName.isEmpty() && !IndexByName.contains(Key(sName))) IndexByName.insert(Key(sName), i);
    }
    const bool bHasIndex = Register.VNodeRegIdx != INVALID_REG_INDEX && !Register.bCpuModeDependent;
    if (bHasIndex && !IndexByVNode.contains(Register.VNodeRegIdx)) IndexByVNode.insert(Register.VNodeRegIdx, i);
  }
  return 0;
}

void CCpuRegisterFile::Clear() {
  sError.clear();
  aRegister.clear();
  IndexByName.clear();
  IndexByVNode.clear();
}

QStringList CCpuRegisterFile::GetCoreRegNames() const {
  QStringList Names;
  for (const CPU_REGISTER& Register : aRegister) Names.append(Register.sName);
  return Names;
}

const CPU_REGISTER* CCpuRegisterFile::Find(const QString& sName) const {
  const auto Index = IndexByName.constFind(Key(sName));
  return Index != IndexByName.constEnd() ? &aRegister[*Index] : nullptr;
}

int CCpuRegisterFile::GetVNodeRegIdx(const QString& sName) const {
  const CPU_REGISTER* pRegister = Find(sName);
  if (pRegister == nullptr || pRegister->VNodeRegIdx == INVALID_REG_INDEX) return -1;
  if (!pRegister->bCpuModeDependent) return static_cast<int>(pRegister->VNodeRegIdx);
  const U32 Index = VCore::MapRegIndex(pRegister->VNodeRegIdx);
  return Index != INVALID_REG_INDEX ? static_cast<int>(Index) : -1;
}

QString CCpuRegisterFile::GetRegName(U32 VNodeRegIdx) const {
  const auto Index = IndexByVNode.constFind(VNodeRegIdx);
  return Index != IndexByVNode.constEnd() ? aRegister[*Index].sName : QString();
}

QString CCpuRegisterFile::GetSVDFileNameForCore(const QString& sConfigDir, U32 CoreId) {
  QString sCore;
  if (VCore::GetCoreName(VCore::GetFamily(CoreId), VCore::GetSubFamily(CoreId), sCore) != 0 || sCore.isEmpty()) {
    return QString();
  }
  for (const char* sEnding : {"F.svd", ".svd"}) {
    const QString sPath = sConfigDir + QStringLiteral("/CPU/") + sCore + QLatin1String(sEnding);
    if (QFile::exists(sPath)) return sPath;
  }
  return QString();
}
