#pragma once

#include <QString>

#include "base/types.h"

// Target interface speed in Hz from what a user or a project states: a number of kHz, "auto" (0), "adaptive" (65535,
// also as a number), a frequency with its unit or the name of a frequency. Any other speed comes in whole kHz, half a
// kHz and less rounded down, 1 kHz at least. *pOk: whether it is one of these and is below 2^31 Hz.
U32 ParseInterfaceSpeed(const QString& sText, bool* pOk);
