#include "tests/sim/batch.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace sim_test {

namespace {

#include "tests/sim/firmware/batch.inc"

constexpr U32 MEMORY_SIZE = 0x400000;
constexpr U32 RAM_IMAGE = 0x1000;
constexpr U32 TABLE = 0x5000;
constexpr U32 RESULTS = 0x20010000;
constexpr U32 HAS_FPU = 1;
constexpr U32 HAS_DSP = 2;
constexpr U32 INSTS_PER_SEQUENCE = 12;
constexpr U64 MAX_INSTS_PER_SEQUENCE = 50'000;  // the checksum is most of it
constexpr U16 LOAD_ALL[] = {0xE892, 0x1FFF};    // ldm.w r2, {r0-r12}
constexpr U32 REACH_OF_LITERALS = 0x1000;       // loads near the last code read what lies behind it
constexpr U32 BYTES_PUSHED = 14 * 4;            // by the firmware, before it keeps SP

// B.W from the address behind the code.
void AppendBranch(std::vector<U16>* paOps, U32 From, U32 To) {
  const U32 Distance = To - (From + 4);
  const U32 Sign = Distance >> 31;
  const U32 J1 = !((Distance >> 23 & 1) ^ Sign);
  const U32 J2 = !((Distance >> 22 & 1) ^ Sign);
  paOps->push_back(static_cast<U16>(0xF000 | Sign << 10 | (Distance >> 12 & 0x3FF)));
  paOps->push_back(static_cast<U16>(0x9000 | J1 << 13 | J2 << 11 | (Distance >> 1 & 0x7FF)));
}

}  // namespace

std::vector<U32> RunOnOurs(const CORE& Core, const std::vector<U8>& Image, U64 MaxInsts, U32 Results, size_t NumWords) {
  sim::BOARD_SPEC Spec = SequenceBoard(Core, MEMORY_SIZE);
  Spec.RAM[0].Size = MEMORY_SIZE;
  sim::CMachine Machine(Spec);
  Machine.Program(0, static_cast<U32>(Image.size()), Image.data());
  Machine.Reset();
  if (Machine.Run(MaxInsts, nullptr, false) != sim::STOP::BKPT) return {};
  std::vector<U32> aResults(NumWords);
  Machine.ReadMem(Results, static_cast<U32>(NumWords * 4), aResults.data());
  return aResults;
}

std::vector<U32> RunOnQemu(const std::vector<U8>& Image, const char* sMachine, const std::string& sDir) {
  const std::string sOut = sDir + "/batch.out";
  std::remove(sOut.c_str());
  std::ofstream(sDir + "/batch.bin", std::ios::binary)
      .write(reinterpret_cast<const char*>(Image.data()), static_cast<std::streamsize>(Image.size()));
  const std::string sCommand = "cd '" + sDir + "' && timeout 300 qemu-system-arm -M " + sMachine +
                               " -display none -monitor none -serial none -semihosting-config enable=on,target=native" +
                               " -kernel batch.bin";
  if (std::system(sCommand.c_str())) return {};
  std::ifstream File(sOut, std::ios::binary);
  const std::vector<char> aBytes{std::istreambuf_iterator<char>(File), {}};
  std::vector<U32> aResults(aBytes.size() / 4);
  std::memcpy(aResults.data(), aBytes.data(), aResults.size() * 4);
  return aResults;
}

CBatch::CBatch(const CORE& Core, U32 Seed, U32 NumSequences) : m_Core(Core) {
  CSequences Sequences(Core, Seed, false);
  const bool bFpu = Core.Fpu != sim::FPU::NONE;
  m_Image.assign(IMAGE, IMAGE + sizeof(IMAGE));
  m_Image.resize(RAM_IMAGE);
  std::vector<U8> aRAM(SEQUENCE_RAM_SIZE);
  Sequences.FillRAM(&aRAM);
  m_Image.insert(m_Image.end(), aRAM.begin(), aRAM.end());
  std::vector<U32> aTable = {(bFpu ? HAS_FPU : 0) | (Core.Arch == sim::ARCH::ARMV7EM ? HAS_DSP : 0)};
  m_Image.resize(TABLE + 4 * (2 * NumSequences + 2));
  for (U32 i = 0; i < NumSequences; i++) {
    m_Sequences.push_back(Sequences.Make(INSTS_PER_SEQUENCE));
    const REGS& Regs = m_Sequences.back().Start;
    std::vector<U32> aRegs;
    if (bFpu) {
      aRegs.assign(Regs.S.begin(), Regs.S.end());
      aRegs.push_back(Regs.FPSCR);
    }
    aRegs.insert(aRegs.end(), {Regs.APSR, Regs.R[13], Regs.R[14]});
    aRegs.insert(aRegs.end(), Regs.R.begin(), Regs.R.begin() + 13);
    aTable.push_back(AppendWords(aRegs.data(), aRegs.size()));
    aTable.push_back(AppendCode(m_Sequences.back().aOps) | 1);
    m_NumInsts += m_Sequences.back().aNames.size();
  }
  std::memcpy(&m_Image[TABLE], aTable.data(), 4 * aTable.size());
  m_Image.resize(m_Image.size() + REACH_OF_LITERALS, 0xFF);
}

