#pragma once

#include "probe/gdb/server.h"

// Memory of a halted target, in requests that fit into the server's packets. A request of 1, 2 or 4 aligned bytes is
// one access of that width on the servers that know widths; longer ones are accessed in words.
class CGdbMemory {
public:
  explicit CGdbMemory(CGdbServer& Server) : m_Server(Server) {}

  // Number of bytes before the first one that does not answer; negative when the connection is gone.
  int Read(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth);
  int Write(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth);

private:
  // Bytes moved by one request; 0 when it fails.
  U32 ReadOnce(U32 Addr, U32 NumBytes, U8* paData);
  U32 WriteOnce(U32 Addr, U32 NumBytes, const U8* paData);
  template <typename MOVE>
  int ForEachRequest(U32 Addr, U32 NumBytes, U32 AccessWidth, U32 MaxSize, MOVE Move);

  CGdbServer& m_Server;
};
