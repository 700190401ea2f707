// The part of a load that builds the tables of symbols and functions.

#include "base/msg_flags.h"
#include "program/database/database.h"
#include "program/elf/elf.h"

namespace {

using LIST_SIZE = U32 (*)(const ELF_FILE*);
using LIST_ENTRY = ELF_SYM_HANDLE (*)(const ELF_FILE*, U32);

ELF_SYM_LIST ReadList(const ELF_FILE* pElf, LIST_SIZE GetSize, LIST_ENTRY GetEntry) {
  ELF_SYM_LIST Symbols;
  U32 NumNull = 0;
  for (U32 i = 0; i < GetSize(pElf); ++i) {
    const ELF_SYM_HANDLE Sym = GetEntry(pElf, i);
    if (Sym != 0) {
      Symbols.append(Sym);
    } else {
      ++NumNull;
    }
  }
  if (NumNull > 0) {
    DatabaseLog(QStringLiteral("Warning: found %1 null pointers in symbol list").arg(NumNull),
                MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
  }
  return Symbols;
}

// Fills the lists; the result is all inlined instances.
ELF_SYM_LIST ReadLists(DATABASE& Db) {
  const ELF_SYM_LIST Inlined = ReadList(Db.pElf, ELF_GetNumInlinedFuncs, ELF_GetInlinedFunc);
  const ELF_SYM_LIST Functions = ReadList(Db.pElf, ELF_GetNumFunctions, ELF_GetFunction);
  Db.GlobalVars = ReadList(Db.pElf, ELF_GetNumGlobalVars, ELF_GetGlobalVar);
  Db.Namespaces = ReadList(Db.pElf, ELF_GetNumNamespaces, ELF_GetNamespace);
  Db.Types = ReadList(Db.pElf, ELF_GetNumTypes, ELF_GetTypeEntry);
  Db.NamedSymbols = Functions + Db.GlobalVars + Db.Namespaces;
  return Inlined;
}

void BuildFileTree(DATABASE& Db) {
  // The main file of a unit shares its ranges with the headers in it, and the last file found is the answer.
  for (const auto Ranges : {&FILE_ENTRY::Ranges, &FILE_ENTRY::MainRanges}) {
    for (FILE_INDEX i = 0; i < Db.Files.Count(); ++i) {
      for (const CAddrRange& Range : Db.Files.At(i).*Ranges) {
        Db.FileTree.Add(Range.Start, Range.Start + (Range.Size > 2 ? Range.Size - 2 : 0), static_cast<U64>(i));
      }
    }
  }
  Db.FileTree.Build();
}

void HashFileFunctions(DATABASE& Db) {
  for (const CFunctionTable::FUNC_START& Start : Db.Functions.Starts()) {
    const QList<U64> Files = Db.FileTree.Find(Start.Addr);
    if (!Files.isEmpty()) Db.FileFuncs[static_cast<FILE_INDEX>(Files.last())].append(Start.Func);
  }
}

}  // namespace

bool LoadSymbols(DATABASE& Db, const STEP_DONE& StepDone) {
  const ELF_SYM_LIST Inlined = ReadLists(Db);
  if (!StepDone("Build debug symbol lists")) return false;
  Db.Functions.BuildInlined(Inlined);
  Db.NamedSymbols = Db.Functions.Inlined() + Db.NamedSymbols;
  if (!StepDone("Hashed function inline expansions")) return false;
  Db.Symbols.Build(Db.pElf);
  if (!StepDone("Build symbol table")) return false;
  Db.Functions.BuildLists(Db.pElf, Db.Symbols.FuncSymbols());
  if (!StepDone("Build functions list")) return false;
  Db.Functions.BuildTree();
  if (!StepDone("build function interval tree")) return false;
  BuildFileTree(Db);
  if (!StepDone("build file interval tree")) return false;
  HashFileFunctions(Db);
  if (!StepDone("hashed file functions")) return false;
  Db.Cfi.Build(Db.pElf);
  if (!StepDone("parsed call frame information")) return false;
  Db.RttBlockSym = ELF_FindRttControlBlock(Db.pElf);
  return true;
}
