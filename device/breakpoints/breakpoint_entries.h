#pragma once

#include <QHash>

#include "base/addr_range.h"
#include "device/device_types.h"

class CDevice;

// The device's list of breakpoints as it will be once what has been scheduled is done: a command that follows another
// at once finds what the first has asked for. Main thread.
class CBreakpointEntries {
public:
  explicit CBreakpointEntries(CDevice& Device) : m_Device(Device) {}

  // False when the address has no breakpoint.
  bool Get(U32 Addr, BP& Entry) const;
  QList<BP> All() const;
  bool IsEmpty() const { return All().isEmpty(); }

  // Schedule the change for all addresses.
  void Set(const QAddrList& Addrs, BP_STATES State, BP_TYPES Type);
  void Clear(const QAddrList& Addrs);
  void ClearAll();
  // Somebody else has scheduled that all go.
  void NoteCleared();

  // What was asked for and is not so.
  struct FAILURE {
    U32 Addr = 0;
    BP_STATES State = BP_STATE_ENABLED;  // as it was asked for
    BP_TYPES Type = BP_TYPE_ANY;
    bool bListed = false;  // the address has an entry nevertheless
  };
  // Compares with the device's list once nothing is under way; an empty list before.
  QList<FAILURE> Settle();
  // A change of the address has been scheduled and is not settled.
  bool IsWanted(U32 Addr) const { return m_Wanted.contains(Addr); }
  // Nothing has been scheduled since.
  bool IsSettled() const { return m_Wanted.isEmpty() && !m_bAllCleared; }

private:
  bool IsUnderWay() const;

  CDevice& m_Device;
  QHash<U32, BP> m_Wanted;     // scheduled and not settled; state BP_STATE_CLEARED: gone
  bool m_bAllCleared = false;  // ahead of what m_Wanted holds
};
