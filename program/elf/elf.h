#pragma once
// Reader of ELF program files and their DWARF debug information. A C-style interface over one open file: a pointer for
// the file, 64-bit handles for its symbols.
//
// Rules that hold for every function here:
// - No lock of its own: all calls run under the program database's mutex.
// - While a file is being opened or closed, and for a pointer or handle that belongs to no loaded file, a query gives
//   its neutral value, which is 0 or null where nothing else is said. The same holds for an index outside its list.
// - Texts stay valid until the next call that returns a text. They are UTF-8 as the file has them.
// - Addresses that come out went through ELF_RelocToFile, those of a pc going in through ELF_RelocFromFile. Those of
//   segments and sections, of ELF_GetRelocation and of ELF_GetAttrValue are the file's own.

#include <functional>
#include <memory>

#include "base/elf_sym.h"
#include "base/types.h"

struct ELF_FILE;

// Flags that go with the messages.
inline constexpr U32 ELF_MSG_FLAGS = 25;        // messages of the reader: MSG_INFO, to standard output and file
inline constexpr U32 ELF_DWARF_MSG_FLAGS = 65;  // complaints of the DWARF decoder: MSG_INFO, to all

using ELF_MESSAGE_FUNC = std::function<void(const char* sText, U32 Flags)>;
// Asked now and then while a file is opened, with the bytes of debug information read so far and those there are; false
// ends the opening.
using ELF_PROGRESS_FUNC = std::function<bool(U64 Done, U64 Total)>;

enum ELF_ENCODING : U32 { ELF_ENCODING_LITTLE = 0, ELF_ENCODING_BIG = 1, ELF_ENCODING_INVALID = 2 };

inline constexpr U32 ELF_CLASS_NO_FILE = 3;
inline constexpr U32 ELF_TAG_INVALID = 65535;  // ELF_GetTag of an invalid handle
inline constexpr U32 ELF_BINDING_NONE = 16;    // ELF_GetBinding of anything but an ELF symbol

// st_info types that the debugger tells apart.
enum ELF_SYMBOL_TYPE : U32 {
  ELF_SYMBOL_NOTYPE = 0,
  ELF_SYMBOL_OBJECT = 1,
  ELF_SYMBOL_FUNC = 2,
  ELF_SYMBOL_SECTION = 3,
  ELF_SYMBOL_FILE = 4,
  ELF_SYMBOL_THUMB_FUNC = 13,
};

// Kinds of handle, bits 31 to 29.
enum ELF_HANDLE_KIND : U32 { ELF_HANDLE_NONE = 0, ELF_HANDLE_DWARF = 1, ELF_HANDLE_SYMBOL = 2 };

// Bits 63 to 32 of every valid handle. Below them: kind (31 to 29), slot of the file (28 to 26), number (25 to 0): of
// the debug information entry, counted from 1 in file order, or of the ELF symbol, counted from 0.
inline constexpr U32 ELF_HANDLE_MAGIC = 0xE0FE0F00u;

// ---- File -----------------------------------------------------------------------------------------------------------

// Reads the file at the UTF-8 path into memory and builds every list. Null on failure, the reason going out as a
// message, and null without one when the progress function ended it. A file whose debug information cannot be read
// opens with its ELF symbols only. One file can be open.
ELF_FILE* ELF_Open(const char* sPath);
// Releases the file, all its handles and the symbol relocations. Nothing happens for a pointer that is not open.
void ELF_Close(ELF_FILE* pFile);
// Where messages go from now on; an empty function drops them.
void ELF_SetMessageCallback(ELF_MESSAGE_FUNC pfMessage);
void ELF_SetProgressCallback(ELF_PROGRESS_FUNC pfProgress);
// Smallest distance of instructions in bytes, a power of two, by which function addresses are rounded down; 2 at start.
void ELF_SetInstAlignment(U32 NumBytes);

// A reader apart from the one that everybody asks, so that a file can be opened on one thread while the others go on
// asking the file that is open. It begins with the settings of the common reader, without a file and, when the common
// reader has one, without symbol relocations.
struct READER_STATE;
std::shared_ptr<READER_STATE> ELF_NewReader();
// Everything that this thread calls is about that reader from now on, or about the common one for null. No two threads
// may use one reader at a time.
void ELF_UseReader(READER_STATE* pReader);
// Exchanges file, settings and relocations of the common reader with those of pReader, which no thread uses. File
// pointers and handles stay what they are. Runs under the program database's mutex.
void ELF_ExchangeReader(READER_STATE& Reader);

