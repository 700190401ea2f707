#pragma once

#include <vector>

#include <QByteArray>

#include "base/elf_sym.h"
#include "device/device_event_listener.h"

enum DATA_REQUEST_KINDS : U8 { DR_MEM = 0, DR_REGS = 1, DR_CP_REG = 2, DR_LOC = 3 };

// Data that a listener waits for.
struct DATA_REQUEST {
  U8 Kind = DR_MEM;
  CDeviceEventListener* pListener = nullptr;
  QByteArray Payload;

  static DATA_REQUEST Mem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes);
  static DATA_REQUEST Regs(CDeviceEventListener* pListener, U32 Cnt, const U32* paIndex);
  static DATA_REQUEST CPReg(CDeviceEventListener* pListener, const char* sReg);
  static DATA_REQUEST Loc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes);

  struct MEM_RANGE {
    U32 Addr = 0;
    U32 NumBytes = 0;
  };
  struct LOC_READ {
    ELF_SYM_LOC Loc;
    U32 NumBytes = 0;
  };
  MEM_RANGE ToMem() const;
  std::vector<U32> ToRegs() const;
  LOC_READ ToLoc() const;

  bool operator==(const DATA_REQUEST&) const = default;
};

// The requests that wait, each at most once. Main thread.
class CDataRequests {
public:
  // Adds the request unless the same one waits already.
  void Add(const DATA_REQUEST& Request);
  void Remove(const DATA_REQUEST& Request);
  void RemoveListener(const CDeviceEventListener* pListener);
  void Clear() { aRequest.clear(); }
  // Takes all requests of a kind out, in order.
  std::vector<DATA_REQUEST> TakeKind(U8 Kind);
  const std::vector<DATA_REQUEST>& All() const { return aRequest; }

private:
  std::vector<DATA_REQUEST> aRequest;
};
