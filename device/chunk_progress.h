#pragma once

#include "device/device_context.h"

// Shows how far a transfer in chunks has got, for as long as the object lives. A single chunk shows the text alone. Of
// very many chunks some are left out: each value is an event, and the ring of events is not to be filled by them.
class CChunkProgress {
public:
  static constexpr U32 MAX_VALUES = 200;

  CChunkProgress(DEVICE_EVENT_SINK& Sink, const QString& sText, bool bShown, U32 NumChunks)
      : Sink(Sink), bShown(bShown), bBar(bShown && NumChunks > 1), Step(NumChunks / MAX_VALUES + 1) {
    if (bBar)
      Sink.StartProgress(sText, 0, static_cast<int>(NumChunks - 1));
    else if (bShown)
      Sink.SetProgressMsg(sText);
  }
  ~CChunkProgress() {
    if (bShown) Sink.EndProgress();
  }
  CChunkProgress(const CChunkProgress&) = delete;
  CChunkProgress& operator=(const CChunkProgress&) = delete;

  void SetValue(U32 Chunk) {
    if (bBar && Chunk % Step == 0) Sink.SetProgressValue(static_cast<int>(Chunk));
  }

private:
  DEVICE_EVENT_SINK& Sink;
  bool bShown;
  bool bBar;
  U32 Step;
};
