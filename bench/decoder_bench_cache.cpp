// Fills the instruction cache from a program file, and in turn lets a disassembler library take the same functions
// apart with the details that tell branches from the rest. Each in a process of its own, so that its memory can be
// told.
#include <capstone/capstone.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "core/vcore.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 CORE_ID_CORTEX_M4 = 0x0E0000FF;
constexpr double MB = 1e6;

double SecondsSince(std::chrono::steady_clock::time_point Start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

double ResidentBytes() {
  std::ifstream File("/proc/self/statm");
  double Total = 0, Resident = 0;
  File >> Total >> Resident;
  return Resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void Report(const char* sWho, U32 NumFunctions, U64 NumInstructions, double Seconds, double Bytes) {
  std::printf("%s: %u functions, %llu instructions, %.3f s, %.1f MB\n", sWho, NumFunctions,
              static_cast<unsigned long long>(NumInstructions), Seconds, Bytes / MB);
}

void FillCache(ELF_FILE* pFile) {
  VCore::Init({CORE_ID_CORTEX_M4, 0, 0}, {});
  VCore::AttachElf(pFile);
  VCore::BuildMappingSymbols();
  const double Before = ResidentBytes();
  const auto Start = std::chrono::steady_clock::now();
  VCore::AnalyzeProgram();
  const double Seconds = SecondsSince(Start);
  const double Bytes = ResidentBytes() - Before;
  U64 Count = 0;
  constexpr U32 PIECE = 1'000'000;  // the most that one count covers
  for (U32 i = 0; i < ELF_GetNumSegments(pFile); ++i) {
    const U32 First = ELF_GetSegmentVAddr(pFile, i);
    const U32 End = First + ELF_GetSegmentFileSize(pFile, i);
    for (U32 Addr = First; Addr < End; Addr += std::min(PIECE, End - Addr))
      Count += VCore::CountInstructions(Addr, Addr + std::min(PIECE, End - Addr));
  }
  Report("here", ELF_GetNumFuncSymbols(pFile), Count, Seconds, Bytes);
  VCore::Exit();
}

struct CODE {
  U32 Addr;
  std::vector<U8> aByte;
};

void TakeApart(ELF_FILE* pFile) {
  std::vector<CODE> aCode;
  for (U32 i = 0; i < ELF_GetNumFuncSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetFuncSymbol(pFile, i);
    const U32 Addr = ELF_GetValue(hSym) & ~1u;
    const U8* pBytes = ELF_ReadImage(pFile, Addr, Addr + ELF_GetSize(hSym));
    if (pBytes != nullptr) aCode.push_back({Addr, {pBytes, pBytes + ELF_GetSize(hSym)}});
  }
  csh Handle = 0;
  cs_open(CS_ARCH_ARM, static_cast<cs_mode>(CS_MODE_THUMB | CS_MODE_MCLASS), &Handle);
  cs_option(Handle, CS_OPT_DETAIL, CS_OPT_ON);
  cs_option(Handle, CS_OPT_SKIPDATA, CS_OPT_ON);
  const auto Start = std::chrono::steady_clock::now();
  U64 Count = 0;
  for (const CODE& Code : aCode) {
    cs_insn* pInst = nullptr;
    const size_t NumInst = cs_disasm(Handle, Code.aByte.data(), Code.aByte.size(), Code.Addr, 0, &pInst);
    if (NumInst > 0) cs_free(pInst, NumInst);
    Count += NumInst;
  }
  const double Seconds = SecondsSince(Start);
  Report("the library", static_cast<U32>(aCode.size()), Count, Seconds,
         static_cast<double>(Count * (sizeof(cs_insn) + sizeof(cs_detail))));
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  if (NumArguments < 3) {
    std::fputs("usage: decoder_bench_cache FILE here|library\n", stderr);
    return 2;
  }
  ELF_FILE* pFile = ELF_Open(ppArguments[1]);
  if (pFile == nullptr) return 1;
  if (std::strcmp(ppArguments[2], "here") == 0) {
    FillCache(pFile);
  } else {
    TakeApart(pFile);
  }
  return 0;
}
