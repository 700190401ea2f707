#pragma once

#include "program/database/elfapi.h"
#include "program/database/elfapi_types.h"

// Asks the database everything about the loaded program, as the windows would.
class CAskProgram {
public:
  CAskProgram() {
    for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions()) Function(Func);
    for (const ELF_SYM_HANDLE Var : ELFAPI_GetGlobalVars()) Symbol(Var);
    for (const QString& sFile : ELFAPI_GetSourceFiles()) Sum += sFile.size();
    Sum += ELFAPI_GetNoFileFunctions().size() + ELFAPI_GetNumCfiBlocks() + ELFAPI_GetNumDiscardedLines();
    Sum += ELFAPI_GetEntryFunc() + ELFAPI_GetEntryPC() + ELFAPI_GetProgramExtent().second;
    Names();
  }

  U64 Total() const { return Sum; }

private:
  static constexpr U32 MAX_ADDRS = 64;  // questions inside one function
  static constexpr U32 STEP = 2;
  U64 Sum = 0;

  void Symbol(ELF_SYM_HANDLE Sym) {
    Sum += ELFAPI_GetTag(Sym) + ELFAPI_GetSize(Sym) + ELFAPI_GetAddr(Sym);
    Sum += ELFAPI_GetQualifiedName(Sym).size() + ELFAPI_GetScopeName(Sym).size();
    Sum += ELFAPI_GetDeclLoc(Sym).Line + ELFAPI_GetLoc(Sym).Line + ELFAPI_GetCallLoc(Sym).Line;
    Sum += ELFAPI_GetFunctionOf(Sym) + ELFAPI_GetTypeName(Sym).size() + ELFAPI_GetConstValue(Sym).size();
    const ELF_SYM_HANDLE Type = ELFAPI_GetType(Sym);
    Sum += ELFAPI_GetMembers(Type).size() + ELFAPI_GetBases(Type).size() + ELFAPI_GetBaseNames(Type).size();
    Sum += ELFAPI_GetLocation(Sym, ELFAPI_GetEntryPC()).Type;
  }

  void Function(ELF_SYM_HANDLE Func) {
    Symbol(Func);
    Sum += ELFAPI_GetInlinedFuncs(Func).size();
    for (const CAddrRange& Range : ELFAPI_GetAddrRanges(Func)) {
      for (U32 i = 0; i < MAX_ADDRS && i * STEP < Range.Size; ++i) Address(Range.Start + i * STEP);
    }
    ELFAPI_SetCurrentPC(ELFAPI_GetAddr(Func));
    for (const ELF_SYM_HANDLE Var : ELFAPI_GetLocalVars()) Symbol(Var);
  }

  void Address(U32 Addr) {
    Sum += ELFAPI_GetFuncAt(Addr) + ELFAPI_GetFuncAt(Addr, true) + ELFAPI_GetFileAt(Addr);
    Sum += ELFAPI_GetSymbolsAt(Addr, true, true).size() + ELFAPI_GetCfiBlock(Addr).Size;
    Sum += static_cast<U32>(ELFAPI_ClassifyAddr(Addr)) + ELFAPI_NextProgramAddr(Addr) + ELFAPI_PrevProgramAddr(Addr);
    U32 Next = 0;
    if (ELFAPI_NextSrcAddr(Addr, Next) == 0) Sum += Next;
    for (const CSrcLoc& Loc : ELFAPI_GetSrcLocsAt(Addr)) Line(Loc);
  }

  void Line(const CSrcLoc& Loc) {
    Sum += ELFAPI_GetAddrsOfLoc(Loc).size() + ELFAPI_GetLocAddrs(Loc).size() + ELFAPI_IsLocExecutable(Loc);
    Sum += ELFAPI_NextSrcLoc(Loc).Line + ELFAPI_PrevSrcLoc(Loc).Line + ELFAPI_GetFuncOfLoc(Loc);
    Sum += ELFAPI_GetFileRanges(Loc.File).size() + ELFAPI_GetFileFunctions(Loc.File).size();
  }

  void Names() {
    for (const char* sName : {"main", "model::device", "this", "records.c:40", "8010", "", "::"}) {
      PARSED_LOC_KIND Kind = PARSED_LOC_NONE;
      Sum += ELFAPI_ParseLocation(QString::fromLatin1(sName), Kind).Start;
      Sum += ELFAPI_FindSymbols(QString::fromLatin1(sName), true, true, true, true).size();
    }
  }
};

// The answers must go somewhere, or the compiler leaves out the reads that this is for.
inline void AskProgram() {
  [[maybe_unused]] static volatile U64 Sink;
  Sink = CAskProgram().Total();
}
