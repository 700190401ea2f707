// Random straight-line code on our core and on an emulation library: registers, flags and memory have to agree.

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "tests/sim/board.h"
#include "tests/sim/peer.h"
#include "tests/sim/random_code.h"

namespace sim_test {

namespace {

using sim::ARCH;

constexpr U32 BIG_FLASH_SIZE = 0x40000;
constexpr U32 RAM_MIDDLE = RAM_START + RAM_SIZE / 2;
constexpr U32 FIRST_CODE = 0x400;

REGS StartRegs(CRandomCode& Code, ARCH Arch) {
  constexpr U32 INTERESTING[] = {0, 1, 0xFFFFFFFF, 0x80000000, 0x7FFFFFFF, 0x8000, 0x7FFF, 0x80008000};
  REGS Regs;
  for (U32& Reg : Regs.R) {
    const U32 Draw = Code.Random();
    Reg = Draw % 3 ? Code.Random() : INTERESTING[Draw / 3 % std::size(INTERESTING)];
  }
  Regs.R[VNODE_REG_SP] = RAM_MIDDLE;
  Regs.R[BASE_REG] = RAM_MIDDLE - 0x800 + (Code.Random() & 0xFC);
  Regs.R[HIGH_BASE_REG] = RAM_MIDDLE + 0x800 + (Code.Random() & 0xFC);
  Regs.R[INDEX_REG] = Code.Random() & (Arch == ARCH::ARMV6M ? 0x3C : 0x3F);
  Regs.APSR = Code.Random() & (Arch == ARCH::ARMV6M ? 0xF0000000 : Arch == ARCH::ARMV7M ? 0xF8000000 : APSR_MASK);
  return Regs;
}

// Runs to the end address, one step after the other or in one go.
void RunOurs(sim::CMachine* pMachine, REGS* pRegs, U32 Start, U32 End, bool bSteps) {
  for (U32 i = 0; i < 15; i++) pMachine->WriteReg(i, pRegs->R[i]);
  pMachine->WriteReg(VNODE_REG_XPSR, pRegs->APSR | 1u << 24);
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
  pMachine->ReadReg(VNODE_REG_XPSR, &pRegs->APSR);
  EXPECT_EQ(pRegs->APSR & 0x0700FC00, 1u << 24) << "IT block left open";
  pRegs->APSR &= APSR_MASK;
}

std::string Listing(const CRandomCode& Code, const std::vector<U16>& aOps) {
  std::ostringstream Text;
  for (const std::string& sName : Code.Names()) Text << sName << "; ";
  for (U16 Op : aOps) Text << ' ' << std::hex << std::setw(4) << std::setfill('0') << Op;
  return Text.str();
}

class CCompare : public testing::TestWithParam<ARCH> {};

TEST_P(CCompare, RandomSequencesAgree) {
  constexpr U32 NUM_SEQUENCES = 6000;
  constexpr U32 INSTS_PER_SEQUENCE = 12;
  const ARCH Arch = GetParam();
  sim::BOARD_SPEC Spec = MakeSpec(Arch);
  Spec.Flash.Size = BIG_FLASH_SIZE;
  sim::CMachine Machine(Spec);
  CRandomCode Code(Arch, 20260101);
  auto pPeer = std::make_unique<CPeer>(Arch, BIG_FLASH_SIZE, RAM_SIZE);
  std::vector<U8> aTheirRAM(RAM_SIZE);
  std::vector<U8> aOurRAM(RAM_SIZE);
  U32 Addr = FIRST_CODE;
  int NumFailures = 0;
  for (U32 i = 0; i < NUM_SEQUENCES && NumFailures < 10; i++) {
    std::vector<U16> aOps = Code.Make(INSTS_PER_SEQUENCE);
    const U32 End = Addr + static_cast<U32>(aOps.size()) * 2;
    aOps.push_back(0xBF00);
    for (U8& Byte : aOurRAM) Byte = static_cast<U8>(Code.Random());
    Machine.Program(RAM_START, RAM_SIZE, aOurRAM.data());
    pPeer->Write(RAM_START, aOurRAM.data(), RAM_SIZE);
    Machine.Program(Addr, static_cast<U32>(aOps.size()) * 2, aOps.data());
    pPeer->Write(Addr, aOps.data(), aOps.size() * 2);
    const REGS Start = StartRegs(Code, Arch);
    REGS Ours = Start;
    REGS Theirs = Start;
    RunOurs(&Machine, &Ours, Addr, End, i % 2);
    const uc_err Error = pPeer->Run(&Theirs, Addr, End);
    Machine.ReadMem(RAM_START, RAM_SIZE, aOurRAM.data());
    pPeer->ReadRAM(aTheirRAM.data(), RAM_SIZE);
    if (Error || !(Ours == Theirs) || aOurRAM != aTheirRAM) {
      NumFailures++;
      ADD_FAILURE() << "sequence " << i << ": " << Listing(Code, aOps) << "\nemulation error " << Error << ", flags "
                    << Ours.APSR << " and " << Theirs.APSR << ", were " << Start.APSR << ", memory "
                    << (aOurRAM == aTheirRAM ? "agrees" : "differs") << ", registers from, ours, theirs:\n"
                    << testing::PrintToString(Start.R) << '\n'
                    << testing::PrintToString(Ours.R) << '\n'
                    << testing::PrintToString(Theirs.R);
    }
    Addr = (End + 64) & ~3u;
    if (Addr > BIG_FLASH_SIZE - 0x1000) {
      Addr = FIRST_CODE;
      pPeer = std::make_unique<CPeer>(Arch, BIG_FLASH_SIZE, RAM_SIZE);  // forgets what it has translated
      Machine.EraseFlash();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Cores, CCompare, testing::Values(ARCH::ARMV6M, ARCH::ARMV7M, ARCH::ARMV7EM));

}  // namespace

}  // namespace sim_test
