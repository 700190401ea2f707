#pragma once
// The loaded probe library in front of a GDB server.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "device/probe_api/probe_api.h"
#include "device/probe_api/register_index.h"

class CServerTest : public testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  // Connects as a device of the list; the library's result.
  int Connect(const std::string& sServer, const char* sDevice, U32 CoreIndex = 0);
  bool WaitFor(const std::function<bool()>& Condition, int TimeoutMs = 5000);
  bool WaitForHalt() {
    return WaitFor([] { return API.VNODEARM_IsHalted() == 1; });
  }
  U32 ReadWord(U32 Addr);
  // Value of a register; fails the test when the target does not have it.
  U32 ReadReg(U32 Index);
  bool HasReg(U32 Index);
  VNODEARM_BP_INFO InfoOf(int Handle);

  static VNODE_API API;

  struct MESSAGES {
    std::mutex Mutex;
    std::vector<std::string> Logs, Warnings, Errors;
  };
  static MESSAGES Messages;
  template <auto List>
  static void Receive(const char* sText) {
    std::lock_guard Lock(Messages.Mutex);
    (Messages.*List).push_back(sText);
  }
};
