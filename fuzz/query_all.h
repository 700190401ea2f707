#pragma once

#include <cstring>

#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_frames.h"
#include "program/elf/elf_types.h"

// Asks everything of an open file, as the windows would; reads every text and the ends of every piece of data.
class CQueryAll {
public:
  explicit CQueryAll(const ELF_FILE* pFile) : pFile(pFile) {
    Headers();
    for (U32 i = 0; i < ELF_GetNumSymbols(pFile); ++i) Text(ELF_GetName(ELF_GetSymbolHandle(pFile, i)));
    List(ELF_GetNumFunctions, ELF_GetFunction);
    List(ELF_GetNumInlinedFuncs, ELF_GetInlinedFunc);
    List(ELF_GetNumGlobalVars, ELF_GetGlobalVar);
    List(ELF_GetNumTypes, ELF_GetTypeEntry);
    List(ELF_GetNumNamespaces, ELF_GetNamespace);
    for (U32 i = 0; i < ELF_GetNumSrcLines(pFile); ++i) Text(ELF_GetSrcLineFile(pFile, i));
    for (U32 i = 0; i < ELF_GetNumFdes(pFile); ++i) Sum += ELF_GetFdeLow(pFile, i) + ELF_GetFdeHigh(pFile, i);
    Sum += ELF_FindRttControlBlock(pFile);
  }

  U64 Total() const { return Sum; }

private:
  const ELF_FILE* pFile;
  U64 Sum = 0;

  void Text(const char* sText) { Sum += sText ? std::strlen(sText) : 0; }
  void Data(const U8* pData, U32 Size) { Sum += pData && Size ? pData[0] + pData[Size - 1] : 0; }

  void Headers() {
    for (U32 i = 0; i < ELF_GetNumSegments(pFile); ++i) {
      Data(ELF_GetSegmentData(pFile, i), ELF_GetSegmentFileSize(pFile, i));
      Sum += ELF_GetSegmentSectionOffset(pFile, i);
    }
    for (U32 i = 0; i < ELF_GetNumSections(pFile); ++i) {
      Text(ELF_GetSectionName(pFile, i));
      Data(ELF_GetSectionData(pFile, i), ELF_GetSectionSize(pFile, i));
      ELF_RELOCATION Relocation;
      const U32 NumEntries = ELF_GetSectionNumEntries(pFile, i);
      if (NumEntries && ELF_GetRelocation(pFile, i, NumEntries - 1, &Relocation) == 0) Sum += Relocation.Offset;
    }
  }

  void List(U32 (*pfCount)(const ELF_FILE*), ELF_SYM_HANDLE (*pfGet)(const ELF_FILE*, U32)) {
    for (U32 i = 0; i < pfCount(pFile); ++i) Entry(pfGet(pFile, i));
  }

  // The type of a symbol and its place at the beginning of its function and anywhere.
  void Value(ELF_SYM_HANDLE hSym) {
    Text(ELF_GetName(hSym));
    Text(ELF_GetTypeName(hSym));
    Sum += ELF_GetType(hSym, true) + ELF_GetType(hSym, false) + ELF_GetSize(hSym);
    Sum += ELF_GetBitOffset(hSym) + ELF_GetBitSize(hSym) + ELF_IsSigned(hSym) + ELF_IsStatic(hSym);
    Sum += ELF_GetAccess(hSym) + ELF_GetVirtuality(hSym) + ELF_GetObjectPointer(hSym);
    ELF_ARRAY_INFO Array;
    if (ELF_GetArrayInfo(hSym, &Array) == 0) Sum += Array.TotalSize;
    U8 aConstant[16];
    Sum += ELF_GetConstValue(hSym, aConstant, sizeof aConstant);
    I64 Value = 0;
    bool bUnsigned = false;
    Sum += ELF_GetEnumeratorValue(hSym, &Value, &bUnsigned) == 0 && bUnsigned;
    for (const U32 PC : {0u, ELF_GetRangeLow(ELF_GetContainingFunc(hSym), 0)}) {
      Text(ELF_GetLocationText(ELF_GetLocation(hSym, PC)));
    }
  }

  void Frame(U32 PC) {
    constexpr U32 NUM_REGS = 18;
    ELF_SYM_LOC aRegs[NUM_REGS];
    Sum += ELF_GetCfiRegs(pFile, PC, NUM_REGS, aRegs) + ELF_GetCfa(pFile, PC).Reg;
    Sum += static_cast<U32>(ELF_GetFrameSize(pFile, PC));
  }

  void Entry(ELF_SYM_HANDLE hSym) {
    Text(ELF_GetName(hSym));
    Text(ELF_GetDeclFile(hSym));
    Sum += ELF_GetSize(hSym) + ELF_GetSectionIndex(hSym);
    for (U32 i = 0; i < ELF_GetNumRanges(hSym); ++i) Sum += ELF_GetRangeLow(hSym, i) + ELF_GetRangeHigh(hSym, i);
    Sum += ELF_GetContainingFunc(hSym) + ELF_GetContainingClass(hSym) + ELF_GetContainingScope(hSym);
    Sum += ELF_GetContainingNamespace(hSym) + ELF_GetDefinition(hSym) + ELF_GetAbstractOrigin(hSym);
    Sum += ELF_GetAttrDie(hSym, ELF_ATTR_TYPE);
    Value(hSym);
    for (U32 i = 0; i < ELF_GetNumLocals(hSym); ++i) Value(ELF_GetLocal(hSym, i));
    for (U32 i = 0; i < ELF_GetNumMembers(hSym); ++i) Value(ELF_GetMember(hSym, i));
    for (U32 i = 0; i < ELF_GetNumBases(hSym); ++i) Value(ELF_GetBase(hSym, i));
    for (U32 i = 0; i < ELF_GetNumRanges(hSym); ++i) Frame(ELF_GetRangeLow(hSym, i));
    I64 Value = 0;
    for (const U32 Attr : {ELF_ATTR_DECL_LINE, ELF_ATTR_CALL_LINE, ELF_ATTR_CONST_VALUE, ELF_ATTR_LOCATION}) {
      if (ELF_GetAttrValue(hSym, Attr, &Value) == 0) Sum += static_cast<U64>(Value);
    }
    for (ELF_SYM_HANDLE hChild = ELF_GetFirstChild(hSym); hChild; hChild = ELF_GetNextSibling(hChild)) {
      Text(ELF_GetName(hChild));
      Sum += ELF_GetSize(hChild);
    }
  }
};

// The answers must go somewhere, or the compiler leaves out the reads that this is for.
inline void QueryAll(const ELF_FILE* pFile) {
  [[maybe_unused]] static volatile U64 Sink;
  Sink = CQueryAll(pFile).Total();
}
