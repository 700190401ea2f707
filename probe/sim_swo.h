#pragma once

#include <map>

#include "probe/board.h"
#include "probe/byte_ring.h"
#include "probe/target.h"

// The single wire output of the simulated board, and the probe's buffers behind it. What firmware sends arrives here
// while its port is enabled in the core and in the probe.
class CSimSwo : public CSwoPort {
public:
  // Bytes that the probe keeps for each port.
  static constexpr U32 BUFFER_SIZE = 1u << 18;

  CSimSwo(CBoard& Board, CMessages& Messages);
  ~CSimSwo() override;

  // Sets the core's units up for a serial line of SWOHz, as far as the clock can be divided down to it.
  int Enable(U32 CPUHz, U32 SWOHz, U32 PortMask) override;
  int Disable(U32 PortMask) override;
  int NumBytesPending() override;
  int ReadStimulus(int Port, U8* paData, U32 NumBytes) override;
  int Discard() override;

  // The core has stimulus ports.
  static bool Exists(const CBoard& Board) { return Board.Spec().Arch != sim::ARCH::ARMV6M; }
  // Ports that the probe listens to. The caller has the machine.
  U32 PortMask() const { return m_PortMask; }
  // The probe listens no more; the core's settings stay.
  void Release();

private:
  void OnStimulus(U32 Port, U32 Value, U32 NumBytes);
  void ReportLoss();

  CBoard& m_Board;
  CMessages& m_Messages;
  // Guarded by the board: firmware writes while it runs, the probe reads while it has the machine.
  U32 m_PortMask = 0;
  std::map<U32, CByteRing> m_Ports;
  U64 m_NumLost = 0;  // bytes since the last report
};
