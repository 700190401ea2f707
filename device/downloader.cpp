#include "device/downloader.h"

#include <optional>

#include "device/probe_api/records.h"
#include "device/target_pause.h"

namespace {

struct SPEED_CHUNK {
  U32 MaxHz;
  U32 NumBytes;
};

// Slow interfaces get short calls, so that the progress moves and a lost connection is noticed.
constexpr SPEED_CHUNK CHUNK_BY_SPEED[] = {{50000, 8000}, {100000, 16000}, {500000, 32000}};
constexpr U32 ADAPTIVE_CHUNK_BYTES = 16000;
constexpr U32 WHOLE_BLOCKS = 0xFFFFFFFFu;

}  // namespace

U32 DownloadChunkSize(U32 TIFSpeed) {
  if (TIFSpeed == VNODE_SPEED_ADAPTIVE) return ADAPTIVE_CHUNK_BYTES;
  for (const SPEED_CHUNK& Row : CHUNK_BY_SPEED) {
    if (TIFSpeed <= Row.MaxHz) return Row.NumBytes;
  }
  return WHOLE_BLOCKS;
}

const char* DownloadErrorText(int Result) {
  switch (Result) {
    case -2:
      return "error during compare phase";
    case -3:
      return "error during program/erase phase";
    case -4:
      return "error during verification phase";
    default:
      return "V-Node reports an unspecified error";
  }
}

int CDownloader::BeginDownload() {
  if (!Ctx.IsConnected()) {
    Ctx.LogWarnMsg(QStringLiteral("BeginDL: not connected"));
    return -1;
  }
  Ctx.Api.VNODEARM_BeginDownload(0);
  return 0;
}

int CDownloader::EndDownload(bool bHalt) {
  if (!Ctx.IsConnected()) {
    Ctx.LogWarnMsg(QStringLiteral("EndDL: not connected"));
    return -1;
  }
  std::optional<CTargetPause> Pause;
  Pause.emplace(Ctx, bHalt);
  Ctx.Sink.StartProgress(QStringLiteral("Writing Memory..."), 0, 0);
  const int Result = Ctx.Api.VNODEARM_EndDownload();
  Ctx.Sink.EndProgress();
  Pause.reset();
  Ctx.TestConnectionLost();
  Ctx.State.LastDownloadResult = Result;
  if (Result != 0) {
    Ctx.LogWarnMsg(QString::asprintf("VNODEARM_EndDownload: V-Node API call returned error code %d", Result));
  }
  return Result;
}
