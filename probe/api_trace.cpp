// Trace and terminal channels. The simulated probe has none of them: every function gives its failure value.

#include "probe/api_call.h"

namespace {

constexpr int HSS_NOT_SUPPORTED = -4;

}  // namespace

int VNODEARM_SWO_Control(U32, void*) {
  return -1;
}

int VNODEARM_SWO_EnableTarget(U32, U32, int, U32) {
  return -1;
}

int VNODEARM_SWO_DisableTarget(U32) {
  return -1;
}

int VNODEARM_SWO_GetCompatibleSpeeds(U32, U32, U32*, U32) {
  return 0;
}

U32 VNODEARM_SWO_ReadStimulus(int, U8*, U32) {
  return 0;
}

int VNODEARM_RAWTRACE_Control(U32, void*) {
  return -1;
}

int VNODE_RTTERMINAL_Control(U32, void*) {
  return -1;
}

int VNODE_RTTERMINAL_Read(U32, char*, U32) {
  return -1;
}

int VNODE_RTTERMINAL_Write(U32, const char*, U32) {
  return -1;
}

int VNODE_HSS_Start(const VNODE_HSS_BLOCK*, int, int, int) {
  return HSS_NOT_SUPPORTED;
}

int VNODE_HSS_Stop() {
  return -1;
}

int VNODE_HSS_Read(void*, U32) {
  return -1;
}

int VNODE_STRACE_Config(const char*) {
  return -1;
}

int VNODE_STRACE_Start() {
  return -1;
}

int VNODE_STRACE_Stop() {
  return -1;
}

int VNODE_STRACE_Read(U32*, U32) {
  return -1;
}

int VNODE_STRACE_GetInstStats(U64*, U32, U32, int, int) {
  return 0;
}
