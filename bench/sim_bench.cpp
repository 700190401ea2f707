// The simulated core beside an emulation library on two loops: one of integers, half of whose instructions are loads
// and stores, and one of floating point. The library runs with and without the hook that a debugger needs to see every
// instruction. The rates are instructions per second of processor time; the last lines are the ratios.

#include <benchmark/benchmark.h>
#include <unicorn/unicorn.h>

#include <cstdio>
#include <cstring>

#include "probe/sim/machine.h"

namespace {

constexpr U32 FLASH_SIZE = 0x10000;
constexpr U32 RAM_START = 0x20000000;
constexpr U32 RAM_SIZE = 0x10000;
constexpr U32 CODE_START = 0x100;
constexpr U32 ROUNDS = 200'000;
constexpr U32 REG_ROUNDS = 7;
constexpr U32 REG_POINTER = 0;

// A filter over a table: three loads, three stores, arithmetic, a condition.
constexpr U16 INTEGER_LOOP[] = {
    0x6801,          // ldr   r1, [r0]
    0x8882,          // ldrh  r2, [r0, #4]
    0x4411,          // add   r1, r2
    0x6001,          // str   r1, [r0]
    0x4053,          // eors  r3, r2
    0x7183,          // strb  r3, [r0, #6]
    0x6884,          // ldr   r4, [r0, #8]
    0xEB04, 0x0441,  // add.w r4, r4, r1, lsl #1
    0x6084,          // str   r4, [r0, #8]
    0x0862,          // lsrs  r2, r4, #1
    0x3F01,          // subs  r7, #1
    0xD1F2,          // bne   loop
    0xBE00,          // bkpt
};

// Products, sums, a quotient, a conversion and a comparison; two loads, one store.
constexpr U16 FP_LOOP[] = {
    0xEDD0, 0x0A04,  // vldr     s1, [r0, #16]
    0xED90, 0x1A05,  // vldr     s2, [r0, #20]
    0xEE60, 0x1A81,  // vmul.f32 s3, s1, s2
    0xEEA1, 0x2A81,  // vfma.f32 s4, s3, s2
    0xEE72, 0x2A20,  // vadd.f32 s5, s4, s1
    0xEE32, 0x3AE1,  // vsub.f32 s6, s5, s3
    0xED80, 0x3A06,  // vstr     s6, [r0, #24]
    0xEEC0, 0x3A81,  // vdiv.f32 s7, s1, s2
    0xEE03, 0x4A81,  // vmla.f32 s8, s7, s2
    0xEEFD, 0x4AE2,  // vcvt.s32.f32 s9, s5
    0xEEB4, 0x3A62,  // vcmp.f32 s6, s5
    0xEEF1, 0xFA10,  // vmrs     APSR_nzcv, fpscr
    0x3F01,          // subs     r7, #1
    0xD1E5,          // bne      loop
    0xBE00,          // bkpt
};
constexpr float FP_DATA[] = {1.1f, 0.7f};
constexpr U32 FP_DATA_ADDR = RAM_START + 16;
constexpr U32 CPACR = 0xE000ED88;
constexpr U32 CPACR_FPU_ON = 0x00F00000;

struct LOOP {
  const char* sName;
  const U16* paCode;
  U32 NumBytes;
  U32 InstsPerRound;
  double OurRate = 0;
  double LibraryRate = 0;
  double HookedRate = 0;
  U32 End() const { return CODE_START + NumBytes - 2; }
};
LOOP IntegerLoop = {"integers", INTEGER_LOOP, sizeof(INTEGER_LOOP), 12};
LOOP FpLoop = {"floating point", FP_LOOP, sizeof(FP_LOOP), 14};

double Rate(U64 Num, clock_t Start) {
  return static_cast<double>(Num) * CLOCKS_PER_SEC / static_cast<double>(clock() - Start);
}

void BM_SimulatedCore(benchmark::State& State, LOOP* pLoop) {
  sim::BOARD_SPEC Spec;
  Spec.Fpu = sim::FPU::V4_SINGLE;
  Spec.Flash = {0, FLASH_SIZE};
  Spec.RAM[0] = {RAM_START, RAM_SIZE};
  sim::CMachine Machine(Spec);
  Machine.Program(CODE_START, pLoop->NumBytes, pLoop->paCode);
  Machine.WriteMem(CPACR, 4, &CPACR_FPU_ON, 4);
  Machine.WriteMem(FP_DATA_ADDR, sizeof(FP_DATA), FP_DATA);
  const U64 Start = Machine.InstructionCount();
  const clock_t StartTime = clock();
  for (auto _ : State) {
    Machine.WriteReg(REG_POINTER, RAM_START);
    Machine.WriteReg(REG_ROUNDS, ROUNDS);
    Machine.WriteReg(16, 1u << 24);
    Machine.WriteReg(15, CODE_START);
    if (Machine.Run(~0ull, nullptr, false) != sim::STOP::BKPT) State.SkipWithError("the loop did not end");
  }
  const U64 Num = Machine.InstructionCount() - Start;
  pLoop->OurRate = Rate(Num, StartTime);
  State.SetItemsProcessed(static_cast<int64_t>(Num));
}
BENCHMARK_CAPTURE(BM_SimulatedCore, integers, &IntegerLoop)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SimulatedCore, floating_point, &FpLoop)->Unit(benchmark::kMillisecond);

