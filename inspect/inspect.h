#pragma once
// What the sub-commands of vexor-inspect share. Each stands in a file of its own and prints rows of tab-separated text.

#include <QString>
#include <QStringList>

#include <string>

#include "base/elf_sym.h"
#include "base/types.h"

struct ELF_FILE;

struct INSPECT_OPTIONS {
  QString sFile;
  U32 From = 0;          // lowest address of interest
  U32 To = 0xFFFFFFFFu;  // first address that is not
  QString sCore;         // name of the core, empty for the one that fits the file
  bool bRaw = false;     // the file is the bytes of memory from Base on
  U32 Base = 0;
  bool bArm = false;  // code of unknown state is ARM, not Thumb

  bool Covers(U32 Addr) const { return Addr >= From && Addr < To; }
  bool IsPicked() const { return From != 0 || To != 0xFFFFFFFFu; }
};

// One sub-command: prints to standard output. Null, or what went wrong.
using INSPECT_FUNC = const char* (*)(const INSPECT_OPTIONS& Options);

struct INSPECT_COMMAND {
  const char* sName;
  const char* sRow;  // columns of a row, for the help text
  INSPECT_FUNC pfRun;
};

const char* InspectDisasm(const INSPECT_OPTIONS& Options);
const char* InspectFrames(const INSPECT_OPTIONS& Options);
const char* InspectFunctions(const INSPECT_OPTIONS& Options);
const char* InspectInlines(const INSPECT_OPTIONS& Options);
const char* InspectLines(const INSPECT_OPTIONS& Options);
const char* InspectSegments(const INSPECT_OPTIONS& Options);
const char* InspectStack(const INSPECT_OPTIONS& Options);
const char* InspectSymbols(const INSPECT_OPTIONS& Options);
const char* InspectTypes(const INSPECT_OPTIONS& Options);
const char* InspectVariables(const INSPECT_OPTIONS& Options);

// Name with the classes and namespaces around it, joined by "::"; those without a name are left out.
std::string QualifiedName(ELF_SYM_HANDLE hSym);
// Where a value is found, in one column: an address, or ELF_GetLocationText with what that leaves out.
std::string PlaceText(const ELF_SYM_LOC& Loc);
// Canonical frame address: "SP + 8", "?" where it is no register and offset.
std::string CfaText(const ELF_SYM_LOC& Cfa);

// Opens the file for a sub-command, the reader's complaints going to standard error, and closes it in the end.
class CInspectedFile {
public:
  explicit CInspectedFile(const INSPECT_OPTIONS& Options);
  ~CInspectedFile();
  CInspectedFile(const CInspectedFile&) = delete;
  CInspectedFile& operator=(const CInspectedFile&) = delete;

  const ELF_FILE* Get() const { return pFile; }

private:
  ELF_FILE* pFile;
};

inline constexpr char FILE_NOT_READ[] = "the file could not be read as a program file";
