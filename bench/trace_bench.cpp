// The simulated core beside an emulation library on one loop, half of whose instructions are loads and stores, each as
// it is and with a record of every instruction: here the trace memory and its counters, there a hook that stores the
// address. The rates are instructions per second of processor time; the last lines are the ratios.

#include <benchmark/benchmark.h>
#include <unicorn/unicorn.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>

#include "probe/sim/machine.h"

namespace {

constexpr U32 FLASH_SIZE = 0x10000;
constexpr U32 RAM_START = 0x20000000;
constexpr U32 RAM_SIZE = 0x10000;
constexpr U32 CODE_START = 0x100;
constexpr U32 INSTS_PER_ROUND = 12;
constexpr U32 ROUNDS = 200'000;
constexpr U32 REG_ROUNDS = 7;
constexpr U32 REG_POINTER = 0;

// A filter over a table: three loads, three stores, arithmetic, a condition.
constexpr U16 LOOP[] = {
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
constexpr U32 END_OF_LOOP = CODE_START + sizeof(LOOP) - 2;

struct RATES {
  double Ours = 0;
  double Theirs = 0;
};
RATES aRates[2];  // without and with trace

double Rate(U64 Num, clock_t StartTime) {
  return static_cast<double>(Num) * CLOCKS_PER_SEC / static_cast<double>(clock() - StartTime);
}

void BM_SimulatedCore(benchmark::State& State) {
  const bool bTraced = State.range(0);
  sim::BOARD_SPEC Spec;
  Spec.Flash = {0, FLASH_SIZE};
  Spec.RAM[0] = {RAM_START, RAM_SIZE};
  sim::CMachine Machine(Spec);
  Machine.Program(CODE_START, sizeof(LOOP), LOOP);
  if (bTraced) Machine.StartTrace();
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
  aRates[bTraced].Ours = Rate(Num, StartTime);
  State.SetItemsProcessed(static_cast<int64_t>(Num));
}
BENCHMARK(BM_SimulatedCore)->ArgName("traced")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The least that a trace needs: the address, and a counter for it.
struct HOOK_DATA {
  U32 aAddr[1u << 20];
  U64 NumRecorded;
  U64 aCount[FLASH_SIZE / 2];
};

void OnCode(uc_engine*, uint64_t Addr, uint32_t, void* pUser) {
  HOOK_DATA* p = static_cast<HOOK_DATA*>(pUser);
  p->aAddr[p->NumRecorded++ % std::size(p->aAddr)] = static_cast<U32>(Addr);
  p->aCount[Addr % FLASH_SIZE / 2]++;
}

void BM_EmulationLibrary(benchmark::State& State) {
  const bool bTraced = State.range(0);
  uc_engine* pEngine = nullptr;
  uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &pEngine);
  uc_ctl_set_cpu_model(pEngine, UC_CPU_ARM_CORTEX_M4);
  uc_mem_map(pEngine, 0, FLASH_SIZE, UC_PROT_ALL);
  uc_mem_map(pEngine, RAM_START, RAM_SIZE, UC_PROT_ALL);
  uc_mem_write(pEngine, CODE_START, LOOP, sizeof(LOOP));
  const auto pHookData = std::make_unique<HOOK_DATA>();
  uc_hook Hook;
  if (bTraced) uc_hook_add(pEngine, &Hook, UC_HOOK_CODE, reinterpret_cast<void*>(OnCode), pHookData.get(), 1, 0);
  U64 Num = 0;
  const clock_t StartTime = clock();
  for (auto _ : State) {
    const U32 Pointer = RAM_START;
    const U32 Rounds = ROUNDS;
    uc_reg_write(pEngine, UC_ARM_REG_R0, &Pointer);
    uc_reg_write(pEngine, UC_ARM_REG_R7, &Rounds);
    if (uc_emu_start(pEngine, CODE_START | 1, END_OF_LOOP, 0, 0) != UC_ERR_OK)
      State.SkipWithError("the loop did not end");
    Num += static_cast<U64>(ROUNDS) * INSTS_PER_ROUND;
  }
  aRates[bTraced].Theirs = Rate(Num, StartTime);
  if (bTraced && pHookData->NumRecorded < Num) State.SkipWithError("the hook missed instructions");
  State.SetItemsProcessed(static_cast<int64_t>(Num));
  uc_close(pEngine);
}
BENCHMARK(BM_EmulationLibrary)->ArgName("traced")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int NumArgs, char** asArgs) {
  benchmark::Initialize(&NumArgs, asArgs);
  benchmark::RunSpecifiedBenchmarks();
  for (const bool bTraced : {false, true}) {
    const RATES& Rates = aRates[bTraced];
    if (!(Rates.Ours > 0 && Rates.Theirs > 0)) continue;
    std::printf("%s: simulated core %.0f M/s, emulation library %.1f M/s, ratio %.1f\n",
                bTraced ? "with trace" : "without trace", Rates.Ours / 1e6, Rates.Theirs / 1e6,
                Rates.Ours / Rates.Theirs);
  }
  return 0;
}
