#pragma once
// What the debugger knows of the target processor as a machine that runs instructions: the core's description, where
// instructions begin, what they do, their text, and the numbers of registers. Process-wide state.
//
// Threads: every query may be made on any thread, the device thread and the main thread at the same time; the tables
// are behind one lock inside, and no lock is held while a VCORE_API callback runs. The sequence of Disassemble calls
// that a window makes belongs to one thread at a time: the IT block is followed from call to call, per thread. Init,
// Exit, AttachElf, BuildMappingSymbols, SetImage, AnalyzeProgram and TakeProgram belong to whoever loads programs and
// devices, one at a time; SetCpuInfo may come from the device thread.

#include <functional>
#include <memory>

#include <QList>
#include <QString>

#include "base/addr_range.h"
#include "base/mem_block.h"
#include "base/types.h"
#include "core/decoder/disasm.h"

struct ELF_FILE;

// Execution mode of instructions.
enum VCORE_MODE : U32 { VCORE_MODE_ARM = 1, VCORE_MODE_THUMB = 2, VCORE_MODE_NONE = 0xFFFFFFFFu };

// Logic register numbers: DWARF's for R0 to R15.
enum VCORE_REG : U32 {
  VCORE_REG_SP = 13,
  VCORE_REG_LR = 14,
  VCORE_REG_PC = 15,
  VCORE_REG_PSR = 16,  // xPSR, or CPSR on cores with banked registers
  VCORE_REG_SPSR = 17,
  VCORE_NUM_FRAME_REGS = 18,
};

// Description of the core.
struct VCORE_INFO {
  U32 DataItemSize = 4;  // largest item in a data region, in bytes
  U32 NumRegs = 64;      // size of the register index space
  U32 RegSize = 4;       // register widths in bytes
  U32 PCSize = 4;
  U32 SPSize = 4;
  U64 ProgStart = 0;
  U64 ProgEnd = 0xFFFFFFFF;
  U64 DataStart = 0;
  U64 DataEnd = 0xFFFFFFFF;
  U32 InstAlign = 2;  // instruction alignment in bytes; 1 while no core is set
  U32 MinInstLen = 2;
  U32 MaxInstLen = 4;
  U32 MaxMnemonicLen = 12;  // column width of the mnemonic in disassembly text, in characters
  U32 MaxOperandLen = 82;   // width of the operand text
  U32 MaxUnwindReg = 17;    // highest register index that unwinding follows
  U32 SPReg = 13;
  U32 LRReg = 14;
  U32 PCReg = 15;
  U32 RAReg = 14;          // return address in unwind rules
  U32 CFAReg = 13;         // canonical frame address in unwind rules
  U32 InstEndianness = 0;  // 0 little, 1 big
  U32 DataEndianness = 0;
};

// The core's identification as the device layer passes it. Bits 31:24 of the identifier are the family, 23:16 the
// subfamily.
struct VCORE_CPU {
  U32 CoreId = 0;
  U32 DataEndianness = 0;
  U32 InstEndianness = 0;
  bool operator==(const VCORE_CPU&) const = default;
};

// Registers of the innermost frame and the code range of its function.
struct VCORE_REGS {
  U32 FuncStart = 0;
  U32 FuncEnd = 0;  // equal to FuncStart when unknown
  U32 aValue[VCORE_NUM_FRAME_REGS] = {};
  U8 aStatus[VCORE_NUM_FRAME_REGS] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};  // 0 is valid
};

// How the core model reaches the rest of the program. The shell or the device layer fills what is marked "plug"; what
// is left empty among the others is filled by Init with the core model's own answer. Called on the asking thread.
struct VCORE_API : DISASM_API {
  // Plug. Cached read of target memory, bytes in target order; 0, or -1 when fewer than NumBytes could be read.
  std::function<int(U32 Addr, U32 NumBytes, void* pData)> pfReadTarget;
  // Plug. VNODEARM_ReadRegs: probe indices to values and statuses (0 valid); 0 or a negative error. Asked on whatever
  // thread makes the query, so it fails where the probe may not be reached. Empty: no target.
  std::function<int(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count)> pfReadProbeRegs;
  // Plug. VNODEARM_WriteReg: probe index; 0 on success.
  std::function<int(U32 Index, U32 Value)> pfWriteReg;
  // Plug. Message sink.
  std::function<void(const QString& sText)> pfLogError;
  // Mapping symbol that covers an address; End is the next region's address. 0 or -1.
  std::function<int(U32 Addr, QString& sName, U32& Start, U32& End)> pfGetMappingSymbol;
  // Registers of the innermost frame; 0 or -1. Own answer: the processor state alone, read from the probe.
  std::function<int(VCORE_REGS& Regs)> pfGetRegs;
  // Memory: program file, else image store, else target. 0 or -1. Own answer: GetMemData.
  std::function<int(U32 Addr, U32 NumBytes, void* pData)> pfGetMemData;
};