// Byte order of the file, an ELF_ENCODING.
U32 ELF_GetEncoding(const ELF_FILE* pFile);
// Byte order of its instructions, which are little-endian in a big-endian file that says so in its header (BE8).
U32 ELF_GetCodeEncoding(const ELF_FILE* pFile);
// True after a big-endian file was opened, until another one is.
bool ELF_IsTargetBigEndian();
// The EI_CLASS byte; ELF_CLASS_NO_FILE without a file.
U32 ELF_GetFileClass(const ELF_FILE* pFile);
// Relocated e_entry with bit 0 cleared; 0xFFFFFFFF stays as it is and is also the answer without a file.
U32 ELF_GetEntryPoint(const ELF_FILE* pFile);
// Greatest DWARF version of the file's compilation units, 0 without debug information.
U32 ELF_GetVersion(const ELF_FILE* pFile);
// C++ as soon as one compilation unit is C++, else C.
ELF_SRC_LANG ELF_GetSrcLang(const ELF_FILE* pFile);
// Size of the file in bytes.
U32 ELF_GetFileSize(const ELF_FILE* pFile);

// ---- Segments and sections; the index is the position of the header -------------------------------------------------

U32 ELF_GetNumSegments(const ELF_FILE* pFile);
U32 ELF_GetSegmentType(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentFlags(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentOffset(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentVAddr(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentPAddr(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentFileSize(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSegmentMemSize(const ELF_FILE* pFile, U32 Index);
// The segment's p_filesz bytes, owned by the file; null if it has none or they do not lie inside the file.
const U8* ELF_GetSegmentData(const ELF_FILE* pFile, U32 Index);
// Distance from p_vaddr to the lowest allocated, non-empty section that lies wholly in the segment; 0 if there is none.
U32 ELF_GetSegmentSectionOffset(const ELF_FILE* pFile, U32 Index);

U32 ELF_GetNumSections(const ELF_FILE* pFile);
U32 ELF_GetSectionType(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSectionFlags(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSectionAddr(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSectionFileOffset(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSectionSize(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSectionEntSize(const ELF_FILE* pFile, U32 Index);
// Size divided by entry size; 0 for an entry size of 0.
U32 ELF_GetSectionNumEntries(const ELF_FILE* pFile, U32 Index);
// The section's bytes, owned by the file; null for a section without bytes in the file or not wholly inside it.
const U8* ELF_GetSectionData(const ELF_FILE* pFile, U32 Index);
// Empty text where the name lies outside the table of section names, null for an index outside the list.
const char* ELF_GetSectionName(const ELF_FILE* pFile, U32 Index);
// Index of the first section with exactly that name, -1 if there is none.
I32 ELF_FindSection(const ELF_FILE* pFile, const char* sName);

struct ELF_RELOCATION {
  U32 Offset = 0;
  U32 Type = 0;    // low byte of r_info
  U32 Symbol = 0;  // r_info >> 8
  I32 Addend = 0;  // 0 in a section of type SHT_REL
};

// Entry of a SHT_REL or SHT_RELA section. 0, or -1 for another section, one without entry size and an index past its
// end.
int ELF_GetRelocation(const ELF_FILE* pFile, U32 Section, U32 Index, ELF_RELOCATION* pOut);

// ---- ELF symbols ----------------------------------------------------------------------------------------------------

// Entries of all symbol tables, the null entries among them.
U32 ELF_GetNumSymbols(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetSymbolHandle(const ELF_FILE* pFile, U32 Index);
// Index of the function symbol that covers the address, -1 if there is none. Without bExact a function below the
// address that ends before it answers too.
I32 ELF_FindFuncSymbol(const ELF_FILE* pFile, U32 Addr, bool bExact);
// Index of a symbol of an ELF_SYMBOL_TYPE, any for -1, at that address (bit 0 of its value is ignored); -1 if none.
I32 ELF_FindSymbolAt(const ELF_FILE* pFile, U32 Addr, I32 Type);
// The named functions by ascending address, one for each address. ELF_GetFuncSymbol gives a handle.
U32 ELF_GetNumFuncSymbols(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetFuncSymbol(const ELF_FILE* pFile, U32 Index);

struct ELF_SYMBOL_EXTENT {
  U32 Lowest = 0;   // lowest value of a symbol of this file that names an address, not a section of debug information
  U32 Highest = 0;  // highest value + size of one, saturated at 0xFFFFFFFF
  U32 NumSymbols = 0;  // all
};

ELF_SYMBOL_EXTENT ELF_GetSymbolExtent(const ELF_FILE* pFile);

// ---- Handles --------------------------------------------------------------------------------------------------------

// ELF_HANDLE_NONE for a handle that names nothing in the loaded file.
ELF_HANDLE_KIND ELF_GetHandleKind(ELF_SYM_HANDLE hSym);
// DW_TAG of a debug information entry or ELF_SYMBOL_TYPE of an ELF symbol; ELF_TAG_INVALID otherwise.
U32 ELF_GetTag(ELF_SYM_HANDLE hSym);
// st_info >> 4 of an ELF symbol, ELF_BINDING_NONE otherwise.
U32 ELF_GetBinding(ELF_SYM_HANDLE hSym);
// Relocated st_value of an ELF symbol, bit 0 set for Thumb functions; 0 otherwise.
U32 ELF_GetValue(ELF_SYM_HANDLE hSym);
// Name, also by way of abstract origin, specification or definition; of a function without any that of the linker. Null
// when unknown.
const char* ELF_GetName(ELF_SYM_HANDLE hSym);
// Size in bytes of the symbol's type or, where it has none, of its code; st_size of an ELF symbol, where that is 0 the
// distance to what stands behind it.
U32 ELF_GetSize(ELF_SYM_HANDLE hSym);
// True for an ELF symbol of a function or an object whose st_size is 0.
bool ELF_IsSizeDerived(ELF_SYM_HANDLE hSym);
// Section that holds the symbol: st_shndx, or the index of the section of debug information; -1 if there is none.
I32 ELF_GetSectionIndex(ELF_SYM_HANDLE hSym);
// Address ranges: [low, high), low being -1 (0xFFFFFFFF) and high 0 past the end. An ELF symbol has one. Where low has
// the Thumb bit, so has high. A range that the linker marked as dropped by an address at the end of memory is empty.
U32 ELF_GetNumRanges(ELF_SYM_HANDLE hSym);
U32 ELF_GetRangeLow(ELF_SYM_HANDLE hSym, U32 Index);
U32 ELF_GetRangeHigh(ELF_SYM_HANDLE hSym, U32 Index);
// True for a range of code that the linker dropped: the debug information keeps it from 0 on, where no function symbol
// of a section with code has that size, or from an address at the end of memory on.
bool ELF_IsDropped(const ELF_FILE* pFile, U32 Low, U32 High);

// ---- Debug information entries; every one of these is 0 for the handle of an ELF symbol -----------------------------

ELF_SYM_HANDLE ELF_GetParent(ELF_SYM_HANDLE hSym);
ELF_SYM_HANDLE ELF_GetFirstChild(ELF_SYM_HANDLE hSym);
ELF_SYM_HANDLE ELF_GetNextSibling(ELF_SYM_HANDLE hSym);
// The entry that begins exactly at that offset of .debug_info, or of .debug_types.
ELF_SYM_HANDLE ELF_GetDieByOffset(const ELF_FILE* pFile, U32 Offset, bool bTypes);
// Integer value of a DW_AT, looked up on the entry, its specification, abstract origin and definition. A reference
// gives an offset, that by a signature in the section of the type unit. 0, or -1 and an unchanged *pOut without such an
// attribute.
int ELF_GetAttrValue(ELF_SYM_HANDLE hSym, U32 Attr, I64* pOut);
// The entry that a reference attribute names, looked up in the same way.
ELF_SYM_HANDLE ELF_GetAttrDie(ELF_SYM_HANDLE hSym, U32 Attr);
// Top entry of the entry's unit.
ELF_SYM_HANDLE ELF_GetCompUnit(ELF_SYM_HANDLE hSym);
// Nearest class, structure, union or enumeration around the entry or its specification. Of an entry with an abstract
// origin that origin is meant: code that was inlined or cloned stands elsewhere.
ELF_SYM_HANDLE ELF_GetContainingClass(ELF_SYM_HANDLE hSym);
// Nearest namespace, in the same way.
ELF_SYM_HANDLE ELF_GetContainingNamespace(ELF_SYM_HANDLE hSym);
// Nearest subprogram or inlined subroutine around the entry, its specification or its abstract origin.
ELF_SYM_HANDLE ELF_GetContainingFunc(ELF_SYM_HANDLE hSym);
// Nearest subprogram, inlined subroutine, subroutine type or lexical block around the entry itself.
ELF_SYM_HANDLE ELF_GetContainingScope(ELF_SYM_HANDLE hSym);
ELF_SYM_HANDLE ELF_GetAbstractOrigin(ELF_SYM_HANDLE hSym);
// The entry itself when nothing else defines it and it has a size, else what defines it: the entry that names it as its
// specification, the type unit of its signature or, of a class that its unit only declares, the class of that qualified
// name in another one; of a member of a class the definition by way of any declaration of the class.
ELF_SYM_HANDLE ELF_GetDefinition(ELF_SYM_HANDLE hSym);
// Path of the file of the declaration, for an inlined instance that of the call; the unit's name where it is unknown.
const char* ELF_GetDeclFile(ELF_SYM_HANDLE hSym);
// Directory in which the unit of the entry was compiled; null when unknown.
const char* ELF_GetCompDir(ELF_SYM_HANDLE hSym);

// ---- Lists, in file order. A declaration or an artificial entry is in none of them ----------------------------------

U32 ELF_GetNumGlobalVars(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetGlobalVar(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetNumFunctions(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetFunction(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetNumInlinedFuncs(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetInlinedFunc(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetNumTypes(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetTypeEntry(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetNumNamespaces(const ELF_FILE* pFile);
ELF_SYM_HANDLE ELF_GetNamespace(const ELF_FILE* pFile, U32 Index);
// Function marked as main subprogram, else the first one named "main".
ELF_SYM_HANDLE ELF_GetEntryFunc(const ELF_FILE* pFile);
// Variable (or, without debug information, ELF symbol) that is the control block of real-time transfer.
ELF_SYM_HANDLE ELF_FindRttControlBlock(const ELF_FILE* pFile);

// ---- Source files and lines -----------------------------------------------------------------------------------------

// Distinct paths, as joined from compilation directory, include directory and file name.
U32 ELF_GetNumSrcFiles(const ELF_FILE* pFile);
const char* ELF_GetSrcFile(const ELF_FILE* pFile, U32 Index);
// Top entries of the compilation units that name the file at Index of ELF_GetSrcFile.
U32 ELF_GetSrcFileNumUnits(const ELF_FILE* pFile, U32 Index);
ELF_SYM_HANDLE ELF_GetSrcFileUnit(const ELF_FILE* pFile, U32 Index, U32 Unit);

enum ELF_LINE_FLAGS : U32 {
  ELF_LINE_IS_STMT = 1,       // recommended place of a breakpoint
  ELF_LINE_END_SEQUENCE = 2,  // first address behind a run of code: names no instruction of the line
  ELF_LINE_PROLOGUE_END = 4,
  ELF_LINE_WITHOUT_CODE = 8,  // at the address where its run of code ends, which belongs to what stands behind it
};

// Rows of the line tables, unit by unit, in table order. Address, line and column are -1 outside the list, the file
// null.
U32 ELF_GetNumSrcLines(const ELF_FILE* pFile);
U32 ELF_GetSrcLineAddr(const ELF_FILE* pFile, U32 Index);
I32 ELF_GetSrcLineNumber(const ELF_FILE* pFile, U32 Index);
I32 ELF_GetSrcLineColumn(const ELF_FILE* pFile, U32 Index);
const char* ELF_GetSrcLineFile(const ELF_FILE* pFile, U32 Index);
// Position of ELF_GetSrcLineFile in the list of ELF_GetSrcFile, -1 if it is not there.
I32 ELF_GetSrcLineFileIndex(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetSrcLineFlags(const ELF_FILE* pFile, U32 Index);

// ---- Call frame information -----------------------------------------------------------------------------------------

// Frame description entries: code range [low, high). Low is -1 and high 0 outside the list. Those of code that the
// linker dropped are not in it.
U32 ELF_GetNumFdes(const ELF_FILE* pFile);
U32 ELF_GetFdeLow(const ELF_FILE* pFile, U32 Index);
U32 ELF_GetFdeHigh(const ELF_FILE* pFile, U32 Index);
// Register that holds the return address by the first common information entry, in DWARF numbering.
U32 ELF_GetRetAddrReg(const ELF_FILE* pFile);

// ---- Symbol relocation: code that runs elsewhere than the file says -------------------------------------------------

// Adds Delta to all addresses of the file ("*"), of "START-END", of a section or of a symbol. Outlives a file until the
// next ELF_Close; a text that names nothing yet is resolved when a file opens. 0, or -1 for an empty or refused text.
int ELF_AddRelocation(const char* sText, I32 Delta);
bool ELF_HasRelocations();
// Forgets those that were added while no file was open; an open file keeps its own until it is closed.
void ELF_ClearRelocations();
// Address on the target of an address in the file, by the first entry with Start < Addr + LowAdjust and
// Addr < End + HighAdjust. Ends of ranges go with (0, 1), everything else with (1, 0).
U32 ELF_RelocToFile(U32 Addr, U32 LowAdjust, U32 HighAdjust);
// The reverse: address in the file of an address on the target.
U32 ELF_RelocFromFile(U32 Addr, U32 LowAdjust, U32 HighAdjust);
// Lowest address above Addr, both in the file, where something that is relocated begins or ends; 0xFFFFFFFF if none.
U32 ELF_NextRelocEdge(U32 Addr);

// ---- Target image ---------------------------------------------------------------------------------------------------

// The file's bytes for the run-time addresses [Start, End), which one loadable segment must wholly contain with bytes
// of its own, and which symbol relocation must not have moved apart; null otherwise. Owned by the file.
const U8* ELF_ReadImage(const ELF_FILE* pFile, U32 Start, U32 End);
