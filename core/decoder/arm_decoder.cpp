#include "core/decoder/decode_word.h"

namespace {

constexpr U32 ARM_LENGTH = 4;     // bytes
constexpr U32 ARM_PC_OFFSET = 8;  // bytes by which the PC is ahead
constexpr U32 ALWAYS_KEY = COND_ALWAYS << 28;
constexpr U32 BITS_BELOW_COND = (1u << 28) - 1;

// The two spaces of Advanced SIMD: data processing, and loads and stores of elements.
bool IsSimd(U32 Word) {
  return (Word & 0xFE000000) == 0xF2000000 || (Word & 0xFF100000) == 0xF4000000;
}

}  // namespace

int DISASM_DecodeARM(DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes, U32 NumBytes, char* sText, U32 TextSize,
                     DISASM_INFO* pInfo) {
  if (sText != nullptr && TextSize > 0) sText[0] = 0;
  if (pInfo != nullptr) *pInfo = {};
  if (NumBytes < ARM_LENGTH) {
    LogError(Context, "Data buffer too small (< 4 Bytes).");
    return -1;
  }
  INST Inst;
  Inst.bArm = true;
  Inst.Addr = Addr;
  Inst.PC = Addr + ARM_PC_OFFSET;
  Inst.pContext = &Context;
  Inst.Word = LoadCode<U32>(pBytes, Context.BigEndian != 0);
  Inst.Cond = Inst.Word >> 28;
  const U32 Key = Inst.Cond == COND_NONE ? Inst.Word : (Inst.Word & BITS_BELOW_COND) | ALWAYS_KEY;
  const int Kind = DecodeWord(Inst, IsSimd(Inst.Word) ? SimdTable() : ArmTable(), Key, sText, TextSize);
  if (Kind < 0) Inst.Info = {};
  Inst.Info.Length = ARM_LENGTH;
  if (pInfo != nullptr) *pInfo = Inst.Info;
  return Kind < 0 ? -1 : static_cast<int>(ARM_LENGTH);
}
