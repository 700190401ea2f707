// libFuzzer target: any bytes, decoded in any context with a text buffer of any size, and what holds for every
// instruction checked. The first five bytes choose the context, the rest is code.
#include <cstdio>
#include <string>
#include <vector>

#include "core/decoder/disasm.h"

namespace {

constexpr size_t NUM_CHOICE_BYTES = 5;
constexpr U32 MAX_TEXT_SIZE = 128;
constexpr char GUARD = '#';

[[noreturn]] void Broken(const char* sRule) {
  std::fprintf(stderr, "%s\n", sRule);
  __builtin_trap();
}

struct CHOICE {
  bool bArm, bBigEndian, bLabels, bData, bMProfile, bSkips, bBigEndianData;
  U32 ArchVersion;
  U32 TextSize;
  U8 ITState;
  U32 Addr;
};

CHOICE ChoiceOf(const U8* pData) {
  const U8 Bits = pData[0];
  return {(Bits & 1) != 0,  (Bits & 2) != 0,       (Bits & 4) != 0,
          (Bits & 8) != 0,  (Bits & 16) != 0,      (Bits & 32) != 0,
          (Bits & 64) != 0, pData[1] & 15u,        pData[2] & (MAX_TEXT_SIZE - 1),
          pData[3],         pData[4] * 0x01010101u};
}

DISASM_API MakeAPI(const CHOICE& Choice) {
  DISASM_API API;
  if (Choice.bLabels) {
    API.pfGetLabel = [](U32 Addr, char* sText, U32 Size, U32& Offset) {
      Offset = Addr & 3;
      const std::string sName(Addr & 0xFF, 'x');
      std::snprintf(sText, Size, "%s", sName.c_str());
      return (Addr & 4) != 0 ? 1 : 0;
    };
  }
  if (Choice.bData) {
    API.pfReadData = [](U32 Addr, U32 NumBytes, void* pData) {
      for (U32 i = 0; i < NumBytes; ++i) static_cast<U8*>(pData)[i] = static_cast<U8>(Addr >> i);
      return (Addr & 8) != 0 ? static_cast<int>(NumBytes) : -1;
    };
  }
  API.pfLogWarning = [](const char* sText) {
    if (*sText == 0) Broken("an empty warning");
  };
  return API;
}

void CheckOne(DISASM_CONTEXT& Context, const CHOICE& Choice, U32 Addr, const U8* pBytes, U32 NumBytes) {
  DISASM_CONTEXT Silent = Context;
  DISASM_INFO Info, SilentInfo;
  std::vector<char> sText(Choice.TextSize + 1, GUARD);
  const int Length = Context.pfDecode(Context, Addr, pBytes, NumBytes, sText.data(), Choice.TextSize, &Info);
  const int SilentLength = Silent.pfDecode(Silent, Addr, pBytes, NumBytes, nullptr, 0, &SilentInfo);
  if (sText[Choice.TextSize] != GUARD) Broken("wrote behind the text buffer");
  if (Choice.TextSize > 0 && std::string(sText.data(), Choice.TextSize).find('\0') == std::string::npos) {
    Broken("the text has no end");
  }
  if (Length != -1 && Length != 2 && Length != 4) Broken("a length that no instruction has");
  if (Length > 0 && static_cast<U32>(Length) > NumBytes) Broken("longer than the bytes given");
  if (Length > 0 && Info.Length != static_cast<U32>(Length)) Broken("the record has another length");
  if (Length < 0 && Info.Flags != 0) Broken("flags without an instruction");
  if (Length != SilentLength || Info.Flags != SilentInfo.Flags || Info.Target != SilentInfo.Target ||
      Context.ITState != Silent.ITState) {
    Broken("the classification depends on the text");
  }
  const U32 Cond = Info.Flags >> IF_COND_SHIFT & 15;
  if (Length > 0 && ((Info.Flags & IF_CONDITIONAL) != 0) != (Cond != 15)) Broken("condition and its flag differ");
  if ((Info.Flags & IF_TARGET) != 0 && Info.Target > 0xFFFFFFFF) Broken("a target of more than 32 bits");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (NumBytes < NUM_CHOICE_BYTES) return 0;
  const CHOICE Choice = ChoiceOf(pData);
  // In a block of its own of the exact size, so that a read beyond it is seen.
  const std::vector<U8> aCode(pData + NUM_CHOICE_BYTES, pData + NumBytes);
  const DISASM_API API = MakeAPI(Choice);
  DISASM_CONTEXT Context;
  Context.pAPI = &API;
  Context.ArchVersion = Choice.ArchVersion;
  Context.BigEndian = Choice.bBigEndian ? 1 : 0;
  Context.BigEndianData = Choice.bBigEndianData ? 1 : 0;
  Context.bMProfile = Choice.bMProfile;
  DISASM_SetMode(Context, Choice.bArm ? DISASM_ARM : DISASM_THUMB);
  Context.ITState = Choice.ITState;
  const U32 Step = Choice.bArm ? 4 : 2;
  for (U32 Pos = 0; Pos <= aCode.size(); Pos += Step) {
    const U32 Left = static_cast<U32>(aCode.size()) - Pos;
    CheckOne(Context, Choice, Choice.Addr + Pos, aCode.data() + Pos, Choice.bSkips ? Left % 5 : Left);
  }
  return 0;
}
