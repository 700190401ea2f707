// An operating system of three tasks that a test invents, as a plug-in for it would be written.

#include <stdio.h>
#include <string.h>

#include "rtos/plugin_api.h"

#define EXPORT __attribute__((visibility("default")))

static const PLUGIN_HOST_API* pHost;
static uint32_t NumTasks = 2;
static uint32_t CurrentTask = 7;

// Lets a test look at what the host's services answered, and choose what comes next.
EXPORT const PLUGIN_HOST_API* SAMPLE_Host(void) {
  return pHost;
}
EXPORT void SAMPLE_Set(uint32_t Num, uint32_t Current) {
  NumTasks = Num;
  CurrentTask = Current;
}

static int32_t SupportsInfo(uint32_t ListIndex) {
  return ListIndex == 0;
}
static int32_t GetTaskCount(void) {
  return (int32_t)NumTasks;
}
static int32_t GetCurrTaskInfo(uint32_t Index, PLUGIN_TASK_INFO* pInfo) {
  static const char* const NAMES[] = {"idle", "logger", ""};
  pInfo->TaskId = 7 + Index;
  if (Index == 2) {
    memset(pInfo->sName, 'x', sizeof(pInfo->sName));  // without an end
  } else {
    strcpy(pInfo->sName, NAMES[Index]);
  }
  return 0;
}
static int32_t GetCurrTaskID(void) {
  return (int32_t)CurrentTask;
}
static int32_t OnInit(void) {
  return pHost->GetListHandle(0) == 0 ? pHost->AddColumn(0, "Name") : 0;
}
static int32_t OnDebugStart(void) {
  return 11;
}
static int32_t OnDebugEnd(void) {
  return 12;
}

EXPORT int32_t PLUGIN_SetAPI(const PLUGIN_HOST_API* pAPI) {
  pHost = pAPI;
  return 0;
}
EXPORT int32_t PLUGIN_GetAPI(PLUGIN_API* pAPI, uint32_t NumFuncs) {
#ifdef PLUGIN_NO_API
  return -1;
#endif
  if (NumFuncs < PLUGIN_NUM_FUNCS) return -1;
  pAPI->SupportsInfo = SupportsInfo;
  pAPI->GetTaskCount = GetTaskCount;
  pAPI->GetCurrTaskInfo = GetCurrTaskInfo;
  pAPI->GetCurrTaskID = GetCurrTaskID;
  pAPI->OnInit = OnInit;
  pAPI->OnDebugStart = OnDebugStart;
  pAPI->OnDebugEnd = OnDebugEnd;
  return 0;
}
#ifndef PLUGIN_MISSING
EXPORT int32_t PLUGIN_GetVersion(uint32_t* pVersion) {
  *pVersion = 10203;
  return 0;
}
#endif
EXPORT int32_t PLUGIN_GetName(char* pBuffer, uint32_t BufferSize) {
#ifdef PLUGIN_NO_NAME
  return -1;
#endif
  return snprintf(pBuffer, BufferSize, "Sample OS") < (int)BufferSize ? 0 : -1;
}
