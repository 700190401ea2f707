#pragma once
// The program database: what the rest of the debugger knows of the one loaded program file. Every operation may be
// called on any thread and takes the database's mutex for its whole run. Addresses are addresses on the target, without
// the Thumb bit. A handle of 0, an address of INVALID_ADDR, an all-zero CSrcLoc and an empty list stand for "nothing";
// they are also the answers while no program is loaded. A handle is a number in the program that was loaded when it was
// given: once another has taken its place it may name anything in that one. Who asks twice about one symbol on a thread
// that does not load programs holds a CDatabaseLock around both.

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

#include "base/addr_range.h"
#include "base/elf_sym.h"
#include "base/mem_block.h"
#include "base/sinks.h"
#include "base/src_loc.h"

// The file identifier of a path that is no source file of the program.
inline constexpr U32 INVALID_FILE_ID = 0xFFFFFFFFu;

// ---- Load and state

// Builds all tables of the file at sPath and puts them in place of the loaded program's, which answers until then; also
// gives the file to VFile and VCore. Returns 0, or -1 when the reader refused the file: the database is empty then.
// Reports steps, times and the reader's messages to the message sink. CProgramBuild does the same in two steps.
int ELFAPI_Load(const QString& sPath);
// Closes the program file and empties all tables. Callable at any time.
void ELFAPI_Unload();
// These two never wait: busy is true while a program is built or unloaded.
bool ELFAPI_IsLoaded();
bool ELFAPI_IsBusy();
// Path given to the last successful load; empty when nothing is loaded.
QString ELFAPI_GetFilePath();
ELF_SRC_LANG ELFAPI_GetSrcLang();
// 0 little endian, 1 big endian, 2 when nothing is loaded.
U32 ELFAPI_GetEncoding();
// The file's entry point, and the function that "main" or the compiler's main mark names in the debug information: 0
// without. One that was inlined as a whole has no address; its instances do.
U32 ELFAPI_GetEntryPC();
ELF_SYM_HANDLE ELFAPI_GetEntryFunc();
// Lowest and highest address of code and data of the program; (0xFFFFFFFF, 0) when nothing is loaded.
std::pair<U32, U32> ELFAPI_GetProgramExtent();
// The program image, one block per loadable segment.
QMemBlocks ELFAPI_GetDataSegments();
// Number of line entries that were dropped because they lie below the code or belong to functions that the linker
// dropped.
U32 ELFAPI_GetNumDiscardedLines();
// Receiver of the database's and the reader's messages, called on the thread that builds a program.
void ELFAPI_SetMessageSink(MessageSink Sink);

// ---- Addresses and lines

// The locations of the instruction at Addr: those of the exact line entry, otherwise those of the nearest entry below,
// when it is at most 256 bytes away and in the same function. Sorted by line.
QSrcLocs ELFAPI_GetSrcLocsAt(U32 Addr);
CSrcLoc ELFAPI_GetFirstSrcLoc(U32 Addr);
CSrcLoc ELFAPI_GetLastSrcLoc(U32 Addr);
// Location of the line entry at exactly this address.
CSrcLoc ELFAPI_GetSrcLocExact(U32 Addr);
bool ELFAPI_HasSrcLoc(U32 Addr);
// True when the start of the range has a location or a line entry lies in the range.
bool ELFAPI_RangeHasSrcLoc(const CAddrRange& Range);
// True when the address has a location and its file exists on this host.
bool ELFAPI_IsFileLoc(U32 Addr);
// Addresses of the line entries of a file and line, ascending; the column does not count.
QAddrList ELFAPI_GetAddrsOfLoc(const CSrcLoc& Loc);
U32 ELFAPI_GetAddrOfLoc(const CSrcLoc& Loc);
// Instruction addresses of the line: all its contiguous blocks of at most 256 bytes, and the block at its lowest
// address alone. An entry within the length of an instruction behind the line's entry before it begins no block of its
// own.
QAddrList ELFAPI_GetLocBlocks(const CSrcLoc& Loc);
QAddrList ELFAPI_GetLocAddrs(const CSrcLoc& Loc);
// Nearest line with code in the same file, at most 1000 lines on, or down to line 0; column 0.
CSrcLoc ELFAPI_NextSrcLoc(const CSrcLoc& Loc);
CSrcLoc ELFAPI_PrevSrcLoc(const CSrcLoc& Loc);
// Nearest line entry's address above or below Addr.
U32 ELFAPI_NextProgramAddr(U32 Addr);
U32 ELFAPI_PrevProgramAddr(U32 Addr);
// First address above Addr, within 1000 bytes, that belongs to another line. Returns 0, or -1 if there is none.
int ELFAPI_NextSrcAddr(U32 Addr, U32& NextAddr);
// A line counts as executable when it has code that it does not share with the next line with code.
bool ELFAPI_IsLocExecutable(const CSrcLoc& Loc);
// True when Addr is the first address of its line in this run of addresses.
bool ELFAPI_IsStatementStart(U32 Addr);
// "main.c:12", or "main.c:12:5" with a column; empty for an invalid location. For a reader: files in other folders may
// have the same name, and ELFAPI_ParseSrcLoc then chooses one.
QString ELFAPI_GetSrcLocText(const CSrcLoc& Loc);

