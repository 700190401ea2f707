#pragma once

#include "base/msg_flags.h"

// Destinations of the device layer's own messages.
inline constexpr U32 DEVICE_LOG_DEBUG = MSG_SRC_TARGET | MSG_TO_FILE | MSG_TO_STDOUT | MSG_INFO;
inline constexpr U32 DEVICE_LOG_WARN = MSG_SRC_TARGET | MSG_TO_FILE | MSG_TO_STDOUT | MSG_WARNING;
