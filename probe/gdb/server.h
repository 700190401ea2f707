#pragma once

#include <string>
#include <vector>

#include "probe/gdb/memory_map.h"
#include "probe/gdb/rsp_connection.h"
#include "probe/gdb/server_address.h"
#include "probe/gdb/target_description.h"
#include "probe/messages.h"

// A connected GDB server and what it has said about itself.
class CGdbServer {
public:
  static constexpr int REPLY_LIMIT_MS = 2000;  // for the reply to any simple request

  explicit CGdbServer(CMessages& Messages);

  // Connects, and asks for capabilities, registers and memory map. CoreIndex selects one of the server's threads.
  // False with the reason in *psError.
  bool Open(const GDB_SERVER_ADDRESS& Address, U32 CoreIndex, std::string* psError);
  CRspConnection& Connection() { return m_Connection; }

  const TARGET_DESCRIPTION& Description() const { return m_Description; }
  const GDB_MEMORY_MAP& MemoryMap() const { return m_MemoryMap; }
  // Bytes of the longest packet that the server takes.
  U32 PacketSize() const { return m_PacketSize; }
  bool HasBinaryWrites() const { return m_bBinaryWrites; }

  // Reply within REPLY_LIMIT_MS, or within the given time. False: the connection is gone, and the caller's user knows.
  bool Request(const std::string& sBody, std::string* psReply, int LimitMs = REPLY_LIMIT_MS);
  // True when the reply is "OK". *psReply, where given, gets it.
  bool Command(const std::string& sBody, std::string* psReply = nullptr, int LimitMs = REPLY_LIMIT_MS);
  // One of the server's own commands, as its users type them; *psOutput gets what it has printed. False when the
  // server has no commands or says that it failed.
  bool Monitor(const std::string& sCommand, std::string* psOutput);
  // Begin of the packet that lets the core run ('c') or step ('s').
  std::string ResumePacket(char Action) const;
  // Requests refer to the chosen core again; a stop may have selected another one.
  void SelectCore();

private:
  bool Handshake(U32 CoreIndex, std::string* psError);
  void ReadSupported(std::string_view sReply);
  bool ReadDocument(const std::string& sObject, const std::string& sName, std::string* psText, DEADLINE Deadline);
  bool ReadDescriptions(std::string* psError);
  bool FindCore(U32 CoreIndex, std::string* psError);

  CMessages& m_Messages;
  CRspConnection m_Connection;
  std::string m_sConsole;          // output of the command that runs
  bool m_bCaptureConsole = false;  // it goes into m_sConsole
  bool m_bReady = false;           // behind the handshake
  U32 m_PacketSize = 0;
  bool m_bNoAckMode = false;
  bool m_bHasDescription = false;
  bool m_bHasMemoryMap = false;
  bool m_bVCont = false;
  bool m_bBinaryWrites = false;
  std::string m_sThread;  // of the chosen core; empty: the only one
  TARGET_DESCRIPTION m_Description;
  GDB_MEMORY_MAP m_MemoryMap;
};
