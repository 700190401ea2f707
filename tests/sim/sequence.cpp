#include "tests/sim/sequence.h"

#include <bit>
#include <cstdio>
#include <cstring>

#include "device/probe_api/register_index.h"

namespace sim_test {

namespace {

constexpr U32 RAM_MIDDLE = SEQUENCE_RAM_START + SEQUENCE_RAM_SIZE / 2;
constexpr U32 CPACR = 0xE000ED88;
constexpr U32 CPACR_FPU_ON = 0x00F00000;
constexpr U64 MAX_INSTS = 200;
constexpr U32 FPSCR_MODES = 0x07C00000;

constexpr U32 WORDS[] = {0, 1, 0xFFFFFFFF, 0x80000000, 0x7FFFFFFF, 0x8000, 0x7FFF, 0x80008000};
// Zeros, infinities, NaNs, denormal numbers, ends of ranges, halves of which a rounding decides.
constexpr U32 SINGLES[] = {0,          0x80000000, 0x7F800000, 0xFF800000, 0x7FC12345, 0x7F812345,
                           0xFFC00001, 0x00000001, 0x80000001, 0x007FFFFF, 0x00800000, 0x80800001,
                           0x7F7FFFFF, 0x3F800000, 0x3F000000, 0xBFC00000, 0x4F000000, 0xCF000000,
                           0x4F800000, 0x4EFFFFFF, 0x477FE000, 0x477FF000, 0x33800000, 0x38800000,
                           0x7C017BFF, 0x7E00FC01, 0x03FF8001, 0x3C007C00, 0x1A000000, 0x5A000000};
constexpr U64 DOUBLES[] = {0x0000000000000000, 0x8000000000000000, 0x7FF0000000000000, 0xFFF0000000000000,
                           0x7FF8123456789ABC, 0x7FF0123456789ABC, 0x0000000000000001, 0x800FFFFFFFFFFFFF,
                           0x0010000000000000, 0x7FEFFFFFFFFFFFFF, 0x3FE0000000000000, 0xBFF8000000000000,
                           0x41DFFFFFFFC00000, 0x41EFFFFFFFF00000, 0xC1E0000000200000, 0x47EFFFFFF0000000,
                           0x3810000000000000, 0x36A0000000000000, 0x40EFFC0000000000, 0x3E70000000000001};

// A number of ordinary size, now and then with few digits.
template <class T>
T Ordinary(U64 Random, U32 FractionBits, U32 Bias) {
  const T Sign = static_cast<T>(static_cast<T>(Random >> 63) << (8 * sizeof(T) - 1));
  const U32 Exp = Bias - 20 + static_cast<U32>(Random >> 56 & 0x3F) % 40;
  T Fraction = static_cast<T>(Random) & ((static_cast<T>(1) << FractionBits) - 1);
  if (Random >> 52 & 1) Fraction &= static_cast<T>(~static_cast<T>(0)) << (FractionBits - 6);
  return Sign | static_cast<T>(Exp) << FractionBits | Fraction;
}

}  // namespace

void CSequences::SetFpRegs(REGS* pRegs) {
  for (U32 i = 0; i < NUM_S_REGS; i += 2) {
    const U64 Random = static_cast<U64>(m_Code.Random()) << 32 | m_Code.Random();
    const U32 Kind = m_Code.Random() % 8;
    const bool bDoubles = m_Core.Fpu == sim::FPU::V5_DOUBLE && m_Code.Random() % 2;
    U64 Double = Random;
    if (bDoubles && Kind) Double = Kind < 4 ? DOUBLES[Random % std::size(DOUBLES)] : Ordinary<U64>(Random, 52, 1023);
    pRegs->S[i] = static_cast<U32>(Double);
    pRegs->S[i + 1] = static_cast<U32>(Double >> 32);
    if (bDoubles || !Kind) continue;
    for (U32 Half = 0; Half < 2; Half++) {
      const U64 Draw = Half ? Random : Random * 0x9E3779B97F4A7C15;
      pRegs->S[i + Half] = Kind < 4 ? SINGLES[(Draw >> 32) % std::size(SINGLES)] : Ordinary<U32>(Draw, 23, 127);
    }
  }
  // Often the modes of a reset, half of the time with the inexact flag set already.
  pRegs->FPSCR = m_Code.Random() % 2 ? m_Code.Random() & FPSCR_MODES : 0;
  pRegs->FPSCR |= m_Code.Random() % 2 ? 0x10 : 0;
  pRegs->FPSCR |= m_Code.Random() & 0xF0000000;
}

SEQUENCE CSequences::Make(U32 NumInsts) {
  const bool bV6 = m_Core.Arch == sim::ARCH::ARMV6M;
  SEQUENCE Result;
  Result.aOps = m_Code.Make(NumInsts);
  Result.aNames = m_Code.Names();
  REGS& Regs = Result.Start;
  for (U32& Reg : Regs.R) {
    const U32 Draw = m_Code.Random();
    Reg = Draw % 3 ? m_Code.Random() : WORDS[Draw / 3 % std::size(WORDS)];
  }
  Regs.R[VNODE_REG_SP] = RAM_MIDDLE;
  Regs.R[BASE_REG] = RAM_MIDDLE - 0x800 + (m_Code.Random() & 0xFC);
  Regs.R[HIGH_BASE_REG] = RAM_MIDDLE + 0x800 + (m_Code.Random() & 0xFC);
  Regs.R[INDEX_REG] = m_Code.Random() & (bV6 ? 0x3C : 0x3F);
  Regs.APSR = m_Code.Random() & (bV6 ? 0xF0000000 : m_Core.Arch == sim::ARCH::ARMV7M ? 0xF8000000 : APSR_MASK);
  if (m_Core.Fpu != sim::FPU::NONE) SetFpRegs(&Regs);
  return Result;
}

void CSequences::FillRAM(std::vector<U8>* paRAM) {
  for (U8& Byte : *paRAM) Byte = static_cast<U8>(m_Code.Random());
}

sim::BOARD_SPEC SequenceBoard(const CORE& Core, U32 FlashSize) {
  sim::BOARD_SPEC Spec;
  Spec.Arch = Core.Arch;
  Spec.Fpu = Core.Fpu;
  Spec.Flash = {0, FlashSize};
  Spec.RAM[0] = {SEQUENCE_RAM_START, SEQUENCE_RAM_SIZE};
  return Spec;
}

void EnableFpu(sim::CMachine* pMachine) {
  pMachine->WriteMem(CPACR, sizeof(CPACR_FPU_ON), &CPACR_FPU_ON, sizeof(CPACR_FPU_ON));
}

std::string RunSequence(sim::CMachine* pMachine, REGS* pRegs, U32 Start, U32 End, bool bSteps) {
  const bool bFpu = pMachine->Spec().Fpu != sim::FPU::NONE;
  for (U32 i = 0; i < pRegs->R.size(); i++) pMachine->WriteReg(i, pRegs->R[i]);
  pMachine->WriteReg(VNODE_REG_XPSR, pRegs->APSR | 1u << 24);
  pMachine->WriteReg(VNODE_REG_PC, Start);
  if (bFpu) {
    EnableFpu(pMachine);
    pMachine->WriteReg(VNODE_REG_CONTROL, 4);  // the context has begun
    for (U32 i = 0; i < NUM_S_REGS; i++) pMachine->WriteReg(VNODE_REG_S0 + i, pRegs->S[i]);
    pMachine->WriteReg(VNODE_REG_FPSCR, pRegs->FPSCR);
  }
  U32 Pc = Start;
  if (bSteps) {
    for (U64 i = 0; Pc != End && i < MAX_INSTS; i++) {
      pMachine->Step();
      pMachine->ReadReg(VNODE_REG_PC, &Pc);
    }
  } else {
    pMachine->SetCodeBreakpoint(End);
    pMachine->Run(MAX_INSTS, nullptr, false);
    pMachine->ClearCodeBreakpoint(End);
    pMachine->ReadReg(VNODE_REG_PC, &Pc);
  }
  for (U32 i = 0; i < pRegs->R.size(); i++) pMachine->ReadReg(i, &pRegs->R[i]);
  pMachine->ReadReg(VNODE_REG_XPSR, &pRegs->APSR);
  const bool bOpenBlock = (pRegs->APSR & 0x0700FC00) != 1u << 24;
  pRegs->APSR &= APSR_MASK;
  for (U32 i = 0; bFpu && i < NUM_S_REGS; i++) pMachine->ReadReg(VNODE_REG_S0 + i, &pRegs->S[i]);
  if (bFpu) pMachine->ReadReg(VNODE_REG_FPSCR, &pRegs->FPSCR);
  if (Pc != End) return "our core does not reach the end";
  return bOpenBlock ? "our core leaves an IT block open" : "";
}

std::string Difference(const REGS& Start, const REGS& Ours, const REGS& Theirs) {
  std::string sText;
  const auto Compare = [&sText](const std::string& sName, U32 From, U32 A, U32 B) {
    char ac[100];
    std::snprintf(ac, sizeof(ac), "  %s: %08X, ours %08X, theirs %08X\n", sName.c_str(), From, A, B);
    if (A != B) sText += ac;
  };
  for (U32 i = 0; i < Start.R.size(); i++) Compare("R" + std::to_string(i), Start.R[i], Ours.R[i], Theirs.R[i]);
  for (U32 i = 0; i < NUM_S_REGS; i++) Compare("S" + std::to_string(i), Start.S[i], Ours.S[i], Theirs.S[i]);
  Compare("APSR", Start.APSR, Ours.APSR, Theirs.APSR);
  Compare("FPSCR", Start.FPSCR, Ours.FPSCR, Theirs.FPSCR);
  return sText;
}

std::string Listing(const SEQUENCE& Sequence) {
  std::string sText;
  for (const std::string& sName : Sequence.aNames) sText += sName + "; ";
  for (U16 Op : Sequence.aOps) {
    char ac[8];
    std::snprintf(ac, sizeof(ac), " %04x", Op);
    sText += ac;
  }
  return sText + "\n";
}

}  // namespace sim_test
