// What a debugger does: steps, breakpoints, data watches, writing to memory and registers.

#include "tests/sim/board.h"

namespace sim_test {

namespace {

using sim::STOP;

constexpr U16 NOP = 0xBF00;
constexpr U16 BKPT = 0xBE00;
constexpr U64 MANY = 10'000;

constexpr U16 Movs(U16 Reg, U16 Value) {
  return static_cast<U16>(0x2000 | Reg << 8 | Value);
}

// cmp r0, #0; ittee eq; movs r1..r4; bkpt
const std::vector<U16> BLOCK = {0x2800, 0xBF07, Movs(1, 1), Movs(2, 2), Movs(3, 3), Movs(4, 4), BKPT};

// The registers R1 to R4.
std::vector<U32> Moved(const CBoard& Board) {
  return {Board.Reg(1), Board.Reg(2), Board.Reg(3), Board.Reg(4)};
}

TEST(CStep, EveryInstructionOfABlockIsAStep) {
  CBoard Board;
  Board.Load(BLOCK);
  U32 Num = 0;
  for (const U32 ItState : {0, 0x07, 0x0E, 0x1C, 0x18, 0}) {  // after each step
    EXPECT_EQ(Board.Step(), STOP::SLICE_END);
    EXPECT_EQ(Board.Pc(), CODE_START + 2 * ++Num);
    const U32 XPSR = Board.Reg(VNODE_REG_XPSR);
    EXPECT_EQ((XPSR >> 8 & 0xFC) | (XPSR >> 25 & 3), ItState) << Num;
  }
  EXPECT_EQ(Board.InstructionCount(), 6u);
  EXPECT_EQ(Moved(Board), (std::vector<U32>{1, 2, 0, 0}));
  EXPECT_EQ(Board.Step(), STOP::BKPT);
  EXPECT_EQ(Board.Pc(), CODE_START + 12);
}

TEST(CBreakpoint, InABlockItStopsWhateverTheCondition) {
  CBoard Board;
  Board.Load(BLOCK);
  Board.SetCodeBreakpoint(CODE_START + 8);  // skipped by the block
  for (const U32 Offset : {8, 12}) {
    EXPECT_EQ(Board.Run(MANY, nullptr, Offset == 12), Offset == 12 ? STOP::BKPT : STOP::BREAKPOINT);
    EXPECT_EQ(Board.Pc(), CODE_START + Offset);
  }
  EXPECT_EQ(Board.Reg(3), 0u);
}

TEST(CStep, InterruptInsideABlockKeepsIt) {
  CBoard Board;
  Board.Load(BLOCK);
  Board.SetWord(0xE000E100, 1);
  for (int i = 0; i < 3; i++) Board.Step();
  Board.RaiseIRQ(0);
  EXPECT_EQ(Board.Step(), STOP::SLICE_END);
  EXPECT_EQ(Board.Pc(), HANDLER);
  EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), 16u);
  EXPECT_EQ(Board.Reg(VNODE_REG_XPSR) & 0x0600FC00, 0u);
  EXPECT_EQ(Board.Word(Board.Reg(VNODE_REG_SP) + 24), CODE_START + 6);
  EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BKPT);
  EXPECT_EQ(Moved(Board), (std::vector<U32>{1, 2, 0, 0}));
}

// cmp r0, #0; itt eq; movs r1; ldr r2, [r5]; bkpt: the frame has to hold the block as it was at the load.
TEST(CStep, FaultInsideABlockCanBeRepeated) {
  CBoard Board;
  Board.Load({0x2800, 0xBF04, Movs(1, 1), 0x682A, BKPT});
  Board.SetCodeBreakpoint(HANDLER);
  Board.WriteReg(5, 0x60000000);
  EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BREAKPOINT);
  const U32 Frame = Board.Reg(VNODE_REG_SP);
  EXPECT_EQ(Board.Word(Frame + 24), CODE_START + 6);
  EXPECT_EQ(Board.Word(Frame + 28) & 0x0600FC00, 0x00000800u);
  Board.WriteReg(5, RAM_START);
  Board.SetWord(RAM_START, 1234);
  EXPECT_EQ(Board.Run(MANY, nullptr, true), STOP::BKPT);
  EXPECT_EQ(Board.Reg(2), 1234u);
}

