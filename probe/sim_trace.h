#pragma once

#include "probe/board.h"
#include "probe/target.h"

// The trace memory of the simulated board.
class CSimTrace : public CInstTrace {
public:
  CSimTrace(CBoard& Board, CMessages& Messages) : m_Board(Board), m_Messages(Messages) {}

  // Items NAME=VALUE, separated by commas: "BufferSize", the number of instructions that the memory holds from the next
  // start on, and "PortWidth", 1, 2 or 4 lines.
  int Configure(const std::string& sConfig) override;
  // Empties memory and counters, also while it runs already.
  int Start() override;
  int Stop() override;
  int Read(U32* paAddr, U32 NumItems) override;
  int GetInstStats(U64* paItems, U32 Addr, U32 NumItems) override;

private:
  CBoard& m_Board;
  CMessages& m_Messages;
  U32 m_NumEntries = 0;  // 0: the default
};
