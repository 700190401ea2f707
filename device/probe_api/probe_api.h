#pragma once
// Every function of the probe library that the device layer calls, with its C signature. The library exports them under
// these names; the device layer loads them into a VNODE_API table; the library's own sources declare them from the same
// list, so that the two cannot drift apart.
//
// Results: 0 is success unless stated otherwise. Addresses are U32. The library writes no more of a record than its
// SizeOfStruct covers.

#include "device/probe_api/records.h"

// clang-format off
#define VNODE_API_FUNCS(F)                                                                                            \
  /* Session */                                                                                                       \
  F(U32, VNODEARM_GetDLLVersion, ())                 /* major * 10000 + minor * 100 + revision */                     \
  F(const char*, VNODEARM_Open, ())                  /* null, or an error text */                                     \
  F(void, VNODEARM_Close, ())                                                                                         \
  F(U8, VNODEARM_IsOpen, ())                                                                                          \
  F(int, VNODEARM_Connect, ())                       /* 0 when the target answers */                                  \
  F(U8, VNODEARM_IsConnected, ())                                                                                     \
  F(int, VNODEARM_SelectIP, (const char* sHost, int Port))      /* 1 is failure */                                    \
  F(int, VNODEARM_SelectUSB, (int Port))                        /* negative is failure */                             \
  F(int, VNODEARM_EMU_SelectByUSBSN, (U32 SerialNo))            /* negative is failure */                             \
  F(int, VNODEARM_EMU_HasCapEx, (U32 Capability))               /* non-zero when present */                           \
  F(U32, VNODEARM_GetSN, ())                                                                                          \
  F(void, VNODEARM_GetFirmwareString, (char* acBuffer, int Size))                                                     \
  F(void, VNODEARM_EnableLog, (VNODE_TEXT_CALLBACK pfLog))                                                            \
  F(void, VNODEARM_SetErrorOutHandler, (VNODE_TEXT_CALLBACK pfError))                                                 \
  F(void, VNODEARM_SetWarnOutHandler, (VNODE_TEXT_CALLBACK pfWarn))                                                   \
  F(void, VNODEARM_SetLogFile, (const char* sPath))                                                                   \
  F(int, VNODEARM_ExecCommand, (const char* sCommand, char* acReply, int ReplySize)) /* non-empty reply is an error */ \
  F(void*, VNODE_GetpFunc, (int FuncNo))                        /* VNODE_OPTIONAL_FUNCS; null when not served */      \
  /* Device list */                                                                                                   \
  F(int, VNODEARM_DEVICE_GetIndex, (const char* sName))         /* negative when unknown */                           \
  F(int, VNODEARM_DEVICE_GetInfo, (int Index, VNODEARM_DEVICE_INFO* pInfo)) /* (-1, null): number of devices */       \
  F(void, VNODEARM_Core2CoreName, (U32 Core, char* acBuffer, U16 Size))                                               \
  /* Configuration */                                                                                                 \
  F(int, VNODEARM_TIF_Select, (int Interface))                                                                        \
  F(void, VNODEARM_ConfigJTAG, (int IRPre, int DRPre))                                                                \
  F(void, VNODEARM_SetSpeed, (U32 SpeedKHz))                    /* VNODE_SPEED_AUTO, VNODE_SPEED_ADAPTIVE */          \
  F(U32, VNODEARM_GetSpeed, ())                                 /* low 16 bits in kHz */                              \
  F(int, VNODEARM_SetEndian, (int Endian))                                                                            \
  F(int, VNODEARM_SetCoreIndex, (U32 Index))                                                                          \
  F(void, VNODEARM_SetResetType, (int Type))                                                                          \
  F(void, VNODEARM_SetResetDelay, (int Milliseconds))                                                                 \
  F(void, VNODEARM_SetInitRegsOnReset, (int Value))                                                                   \
  F(void, VNODEARM_EnableSoftBPs, (int Enable))                                                                       \
  /* Run control, registers and memory */                                                                             \
  F(int, VNODEARM_Halt, ())                                                                                           \
  F(int, VNODEARM_IsHalted, ())                                 /* 1 or more halted, 0 running, negative no connection */ \
  F(void, VNODEARM_GoEx, (int MaxInstructions, int Flags))      /* always (0, 1): steps over a breakpoint at the PC */ \
  F(int, VNODEARM_Step, ())                                                                                           \
  F(int, VNODEARM_Reset, ())                                                                                          \
  F(U32, VNODEARM_ReadReg, (U32 Index))                                                                               \
  F(int, VNODEARM_ReadRegs, (const U32* paIndex, U32* paValue, U8* paStatus, U32 Count))                              \
  F(int, VNODEARM_WriteReg, (U32 Index, U32 Value))                                                                   \
  F(int, VNODEARM_CP15_ReadEx, (U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue))                                         \
  F(int, VNODEARM_CP15_WriteEx, (U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value))                                          \
  F(int, VNODEARM_GetDebugInfo, (U32 Index, U32* pValue))                                                             \
  F(int, VNODEARM_ReadMem, (U32 Addr, U32 NumBytes, void* pData))                                                     \
  F(int, VNODEARM_ReadMemEx, (U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth))  /* bytes read, negative: failure */ \
  F(int, VNODEARM_ReadMemHW, (U32 Addr, U32 NumBytes, void* pData))                                                   \
  F(int, VNODEARM_ReadMemU8, (U32 Addr, U32 NumItems, U8* paData, U8* paStatus))      /* items read */                \
  F(int, VNODEARM_ReadMemU16, (U32 Addr, U32 NumItems, U16* paData, U8* paStatus))                                    \
  F(int, VNODEARM_ReadMemU32, (U32 Addr, U32 NumItems, U32* paData, U8* paStatus))                                    \
  F(int, VNODEARM_ReadMemU64, (U32 Addr, U32 NumItems, U64* paData, U8* paStatus))                                    \
  F(int, VNODEARM_WriteMem, (U32 Addr, U32 NumBytes, const void* pData))                                              \
  F(int, VNODEARM_WriteMemEx, (U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth)) /* bytes written */       \
  F(int, VNODEARM_WriteU8, (U32 Addr, U8 Value))                                                                      \
  F(int, VNODEARM_WriteU16, (U32 Addr, U16 Value))                                                                    \
  F(int, VNODEARM_WriteU32, (U32 Addr, U32 Value))                                                                    \
  F(int, VNODEARM_WriteU64, (U32 Addr, U64 Value))                                                                    \
  F(void, VNODEARM_BeginDownload, (U32 Flags))                                                                        \
  F(int, VNODEARM_EndDownload, ())                              /* VNODE_DOWNLOAD_RESULTS; none open: the last result */ \
  F(int, VNODEARM_MeasureCPUSpeedEx, (U32 RAMAddr, int PreserveMem, int AllowFail)) /* Hz, 0 or negative: failure */  \
  /* Breakpoints */                                                                                                   \
  F(int, VNODEARM_SetBPEx, (U32 Addr, U32 TypeFlags))           /* handle, 0 on failure */                            \
  F(int, VNODEARM_ClrBPEx, (int Handle))                        /* -1 for all */                                      \
  F(int, VNODEARM_GetBPInfoEx, (int Index, VNODEARM_BP_INFO* pInfo)) /* number of breakpoints; -1 with Handle set */  \
  F(int, VNODEARM_SetDataEvent, (const VNODEARM_DATA_EVENT* pEvent, U32* pHandle)) /* VNODE_DATA_EVENT_ERRORS */      \
  F(int, VNODEARM_ClrDataEvent, (U32 Handle))                   /* 0xFFFFFFFF for all */                              \
  F(int, VNODEARM_GetWPInfoEx, (int Index, VNODEARM_WP_INFO* pInfo)) /* count */                                      \
  /* Trace and terminal channels */                                                                                   \
  F(int, VNODEARM_SWO_Control, (U32 Command, void* pData))      /* VNODE_SWO_PENDING; negative on failure */          \
  F(int, VNODEARM_SWO_EnableTarget, (U32 CPUHz, U32 SWOHz, int Mode, U32 PortMask))                                   \
  F(int, VNODEARM_SWO_DisableTarget, (U32 PortMask))                                                                  \
  F(int, VNODEARM_SWO_GetCompatibleSpeeds, (U32 CPUHz, U32 Reserved, U32* paSpeeds, U32 NumItems))                    \
  F(U32, VNODEARM_SWO_ReadStimulus, (int Port, U8* paData, U32 NumBytes))                                             \
  F(int, VNODEARM_RAWTRACE_Control, (U32 Command, void* pData))                                                       \
  F(int, VNODE_RTTERMINAL_Control, (U32 Command, void* pData))                                                        \
  F(int, VNODE_RTTERMINAL_Read, (U32 Buffer, char* pData, U32 NumBytes))                                              \
  F(int, VNODE_RTTERMINAL_Write, (U32 Buffer, const char* pData, U32 NumBytes))                                       \
  F(int, VNODE_HSS_Start, (const VNODE_HSS_BLOCK* paBlocks, int NumBlocks, int PeriodUs, int Flags))                  \
  F(int, VNODE_HSS_Stop, ())                                                                                          \
  F(int, VNODE_HSS_Read, (void* pData, U32 NumBytes))                                                                 \
  F(int, VNODE_STRACE_Config, (const char* sConfig))                                                                  \
  F(int, VNODE_STRACE_Start, ())                                                                                      \
  F(int, VNODE_STRACE_Stop, ())                                                                                       \
  F(int, VNODE_STRACE_Read, (U32* paAddr, U32 NumItems))                                                              \
  F(int, VNODE_STRACE_GetInstStats, (U64* paItems, U32 Addr, U32 NumItems, int ItemSize, int Mode))
// clang-format on

#define VNODE_DECLARE_EXPORT(Ret, Name, Args) Ret Name Args;
extern "C" {
VNODE_API_FUNCS(VNODE_DECLARE_EXPORT)
}
#undef VNODE_DECLARE_EXPORT

// The loaded library: one pointer per function, each set when the library is loaded.
struct VNODE_API {
#define VNODE_DECLARE_POINTER(Ret, Name, Args) Ret(*Name) Args = nullptr;
  VNODE_API_FUNCS(VNODE_DECLARE_POINTER)
#undef VNODE_DECLARE_POINTER
};
