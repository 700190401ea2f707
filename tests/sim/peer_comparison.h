#pragma once
// One random sequence after the other on our core and on the emulation library.

#include <memory>

#include "tests/sim/peer.h"
#include "tests/sim/sequence.h"

namespace sim_test {

class CPeerComparison {
public:
  CPeerComparison(const CORE& Core, U32 Seed);
  // Runs a sequence on both; empty when everything agrees, otherwise what was run and what differs.
  std::string Next();
  U64 NumInsts() const { return m_NumInsts; }

private:
  void Restart();

  const CORE& m_Core;
  CSequences m_Sequences;
  sim::CMachine m_Machine;
  std::unique_ptr<CPeer> m_pPeer;
  U32 m_Addr = 0;
  U64 m_NumInsts = 0;
  bool m_bSteps = false;
};

}  // namespace sim_test