// ---- Symbols by address

// The innermost inlined instance that covers Addr, otherwise the function. With bOuterOnly the function.
ELF_SYM_HANDLE ELFAPI_GetFuncAt(U32 Addr, bool bOuterOnly = false);
// All functions and inlined instances that cover Addr, outermost first.
ELF_SYM_LIST ELFAPI_GetFuncsAt(U32 Addr);
// Function at the lowest address of the location, or of the previous line with code if it has none: the one whose text
// the line is where an inlined one begins at the same address, else as ELFAPI_GetFuncAt.
ELF_SYM_HANDLE ELFAPI_GetFuncOfLoc(const CSrcLoc& Loc);
// File whose code covers Addr, or INVALID_FILE_ID. By the code of compilation units: where one unit holds several
// sources with code (link-time optimisation, a source included by another) all of it belongs to the last of them.
U32 ELFAPI_GetFileAt(U32 Addr);
// ELF symbol at exactly this address, a function before any other.
ELF_SYM_HANDLE ELFAPI_GetSymbolAt(U32 Addr);
// "$ARM", "$Thumb" or "$Data" by the nearest mapping symbol at or below Addr, or at exactly Addr; else empty.
QString ELFAPI_GetMappingName(U32 Addr, bool bExact);
// The local variable (bLocals), the functions and variables (bNamed) and the ELF symbols at exactly this address;
// inlined instances first, ELF symbols last.
ELF_SYM_LIST ELFAPI_GetSymbolsAt(U32 Addr, bool bNamed, bool bLocals);
ELF_SYM_HANDLE ELFAPI_FindSymbolAt(U32 Addr);
// 1 data, 0 first address of a source line, -1 neither.
int ELFAPI_ClassifyAddr(U32 Addr);

// Moves symbols of the loaded program until it is closed or, without one, of the next, see ELF_AddRelocation: 0, or -1
// for a refused text.
int ELFAPI_AddRelocation(const QString& sText, I32 Delta);
bool ELFAPI_HasRelocations();
// Forgets what was to be moved in the next program. A loaded one keeps its addresses until it is unloaded.
void ELFAPI_ClearRelocations();

// ---- Symbols by name

// Symbols of that name, case sensitive, from the kinds asked for; "Owner::Name" asks for the class or namespace too,
// "::Owner::Name" and "::Name" for that of no other and for none. Where nothing has the name, the instances of the
// template of that name. Inlined instances first, before the function's own entry; ELF symbols last.
ELF_SYM_LIST ELFAPI_FindSymbols(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols);
// The first of them. With bLocals what the name means at the current PC: the variable of the innermost scope, then
// what the function's unit defines, then what has external linkage, before static ones of other units.
ELF_SYM_HANDLE ELFAPI_FindSymbol(const QString& sName, bool bNamed, bool bLocals, bool bTypes, bool bElfSymbols);
// The same choice among symbols of one name that are no local variables; 0 of none.
ELF_SYM_HANDLE ELFAPI_GetNearest(const ELF_SYM_LIST& Symbols);

// How ELFAPI_ParseLocation found its address.
enum PARSED_LOC_KIND : I32 {
  PARSED_LOC_NONE = -1,
  PARSED_LOC_NUMBER = 0,
  PARSED_LOC_SRC = 1,
  PARSED_LOC_SYMBOL = 2,
  PARSED_LOC_DECL = 3,
};

// Address and size that a user's text stands for: a hexadecimal number, a symbol, or "file:line". Size 0 where none is
// known; address 0 and kind PARSED_LOC_NONE when the text means nothing. Of several symbols that of ELFAPI_FindSymbol,
// else the first of ELFAPI_FindSymbols with an address: for a function that was also inlined an instance in one of its
// callers, not its own code (ParseBreakpointLocation takes that).
CAddrRange ELFAPI_ParseLocation(const QString& sText, PARSED_LOC_KIND& Kind);
// Source location that a user's text stands for: "file:line", "file:line:column", a hexadecimal address or a symbol, in
// the order of ELFAPI_ParseLocation: an inlined instance stands for the line of its call. The file is a path or the end
// of one; of several the first with code on the line, else the first with code.
CSrcLoc ELFAPI_ParseSrcLoc(const QString& sText);

// ---- One symbol

