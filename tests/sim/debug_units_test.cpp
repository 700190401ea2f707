// The debug units by their registers, as firmware and debugger use them.

#include <algorithm>
#include <array>

#include "tests/sim/board.h"

namespace sim_test {

namespace {

using sim::ARCH;
using sim::DATA_WATCH;
using sim::STOP;

constexpr U32 ITM = 0xE0000000;
constexpr U32 ITM_TER = ITM + 0xE00, ITM_TPR = ITM + 0xE40, ITM_TCR = ITM + 0xE80;
constexpr U32 DWT_CTRL = 0xE0001000, DWT_CYCCNT = 0xE0001004;
constexpr U32 DEMCR = 0xE000EDFC, TRCENA = 1u << 24;
constexpr U64 MANY = 1000;

constexpr U32 Comparator(U32 Index) {
  return 0xE0001020 + 16 * Index;
}

TEST(CDwt, CycleCounterFollowsItsEnables) {
  // ldr r1, [r0]; nop; nop; ldr r2, [r0]; bkpt
  const std::vector<U16> CODE = {0x6801, 0xBF00, 0xBF00, 0x6802, 0xBE00};
  const std::tuple<ARCH, U32, U32, U32> ROWS[] = {// core, DEMCR, DWT_CTRL, cycles between the two reads
                                                  {ARCH::ARMV7EM, TRCENA, 1, 3},
                                                  {ARCH::ARMV7M, TRCENA, 0, 0},
                                                  {ARCH::ARMV7EM, 0, 1, 0},
                                                  {ARCH::ARMV6M, TRCENA, 1, 0}};
  for (const auto& [Arch, Demcr, Ctrl, NumCycles] : ROWS) {
    CBoard Board(Arch);
    Board.Load(CODE);
    Board.SetWord(DEMCR, Demcr);
    Board.SetWord(DWT_CTRL, Ctrl);
    Board.SetWord(DWT_CYCCNT, 1000);
    Board.WriteReg(0, DWT_CYCCNT);
    EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BKPT);
    EXPECT_EQ(Board.Reg(2) - Board.Reg(1), NumCycles) << static_cast<int>(Arch) << " " << Demcr << " " << Ctrl;
    if (NumCycles) {
      EXPECT_EQ(Board.Word(DWT_CYCCNT), 1004u) << "stands while the core is halted";
    }
    EXPECT_EQ(Board.Word(DWT_CTRL) >> 28, 4u);
  }
}

// ldr r1, [r0]; strb r2, [r0, #1]; strh r2, [r0, #4]; loop
const std::vector<U16> ACCESSES = {0x6801, 0x7042, 0x8082, 0xE7FB};
constexpr U32 DATA = RAM_START + 0x40;
constexpr U32 VALUE = 1u << 8;  // FUNCTION: compares a value
constexpr U32 BYTE = 0, HALF = 1u << 10, WORD = 2u << 10;
constexpr U32 Linked(U32 First, U32 Second) {
  return First << 12 | Second << 16;
}

void LoadAccesses(CBoard* pBoard) {
  pBoard->Load(ACCESSES);
  pBoard->SetWord(DATA, 0x12345678);
  pBoard->WriteReg(0, DATA);
  pBoard->WriteReg(2, 0xABCD);
}

// Stops behind the access at an offset, or not at all for 0.
void ExpectStop(CBoard& Board, U32 StopAfter) {
  EXPECT_EQ(Board.Run(MANY, nullptr, false), StopAfter ? STOP::DATA_WATCH : STOP::SLICE_END);
  EXPECT_TRUE(!StopAfter || Board.Pc() == CODE_START + StopAfter);
}

TEST(CDwt, ComparatorsStopAsTheirRegistersSay) {
  using COMPARATOR = std::array<U32, 4>;  // index, value, mask, function
  const std::tuple<const char*, COMPARATOR, COMPARATOR, U32> ROWS[] = {
      {"read", {0, DATA, 2, 5}, {}, 2},
      {"write", {2, DATA, 0, 6}, {2, DATA + 1, 0, 6}, 4},
      {"either, under a mask", {3, DATA + 4, 2, 7}, {}, 6},
      {"upper byte of the halfword", {0, DATA + 5, 0, 6}, {}, 6},
      {"trace only", {0, DATA, 3, 2}, {}, 0},
      {"halfword", {0, DATA + 4, 1, 0}, {1, 0xABCDABCD, 0, 6 | VALUE | HALF | Linked(0, 0)}, 6},
      {"byte within the halfword", {0, DATA + 4, 1, 0}, {1, 0xABABABAB, 0, 6 | VALUE | BYTE | Linked(0, 0)}, 6},
      {"second link", {3, DATA + 4, 1, 0}, {1, 0xABCDABCD, 0, 6 | VALUE | HALF | Linked(0, 3)}, 6},
      {"any address", {}, {1, 0xABCDABCD, 0, 6 | VALUE | HALF | Linked(1, 1)}, 6},
      {"value of a read", {}, {1, 0x12345678, 0, 5 | VALUE | WORD | Linked(1, 1)}, 2},
      {"no word was written", {}, {1, 0x0000ABCD, 0, 6 | VALUE | WORD | Linked(1, 1)}, 0},
      {"wrong value", {0, DATA + 4, 1, 0}, {1, 0xABCEABCE, 0, 6 | VALUE | HALF | Linked(0, 0)}, 0},
      {"other comparators have no values", {2, 0xABCDABCD, 0, 6 | VALUE | HALF | Linked(2, 2)}, {}, 0},
  };
  for (const auto& [sWhat, First, Second, StopAfter] : ROWS) {
    SCOPED_TRACE(sWhat);
    CBoard Board;
    LoadAccesses(&Board);
    Board.SetWord(DEMCR, TRCENA);
    for (const COMPARATOR& a : {First, Second}) {
      for (U32 i = 1; i < 4 && a != COMPARATOR(); i++) Board.SetWord(Comparator(a[0]) + 4 * (i - 1), a[i]);
    }
    ExpectStop(Board, StopAfter);
    U32 Matched = 0;
    for (U32 i = 0; i < 4; i++) Matched |= Board.Word(Comparator(i) + 8) >> 24 & 1;
    EXPECT_EQ(Matched, StopAfter != 0);
    Board.SetWord(DEMCR, 0);
    ExpectStop(Board, 0);
  }
}

TEST(CDwt, WatchesTakeTheComparatorsThereAre) {
  const DATA_WATCH ADDR = {DATA, 0};
  const DATA_WATCH ADDR_AND_VALUE = {DATA, 0, 5, 0};
  const DATA_WATCH VALUE_ANYWHERE = {0, 0xFFFFFFFF, 5, 0};
  // core, watches, result of setting the last one: 0 for success
  const std::tuple<ARCH, std::vector<DATA_WATCH>, int> ROWS[] = {
      {ARCH::ARMV7M, {ADDR, ADDR, ADDR, ADDR}, 0},
      {ARCH::ARMV7M, {ADDR, ADDR, ADDR, ADDR, ADDR}, sim::WATCH_NO_FREE_UNIT},
      {ARCH::ARMV7M, {ADDR_AND_VALUE, ADDR, ADDR}, 0},
      {ARCH::ARMV7M, {ADDR_AND_VALUE, ADDR, ADDR, ADDR}, sim::WATCH_NO_FREE_UNIT},
      {ARCH::ARMV7M, {ADDR_AND_VALUE, ADDR_AND_VALUE}, sim::WATCH_NO_FREE_UNIT},
      {ARCH::ARMV7M, {ADDR, ADDR, ADDR, ADDR_AND_VALUE}, sim::WATCH_NO_FREE_UNIT},
      {ARCH::ARMV7M, {ADDR, ADDR, ADDR, VALUE_ANYWHERE}, 0},
      {ARCH::ARMV6M, {ADDR_AND_VALUE}, sim::WATCH_NO_VALUES},
  };
  for (const auto& [Arch, Watches, LastResult] : ROWS) {
    SCOPED_TRACE(testing::Message() << Watches.size() << " watches, " << LastResult);
    CBoard Board(Arch);
    Board.Load(ACCESSES);
    std::vector<int> aIndex;
    for (const DATA_WATCH& Watch : Watches) aIndex.push_back(Board.SetDataWatch(Watch));
    EXPECT_EQ(std::min(aIndex.back(), 0), LastResult);
    EXPECT_TRUE(std::all_of(aIndex.begin(), aIndex.end() - 1, [](int Index) { return Index >= 0; }));
    for (const int Index : aIndex) Board.ClearDataWatch(Index);
    for (U32 k = 0; k < 4; k++) EXPECT_EQ(Board.Word(Comparator(k) + 8) & 0xF, 0u) << "given back";
  }
}

// ldr r1, [r0]; strb r2, [r0]; strh r2, [r0]; str r2, [r0]; ldr r3, [r4]; bkpt
const std::vector<U16> SEND = {0x6801, 0x7002, 0x8002, 0x6002, 0x6823, 0xBE00};

TEST(CItm, SendsWhatThePortsPermit) {
  // core; port, DEMCR, TCR, TER, TPR; unprivileged code; the port reads as ready, and sends
  const std::tuple<const char*, ARCH, U32, U32, U32, U32, U32, bool, bool, bool> ROWS[] = {
      {"enabled", ARCH::ARMV7M, 0, TRCENA, 1, 1, 0, false, true, true},
      {"last port", ARCH::ARMV7EM, 31, TRCENA, 1, 1u << 31, 0xF, false, true, true},
      {"other port", ARCH::ARMV7M, 1, TRCENA, 1, 1, 0, false, false, false},
      {"unit is off", ARCH::ARMV7M, 0, TRCENA, 0, 1, 0, false, false, false},
      {"trace is off", ARCH::ARMV7M, 0, 0, 1, 1, 0, false, false, false},
      {"user", ARCH::ARMV7M, 9, TRCENA, 1, 1u << 9, 0xD, true, true, true},
      {"user at a privileged port", ARCH::ARMV7M, 9, TRCENA, 1, 1u << 9, 2, true, true, false},
      {"core without ports", ARCH::ARMV6M, 0, TRCENA, 1, 1, 0, false, false, false},
  };
  for (const auto& [sWhat, Arch, Port, Demcr, Control, Enabled, Privileged, bUser, bReady, bSent] : ROWS) {
    SCOPED_TRACE(sWhat);
    CBoard Board(Arch);
    std::vector<std::tuple<U32, U32, U32>> Sent, Expected;
    if (bSent) Expected = {{Port, 0x78, 1}, {Port, 0x5678, 2}, {Port, 0x12345678, 4}};
    EXPECT_EQ(Board.SetStimulusSink([&](U32 Port, U32 Value, U32 Size) { Sent.emplace_back(Port, Value, Size); }),
              Arch != ARCH::ARMV6M);
    Board.Load(SEND);
    const std::pair<U32, U32> aSet[] = {{DEMCR, Demcr}, {ITM_TCR, Control}, {ITM_TER, Enabled}, {ITM_TPR, Privileged}};
    for (const auto& [Addr, Value] : aSet) Board.SetWord(Addr, Value);
    if (bUser) Board.WriteReg(VNODE_REG_CONTROL, 1);
    Board.WriteReg(0, ITM + 4 * Port);
    Board.WriteReg(2, 0x12345678);
    Board.WriteReg(4, RAM_START);
    EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BKPT);
    EXPECT_EQ(Board.Reg(1), static_cast<U32>(bReady));
    EXPECT_EQ(Sent, Expected);
  }
}

}  // namespace

}  // namespace sim_test
