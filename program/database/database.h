#pragma once
// The state behind ELFAPI_*: one program's tables under one mutex.

#include <QHash>
#include <atomic>
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
  U32 CurrentPC = 0;
  ELF_SYM_HANDLE CurrentFunc = 0;
  ELF_SYM_LIST LocalVars;
  CNameIndex Names;
  CAddrIndex Addrs;
};

// Answers of the reader that windows ask for again and again.
struct SYMBOL_CACHES {
  QHash<ELF_SYM_HANDLE, QString> Names;
  QHash<ELF_SYM_HANDLE, QString> ScopeNames;
  QHash<ELF_SYM_HANDLE, QAddrRanges> Ranges;
  QHash<ELF_SYM_HANDLE, CSrcLoc> DeclLocs;
  QHash<ELF_SYM_HANDLE, CSrcLoc> CallLocs;
};

// The paths at which the file finder finds the program's files, by lower-cased path.
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
  CAddrIndex NamedAddrs;
  SCOPE Scope;
  SYMBOL_CACHES Caches;
  std::optional<FOUND_PATHS> FoundPaths;
};

// Access to the database for the time of one operation.
class CDatabaseLock {
public:
  CDatabaseLock();
  DATABASE* operator->() const;
  DATABASE& operator*() const { return *operator->(); }

private:
  std::lock_guard<std::recursive_mutex> m_Lock;
};

// What may be asked without the mutex.
struct DATABASE_STATE {
  std::atomic<bool> bLoaded{false};
  std::atomic<bool> bBusy{false};
};
DATABASE_STATE& DatabaseState();

// Message to the sink that the shell has plugged in; at debug level where no flags are given.
void DatabaseLog(const QString& sText);
void DatabaseLog(const QString& sText, U32 Flags);

// Steps of a load, each filling tables of the empty database.
void LoadFilesAndLines(DATABASE& Db, const std::function<void(const char* sStep)>& StepDone);
void LoadSymbols(DATABASE& Db, const std::function<void(const char* sStep)>& StepDone);

// Location of a line entry as it is told outside.
CSrcLoc SrcLocOf(const DATABASE& Db, const LINE_ENTRY& Entry);
