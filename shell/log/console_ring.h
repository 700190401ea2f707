#pragma once
// The fixed ring of messages between the threads that print and the console window. Standard library only.

#include <atomic>
#include <mutex>
#include <vector>

#include "base/types.h"

inline constexpr U32 CONSOLE_RING_SLOTS = 1000;      // messages
inline constexpr U32 CONSOLE_MAX_TEXT_BYTES = 1000;  // bytes of text in a message, without the final zero

// One message of the console window.
struct CONSOLE_MSG {
  U8 IsUsed = 0;
  U8 StartNewLine = 0;                         // 1: a new block; 0: behind the text so far
  U8 UseMonoFont = 0;                          // 1: in the fixed-pitch form of the console font
  U32 Rgba = 0;                                // colour when ColorID is -1; 0 is the palette's text colour
  I32 ColorID = -1;                            // index into the colour table, or -1
  U32 NumLines = 0;                            // number of line feeds in the text, plus 1
  char Text[CONSOLE_MAX_TEXT_BYTES + 1] = {};  // UTF-8, zero-terminated, cut at a character's border
  U64 TimeStamp = 0;                           // microseconds since the start of the process
};
static_assert(sizeof(CONSOLE_MSG) == 1032);

// Any number of writers, one reader. A full ring drops what comes: writers never wait for the reader.
class CConsoleRing {
public:
  CConsoleRing();
  // False when the ring was full and the message was dropped.
  bool Push(const CONSOLE_MSG& Msg);
  // Takes the oldest message; false when there is none.
  bool Pop(CONSOLE_MSG* pMsg);
  // Drops every message.
  void Clear();

private:
  std::atomic<U32> m_NumUsed = 0;  // writers of a full ring leave the reader its lock
  std::mutex m_Mutex;
  std::vector<CONSOLE_MSG> m_Slots;
  U32 m_WriteIndex = 0;
  U32 m_ReadIndex = 0;
};
