// Loads a program file as File.Open does and asks the program database at random. Prints one number a line:
// name, value, unit.
//   elf_bench load FILE      time of the load
//   elf_bench queries FILE   nanoseconds of processor time a question, first and second time
//   elf_bench reopen FILE    memory while the file is opened and closed a thousand times, as the program's window does
#include <malloc.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <future>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "program/database/elfapi.h"
#include "program/database/program_build.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 NUM_QUESTIONS = 100'000;
constexpr U32 SEED = 6;
constexpr double NS_PER_MS = 1e6;
constexpr double NS_PER_S = 1e9;

using CLOCK = std::chrono::steady_clock;

double NsSince(CLOCK::time_point Start) {
  return std::chrono::duration<double, std::nano>(CLOCK::now() - Start).count();
}

// Peak or present memory of this process in KiB, by its line of the system's status file.
long MemoryOf(const std::string& sLine) {
  std::ifstream Status("/proc/self/status");
  std::string sName;
  while (Status >> sName) {
    long Value = 0;
    if (sName == sLine && Status >> Value) return Value;
  }
  return 0;
}

// Number of debug information entries that exist: the greatest that makes a handle.
U32 CountEntries() {
  U32 Low = 0, High = 1u << 26;
  while (High - Low > 1) {
    const U32 Middle = Low + (High - Low) / 2;
    const U64 Handle = static_cast<U64>(ELF_HANDLE_MAGIC) << 32 | ELF_HANDLE_DWARF << 29 | Middle;
    (ELF_GetHandleKind(Handle) == ELF_HANDLE_DWARF ? Low : High) = Middle;
  }
  return Low;
}

// Bytes that are allocated now, without the pages of the code that a load touches.
size_t AllocatedBytes() {
  const struct mallinfo2 Info = mallinfo2();
  return Info.uordblks + Info.hblkhd;
}

void PrintMemory(const char* sFile, size_t Before) {
  constexpr double KIB = 1024;
  std::ifstream File(sFile, std::ios::binary | std::ios::ate);
  const double NumBytes = static_cast<double>(AllocatedBytes() - Before);
  const U32 NumEntries = CountEntries();
  std::printf("memory of the loaded program\t%.1f\tMB\n", NumBytes / KIB / KIB);
  std::printf("debug information entries\t%u\n", NumEntries);
  if (NumEntries) {
    const double Tables = NumBytes - static_cast<double>(File.tellg());
    std::printf("memory but for the file's bytes\t%.0f\tbytes an entry\n", Tables / NumEntries);
  }
  std::printf("peak memory\t%.1f\tMB\n", static_cast<double>(MemoryOf("VmHWM:")) / KIB);
}

struct QUESTIONS {
  std::vector<U32> aAddrs;
  std::vector<CSrcLoc> aLocs;
  std::vector<QString> aNames;
};

// Addresses in functions, their lines, and names of functions and variables.
QUESTIONS MakeQuestions() {
  std::mt19937 Random(SEED);
  const ELF_SYM_LIST aFuncs = ELFAPI_GetFunctions();
  const ELF_SYM_LIST aVars = ELFAPI_GetGlobalVars();
  QUESTIONS Questions;
  while (Questions.aAddrs.size() < NUM_QUESTIONS) {
    const ELF_SYM_HANDLE Func = aFuncs[static_cast<qsizetype>(Random() % static_cast<U32>(aFuncs.size()))];
    const CAddrRange Range = ELFAPI_GetAddrRange(Func);
    if (Range.IsNone()) continue;
    Questions.aAddrs.push_back((Range.Start + Random() % Range.Size) & ~1u);
    Questions.aLocs.push_back(ELFAPI_GetFirstSrcLoc(Range.Start));
    const bool bVar = !aVars.isEmpty() && Random() % 2;
    const ELF_SYM_HANDLE Var = bVar ? aVars[static_cast<qsizetype>(Random() % static_cast<U32>(aVars.size()))] : Func;
    Questions.aNames.push_back(ELFAPI_GetName(Var));
  }
  return Questions;
}

// Time that the processor spent on this thread.
double ProcessorNs() {
  timespec Time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &Time);
  return static_cast<double>(Time.tv_sec) * NS_PER_S + static_cast<double>(Time.tv_nsec);
}

// Asks everything twice; the sum keeps the compiler from leaving questions out.
template <typename LIST, typename ASK>
void Measure(const char* sName, const LIST& aQuestions, ASK Ask) {
  for (const char* sTime : {"first", "second"}) {
    U64 Sum = 0;
    const double Start = ProcessorNs();
    for (const auto& Question : aQuestions) Sum += Ask(Question);
    std::printf("%s, %s time\t%.0f\tns\t(%llu)\n", sName, sTime, (ProcessorNs() - Start) / NUM_QUESTIONS, Sum % 10);
  }
}

void MeasureQueries() {
  const QUESTIONS Questions = MakeQuestions();
  Measure("function at address", Questions.aAddrs, [](U32 Addr) { return ELFAPI_GetFuncAt(Addr); });
  Measure("line at address", Questions.aAddrs, [](U32 Addr) { return ELFAPI_GetFirstSrcLoc(Addr).Line; });
  Measure("addresses of a line", Questions.aLocs, [](const CSrcLoc& Loc) { return ELFAPI_GetAddrsOfLoc(Loc).size(); });
  Measure("symbol by name", Questions.aNames,
          [](const QString& sName) { return ELFAPI_FindSymbol(sName, true, false, false, true); });
  ELFAPI_SetCurrentPC(Questions.aAddrs.front());
  Measure("symbol by name in scope", Questions.aNames,
          [](const QString& sName) { return ELFAPI_FindSymbol(sName, true, true, false, true); });
}

// A program is read on a thread of its own and freed on another, while a third one asks.
void OpenAndClose(const QString& sFile) {
  auto pBuild = std::make_unique<CProgramBuild>();
  std::async(std::launch::async, [&] { pBuild->Read(sFile); }).get();
  pBuild->TakeOver();
  std::async(std::launch::async, [&] { pBuild.reset(); }).get();
  ELFAPI_FindSymbol(QStringLiteral("main"), true, true, true, true);
  ELFAPI_GetFirstSrcLoc(ELFAPI_GetEntryPC());
}

void Reopen(const QString& sFile) {
  constexpr int NUM_TIMES = 1000, NUM_ROWS = 10;
  std::atomic<bool> bStop{false};
  std::thread Asker([&bStop] {
    while (!bStop) {
      ELFAPI_GetSrcLocsAt(ELFAPI_GetAddr(ELFAPI_GetEntryFunc()));
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
  });
  for (int i = 0; i <= NUM_TIMES; ++i) {
    OpenAndClose(sFile);
    if (i % 2) ELFAPI_Unload();
    if (i % (NUM_TIMES / NUM_ROWS) == 0) std::printf("opened %d times\t%ld\tKiB\n", i, MemoryOf("VmRSS:"));
  }
  bStop = true;
  Asker.join();
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  if (NumArguments != 3) return 2;
  if (std::strcmp(ppArguments[1], "reopen") == 0) return Reopen(QString::fromLocal8Bit(ppArguments[2])), 0;
  const size_t Before = AllocatedBytes();
  const auto Start = CLOCK::now();
  if (ELFAPI_Load(QString::fromLocal8Bit(ppArguments[2])) != 0) return 1;
  std::printf("load\t%.1f\tms\n", NsSince(Start) / NS_PER_MS);
  PrintMemory(ppArguments[2], Before);
  if (std::strcmp(ppArguments[1], "queries") == 0) MeasureQueries();
  return 0;
}
