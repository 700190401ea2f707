#pragma once

#include "device/device_context.h"

// Chunk size in bytes for a download at an interface speed in Hz (65535 adaptive); 0xFFFFFFFF for whole blocks.
U32 DownloadChunkSize(U32 TIFSpeed);
// What the codes of EndDownload mean to the user.
const char* DownloadErrorText(int Result);

// Opens and closes a download: between the two the probe collects writes, flash included. Device thread.
class CDownloader {
public:
  explicit CDownloader(CDeviceContext& Ctx) : Ctx(Ctx) {}

  int BeginDownload();
  // Lets the probe program and verify what was written; bHalt: halts a running target meanwhile. 0, the probe's
  // negative code (DownloadErrorText), or -1 when not connected. Takes up to two minutes.
  int EndDownload(bool bHalt);

private:
  CDeviceContext& Ctx;
};
