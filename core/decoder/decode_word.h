#pragma once
// What the two entry points share.

#include <bit>
#include <cstring>

#include "base/endian.h"
#include "core/decoder/inst_kind.h"
#include "core/decoder/row_table.h"

inline void LogError(const DISASM_CONTEXT& Context, const char* sText) {
  if (Context.pAPI != nullptr && Context.pAPI->pfLogErrorText) Context.pAPI->pfLogErrorText(sText);
}

inline void LogWarning(const DISASM_CONTEXT& Context, const char* sText) {
  if (Context.pAPI != nullptr && Context.pAPI->pfLogWarning) Context.pAPI->pfLogWarning(sText);
}

// A halfword or word of code.
template <typename T>
T LoadCode(const U8* pBytes, bool bBigEndian) {
  T Value;
  std::memcpy(&Value, pBytes, sizeof(T));
  if (bBigEndian != (std::endian::native == std::endian::big)) return LoadInt<T>(pBytes, bBigEndian);
  return Value;
}

// Classification and text of Inst by the row that the table has for Key; the row's kind, or -1 when there is none.
inline int DecodeWord(INST& Inst, const CRowTable& Table, U32 Key, char* sText, U32 TextSize) {
  const TABLE_ENTRY* pEntry = Table.Find(Key, Inst.pContext->ArchVersion, Inst.pContext->bMProfile);
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
