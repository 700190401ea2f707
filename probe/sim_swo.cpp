#include "probe/sim_swo.h"

#include "probe/sim/itm.h"
#include "probe/sim/tpiu.h"
#include "probe/text.h"

namespace {

enum REG : U32 {
  ITM_TER = 0xE0000E00,
  ITM_TPR = 0xE0000E40,
  ITM_TCR = 0xE0000E80,
  ITM_LAR = 0xE0000FB0,
  DEMCR = 0xE000EDFC,
  TPIU_CSPSR = 0xE0040004,
  TPIU_ACPR = 0xE0040010,
  TPIU_SPPR = 0xE00400F0,
  TPIU_FFCR = 0xE0040304,
};

constexpr U32 DEMCR_TRCENA = 1u << 24;
constexpr U32 LAR_UNLOCK = 0xC5ACCE55;
constexpr U32 ONE_DATA_LINE = 1;
constexpr U32 PROTOCOL_SERIAL = 2;
constexpr U32 FORMATTER_OFF = 0x100;
constexpr U32 TCR_ON = 0x0001000D;  // bus 1, packets of the watchpoint unit, synchronisation, unit on

U32 ReadRegister(sim::CMachine& Machine, U32 Addr) {
  U32 Value = 0;
  Machine.ReadMem(Addr, sizeof(Value), &Value, sizeof(Value));
  return Value;
}

void WriteRegister(sim::CMachine& Machine, U32 Addr, U32 Value) {
  Machine.WriteMem(Addr, sizeof(Value), &Value, sizeof(Value));
}

}  // namespace

CSimSwo::CSimSwo(CBoard& Board, CMessages& Messages) : m_Board(Board), m_Messages(Messages) {
  CBoard::CAccess(m_Board)->SetStimulusSink(
      [this](U32 Port, U32 Value, U32 NumBytes) { OnStimulus(Port, Value, NumBytes); });
}

CSimSwo::~CSimSwo() {
  CBoard::CAccess(m_Board)->SetStimulusSink(nullptr);
}

void CSimSwo::OnStimulus(U32 Port, U32 Value, U32 NumBytes) {
  if (!(m_PortMask >> Port & 1)) return;
  CByteRing& Ring = m_Ports.try_emplace(Port, BUFFER_SIZE).first->second;
  if (!Ring.Push(&Value, NumBytes)) m_NumLost += NumBytes;
}

int CSimSwo::Enable(U32 CPUHz, U32 SWOHz, U32 PortMask) {
  const U32 Divisor = SWOHz ? CPUHz / SWOHz : 0;
  if (Divisor == 0 || Divisor - 1 > sim::TPIU_MAX_PRESCALER) {
    m_Messages.Add(MSG_KIND::ERROR, FormatText("SWO: %u Hz cannot be divided down to %u Hz", CPUHz, SWOHz));
    return -1;
  }
  CBoard::CAccess Machine(m_Board);
  WriteRegister(*Machine, DEMCR, ReadRegister(*Machine, DEMCR) | DEMCR_TRCENA);
  WriteRegister(*Machine, TPIU_CSPSR, ONE_DATA_LINE);
  WriteRegister(*Machine, TPIU_SPPR, PROTOCOL_SERIAL);
  WriteRegister(*Machine, TPIU_ACPR, Divisor - 1);
  WriteRegister(*Machine, TPIU_FFCR, FORMATTER_OFF);
  WriteRegister(*Machine, ITM_LAR, LAR_UNLOCK);
  WriteRegister(*Machine, ITM_TCR, TCR_ON);
  WriteRegister(*Machine, ITM_TPR, 0);
  WriteRegister(*Machine, ITM_TER, ReadRegister(*Machine, ITM_TER) | PortMask);
  m_PortMask |= PortMask;
  return 0;
}

int CSimSwo::Disable(U32 PortMask) {
  CBoard::CAccess Machine(m_Board);
  m_PortMask &= ~PortMask;
  const U32 Left = ReadRegister(*Machine, ITM_TER) & ~PortMask;
  WriteRegister(*Machine, ITM_TER, Left);
  if (!Left) WriteRegister(*Machine, ITM_TCR, 0);
  return 0;
}

int CSimSwo::NumBytesPending() {
  CBoard::CAccess Machine(m_Board);
  U32 Num = 0;
  for (const auto& [Port, Ring] : m_Ports) Num += Ring.Size();
  return static_cast<int>(Num);
}

void CSimSwo::ReportLoss() {
  if (!m_NumLost) return;
  m_Messages.Add(MSG_KIND::WARNING, FormatText("SWO: the buffer was full, %llu bytes are lost",
                                               static_cast<unsigned long long>(m_NumLost)));
  m_NumLost = 0;
}

int CSimSwo::ReadStimulus(int Port, U8* paData, U32 NumBytes) {
  if (Port < 0 || Port >= static_cast<int>(sim::NUM_STIMULUS_PORTS)) return -1;
  CBoard::CAccess Machine(m_Board);
  ReportLoss();
  const auto It = m_Ports.find(static_cast<U32>(Port));
  return It == m_Ports.end() ? 0 : static_cast<int>(It->second.Pop(paData, NumBytes));
}

int CSimSwo::Discard() {
  CBoard::CAccess Machine(m_Board);
  for (auto& [Port, Ring] : m_Ports) Ring.Clear();
  m_NumLost = 0;
  return 0;
}

void CSimSwo::Release() {
  Discard();
  CBoard::CAccess Machine(m_Board);
  m_PortMask = 0;
}
