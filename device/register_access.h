#pragma once

#include "device/device_context.h"

// Registers of the halted target by the probe's numbers. Results are 0 or -1 with a warning; device thread.
class CRegisterAccess {
public:
  explicit CRegisterAccess(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // The PC comes aligned to instructions.
  int ReadReg(U32 VNodeRegIdx, U64* pOutRegVal);
  int WriteReg(U32 VNodeRegIdx, U64 Value);
  // One probe call. A register that cannot be read gets status 1 and all ones.
  int ReadRegs(U32 Cnt, const U32* paVNodeRegIdxs, U64* paOutRegVals, U8* paOutRegStatus);
  // Registers of coprocessor 15; sReg is "15, CRn, op1, CRm, op2".
  int ReadCPReg(const char* sReg, U64* pOutValue);
  int WriteCPReg(const char* sReg, U64 Value);

private:
  int Fail(const char* sText);

  CDeviceContext& Ctx;
};
