#pragma once
// A probe library made of scripted answers: it records every call that changes or asks something of the target, and
// fails where a test wants it to. One at a time, because the library's functions have no context.

#include <map>
#include <set>
#include <string>
#include <vector>

#include "device/probe_api/probe_api.h"

struct FAKE_BP {
  U32 Handle;
  U32 Addr;
  U32 Type;
};

class CFakeProbe {
public:
  static constexpr U32 MEM_START = 0x20000000;
  static constexpr U32 MEM_SIZE = 0x10000;
  static constexpr U32 CHANNEL_BYTES = 5;  // that a terminal or sampling channel moves at a time

  CFakeProbe();
  ~CFakeProbe();
  static VNODE_API Api();

  // Function name without "VNODEARM_", and its arguments in hexadecimal: "SetBPEx 8000100 fffffff2".
  std::vector<std::string> Calls;
  // Names of functions that are to fail, and how many calls of each still succeed before.
  std::map<std::string, int> Failing;
  // Probe commands that get an error reply.
  std::map<std::string, std::string> ErrorReply;

  int Halted = 0;              // answer of IsHalted
  bool bStaysRunning = false;  // ignores halt requests
  bool bOpen = false;
  bool bConnected = false;
  U32 SpeedKHz = 4000;
  U32 Version = 61002;
  U32 RawTraceCaps = 0x20;
  std::set<U32> Capabilities = {VNODE_CAP_SWO};
  std::vector<U32> SWOSpeeds;  // in Hz
  int HasBMA = 1;              // answer of the optional function
  int Endianness = 0;
  std::set<int> OptionalFuncs = {VNODE_FUNC_HAS_BMA, VNODE_FUNC_GET_ENDIANNESS};
  std::vector<VNODEARM_DEVICE_INFO> Devices;
  std::map<U32, U32> Regs;
  std::vector<FAKE_BP> BPs;
  std::vector<U8> Mem;
  U32 MaxBytesPerCall = 0xFFFFFFFFu;  // longer block transfers come back short
  U32 BadAddr = 0xFFFFFFFFu;          // nothing from here on can be accessed
  int EndDownloadResult = 0;
  VNODE_TEXT_CALLBACK pfError = nullptr;

  // Records a call; false when it is to fail.
  bool Note(const std::string& sCall);
  // Bytes at Addr that can be accessed, at most NumBytes.
  U32 Accessible(U32 Addr, U32 NumBytes) const;
  // The recorded calls whose name is in the list, in order; all without one. Joined by ", ".
  std::string CallText(const std::set<std::string>& Names = {}) const;
  int Count(const std::string& sName) const;
};
