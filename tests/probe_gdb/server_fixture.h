#pragma once
// The loaded probe library in front of a GDB server.

#include "tests/common/probe_library.h"

class CServerTest : public CProbeLibraryTest {
protected:
  void TearDown() override {
    if (API.VNODEARM_Close) API.VNODEARM_Close();
  }

  // Connects as a device of the list; the library's result.
  int Connect(const std::string& sServer, const char* sDevice, U32 CoreIndex = 0);
  // Value of a register; fails the test when the target does not have it.
  U32 ReadReg(U32 Index);
  bool HasReg(U32 Index, U32* pValue = nullptr);
};