U64 NumHooked = 0;

void OnInstruction(uc_engine*, uint64_t, uint32_t, void*) {
  NumHooked++;
}

void BM_EmulationLibrary(benchmark::State& State, LOOP* pLoop, bool bHook) {
  uc_engine* pEngine = nullptr;
  uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &pEngine);
  uc_ctl_set_cpu_model(pEngine, UC_CPU_ARM_CORTEX_M4);
  uc_mem_map(pEngine, 0, FLASH_SIZE, UC_PROT_ALL);
  uc_mem_map(pEngine, RAM_START, RAM_SIZE, UC_PROT_ALL);
  uc_mem_write(pEngine, CODE_START, pLoop->paCode, pLoop->NumBytes);
  uc_mem_write(pEngine, FP_DATA_ADDR, FP_DATA, sizeof(FP_DATA));
  uc_hook Hook;
  if (bHook) uc_hook_add(pEngine, &Hook, UC_HOOK_CODE, reinterpret_cast<void*>(OnInstruction), nullptr, 1, 0);
  U64 Num = 0;
  NumHooked = 0;
  const clock_t StartTime = clock();
  for (auto _ : State) {
    const U32 Pointer = RAM_START;
    const U32 Rounds = ROUNDS;
    uc_reg_write(pEngine, UC_ARM_REG_R0, &Pointer);
    uc_reg_write(pEngine, UC_ARM_REG_R7, &Rounds);
    if (uc_emu_start(pEngine, CODE_START | 1, pLoop->End(), 0, 0) != UC_ERR_OK)
      State.SkipWithError("the loop did not end");
    Num += static_cast<U64>(ROUNDS) * pLoop->InstsPerRound;
  }
  // The library leaves single instructions out.
  if (bHook && NumHooked < Num / 2) State.SkipWithError("the hook was not called");
  (bHook ? pLoop->HookedRate : pLoop->LibraryRate) = Rate(Num, StartTime);
  State.SetItemsProcessed(static_cast<int64_t>(Num));
  uc_close(pEngine);
}
BENCHMARK_CAPTURE(BM_EmulationLibrary, integers, &IntegerLoop, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EmulationLibrary, integers_hooked, &IntegerLoop, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EmulationLibrary, floating_point, &FpLoop, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EmulationLibrary, floating_point_hooked, &FpLoop, true)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int NumArgs, char** asArgs) {
  benchmark::Initialize(&NumArgs, asArgs);
  benchmark::RunSpecifiedBenchmarks();
  for (const LOOP* pLoop : {&IntegerLoop, &FpLoop}) {
    if (!pLoop->OurRate || !pLoop->LibraryRate || !pLoop->HookedRate) continue;
    std::printf(
        "%s: simulated core %.0f M/s, emulation library %.0f M/s, ratio %.1f; with its hook %.1f M/s, ratio %.1f\n",
        pLoop->sName, pLoop->OurRate / 1e6, pLoop->LibraryRate / 1e6, pLoop->OurRate / pLoop->LibraryRate,
        pLoop->HookedRate / 1e6, pLoop->OurRate / pLoop->HookedRate);
  }
  return 0;
}
