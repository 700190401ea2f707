// Random straight-line code on our core and on an emulation library: registers, flags and memory have to agree.

#include <gtest/gtest.h>

#include <cstring>

#include "probe/sim/machine.h"
#include "tests/sim/peer.h"
#include "tests/sim/random_code.h"

namespace sim_test {

namespace {

using sim::ARCH;

constexpr U32 FLASH_SIZE = 0x40000;
constexpr U32 RAM_SIZE = 0x4000;
constexpr U32 RAM_MIDDLE = PEER_RAM_START + RAM_SIZE / 2;
constexpr U32 CODE_START = 0x400;
constexpr U32 REG_XPSR = 16;
constexpr U32 REG_SP = 13;

REGS StartRegs(CRandomCode& Code, ARCH Arch) {
  constexpr U32 INTERESTING[] = {0, 1, 0xFFFFFFFF, 0x80000000, 0x7FFFFFFF, 0x8000, 0x7FFF, 0x80008000};
  REGS Regs;
  for (U32& Reg : Regs.R) {
    const U32 Draw = Code.Random();
    Reg = Draw % 3 ? Code.Random() : INTERESTING[Draw / 3 % std::size(INTERESTING)];
  }
  Regs.R[REG_SP] = RAM_MIDDLE;
  Regs.R[BASE_REG] = RAM_MIDDLE - 0x800 + (Code.Random() & 0xFC);
  Regs.R[HIGH_BASE_REG] = RAM_MIDDLE + 0x800 + (Code.Random() & 0xFC);
  Regs.R[INDEX_REG] = Code.Random() & (Arch == ARCH::ARMV6M ? 0x3C : 0x3F);
  Regs.APSR = Code.Random() & (Arch == ARCH::ARMV6M ? 0xF0000000 : Arch == ARCH::ARMV7M ? 0xF8000000 : APSR_MASK);
  return Regs;
}

// Runs to the end address, one step after the other or in one go.
void RunOurs(sim::CMachine* pMachine, REGS* pRegs, U32 Start, U32 End, bool bSteps) {
  for (U32 i = 0; i < 15; i++) pMachine->WriteReg(i, pRegs->R[i]);
  pMachine->WriteReg(REG_XPSR, pRegs->APSR | 1u << 24);
  pMachine->WriteReg(15, Start);
  U32 Pc = Start;
  if (bSteps) {
    for (int i = 0; Pc != End && i < 200; i++) {
      pMachine->Step();
      pMachine->ReadReg(15, &Pc);
    }
  } else {
    pMachine->SetCodeBreakpoint(End);
    EXPECT_EQ(pMachine->Run(200, nullptr, false), sim::STOP::BREAKPOINT);
    pMachine->ClearCodeBreakpoint(End);
    pMachine->ReadReg(15, &Pc);
  }
  EXPECT_EQ(Pc, End);
  for (U32 i = 0; i < 15; i++) pMachine->ReadReg(i, &pRegs->R[i]);
  pMachine->ReadReg(REG_XPSR, &pRegs->APSR);
  EXPECT_EQ(pRegs->APSR & 0x0700FC00, 1u << 24) << "IT block left open";
  pRegs->APSR &= APSR_MASK;
}

std::string Listing(const CRandomCode& Code, const std::vector<U16>& aOps) {
  std::string s;
  for (const std::string& sName : Code.Names()) s += sName + "; ";
  char ac[8];
  for (U16 Op : aOps) {
    std::snprintf(ac, sizeof(ac), " %04x", Op);
    s += ac;
  }
  return s;
}

class CCompare : public testing::TestWithParam<ARCH> {};

TEST_P(CCompare, RandomSequencesAgree) {
  constexpr U32 NUM_SEQUENCES = 6000;
  constexpr U32 INSTS_PER_SEQUENCE = 12;
  const ARCH Arch = GetParam();
  sim::BOARD_SPEC Spec;
  Spec.Arch = Arch;
  Spec.Flash = {0, FLASH_SIZE};
  Spec.RAM[0] = {PEER_RAM_START, RAM_SIZE};
  sim::CMachine Machine(Spec);
  CRandomCode Code(Arch, 20260101);
  auto pPeer = std::make_unique<CPeer>(Arch, FLASH_SIZE, RAM_SIZE);
  std::vector<U8> aTheirRAM(RAM_SIZE);
  std::vector<U8> aOurRAM(RAM_SIZE);
  U32 Addr = CODE_START;
  int NumFailures = 0;
  for (U32 i = 0; i < NUM_SEQUENCES && NumFailures < 10; i++) {
    std::vector<U16> aOps = Code.Make(INSTS_PER_SEQUENCE);
    const U32 End = Addr + static_cast<U32>(aOps.size()) * 2;
    aOps.push_back(0xBF00);
    for (U8& Byte : aOurRAM) Byte = static_cast<U8>(Code.Random());
    Machine.Program(PEER_RAM_START, RAM_SIZE, aOurRAM.data());
    pPeer->Write(PEER_RAM_START, aOurRAM.data(), RAM_SIZE);
    Machine.Program(Addr, static_cast<U32>(aOps.size()) * 2, aOps.data());
    pPeer->Write(Addr, aOps.data(), aOps.size() * 2);
    const REGS Start = StartRegs(Code, Arch);
    REGS Ours = Start;
    REGS Theirs = Start;
    RunOurs(&Machine, &Ours, Addr, End, i % 2);
    const uc_err Error = pPeer->Run(&Theirs, Addr, End);
    Machine.ReadMem(PEER_RAM_START, RAM_SIZE, aOurRAM.data());
    pPeer->ReadRAM(aTheirRAM.data(), RAM_SIZE);
    const bool bSame = !std::memcmp(&Ours, &Theirs, sizeof(REGS)) && aOurRAM == aTheirRAM;
    EXPECT_EQ(Error, UC_ERR_OK);
    for (U32 Reg = 0; Reg < 15; Reg++) EXPECT_EQ(Ours.R[Reg], Theirs.R[Reg]) << "R" << Reg << " was " << Start.R[Reg];
    EXPECT_EQ(Ours.APSR, Theirs.APSR) << "was " << Start.APSR;
    EXPECT_TRUE(aOurRAM == aTheirRAM);
    if (!bSame || Error) {
      NumFailures++;
      ADD_FAILURE() << "sequence " << i << ": " << Listing(Code, aOps);
    }
    Addr = (End + 64) & ~3u;
    if (Addr > FLASH_SIZE - 0x1000) {
      Addr = CODE_START;
      pPeer = std::make_unique<CPeer>(Arch, FLASH_SIZE, RAM_SIZE);  // forgets what it has translated
      Machine.EraseFlash();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cores, CCompare, testing::Values(ARCH::ARMV6M, ARCH::ARMV7M, ARCH::ARMV7EM), [](const auto& Info) {
      return std::string(Info.param == ARCH::ARMV6M ? "v6M" : Info.param == ARCH::ARMV7M ? "v7M" : "v7EM");
    });

}  // namespace

}  // namespace sim_test
