#include "tests/sim/peer_comparison.h"

namespace sim_test {

namespace {

constexpr U32 FLASH_SIZE = 0x40000;
constexpr U32 FIRST_CODE = 0x400;
constexpr U32 LAST_CODE = FLASH_SIZE - 0x1000;
constexpr U32 INSTS_PER_SEQUENCE = 12;
constexpr U32 GAP = 64;  // bytes between two sequences
constexpr U16 NOP = 0xBF00;

}  // namespace

CPeerComparison::CPeerComparison(const CORE& Core, U32 Seed)
    : m_Core(Core), m_Sequences(Core, Seed, true), m_Machine(SequenceBoard(Core, FLASH_SIZE)) {
  Restart();
}

// A new peer forgets what it has translated.
void CPeerComparison::Restart() {
  m_Addr = FIRST_CODE;
  m_pPeer = std::make_unique<CPeer>(m_Core, FLASH_SIZE, SEQUENCE_RAM_SIZE);
  m_Machine.EraseFlash();
}

std::string CPeerComparison::Next() {
  const SEQUENCE Sequence = m_Sequences.Make(INSTS_PER_SEQUENCE);
  std::vector<U16> aOps = Sequence.aOps;
  const U32 NumBytes = static_cast<U32>(aOps.size()) * 2;
  const U32 End = m_Addr + NumBytes;
  aOps.push_back(NOP);
  std::vector<U8> aOurRAM(SEQUENCE_RAM_SIZE);
  std::vector<U8> aTheirRAM(SEQUENCE_RAM_SIZE);
  m_Sequences.FillRAM(&aOurRAM);
  m_Machine.Program(SEQUENCE_RAM_START, SEQUENCE_RAM_SIZE, aOurRAM.data());
  m_pPeer->Write(SEQUENCE_RAM_START, aOurRAM.data(), SEQUENCE_RAM_SIZE);
  m_Machine.Program(m_Addr, NumBytes + 2, aOps.data());
  m_pPeer->Write(m_Addr, aOps.data(), NumBytes + 2);

  REGS Ours = Sequence.Start;
  REGS Theirs = Sequence.Start;
  std::string sText = RunSequence(&m_Machine, &Ours, m_Addr, End, m_bSteps);
  const uc_err Error = m_pPeer->Run(&Theirs, m_Addr, End);
  m_Machine.ReadMem(SEQUENCE_RAM_START, SEQUENCE_RAM_SIZE, aOurRAM.data());
  m_pPeer->ReadRAM(aTheirRAM.data(), SEQUENCE_RAM_SIZE);
  if (Error) sText += std::string("emulation library: ") + uc_strerror(Error);
  sText += Difference(Sequence.Start, Ours, Theirs);
  if (aOurRAM != aTheirRAM) sText += "memory differs";

  m_NumInsts += Sequence.aNames.size();
  m_bSteps = !m_bSteps;
  m_Addr = (End + GAP) & ~3u;
  if (m_Addr > LAST_CODE) Restart();
  return sText.empty() ? "" : Listing(Sequence) + sText;
}

}  // namespace sim_test
