#pragma once

#include "device/device_context.h"
#include "device/downloader.h"

// Target memory through the probe; device thread. AW is the access width in bytes, 0 for the probe's choice; Flags are
// MEM_FLAGS; ChunkSize is in bytes, 0 for one transfer. paData and paStatus (MEM_STATUS) have one byte per target
// byte. Results of the block operations are the number of bytes that worked.
class CMemoryAccess {
public:
  CMemoryAccess(CDeviceContext& Ctx, CDownloader& Download) : Ctx(Ctx), Download(Download) {}

  U32 ReadMem(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, U8* paData, U8* paStatus);
  U32 WriteMem(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, const U8* paData);
  // Writes Cnt ranges, pairs of start and exclusive end, whose bytes follow each other in paData; stops at the first
  // range that would run past NumBytes.
  U32 WriteMemMultiple(U32 Cnt, const U32* paAddrRanges, U32 NumBytes, const U8* paData, U32 ChunkSize, I8 AW,
                       U32 Flags);

  // One item at an aligned address; 0, or -1 with a warning, and then every byte of the out value is 0xEE.
  int ReadWord(U32 Addr, U32* pOut);
  int ReadHalfWord(U32 Addr, U16* pOut);
  int ReadByte(U32 Addr, U8* pOut);
  // An item of Size 1, 2 or 4 bytes.
  int ReadInt(U32 Addr, U8 Size, U32* pOutData);

  // Hz of the core's clock, or -1; needs work RAM and a halted target.
  int MeasureCoreSpeed();

private:
  bool ValidateMemoryAccessParams(bool bRead, U32 Addr, U32 nBytes, const U8* paData, const U8* paStatus);
  U32 ReadMemSimple(U32 Addr, U32 nBytes, I8 AW, U32 Flags, U8* paData, U8* paStatus);
  U32 ReadMemItemWise(U32 Addr, U32 nBytes, I8 AW, U32 Flags, U8* paData, U8* paStatus);
  U32 ReadMemChunkWise(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, U8* paData, U8* paStatus);
  U32 WriteMemSimple(U32 Addr, U32 nBytes, I8 AW, const U8* paData);
  U32 WriteMemItemWise(U32 Addr, U32 nBytes, I8 AW, const U8* paData);
  U32 WriteMemChunkWise(U32 Addr, U32 nBytes, U32 ChunkSize, I8 AW, U32 Flags, const U8* paData);
  bool GiveUp() const;
  int Fail(const QString& sText);

  CDeviceContext& Ctx;
  CDownloader& Download;
};
