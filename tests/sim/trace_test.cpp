// The trace memory and the counters, held against single steps whose conditions are worked out here.

#include <map>

#include "tests/sim/board.h"

namespace sim_test {

namespace {

using sim::STOP;

constexpr U32 SYST_CSR = 0xE000E010;

struct COUNTS {
  U64 Fetched = 0;
  U64 Skipped = 0;
  bool operator==(const COUNTS&) const = default;
};

struct REFERENCE {
  std::vector<U32> aPc;  // oldest first
  std::map<U32, COUNTS> Counts;
  COUNTS Total;
};

bool Holds(U32 Cond, U32 APSR) {
  const bool N = APSR >> 31 & 1, Z = APSR >> 30 & 1, C = APSR >> 29 & 1, V = APSR >> 28 & 1;
  const bool abTrue[] = {Z, C, N, V, C && !Z, N == V, !Z && N == V, true};
  return abTrue[Cond >> 1] != ((Cond & 1) && Cond != 15);
}

// Whether the instruction at the PC is one whose condition fails, by its encoding and the flags.
bool IsSkipped(CBoard& Board) {
  const U32 XPSR = Board.Reg(VNODE_REG_XPSR);
  const U32 ITState = (XPSR >> 8 & 0xFC) | (XPSR >> 25 & 3);
  if (ITState) return !Holds(ITState >> 4, XPSR);
  U16 aOp[2] = {};
  Board.ReadMem(Board.Pc(), sizeof(aOp), aOp);
  if (aOp[0] >> 12 == 0xD && (aOp[0] >> 8 & 0xF) < 14) return !Holds(aOp[0] >> 8 & 0xF, XPSR);
  const bool bWideBranch = aOp[0] >> 11 == 0x1E && (aOp[1] & 0xD000) == 0x8000;
  if (bWideBranch && (aOp[0] >> 6 & 0xF) < 14) return !Holds(aOp[0] >> 6 & 0xF, XPSR);
  return false;
}

// Steps until a stop or for so many instructions.
REFERENCE StepThrough(CBoard& Board, U64 NumInsts) {
  REFERENCE Reference;
  const U64 End = Board.InstructionCount() + NumInsts;
  STOP Stop = STOP::SLICE_END;
  while (Stop == STOP::SLICE_END && Board.InstructionCount() < End) {
    const U32 Pc = Board.Pc();
    const bool bSkipped = IsSkipped(Board);
    const U64 Before = Board.InstructionCount();
    Stop = Board.Step();
    if (Board.InstructionCount() == Before) continue;  // an exception was entered, or a stop
    Reference.aPc.push_back(Pc);
    for (COUNTS* p : {&Reference.Counts[Pc], &Reference.Total}) {
      p->Fetched++;
      p->Skipped += bSkipped;
    }
  }
  return Reference;
}

void ExpectSame(CBoard& Board, const REFERENCE& Reference, U32 NumEntries) {
  std::vector<U32> aExpected(Reference.aPc.rbegin(), Reference.aPc.rend());
  if (aExpected.size() > NumEntries) aExpected.resize(NumEntries);
  std::vector<U32> aRead(NumEntries + 1);
  aRead.resize(Board.ReadTrace(aRead.data(), NumEntries + 1));
  EXPECT_TRUE(aRead == aExpected);
  EXPECT_EQ(Board.ReadTrace(aExpected.data(), 1), 0u) << "all is read";
  std::vector<U64> aFetched(FLASH_SIZE / 2), aSkipped(FLASH_SIZE / 2);
  const sim::TRACE_TOTALS Total = Board.ReadTraceCounters(0, FLASH_SIZE / 2, aFetched.data(), aSkipped.data());
  EXPECT_EQ((COUNTS{Total.NumFetched, Total.NumSkipped}), Reference.Total);
  for (U32 Addr = 0; Addr < FLASH_SIZE; Addr += 2) {
    const auto It = Reference.Counts.find(Addr);
    ASSERT_EQ((COUNTS{aFetched[Addr / 2], aSkipped[Addr / 2]}), It == Reference.Counts.end() ? COUNTS() : It->second)
        << Addr;
  }
}

// cmp r0, #3; ite eq; moveq r1, #1; movne r1, #2; beq +0 (to the next one whether taken or not); adds r0, #1; cmp r0,
// #7; bne -> loop; movs r0, #0; cbz r1, +2 (never); ldr r7, [r6] (a fault); b -> loop
const std::vector<U16> LOOP = {0x2803, 0xBF0C, 0x2101, 0x2102, 0xD0FF, 0x3001,
                               0x2807, 0xD1F7, 0x2000, 0xB101, 0x6837, 0xE7F3};
constexpr U32 BRANCH_TO_NEXT = CODE_START + 8;

void LoadLoop(CBoard* pBoard) {
  pBoard->Load(LOOP);
  // The hard fault handler goes on behind the instruction: ldr r0, [sp, #24]; adds r0, #2; str r0, [sp, #24]; bx lr
  const U16 aHandler[] = {0x9806, 0x3002, 0x9006, 0x4770};
  const U32 Vector = (HANDLER + 0x40) | 1;
  pBoard->Program(HANDLER + 0x40, sizeof(aHandler), aHandler);
  pBoard->Program(3 * 4, 4, &Vector);
  pBoard->WriteReg(6, 0x60000000);
  pBoard->SetWord(SYST_CSR + 4, 36);
  pBoard->SetWord(SYST_CSR + 8, 0);
  pBoard->SetWord(SYST_CSR, 7);
}

TEST(CTrace, GoesThroughInterruptsFaultsBreakpointsAndSteps) {
  CBoard Traced, Stepped;
  LoadLoop(&Traced);
  LoadLoop(&Stepped);
  constexpr U32 NUM_ENTRIES = 2048;
  Traced.StartTrace(NUM_ENTRIES);
  EXPECT_TRUE(Traced.SetCodeBreakpoint(BRANCH_TO_NEXT));
  Traced.SetSoftBreakpoint(CODE_START + 6);  // inside the block
  U32 NumStops = 0;
  while (Traced.InstructionCount() < 3'000) {
    NumStops += Traced.Run(50, nullptr, true) == STOP::BREAKPOINT;
    Traced.Step();
  }
  EXPECT_GT(NumStops, 100u);
  const REFERENCE Reference = StepThrough(Stepped, Traced.InstructionCount());
  EXPECT_GT(Reference.Counts.at(HANDLER).Fetched, 30u) << "interrupts";
  EXPECT_GT(Reference.Counts.at(HANDLER + 0x40).Fetched, 10u) << "faults";
  const COUNTS Branch = Reference.Counts.at(BRANCH_TO_NEXT);
  EXPECT_GT(Branch.Skipped, 0u);
  EXPECT_LT(Branch.Skipped, Branch.Fetched);
  ExpectSame(Traced, Reference, NUM_ENTRIES);
}

}  // namespace

}  // namespace sim_test
