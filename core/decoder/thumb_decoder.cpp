#include "core/decoder/decode_word.h"

namespace {

constexpr U32 IT_MASK = 0xF;
constexpr U32 THUMB_PC_OFFSET = 4;  // bytes by which the PC is ahead

bool IsWide(U32 Halfword) {
  return (Halfword & 0xE000) == 0xE000 && (Halfword & 0x1800) != 0;
}

// Advanced SIMD as an ARM word, which differs in the first byte alone; 0 for another instruction.
U32 SimdWordOf(U32 Word) {
  constexpr U32 BITS_BELOW = (1u << 24) - 1;
  if ((Word & 0xEF000000) == 0xEF000000) return 0xF2000000 | (Word >> 28 & 1) << 24 | (Word & BITS_BELOW);
  return (Word & 0xFF100000) == 0xF9000000 ? 0xF4000000 | (Word & BITS_BELOW) : 0;
}

void AdvanceIT(DISASM_CONTEXT& Context) {
  const U32 State = Context.ITState;
  Context.ITState = static_cast<U8>((State & 7) == 0 ? 0 : (State & 0xE0) | ((State & IT_MASK) << 1));
}

}  // namespace

void DISASM_SetMode(DISASM_CONTEXT& Context, U32 Mode) {
  Context.Mode = Mode;
  Context.pfDecode = Mode == DISASM_ARM ? DISASM_DecodeARM : DISASM_DecodeThumb;
  Context.ITState = 0;
}

int DISASM_DecodeThumb(DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes, U32 NumBytes, char* sText, U32 TextSize,
                       DISASM_INFO* pInfo) {
  if (sText != nullptr && TextSize > 0) sText[0] = 0;
  if (pInfo != nullptr) *pInfo = {};
  if (NumBytes < 2) {
    LogError(Context, "Data buffer too small (< 2 Bytes).");
    return -1;
  }
  INST Inst;
  Inst.Addr = Addr;
  Inst.PC = Addr + THUMB_PC_OFFSET;
  Inst.pContext = &Context;
  Inst.Word = LoadCode<U16>(pBytes, Context.BigEndian != 0);
  const bool bWide = IsWide(Inst.Word);
  if (bWide && NumBytes < 4) {
    LogError(Context, "Data buffer too small (< 4 Bytes).");
    return -1;
  }
  if (bWide) Inst.Word = Inst.Word << 16 | LoadCode<U16>(pBytes + 2, Context.BigEndian != 0);
  if (Inst.InITBlock()) Inst.Cond = Context.ITState >> 4;

  const U32 SimdWord = bWide && !Context.bMProfile ? SimdWordOf(Inst.Word) : 0;
  if (SimdWord != 0) Inst.Word = SimdWord;
  const CRowTable& Table = SimdWord != 0 ? SimdTable() : bWide ? Thumb32Table() : Thumb16Table();
  const int Kind = DecodeWord(Inst, Table, Inst.Word, sText, TextSize);
  if (Kind == KIND_IT) {
    Context.ITState = static_cast<U8>(Inst.Word);
  } else {
    AdvanceIT(Context);
  }
  if (Kind < 0) {
    LogWarning(Context,
               bWide ? "Unknown 32-bit thumb instruction encoding." : "Unknown 16-bit thumb instruction encoding.");
    return -1;
  }
  Inst.Info.Length = bWide ? 4 : 2;
  if (pInfo != nullptr) *pInfo = Inst.Info;
  return static_cast<int>(Inst.Info.Length);
}
