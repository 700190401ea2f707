#pragma once
// The loaded probe library, and what it told since the test began.

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "device/probe_api/probe_api.h"
#include "device/probe_api/register_index.h"

class CProbeLibraryTest : public testing::Test {
protected:
  void SetUp() override {
    if (!API.VNODEARM_Open) {
      void* pLibrary = dlopen(VEXOR_BIN_DIR "/libvnode.so", RTLD_NOW | RTLD_LOCAL);
      ASSERT_NE(pLibrary, nullptr) << dlerror();
#define VNODE_LOAD(Ret, Name, Args)                                        \
  API.Name = reinterpret_cast<decltype(API.Name)>(dlsym(pLibrary, #Name)); \
  ASSERT_NE(API.Name, nullptr) << #Name;
      VNODE_API_FUNCS(VNODE_LOAD)
#undef VNODE_LOAD
    }
    for (auto List : {&MESSAGES::Logs, &MESSAGES::Warnings, &MESSAGES::Errors}) (Messages.*List).clear();
    API.VNODEARM_EnableLog(&Receive<&MESSAGES::Logs>);
    API.VNODEARM_SetWarnOutHandler(&Receive<&MESSAGES::Warnings>);
    API.VNODEARM_SetErrorOutHandler(&Receive<&MESSAGES::Errors>);
  }
  // Asks until the condition holds, for a while of a busy host.
  static bool WaitFor(const std::function<bool()>& Condition, int TimeoutMs = 20'000) {
    const auto End = std::chrono::steady_clock::now() + std::chrono::milliseconds(TimeoutMs);
    while (!Condition()) {
      if (std::chrono::steady_clock::now() > End) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }
  static bool WaitForHalt(int TimeoutMs = 20'000) {
    return WaitFor([] { return API.VNODEARM_IsHalted() == 1; }, TimeoutMs);
  }
  U32 ReadWord(U32 Addr) {
    U32 Value = 0;
    U8 Status = 1;
    EXPECT_EQ(API.VNODEARM_ReadMemU32(Addr, 1, &Value, &Status), 1) << std::hex << Addr;
    EXPECT_EQ(Status, 0);
    return Value;
  }
  U32 ImpFlagsOf(int Handle) {
    VNODEARM_BP_INFO Info = {};
    Info.SizeOfStruct = sizeof(Info);
    Info.Handle = static_cast<U32>(Handle);
    API.VNODEARM_GetBPInfoEx(-1, &Info);
    return Info.ImpFlags;
  }

  struct MESSAGES {
    std::mutex Mutex;
    std::vector<std::string> Logs, Warnings, Errors;
  };
  static inline VNODE_API API;
  static inline MESSAGES Messages;
  template <auto List>
  static void Receive(const char* sText) {
    std::lock_guard Lock(Messages.Mutex);
    (Messages.*List).push_back(sText);
  }
};
