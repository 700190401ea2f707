#pragma once

#include "base/elf_sym.h"
#include "device/memory_access.h"
#include "device/register_access.h"

// Values of variables by the place that the debug information gives: constants, memory, registers. At most 8 bytes
// each. Device thread; ReadLoc also on the main thread, with the device mutex held.
class CLocationAccess {
public:
  static constexpr U32 MAX_LOC_BYTES = 8;

  CLocationAccess(CDeviceContext& Ctx, CMemoryAccess& Memory, CRegisterAccess& Registers)
      : Ctx(Ctx), Memory(Memory), Registers(Registers) {}

  // 0, or -1 for a kind without a value or a failed access, and then paOutData is zero.
  int ReadLoc(const ELF_SYM_LOC& Loc, U32 nBytes, U8* paOutData);
  // Memory is written in download mode, so that variables in flash can be changed too.
  int WriteLoc(const ELF_SYM_LOC& Loc, U32 nBytes, const U8* paData);
  // ItemSize bytes of each location; one that fails gets status 1 and all ones. 0, or -1 for bad arguments.
  int ReadLocs(U32 Cnt, const ELF_SYM_LOC* paLocs, U64* paOutVals, U8* paOutStatus, U32 ItemSize = 4);

private:
  int ReadRegLoc(U32 Reg, U64& Value);

  CDeviceContext& Ctx;
  CMemoryAccess& Memory;
  CRegisterAccess& Registers;
};
