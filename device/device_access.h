#pragma once

#include <QString>

#include "base/elf_sym.h"
#include "device/device_view.h"

// What the data provider needs of the device; CDevice is the real one. Main thread.
class CDeviceAccess : public CDeviceView {
public:
  // File one read job each; 0, or -1 when it did not go in.
  virtual int ScheduleReadMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags) = 0;
  virtual int ScheduleReadReg(U32 VNodeRegIdx) = 0;
  virtual int ScheduleReadRegs(U32 Cnt, const U32* paIndex) = 0;
  virtual int ScheduleReadCPReg(const char* sReg) = 0;
  virtual int ScheduleReadLoc(const ELF_SYM_LOC& Loc, U32 NumBytes) = 0;
  // Takes back jobs that have not begun; see CDevice.
  virtual void CancelJobs(U32 Type, U32 Queue) = 0;
  // Delivers at most MaxEvents events; returns the number.
  virtual int ProcessEvents(int MaxEvents) = 0;
  // Reads a location on the calling thread. The job that runs is waited for, but no longer than 150 ms, so that a long
  // transfer does not freeze a window. 0, -1 when the access failed, or BUSY when the device was busy all that time.
  static constexpr int BUSY = -2;
  virtual int ReadLocNow(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) = 0;
  // Register in DWARF numbering to the probe's; INVALID_REG_INDEX if there is none.
  virtual U32 MapRegIndex(U32 LogicReg) = 0;
  // Size of the probe's register number space; 0 while no core is known.
  virtual U32 NumRegs() = 0;
  // Flags: MSG_INFO_FLAGS. Any thread.
  virtual void LogText(const QString& sText, U32 Flags) = 0;
};
