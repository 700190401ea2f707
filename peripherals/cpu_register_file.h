#pragma once
// The processor's registers by name, from the core's register description file. Any thread once loaded; loading belongs
// to the main thread.

#include <QHash>
#include <QList>
#include <QString>

#include "base/types.h"

// One register of a processor register file.
struct CPU_REGISTER {
  QString sName;
  QString sAliasName;  // second name, or empty ("R13" for "SP")
  QString sGroup;      // group of the file
  QString sDescription;
  U32 VNodeRegIdx = 0xFFFFFFFFu;   // the probe's index, INVALID_REG_INDEX for a coprocessor register
  QString sId;                     // coprocessor register: "cp,CRn,op1,CRm,op2", else empty
  U32 Size = 32;                   // bits
  bool bCpuModeDependent = false;  // banked: VNodeRegIdx is a logic number that MapRegIndex takes to the current mode
};

class CCpuRegisterFile {
public:
  // Replaces the contents; 0, or -1 with the reason in Error() and nothing loaded.
  int Load(const QString& sPath);
  // As Load from the text of a file.
  int Parse(const QByteArray& Text);
  void Clear();
  const QString& Error() const { return sError; }

  // All registers in file order.
  const QList<CPU_REGISTER>& Registers() const { return aRegister; }
  QStringList GetCoreRegNames() const;
  // By name or alias, without regard to case; null if there is none. The pointer lives until the next load.
  const CPU_REGISTER* Find(const QString& sName) const;
  // The probe's index of a register, in the processor's current mode where it is banked; -1 for an unknown or a
  // coprocessor register.
  int GetVNodeRegIdx(const QString& sName) const;
  // The name that belongs to a probe index; empty if there is none.
  QString GetRegName(U32 VNodeRegIdx) const;

  // Path of the core's file in the configuration directory: sConfigDir + "/CPU/" + core name + "F.svd", else ".svd";
  // empty if neither exists or the core is unknown.
  static QString GetSVDFileNameForCore(const QString& sConfigDir, U32 CoreId);

private:
  QString sError;
  QList<CPU_REGISTER> aRegister;
  QHash<QString, int> IndexByName;
  QHash<U32, int> IndexByVNode;
};
