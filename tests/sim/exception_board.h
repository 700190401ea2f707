#pragma once
// Runs the cases of an image that tests/sim/firmware/harness.macros frames.

#include <span>
#include <string>

#include "tests/sim/board.h"

namespace sim_test {

inline constexpr U32 CASE_ADDR = RAM_START + 4;
inline constexpr U32 RESULT_ADDR = RAM_START + 8;
inline constexpr U32 LOG_ADDR = RAM_START + 0x200;
inline constexpr U32 CFSR = 0xE000ED28;
inline constexpr U32 HFSR = 0xE000ED2C;
inline constexpr U32 DFSR = 0xE000ED30;
inline constexpr U32 BFAR = 0xE000ED38;
inline constexpr U32 FORCED = 0x40000000;
inline constexpr U64 MANY = 100'000;

struct IMAGE_LABELS {
  const U8* pImage;
  U32 NumBytes;
  U32 Done;  // where the cases end
};

struct EXCEPTION_CASE {
  const char* sName;
  U32 Label;
  const char* sLog;  // +N entered, -N left
  std::vector<U32> aResult = {};
  U32 CFSR = 0;
  U32 HFSR = 0;
  sim::STOP Stop = sim::STOP::BKPT;
};

class CExceptionBoard : public CBoard {
public:
  CExceptionBoard(const IMAGE_LABELS& Image, sim::FPU Fpu) : CBoard(sim::ARCH::ARMV7EM, Fpu), m_Image(Image) {
    Program(0, Image.NumBytes, Image.pImage);
    Reset();
  }
  void Select(U32 Label) { SetWord(CASE_ADDR, Label | 1); }
  std::string Log() {
    std::string s;
    const U32 End = Word(RAM_START);
    for (U32 Addr = LOG_ADDR; Addr < End && Addr < LOG_ADDR + 100; Addr++) {
      U8 Byte = 0;
      ReadMem(Addr, 1, &Byte);
      s += (s.empty() ? "" : " ") + std::string(Byte & 0x80 ? "-" : "+") + std::to_string(Byte & 0x7F);
    }
    return s;
  }
  sim::STOP RunCase(U32 Label, bool bStepped) {
    Select(Label);
    if (!bStepped) return Run(MANY, nullptr, false);
    sim::STOP Stop = sim::STOP::SLICE_END;
    for (U64 i = 0; i < MANY && Stop == sim::STOP::SLICE_END; i++) Stop = Step();
    return Stop;
  }
  void Expect(const EXCEPTION_CASE& Case, bool bStepped) {
    EXPECT_EQ(RunCase(Case.Label, bStepped), Case.Stop);
    if (Case.Stop == sim::STOP::BKPT) {
      EXPECT_EQ(Pc(), m_Image.Done);
      EXPECT_EQ(Reg(VNODE_REG_IPSR), 0u);
      EXPECT_EQ(Reg(VNODE_REG_SP), 0x20001000u);
    } else {
      EXPECT_TRUE(IsInLockup());
    }
    EXPECT_EQ(Log(), Case.sLog);
    for (size_t i = 0; i < Case.aResult.size(); i++)
      EXPECT_EQ(Word(RESULT_ADDR + 4 * static_cast<U32>(i)), Case.aResult[i]) << i;
    EXPECT_EQ(Word(CFSR), Case.CFSR);
    EXPECT_EQ(Word(HFSR), Case.HFSR);
  }

private:
  const IMAGE_LABELS& m_Image;
};

// Each case on a board of its own, run and stepped.
inline void ExpectAll(const IMAGE_LABELS& Image, sim::FPU Fpu, std::span<const EXCEPTION_CASE> Cases) {
  for (const EXCEPTION_CASE& Case : Cases) {
    for (const bool bStepped : {false, true}) {
      SCOPED_TRACE(std::string(Case.sName) + (bStepped ? ", stepped" : ", run"));
      CExceptionBoard(Image, Fpu).Expect(Case, bStepped);
    }
  }
}

}  // namespace sim_test
