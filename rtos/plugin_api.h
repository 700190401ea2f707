#pragma once
// The binary interface between the debugger and a plug-in that knows one real-time operating system: plain C, tables of
// a count and function pointers. A plug-in is written against this header; docs/manual/rtos_plugins.md describes it.

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { PLUGIN_NUM_HOST_FUNCS = 17, PLUGIN_NUM_FUNCS = 11, PLUGIN_NUM_LISTS = 4, PLUGIN_MAX_SWITCH_FUNCS = 17 };

// What the debugger does for a plug-in. Addresses are those of the target. hList: see GetListHandle. A window function
// gives -1 if hList names no window.
typedef struct {
  uint64_t NumFuncs;
  // Address and size of a symbol; with sMember the offset and size of that member of the symbol's type. 0 or -1.
  int32_t (*GetSymInfo)(const char* sSymbol, const char* sMember, uint32_t* pAddr, uint32_t* pSize);
  // Number of bytes of target memory read, or -1.
  int32_t (*ReadMem)(uint32_t Addr, uint32_t NumBytes, void* pData);
  // Handle of list window 0 (tasks) to 3; 0 if there is none.
  uint32_t (*GetListHandle)(uint32_t ListIndex);
  // Value of an expression, filled up with zeros; 0, or a negative error.
  int32_t (*GetVar)(const char* sExpression, void* pData, uint32_t NumBytes);
  int32_t (*AddColumn)(uint32_t hList, const char* sName);
  int32_t (*AddRow)(uint32_t hList);
  int32_t (*ClearList)(uint32_t hList);
  int32_t (*DeleteColumn)(uint32_t hList, uint32_t Col);
  int32_t (*DeleteRow)(uint32_t hList, uint32_t Row);
  // At most BufferSize characters; a text that is cut has no terminating zero.
  int32_t (*GetValue)(uint32_t hList, uint32_t Row, uint32_t Col, char* pBuffer, uint32_t BufferSize);
  int32_t (*GetColumnCount)(uint32_t hList);
  int32_t (*FindColumn)(uint32_t hList, const char* sName);
  int32_t (*GetRowCount)(uint32_t hList);
  int32_t (*SetValue)(uint32_t hList, uint32_t Row, uint32_t Col, const char* sValue);
  int32_t (*SetIcon)(uint32_t hList, uint32_t Row, uint32_t Col, const char* sIcon);
  int32_t (*SetColumnWidth)(uint32_t hList, uint32_t Col, uint32_t Width);
  int32_t (*SetSelectedRow)(uint32_t hList, uint32_t Row);
} PLUGIN_HOST_API;

typedef struct {
  uint32_t TaskId;
  uint32_t Reserved;
  char sName[264];
} PLUGIN_TASK_INFO;

typedef struct {
  uint32_t NumAddrs;
  uint32_t aAddr[PLUGIN_MAX_SWITCH_FUNCS];
} PLUGIN_ADDR_LIST;

// Values and states of a task's saved registers, in the order of the names, which are joined by commas. State 0: known.
typedef int32_t (*PLUGIN_GET_TASK_REGS)(uint32_t TaskId, const char* sCore, uint64_t* paValues, uint8_t* paStatus,
                                        const char* sRegNames, uint32_t NumRegs);

// What a plug-in does for the debugger; a null pointer is a function that it does not offer. Called on one thread.
typedef struct {
  uint64_t NumFuncs;
  int32_t (*SupportsInfo)(uint32_t ListIndex);  // 0: that list window is not wanted
  int32_t (*GetTaskCount)(void);
  int32_t (*GetCurrTaskInfo)(uint32_t Index, PLUGIN_TASK_INFO* pInfo);  // of the task at a position
  int32_t (*GetCurrTaskID)(void);                                       // of the running task
  PLUGIN_GET_TASK_REGS GetTaskRegs;
  int32_t (*OnInit)(void);        // the list windows exist
  int32_t (*OnDebugStart)(void);  // a session has started
  int32_t (*OnDebugEnd)(void);    // it is about to end
  int32_t (*OnUpdate)(uint32_t ListIndex);
  int32_t (*GetTaskSwitchFuncs)(PLUGIN_ADDR_LIST* pList);
  PLUGIN_GET_TASK_REGS GetTaskRegsV2;  // tried before GetTaskRegs
} PLUGIN_API;

// The functions that a plug-in exports.
typedef int32_t (*PLUGIN_SET_API)(const PLUGIN_HOST_API* pAPI);
typedef int32_t (*PLUGIN_GET_API)(PLUGIN_API* pAPI, uint32_t NumFuncs);  // negative on failure
typedef int32_t (*PLUGIN_GET_VERSION)(uint32_t* pVersion);               // 0 on success
typedef int32_t (*PLUGIN_GET_NAME)(char* pBuffer, uint32_t BufferSize);  // 0 on success

#ifdef __cplusplus
}  // extern "C"

static_assert(sizeof(PLUGIN_TASK_INFO) == 272);
static_assert(sizeof(PLUGIN_API) == 96);
#endif
