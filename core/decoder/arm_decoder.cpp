#include "core/decoder/disasm.h"

// ARM mode has no decode tables yet: every word is refused, with its length.
int DISASM_DecodeARM(DISASM_CONTEXT& Context, U32, const U8*, U32 NumBytes, char* sText, U32 TextSize,
                     DISASM_INFO* pInfo) {
  if (sText != nullptr && TextSize > 0) sText[0] = 0;
  if (pInfo != nullptr) *pInfo = {};
  if (NumBytes < 4) {
    if (Context.pAPI != nullptr && Context.pAPI->pfLogErrorText) {
      Context.pAPI->pfLogErrorText("Data buffer too small (< 4 Bytes).");
    }
    return -1;
  }
  if (pInfo != nullptr) pInfo->Length = 4;
  return -1;
}
