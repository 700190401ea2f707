#pragma once
// A GDB server whose faults a test chooses.

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/types.h"
#include "tests/common/loopback_port.h"

// A well-behaved target unless Fault says otherwise: a Cortex-M with 64 KiB of RAM and of flash, halted. Serves one
// connection after the other on a thread of its own.
class CFakeServer {
public:
  static constexpr U32 FLASH_ADDR = 0x08000000;
  static constexpr U32 RAM_ADDR = 0x20000000;
  static constexpr U32 MEMORY_SIZE = 0x10000;  // each
  static constexpr U32 BLOCK_SIZE = 0x400;     // of flash
  static constexpr const char* CLOSE = "<close>";
  static constexpr const char* FLOOD = "<flood>";  // never stops sending what stands behind it

  CFakeServer();
  ~CFakeServer();
  CFakeServer(const CFakeServer&) = delete;
  CFakeServer& operator=(const CFakeServer&) = delete;

  std::string Address() const { return m_Listener.Address(); }
  // The packets that were asked for, without their framing.
  std::vector<std::string> Requests();
  int CountOf(const std::string& sBeginning);
  // Sends bytes as they are, to whoever is connected.
  void SendRaw(const std::string& sBytes);

  // True and the bytes to be sent in place of the proper reply. May be set at any time; called on the server's thread.
  class CFault {
  public:
    using FUNC = std::function<bool(const std::string& sRequest, std::string* psRaw)>;
    void operator=(FUNC NewFunc) {
      std::lock_guard Lock(m_Mutex);
      m_Func.swap(NewFunc);
    }
    bool operator()(const std::string& sRequest, std::string* psRaw) const {
      std::lock_guard Lock(m_Mutex);
      return m_Func && m_Func(sRequest, psRaw);
    }

  private:
    mutable std::mutex m_Mutex;
    FUNC m_Func;
  } Fault;
  std::string sSupported = "PacketSize=400;qXfer:features:read+;qXfer:memory-map:read+;QStartNoAckMode+";
  std::string sRegisters;        // the description's elements; empty: the core registers
  bool bSingleRegisters = true;  // the server knows "p" and "P"

  static std::string Packet(const std::string& sBody);
  std::vector<U8> Flash, Ram;
  U32 aRegs[17] = {};

private:
  void Serve();
  void ServeConnection();
  bool TakeRequest(std::string* psRequest);
  std::string ReplyTo(const std::string& sRequest);
  std::string ReplyToMemory(const std::string& sRequest);
  std::string ReplyToFlash(const std::string& sRequest);
  std::string Document(const std::string& sRequest) const;
  U8* Byte(U32 Addr);

  CLoopbackPort m_Listener;
  std::atomic<int> m_Connection{-1};
  std::atomic<bool> m_bQuit{false};
  bool m_bAcks = true;
  std::string m_sInput;
  std::mutex m_Mutex;
  std::vector<std::string> m_Requests;
  std::vector<U8> m_Erased;  // by block: may be written
  std::thread m_Thread;
};