// DW_TAG number of a debug symbol, ELF symbol type of an ELF symbol, 65535 for no symbol.
U32 ELFAPI_GetTag(ELF_SYM_HANDLE Sym);
QString ELFAPI_GetName(ELF_SYM_HANDLE Sym);
// With the enclosing classes and namespaces, joined by "::".
QString ELFAPI_GetQualifiedName(ELF_SYM_HANDLE Sym);
// The part of the qualified name before the symbol's own name.
QString ELFAPI_GetScopeName(ELF_SYM_HANDLE Sym);
// Size in bytes of the code of a function or of the data of a variable.
U32 ELFAPI_GetSize(ELF_SYM_HANDLE Sym);
// Start address of a function, address of a variable that has a fixed one.
U32 ELFAPI_GetAddr(ELF_SYM_HANDLE Sym);
// First range of a function, and all its ranges sorted by start.
CAddrRange ELFAPI_GetAddrRange(ELF_SYM_HANDLE Sym);
QAddrRanges ELFAPI_GetAddrRanges(ELF_SYM_HANDLE Sym);
CSrcLoc ELFAPI_GetDeclLoc(ELF_SYM_HANDLE Sym);
// Where an inlined instance was called.
CSrcLoc ELFAPI_GetCallLoc(ELF_SYM_HANDLE Sym);
// Call location of an inlined instance, else the declaration, else the location of the symbol's address.
CSrcLoc ELFAPI_GetLoc(ELF_SYM_HANDLE Sym);
// Function that contains the symbol.
ELF_SYM_HANDLE ELFAPI_GetFunctionOf(ELF_SYM_HANDLE Sym);
bool ELFAPI_IsFunction(ELF_SYM_HANDLE Sym);
bool ELFAPI_IsVariable(ELF_SYM_HANDLE Sym);
bool ELFAPI_IsInlined(ELF_SYM_HANDLE Sym);
bool ELFAPI_IsElfSymbol(ELF_SYM_HANDLE Sym);
// True when one of the function's ranges covers PC.
bool ELFAPI_IsInFunction(ELF_SYM_HANDLE Func, U32 PC);

// ---- Lists

// All functions, sorted by address: those with debug information, and ELF symbols where there is none or where their
// own size reaches further. Last, without address, those that exist only as inlined instances.
ELF_SYM_LIST ELFAPI_GetFunctions();
// Functions whose code belongs to no source file.
ELF_SYM_LIST ELFAPI_GetNoFileFunctions();
ELF_SYM_LIST ELFAPI_GetGlobalVars();
// Variables and parameters of the function at the current PC; with bAddrOnly those with a fixed address.
ELF_SYM_LIST ELFAPI_GetLocalVars(bool bAddrOnly = false);
// Inlined instances of a function, by its abstract entry or by that of its own code.
ELF_SYM_LIST ELFAPI_GetInlinedFuncs(ELF_SYM_HANDLE Func);
// Functions and inlined instances whose code belongs to the file, by ELFAPI_GetFileAt of their start.
ELF_SYM_LIST ELFAPI_GetFileFunctions(U32 FileId);
// Paths of the source files that exist on this host, then the redirected ones.
QStringList ELFAPI_GetSourceFiles();
// Sets the scope in which names of local variables are looked up: where the target has halted last in the session, told
// before anybody is told of the halt, and INVALID_ADDR outside of one. A program that replaces the loaded one keeps it.
void ELFAPI_SetCurrentPC(U32 PC);

// ---- Files

// Identifier of a source file of the program, by the path in the program file, by its new path after a redirection, or
// by the path at which the file finder finds it; case, "." and ".." and the kind of slashes do not count.
// INVALID_FILE_ID when the program has no such file.
U32 ELFAPI_FileId(const QString& sPath);
// Path of a file as the program file gives it, or as redirected.
QString ELFAPI_GetFilePathOf(U32 FileId);
// From the start of the file's first to the end of its last code range; none if it has no code.
CAddrRange ELFAPI_GetFileRange(U32 FileId);
QAddrRanges ELFAPI_GetFileRanges(U32 FileId);
// Makes sNewPath stand for the program's file sOldPath in every answer; questions may use either identifier.
void ELFAPI_RedirectFile(const QString& sOldPath, const QString& sNewPath);
bool ELFAPI_FileExists(U32 FileId);
// All source files that the program names, found on this host or not, in the order of the program file.
QList<U32> ELFAPI_GetFileIds();
// The code of each source file's own lines, without what is inlined from other files; files without code are left out.
// One pass over all lines: whoever asks keeps the answer.
QHash<U32, QAddrRanges> ELFAPI_GetFileCode();

// ---- Frame data

// Range of the frame description entry that covers PC; none if there is none.
CAddrRange ELFAPI_GetCfiBlock(U32 PC);
U32 ELFAPI_GetNumCfiBlocks();
