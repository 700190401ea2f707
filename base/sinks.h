#pragma once
// What a lower layer needs from an upper one in order to report. The shell plugs the receivers in.

#include <functional>

#include <QString>

#include "base/types.h"

// Takes a finished message and its MSG_INFO_FLAGS. May be called on any thread.
using MessageSink = std::function<void(const QString& sText, U32 Flags)>;

// Progress of one long operation; main thread. Start, any number of values, end. Each may be empty.
struct PROGRESS_SINK {
  std::function<void(const QString& sText, int Min, int Max)> Start;
  std::function<void(int Value)> SetValue;
  std::function<void()> End;
};
