// Decodes a file of Thumb or ARM code from its first byte to its last, again and again, in turn with a disassembler
// library that does the same.
#include <capstone/capstone.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "core/decoder/disasm.h"

namespace {

constexpr int NUM_RUNS = 5;
constexpr U32 TEXT_SIZE = 128;
constexpr U32 CODE_ADDR = 0x08000000;

double SecondsSince(std::chrono::steady_clock::time_point Start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

struct CODE {
  std::vector<U8> aByte;
  bool bArm = false;
  U32 Step() const { return bArm ? 4 : 2; }  // bytes to go on by behind what is no instruction
};

// Number of instructions.
U32 DecodeOurs(const CODE& Code, bool bText) {
  DISASM_CONTEXT Context;
  DISASM_SetMode(Context, Code.bArm ? DISASM_ARM : DISASM_THUMB);
  char sText[TEXT_SIZE];
  U32 Count = 0;
  for (U32 Pos = 0; Pos + 4 <= Code.aByte.size();) {
    DISASM_INFO Info;
    const int Length = Context.pfDecode(Context, CODE_ADDR + Pos, &Code.aByte[Pos], 4, bText ? sText : nullptr,
                                        bText ? TEXT_SIZE : 0, &Info);
    if (Length > 0) ++Count;
    Pos += Length > 0 ? static_cast<U32>(Length) : Code.Step();
  }
  return Count;
}

class CPeer {
public:
  explicit CPeer(bool bArm) {
    const int Mode = bArm ? CS_MODE_ARM | CS_MODE_V8 : CS_MODE_THUMB;
    cs_open(CS_ARCH_ARM, static_cast<cs_mode>(Mode), &Handle);
    pInst = cs_malloc(Handle);
  }
  ~CPeer() {
    cs_free(pInst, 1);
    cs_close(&Handle);
  }
  U32 Decode(const CODE& Code) {
    const uint8_t* pCode = Code.aByte.data();
    const uint8_t* pEnd = pCode + Code.aByte.size() - 3;
    uint64_t Addr = CODE_ADDR;
    U32 Count = 0;
    while (pCode < pEnd) {
      size_t Left = static_cast<size_t>(pEnd + 3 - pCode);
      if (cs_disasm_iter(Handle, &pCode, &Left, &Addr, pInst)) {
        ++Count;
      } else {
        pCode += Code.Step();
        Addr += Code.Step();
      }
    }
    return Count;
  }

private:
  csh Handle = 0;
  cs_insn* pInst = nullptr;
};

struct SERIES {
  std::vector<double> aRate;  // million instructions a second
  U32 Count = 0;
  double Median() {
    std::sort(aRate.begin(), aRate.end());
    return aRate[aRate.size() / 2];
  }
};

template <typename DECODE>
void Measure(SERIES& Series, DECODE Decode) {
  const auto Start = std::chrono::steady_clock::now();
  Series.Count = Decode();
  Series.aRate.push_back(Series.Count / SecondsSince(Start) / 1e6);
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  if (NumArguments < 2) {
    std::fputs("usage: decoder_bench FILE [arm]\n", stderr);
    return 2;
  }
  std::ifstream File(ppArguments[1], std::ios::binary);
  CODE Code;
  Code.aByte.assign(std::istreambuf_iterator<char>(File), {});
  Code.bArm = NumArguments > 2 && std::strcmp(ppArguments[2], "arm") == 0;
  if (Code.aByte.size() < 4) return 1;
  CPeer Peer(Code.bArm);
  SERIES Text, Classes, PeerText;
  for (int i = 0; i < NUM_RUNS; ++i) {
    Measure(Text, [&] { return DecodeOurs(Code, true); });
    Measure(PeerText, [&] { return Peer.Decode(Code); });
    Measure(Classes, [&] { return DecodeOurs(Code, false); });
  }
  std::printf("%zu bytes; here %u instructions, the library %u\n", Code.aByte.size(), Text.Count, PeerText.Count);
  std::printf("text            %7.2f million a second, %5.1f times the library\n", Text.Median(),
              Text.Median() / PeerText.Median());
  std::printf("classification  %7.2f million a second, %5.1f times the library\n", Classes.Median(),
              Classes.Median() / PeerText.Median());
  std::printf("the library     %7.2f million a second\n", PeerText.Median());
  return 0;
}
