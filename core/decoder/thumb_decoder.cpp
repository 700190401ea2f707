#include "base/endian.h"
#include "core/decoder/inst_kind.h"
#include "core/decoder/row_table.h"

namespace {

constexpr U32 IT_MASK = 0xF;

void LogError(const DISASM_CONTEXT& Context, const char* sText) {
  if (Context.pAPI != nullptr && Context.pAPI->pfLogErrorText) Context.pAPI->pfLogErrorText(sText);
}

void LogWarning(const DISASM_CONTEXT& Context, const char* sText) {
  if (Context.pAPI != nullptr && Context.pAPI->pfLogWarning) Context.pAPI->pfLogWarning(sText);
}

bool IsWide(U32 Halfword) {
  return (Halfword & 0xE000) == 0xE000 && (Halfword & 0x1800) != 0;
}

void AdvanceIT(DISASM_CONTEXT& Context) {
  const U32 State = Context.ITState;
  Context.ITState = static_cast<U8>((State & 7) == 0 ? 0 : (State & 0xE0) | ((State & IT_MASK) << 1));
}

// Classification and text by the matching row; -1 when there is none.
int DecodeWord(INST& Inst, const CRowTable& Table, char* sText, U32 TextSize) {
  const TABLE_ENTRY* pEntry = Table.Find(Inst.Word, Inst.pContext->ArchVersion);
  if (pEntry == nullptr) return -1;
  if (pEntry->pRow->Kind == KIND_REFUSED) {
    if (pEntry->pRow->sText[0] != 0) LogWarning(*Inst.pContext, pEntry->pRow->sText);
    return -1;
  }
  if (!ClassifyInst(Inst, pEntry->pRow->Kind)) return -1;
  CTextWriter Out(sText, TextSize);
  if (!Out.IsOff()) pEntry->Template.Write(Out, Inst);
  return pEntry->pRow->Kind;
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
  Inst.pContext = &Context;
  Inst.Word = LoadInt<U16>(pBytes, Context.BigEndian != 0);
  const bool bWide = IsWide(Inst.Word);
  if (bWide && NumBytes < 4) {
    LogError(Context, "Data buffer too small (< 4 Bytes).");
    return -1;
  }
  if (bWide) Inst.Word = Inst.Word << 16 | LoadInt<U16>(pBytes + 2, Context.BigEndian != 0);
  if (Inst.InITBlock()) Inst.Cond = Context.ITState >> 4;

  const int Kind = DecodeWord(Inst, bWide ? Thumb32Table() : Thumb16Table(), sText, TextSize);
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