U32 CBatch::AppendWords(const U32* paWords, size_t Num) {
  m_Image.resize((m_Image.size() + 3) & ~size_t{3});
  const U32 Addr = static_cast<U32>(m_Image.size());
  m_Image.resize(Addr + 4 * Num);
  std::memcpy(&m_Image[Addr], paWords, 4 * Num);
  return Addr;
}

U32 CBatch::AppendCode(const std::vector<U16>& aOps) {
  std::vector<U16> aAll(std::begin(LOAD_ALL), std::end(LOAD_ALL));
  aAll.insert(aAll.end(), aOps.begin(), aOps.end());
  const U32 Addr = AppendWords(nullptr, 0);
  AppendBranch(&aAll, Addr + static_cast<U32>(aAll.size()) * 2, L_finish);
  m_Image.resize(Addr + aAll.size() * 2);
  std::memcpy(&m_Image[Addr], aAll.data(), aAll.size() * 2);
  return Addr;
}

size_t CBatch::WordsPerResult() const {
  return 17 + (m_Core.Fpu != sim::FPU::NONE ? 1 + NUM_S_REGS : 0);
}

std::vector<U32> CBatch::RunOurs() const {
  return RunOnOurs(m_Core, m_Image, MAX_INSTS_PER_SEQUENCE * (m_Sequences.size() + 1), RESULTS,
                   WordsPerResult() * m_Sequences.size());
}

std::vector<U32> CBatch::RunQemu(const std::string& sDir) const {
  return RunOnQemu(m_Image, MachineOf(m_Core), sDir);
}

std::vector<std::string> CBatch::Compare(const std::vector<U32>& aOurs, const std::vector<U32>& aTheirs,
                                         size_t MaxTexts) const {
  const size_t Num = WordsPerResult();
  if (aOurs.size() != Num * m_Sequences.size() || aTheirs.size() != aOurs.size())
    return {"results are missing: ours " + std::to_string(aOurs.size()) + ", theirs " + std::to_string(aTheirs.size())};
  const auto ToRegs = [this](const U32* p) {
    REGS Regs;
    Regs.APSR = *p++ & APSR_MASK;
    Regs.R[13] = *p++ + BYTES_PUSHED;
    for (U32 i = 0; i < 13; i++) Regs.R[i] = *p++;
    Regs.R[14] = *p++;
    if (m_Core.Fpu == sim::FPU::NONE) return Regs;
    Regs.FPSCR = *p++;
    for (U32& Reg : Regs.S) Reg = *p++;
    return Regs;
  };
  std::vector<std::string> aTexts;
  bool bMemoryDiffers = false;
  for (size_t i = 0; i < m_Sequences.size() && aTexts.size() < MaxTexts; i++) {
    const U32* pOurs = &aOurs[i * Num];
    const U32* pTheirs = &aTheirs[i * Num];
    std::string sText = Difference(m_Sequences[i].Start, ToRegs(pOurs), ToRegs(pTheirs));
    if (!bMemoryDiffers && pOurs[Num - 1] != pTheirs[Num - 1]) {
      sText += "  memory differs from here on\n";
      bMemoryDiffers = true;
    }
    if (!sText.empty()) aTexts.push_back("sequence " + std::to_string(i) + ": " + Listing(m_Sequences[i]) + sText);
  }
  return aTexts;
}

const char* CBatch::MachineOf(const CORE& Core) {
  if (Core.Arch == sim::ARCH::ARMV7M) return "mps2-an385";
  if (Core.Fpu == sim::FPU::V4_SINGLE) return "mps2-an386";
  return Core.Fpu == sim::FPU::V5_DOUBLE ? "mps2-an500" : nullptr;
}

bool CBatch::HasQemu(const CORE& Core) {
  return MachineOf(Core) && std::system("command -v qemu-system-arm > /dev/null") == 0;
}

}  // namespace sim_test
