#pragma once

#include <map>
#include <vector>

#include "probe/gdb/register_map.h"
#include "probe/gdb/server.h"

// Registers of a halted core, by the probe's numbers. What was read is kept until the core may have changed it.
class CGdbRegisters {
public:
  CGdbRegisters(CGdbServer& Server, bool bCortexM) : m_Server(Server), m_bCortexM(bCortexM) {}

  // Byte order of the values on the wire: as configured, unless only the other one makes sense.
  void FindByteOrder(bool bConfiguredBig);
  bool IsBigEndian() const { return m_bBigEndian; }
  // The core runs, was reset, or a command may have changed its registers.
  void Invalidate() { m_Known.clear(); }

  // False when the target does not have the register, or it cannot be accessed now.
  bool Read(U32 Index, U32* pValue);
  bool Write(U32 Index, U32 Value);
  // A register by its name in the server's description.
  bool ReadNamed(const std::string& sName, U32* pValue);
  bool WriteNamed(const std::string& sName, U32 Value);
  // R0 to R15 of the present mode, and the program status register.
  bool ReadCore(U32 Reg, U32* pValue);
  bool ReadStatus(U32* pValue);
  // Of a core of the Cortex-M group.
  void EnterThumbState();
  bool ReadPC(U32* pValue) { return ReadCore(15, pValue); }

private:
  using RAW = std::vector<U8>;  // as on the wire; empty: not available

  REGISTER_PLACE Find(U32 Index);
  const RAW& Fetch(const GDB_REGISTER& Register);
  void FetchAll();
  U64 ValueOf(const RAW& Raw) const;
  bool ReadPlace(const REGISTER_PLACE& Place, U32* pValue);
  bool WritePlace(const REGISTER_PLACE& Place, U32 Value);
  bool WriteRaw(const GDB_REGISTER& Register, const RAW& Raw);
  bool ReadDerived(U32 Index, U32* pValue);
  bool WriteDerived(U32 Index, U32 Value);

  CGdbServer& m_Server;
  bool m_bCortexM;
  bool m_bBigEndian = false;
  std::map<U32, RAW> m_Known;  // by number
};
