// Long random comparisons of the simulated core with its peers: an emulation library, and QEMU where it has the core.
//
//   sim_random [--core NAME] [--peer library|qemu] [--instructions N] [--seed S]
//
// Without a core all of them, without a peer both. Prints a line for each and every difference; exit code 1 when there
// is one. The same seed gives the same instructions.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/sim/batch.h"
#include "tests/sim/peer_comparison.h"

namespace {

using namespace sim_test;

constexpr U64 DEFAULT_INSTRUCTIONS = 200'000;
constexpr U32 SEQUENCES_PER_BATCH = 4000;
constexpr size_t MAX_TEXTS = 20;

struct OPTIONS {
  std::string sCore;
  std::string sPeer;
  U64 NumInsts = DEFAULT_INSTRUCTIONS;
  U32 Seed = 1;
};

struct RESULT {
  U64 NumInsts = 0;
  size_t NumDifferences = 0;
  void Add(const std::string& sText) {
    NumDifferences++;
    std::printf("%s\n", sText.c_str());
  }
};

RESULT CompareWithLibrary(const CORE& Core, const OPTIONS& Options) {
  RESULT Result;
  CPeerComparison Comparison(Core, Options.Seed);
  while (Comparison.NumInsts() < Options.NumInsts && Result.NumDifferences < MAX_TEXTS) {
    const std::string sText = Comparison.Next();
    if (!sText.empty()) Result.Add(sText);
  }
  Result.NumInsts = Comparison.NumInsts();
  return Result;
}

RESULT CompareWithQemu(const CORE& Core, const OPTIONS& Options) {
  RESULT Result;
  const std::filesystem::path Dir = std::filesystem::temp_directory_path() / ("sim_random_" + std::string(Core.sName));
  std::filesystem::create_directories(Dir);
  for (U32 i = 0; Result.NumInsts < Options.NumInsts && Result.NumDifferences < MAX_TEXTS; i++) {
    const CBatch Batch(Core, Options.Seed * 1000 + i, SEQUENCES_PER_BATCH);
    for (const std::string& sText : Batch.Compare(Batch.RunOurs(), Batch.RunQemu(Dir), MAX_TEXTS)) Result.Add(sText);
    Result.NumInsts += Batch.NumInsts();
  }
  std::filesystem::remove_all(Dir);
  return Result;
}

bool Report(const CORE& Core, const char* sPeer, const OPTIONS& Options,
            RESULT (*pfCompare)(const CORE&, const OPTIONS&)) {
  const auto Start = std::chrono::steady_clock::now();
  const RESULT Result = pfCompare(Core, Options);
  const double Seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
  std::printf("%-9s %-8s %8llu instructions, %zu differences, %.1f s\n", Core.sName, sPeer, Result.NumInsts,
              Result.NumDifferences, Seconds);
  std::fflush(stdout);
  return !Result.NumDifferences;
}

bool Parse(int NumArgs, char** asArgs, OPTIONS* pOptions) {
  for (int i = 1; i + 1 < NumArgs; i += 2) {
    const std::string sName = asArgs[i];
    const char* sValue = asArgs[i + 1];
    if (sName == "--core") {
      pOptions->sCore = sValue;
    } else if (sName == "--peer") {
      pOptions->sPeer = sValue;
    } else if (sName == "--instructions") {
      pOptions->NumInsts = std::strtoull(sValue, nullptr, 10);
    } else if (sName == "--seed") {
      pOptions->Seed = static_cast<U32>(std::strtoul(sValue, nullptr, 10));
    } else {
      return false;
    }
  }
  return NumArgs % 2 == 1;
}

}  // namespace

int main(int NumArgs, char** asArgs) {
  OPTIONS Options;
  if (!Parse(NumArgs, asArgs, &Options)) {
    std::fprintf(stderr, "usage: sim_random [--core NAME] [--peer library|qemu] [--instructions N] [--seed S]\n");
    return 2;
  }
  bool bOk = true;
  int NumRuns = 0;
  for (const CORE& Core : CORES) {
    if (!Options.sCore.empty() && Options.sCore != Core.sName) continue;
    if (Options.sPeer != "qemu") {
      bOk &= Report(Core, "library", Options, CompareWithLibrary);
      NumRuns++;
    }
    if (Options.sPeer != "library" && CBatch::HasQemu(Core)) {
      bOk &= Report(Core, "qemu", Options, CompareWithQemu);
      NumRuns++;
    }
  }
  if (!NumRuns) std::fprintf(stderr, "nothing to compare\n");
  return bOk && NumRuns ? 0 : 1;
}