// Code in RAM that rewrites the instruction behind itself, and a breakpoint there.
TEST(CCode, StoresToCodeTakeEffect) {
  CBoard Board;
  Board.Load({NOP});
  const std::vector<U16> aCode = {Movs(1, 1), 0x8003, Movs(1, 5), 0xE7FB};  // strh r3, [r0]; movs r1, #5; loop
  const U32 Start = RAM_START + 0x101;
  Board.WriteMem(Start & ~1u, 8, aCode.data());
  Board.WriteReg(VNODE_REG_R0, RAM_START + 0x104);
  Board.WriteReg(3, Movs(1, 9));
  Board.WriteReg(VNODE_REG_PC, Start);
  Board.Run(3, nullptr, false);
  EXPECT_EQ(Board.Reg(1), 9u);
  Board.SetSoftBreakpoint(RAM_START + 0x104);
  Board.WriteReg(3, Movs(1, 7));
  EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BREAKPOINT) << "the store keeps the breakpoint";
  Board.Step();
  EXPECT_EQ(Board.Reg(1), 7u);
  Board.Run(MANY, nullptr, false);
  const U16 Written = Movs(1, 8);
  Board.WriteMem(RAM_START + 0x104, 2, &Written, 2);
  Board.Step();
  EXPECT_EQ(Board.Reg(1), 8u);
}

// The first halfword 0xF7F0 belongs to branches far back as well as to the instruction that is undefined on purpose.
TEST(CCode, LongBranchesBack) {
  constexpr U32 FROM = 0xFF00;
  const std::tuple<const char*, U16, U32, U32> ROWS[] = {
      {"bl", 0xF8FE, CODE_START, 0}, {"b.w", 0xB8FE, CODE_START, 0}, {"udf.w", 0xA000, HANDLER, 3}};
  for (const auto& [sName, Second, Target, Exc] : ROWS) {
    SCOPED_TRACE(sName);
    CBoard Board;
    Board.Load({BKPT});
    const U16 aCode[] = {0xF7F0, Second};
    Board.Program(FROM, sizeof(aCode), aCode);
    Board.WriteReg(VNODE_REG_PC, FROM);
    Board.Step();
    EXPECT_EQ(Board.Pc(), Target);
    EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), Exc);
  }
}

TEST(CCode, SecondHalfwordIsWatchedToo) {
  CBoard Board;
  Board.Load({NOP});
  const std::vector<U16> aCode = {0xF240, 0x0105, 0xE7FC};  // movw r1, #5; loop
  Board.WriteMem(RAM_START, 6, aCode.data());
  Board.WriteReg(VNODE_REG_PC, RAM_START);
  Board.Run(4, nullptr, false);
  EXPECT_EQ(Board.Reg(1), 5u);
  const U16 Second = 0x0106;
  Board.WriteMem(RAM_START + 2, 2, &Second);
  Board.Run(4, nullptr, false);
  EXPECT_EQ(Board.Reg(1), 6u);
}

TEST(CSysTick, CountsDownAndReloads) {
  constexpr U32 CSR = 0xE000E010;
  CBoard Board;
  Board.Load({NOP, 0xE7FD});
  Board.SetWord(CSR + 4, 10);
  Board.SetWord(CSR + 8, 99);  // any write clears the count
  Board.SetWord(CSR, 5);
  // cycles since the row before, count, flag
  const std::tuple<U64, U32, bool> ROWS[] = {{0, 0, false}, {1, 10, false}, {9, 1, false}, {1, 0, true},
                                             {1, 10, true}, {11, 10, true}, {25, 7, true}};
  for (const auto& [NumCycles, Count, bFlag] : ROWS) {
    Board.Run(NumCycles, nullptr, false);
    EXPECT_EQ(Board.Word(CSR + 8), Count);
    EXPECT_EQ((Board.Word(CSR) >> 16 & 1) != 0, bFlag);
  }
  Board.SetWord(CSR, 4);
  Board.Run(5, nullptr, false);
  EXPECT_EQ(Board.Word(CSR + 8), 7u) << "stopped";
}

TEST(CRegisters, StackPointersFollowTheSelection) {
  CBoard Board;
  Board.Load({BKPT});
  Board.WriteReg(VNODE_REG_PSP, 0x20000803);
  EXPECT_EQ(Board.Reg(VNODE_REG_SP), RAM_START + RAM_SIZE);
  Board.WriteReg(VNODE_REG_CONTROL, 2);
  EXPECT_EQ(Board.Reg(VNODE_REG_SP), 0x20000800u);
  EXPECT_EQ(Board.Reg(VNODE_REG_MSP), RAM_START + RAM_SIZE);
  Board.WriteReg(VNODE_REG_SP, 0x20000700);
  EXPECT_EQ(Board.Reg(VNODE_REG_PSP), 0x20000700u);
  Board.WriteReg(VNODE_REG_CFBP, 0x0001E001);
  EXPECT_EQ(Board.Reg(VNODE_REG_CFBP), 0x0001E001u);
  EXPECT_EQ(Board.Reg(VNODE_REG_SP), RAM_START + RAM_SIZE) << "CONTROL is part of it";
  Board.WriteReg(VNODE_REG_XPSR, 0xF100FC03 | 0x06000000);
  EXPECT_EQ(Board.Reg(VNODE_REG_XPSR), 0xF700FC03u);
}

}  // namespace

}  // namespace sim_test
