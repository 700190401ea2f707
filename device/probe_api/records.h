#pragma once
// The records and constants that cross the boundary of the probe library. Layouts are the library's own.

#include <cstddef>

#include "base/types.h"

struct VNODEARM_DEVICE_INFO {
  U32 SizeOfStruct;  // set by the caller to sizeof(VNODEARM_DEVICE_INFO)
  U32 Reserved0;
  const char* sName;  // these two are owned by the library and valid as long as it is loaded
  const char* sManufacturer;
  U32 RAMAddr;
  U32 FlashAddr;
  U32 FlashSize;
  U32 RAMSize;
  U32 NumCores;
  U8 aReserved1[516];
  U32 Core;  // core identifier; its top byte is the core family
  U8 aReserved2[804];
};
static_assert(sizeof(void*) != 8 || sizeof(VNODEARM_DEVICE_INFO) == 1368);
static_assert(sizeof(void*) != 8 || offsetof(VNODEARM_DEVICE_INFO, Core) == 560);

// Implementations of a breakpoint in VNODEARM_BP_INFO::ImpFlags.
inline constexpr U32 VNODE_BP_IS_HARD = 0x01;
inline constexpr U32 VNODE_BP_IS_SOFT_RAM = 0x02;
inline constexpr U32 VNODE_BP_IS_SOFT_FLASH = 0x10;

struct VNODEARM_BP_INFO {
  U32 SizeOfStruct;
  U32 Handle;
  U32 Addr;
  U32 Type;
  U32 ImpFlags;  // the implementation that was chosen
  U32 UseCnt;
  U8 aReserved[4];
};
static_assert(sizeof(VNODEARM_BP_INFO) == 28);

struct VNODEARM_DATA_EVENT {
  U32 SizeOfStruct;
  U32 Type;  // 1 data breakpoint
  U32 Addr;
  U32 AddrMask;
  U32 Data;
  U32 DataMask;
  U8 Access;
  U8 AccessMask;
  U8 aReserved[2];
};
static_assert(sizeof(VNODEARM_DATA_EVENT) == 28);

struct VNODEARM_WP_INFO {
  U32 SizeOfStruct;
  U32 Handle;
  U32 Addr;
  U32 AddrMask;
  U32 Data;
  U32 DataMask;
  U32 Ctrl;
  U32 CtrlMask;
  U32 aReserved[2];
};
static_assert(sizeof(VNODEARM_WP_INFO) == 40);

struct VNODE_HSS_BLOCK {
  U32 Addr;
  U32 NumBytes;
  U32 Flags;
  U32 Reserved;
};

// Result of optional function VNODE_FUNC_WEB_PORT.
struct VNODE_WEB_INFO {
  U32 Reserved;
  U32 Port;
};

// Numbers that VNODE_GetpFunc knows.
enum VNODE_OPTIONAL_FUNCS : int {
  VNODE_FUNC_HAS_BMA = 10,         // int (*)(): non-zero when memory can be read while the target runs
  VNODE_FUNC_GET_ENDIANNESS = 12,  // int (*)(): negative, or bit 1 instruction and bit 0 data big endian
  VNODE_FUNC_WEB_PORT = 33,        // int (*)(VNODE_WEB_INFO*)
};

using VNODE_GET_INT_FUNC = int (*)();
using VNODE_WEB_INFO_FUNC = int (*)(VNODE_WEB_INFO*);
using VNODE_TEXT_CALLBACK = void (*)(const char* sText);

enum VNODE_CAPABILITIES : U32 { VNODE_CAP_SWO = 23 };
enum VNODE_TARGET_IFS : int { VNODE_TIF_JTAG = 0, VNODE_TIF_SWD = 1 };

// Type flags of VNODEARM_SetBPEx.
inline constexpr U32 VNODE_BP_ISA_MASK = 0x3;
inline constexpr U32 VNODE_BP_ARM = 1;
inline constexpr U32 VNODE_BP_THUMB = 2;
inline constexpr U32 VNODE_BP_IMP_ANY = 0xFFFFFFF0;
inline constexpr U32 VNODE_BP_IMP_HW = 0xFFFFFF00;
inline constexpr U32 VNODE_BP_IMP_SW = 0x000000F0;

// Results of VNODEARM_EndDownload: the phase that failed.
enum VNODE_DOWNLOAD_RESULTS : int {
  VNODE_DOWNLOAD_OK = 0,
  VNODE_DOWNLOAD_UNSPECIFIED = -1,
  VNODE_DOWNLOAD_COMPARE_FAILED = -2,
  VNODE_DOWNLOAD_PROGRAM_FAILED = -3,
  VNODE_DOWNLOAD_VERIFY_FAILED = -4,
};

// Results of VNODEARM_SetDataEvent below 0.
enum VNODE_DATA_EVENT_ERRORS : int {
  VNODE_DATA_EVENT_INVALID = -1,
  VNODE_DATA_EVENT_NO_FREE_UNIT = -2,
  VNODE_DATA_EVENT_NO_VALUE_MATCH = -3,  // the core's units do not compare values
};

// Results of VNODE_HSS_Start.
enum VNODE_HSS_ERRORS : int {
  VNODE_HSS_UNSPECIFIED = -1,
  VNODE_HSS_NO_MEMORY = -2,
  VNODE_HSS_TOO_MANY_BLOCKS = -3,
  VNODE_HSS_NOT_SUPPORTED = -4,
};

inline constexpr U32 VNODE_HSS_MAX_BLOCKS = 511;

// VNODEARM_SWO_Control: with a pointer the number of bytes that wait to be read goes there; without one they are dropped.
inline constexpr U32 VNODE_SWO_PENDING = 2;

// VNODEARM_RAWTRACE_Control: what the trace hardware can do, as bits.
inline constexpr U32 VNODE_RAWTRACE_GET_CAPS = 4;
inline constexpr U32 VNODE_RAWTRACE_CAP_STREAMING = 1u << 5;

enum VNODE_RTT_COMMANDS : U32 { VNODE_RTT_START = 0, VNODE_RTT_STOP = 1 };

// The last two arguments of VNODE_STRACE_GetInstStats.
inline constexpr int VNODE_INST_STATS_ITEM_SIZE = 8;  // bytes
inline constexpr int VNODE_INST_STATS_FETCH_AND_SKIP = 9;

inline constexpr U32 VNODE_SPEED_AUTO = 0;
inline constexpr U32 VNODE_SPEED_ADAPTIVE = 65535;

// Core identifiers, as VNODEARM_DEVICE_INFO gives them.
inline constexpr U32 VNODE_CORE_CORTEX_M0 = 0x060000FF;
inline constexpr U32 VNODE_CORE_CORTEX_M23 = 0x060100FF;
inline constexpr U32 VNODE_CORE_CORTEX_M1 = 0x010000FF;
inline constexpr U32 VNODE_CORE_CORTEX_M3 = 0x030000FF;
inline constexpr U32 VNODE_CORE_CORTEX_M4 = 0x0E0000FF;
inline constexpr U32 VNODE_CORE_CORTEX_M7 = 0x0E0100FF;
inline constexpr U32 VNODE_CORE_CORTEX_M33 = 0x0E0200FF;
