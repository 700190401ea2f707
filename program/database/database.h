#pragma once
// The state behind ELFAPI_*: one program's tables under one mutex, and those of programs that are being built, each of
// which belongs to its thread alone.

#include <QHash>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

#include "base/sinks.h"
#include "program/database/addr_index.h"
#include "program/database/cfi_blocks.h"
#include "program/database/elf_symbol_index.h"
#include "program/database/elfapi.h"
#include "program/database/file_table.h"
#include "program/database/function_table.h"
#include "program/database/line_table.h"
#include "program/database/name_index.h"

struct ELF_FILE;

// Where names of local variables are looked up.
struct SCOPE {
  U32 CurrentPC = INVALID_ADDR;
  ELF_SYM_HANDLE CurrentFunc = 0;
  ELF_SYM_LIST Origins;     // of the function: its abstract entries, which have the same variables and no code
  ELF_SYM_HANDLE Unit = 0;  // that the function is of in the source
  ELF_SYM_LIST LocalVars;
  CNameIndex Names;
  CAddrIndex Addrs;
};

// The answers of ELFAPI_GetFuncAt for one address.
struct FUNCS_AT {
  ELF_SYM_HANDLE Inner = 0;
  ELF_SYM_HANDLE Outer = 0;
};

// Answers of the reader that windows ask for again and again.
struct SYMBOL_CACHES {
  QHash<ELF_SYM_HANDLE, QString> Names;
  QHash<ELF_SYM_HANDLE, QString> ScopeNames;
  QHash<ELF_SYM_HANDLE, QAddrRanges> Ranges;
  QHash<ELF_SYM_HANDLE, CSrcLoc> DeclLocs;
  QHash<ELF_SYM_HANDLE, CSrcLoc> CallLocs;
  QHash<U32, FUNCS_AT> Funcs;  // by address
  QHash<ELF_SYM_HANDLE, QString> TypeNames;
  QHash<ELF_SYM_HANDLE, QHash<QString, I32>> MemberNames;        // of a class, to their indices
  QHash<std::pair<ELF_SYM_HANDLE, U32>, ELF_SYM_LOC> Places;     // by symbol and PC
  std::optional<QHash<QString, QList<FILE_INDEX>>> FilesByName;  // by bare name in lower case
};

// The paths at which the file finder finds the program's files, by their key.
struct FOUND_PATHS {
  U32 Generation = 0;  // of the finder's settings
  QHash<QString, FILE_INDEX> Files;
};

struct DATABASE {
  ELF_FILE* pElf = nullptr;
  QString sPath;
  QMemBlocks DataSegments;
  U32 LowestAddr = INVALID_ADDR;
  U32 HighestAddr = 0;
  U32 NumDiscardedLines = 0;
  CFileTable Files;
  CLineTable Lines;
  CElfSymbolIndex Symbols;
  CFunctionTable Functions;
  CIntervalTree FileTree;
  CCfiBlocks Cfi;
  ELF_SYM_LIST GlobalVars;
  ELF_SYM_LIST Types;
  ELF_SYM_LIST Namespaces;
  ELF_SYM_LIST NamedSymbols;  // inlined instances, functions, global variables, namespaces
  QHash<FILE_INDEX, ELF_SYM_LIST> FileFuncs;
  std::optional<ELF_SYM_LIST> NoFileFuncs;
  ELF_SYM_HANDLE RttBlockSym = 0;
  CNameIndex NamedIndex;
  CNameIndex TypeIndex;
  CNameIndex ElfIndex;
  std::optional<ELF_SYM_LIST> Enumerators;  // when first asked
  CNameIndex EnumeratorIndex;
  std::optional<ELF_SYM_LIST> DataSymbols;  // ELF symbols of data that every unit may use, when first asked
  CNameIndex DataIndex;
  CAddrIndex NamedAddrs;
  SCOPE Scope;
  SYMBOL_CACHES Caches;
  std::optional<FOUND_PATHS> FoundPaths;
};

// Access to the database for the time of one operation: to that of the loaded program, or without waiting to the one
// that this thread builds.
class CDatabaseLock {
public:
  CDatabaseLock();
  DATABASE* operator->() const;
  DATABASE& operator*() const { return *operator->(); }

  // Puts another database in place of that of the loaded program.
  void Exchange(std::unique_ptr<DATABASE>& pOther);

private:
  std::unique_lock<std::recursive_mutex> m_Lock;
};
// Every operation of this thread is about that database from now on, or about the common one for null.
void UseDatabase(DATABASE* pDatabase);

// What may be asked without the mutex.
struct DATABASE_STATE {
  std::atomic<bool> bLoaded{false};
  std::atomic<U32> NumBusy{0};  // programs that are being built, exchanged or unloaded
};
DATABASE_STATE& DatabaseState();

// Busy for the time of a build, exchange or unload.
class CBusyMark {
public:
  CBusyMark();
  ~CBusyMark();
};

// Message to the sink that the shell has plugged in; at debug level where no flags are given.
void DatabaseLog(const QString& sText);
void DatabaseLog(const QString& sText, U32 Flags);

// Steps of a build, each filling tables of the empty database. False as soon as StepDone is.
using STEP_DONE = std::function<bool(const char* sStep)>;
bool LoadFilesAndLines(DATABASE& Db, const STEP_DONE& StepDone);
bool LoadSymbols(DATABASE& Db, const STEP_DONE& StepDone);

// Builds the tables of the open file anew after its addresses have changed. The caller has the core model decode the
// program when the lock has gone. False, and the tables are as they were, when there is not enough memory.
bool RebuildTables(CDatabaseLock& Db);

// ELFAPI_GetScopeName without inline namespaces, which a user may leave out.
QString ScopeNameWithoutInline(ELF_SYM_HANDLE Sym);

// Location of a line entry as it is told outside.
CSrcLoc SrcLocOf(const DATABASE& Db, const LINE_ENTRY& Entry);