// One analysed instruction.
struct VCORE_INST {
  U32 Mode = VCORE_MODE_NONE;  // VCORE_MODE at decode time
  U32 Length = 0;              // bytes; 0 is not decoded
  U64 Target = 0;              // valid with IF_TARGET
  U32 Flags = 0;               // INST_FLAGS
};

enum VCORE_REGION_KIND : U8 { VCORE_REGION_CODE = 0, VCORE_REGION_DATA = 1, VCORE_REGION_OTHER = 255 };

// What begins at a mapping symbol and reaches to the next one.
struct VCORE_REGION {
  U64 Addr = 0;
  U32 SymbolIndex = 0;  // in the program file's symbols
  U8 Kind = VCORE_REGION_OTHER;
  QString sName;
};

namespace VCore {

// ---- Life

// Sets the core, the callbacks and the description anew; drops every table. -1 when the core identifier is not
// positive.
int Init(const VCORE_CPU& Cpu, const VCORE_API& API);
// Clears everything; InstAlign is 1 again.
void Exit();
bool IsInitialised();
// Changes the core's identification, drops the instruction cache and fills it again from the attached program; -1 when
// nothing changed or nothing is initialised. Called when a connection tells the real core.
int SetCpuInfo(const VCORE_CPU& Cpu);
VCORE_CPU GetCpuInfo();
// Copy of the description; before Init the default with InstAlign 1.
VCORE_INFO GetInfo();
// Replaces the description and validates it; the instruction cache stays; -1 with the text through pfLogError at the
// first invalid field.
int SetInfo(const VCORE_INFO& Info);

// ---- Program

// Copies the program file's image and symbols for later questions, or forgets them for null, which is due before the
// file is closed; forgets the regions, the texts and the instruction cache of the previous file. Runs under the
// program database's mutex, as does BuildMappingSymbols; no other function reaches the file.
void AttachElf(ELF_FILE* pFile);
// Reads the mapping symbols ($a, $t, $d) of the attached file; the number of regions.
int BuildMappingSymbols();
// A core model apart from the one that everybody asks, so that a program can be read and its code be decoded on one
// thread while the others go on with the present program. It begins with the same core and without a program.
struct CORE_STATE;
std::shared_ptr<CORE_STATE> NewModel();
// Everything that this thread calls here is about that model from now on, or about the common one for null.
void UseModel(CORE_STATE* pModel);
// The common model takes program, regions, image and decoded instructions from a model that no thread uses any more.
// False when the present core decodes code in another way: what was decoded is dropped, and AnalyzeProgram is due.
bool TakeProgram(CORE_STATE& Model);

// Replaces the target image store (load addresses, shared bytes); -1 when a block's size and data disagree.
int SetImage(const QMemBlocks& Blocks);
QMemBlocks GetImage();
// Lowest address and size of all blocks, by load or by run-time address; none without blocks.
CAddrRange GetImageRange(bool bExecView);
// Decodes all function symbols into the cache; the number of bytes.
U32 AnalyzeProgram();
// Decodes [Start, End) into the cache, data regions left out; pData holds the bytes at Start rounded down to InstAlign,
// null reads them through pfGetMemData. Number of bytes, 0 with a text through pfLogError for an invalid range.
U32 AnalyzeAdd(U64 Start, U64 End, const U8* pData = nullptr);
// Drops all instruction records and texts, keeps regions and image.
void ResetCache();

// ---- Instructions

// Decodes the instruction at the address without storing it. 0, with Length from the memory's content where decoding
// failed, or -1 when nothing can be read.
int Analyze(U32 Addr, VCORE_INST& Inst);
// The cached record at exactly this address; false where there is none.
bool GetCachedInst(U32 Addr, VCORE_INST& Inst);
// The cached record, or a decode; false when nothing can be read or decoded.
bool GetInst(U32 Addr, VCORE_INST& Inst);
// A cached instruction begins here and the address is in no data region.
bool IsInstruction(U32 Addr);
// At an instruction start its length, 0 when it cannot be decoded; in the midst of an instruction and in data the
// distance to the next start, MinInstLen if none lies within MaxInstLen.
U32 GetInstLength(U32 Addr);
// Nearest cached instruction start below or above, within MaxInstLen; 0 or -1.
int GetPrevInst(U32 Addr, U32& Result);
int GetNextInst(U32 Addr, U32& Result);
// No instruction in [Start, End) leaves the range by a branch, a return or a semihosting request; calls do not count.
bool IsStraightRange(U32 Start, U32 End);
// Number of instruction starts in a range of at most 1,000,000 bytes, or in a list of ranges; memoised.
U32 CountInstructions(U32 Start, U32 End);
U32 CountInstructions(const QAddrRanges& Ranges);
U32 GetExecMode(U32 Addr);
bool IsArm(U32 Addr);
// 2 or 4 from the memory's content and the mode.
U32 GetInstSize(U32 Addr);
// The instruction word (first halfword of Thumb in the low half); Size 2, 4 or 0 for GetInstSize. -1 on a failed read.
I64 ReadInst(U32 Addr, U32 Size);

// ---- Regions

// Position in the region table of the region nearest at or below the address, -1 if none.
int GetRegionAt(U32 Addr);
// The region nearest at or below the address; false if there is none.
bool FindRegion(U32 Addr, VCORE_REGION& Region);
bool IsDataAddr(U32 Addr);
// In a data region: bytes up to the next region, at most DataItemSize; else 0.
U32 GetDataItemSize(U32 Addr);

// ---- Text

// Mnemonic, blanks, operands, or a data directive in a data region; the bytes consumed, -1 on failure. "?" where no
// instruction can be decoded.
int Disassemble(U32 Addr, QString& sText);
// Code or data item in hexadecimal digits, a run of "-" where memory cannot be read; the length in bytes.
int GetCodeHex(U32 Addr, QString& sText);
// No item of disassembly text runs over this address; INVALID_ADDR for none.
void SetAnchor(U32 Addr);
// Symbol at or below an address and the distance from its start; 1 with a name, 0 without.
int GetLabel(U32 Addr, QString& sText, U32& Offset);

// ---- Memory and registers

// Program file, else image store, else target, bytes in target order; 0 or -1.
int GetMemData(U32 Addr, U32 NumBytes, void* pData);
// As GetMemData, swapped to host order for sizes 2, 4 and 8.
int ReadData(U32 Addr, U32 NumBytes, void* pData);
// Logic register to the probe's index, in the processor's current mode; INVALID_REG_INDEX if there is none.
U32 MapRegIndex(U32 Index);
// Reads logic registers 0 to Count - 1 in one probe call. BufferSize is the size of pValues in bytes: values are 4
// bytes, or BufferSize / Count bytes where that is more, little endian. Statuses: 0 valid. 0, or -1.
int ReadRegs(U32 Count, U32 BufferSize, void* pValues, U8* paStatus);
// Writes SP and PC as the core has them after a reset: from the vector table on the Cortex-M group, else PC 0. Called
// after a download. 0, or -1 when a read or a write failed.
int SetResetState();

// ---- Names

const char* GetModeName(U32 Mode);
QString GetExceptionName(U32 Number);
// "<" name " Exception>" from the status register; -1 when the registers lack it.
int GetExceptionLabel(const VCORE_REGS& Regs, QString& sText);

// Five numbers of a coprocessor register.
struct CP_REG {
  U8 Coprocessor = 0;
  U8 CRn = 0;
  U8 Op1 = 0;
  U8 CRm = 0;
  U8 Op2 = 0;
};
// "cp, CRn, op1, CRm, op2"; 0 or -1.
int ParseCPReg(const QString& sText, CP_REG& Reg);

}  // namespace VCore

inline constexpr U32 INVALID_REG_INDEX = 0xFFFFFFFFu;
