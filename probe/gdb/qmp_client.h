#pragma once

#include <string>

#include "probe/gdb/tcp_socket.h"

// A connection to an emulator's machine protocol (QMP), through which memory can be read while the core runs.
class CQmpClient {
public:
  // False with the reason in *psError.
  bool Open(const std::string& sHost, U16 Port, std::string* psError);
  void Close() { m_Socket.Close(); }
  bool IsOpen() const { return m_Socket.IsOpen(); }

  // Number of bytes before the first one that does not answer; negative with the reason in *psError when the
  // connection is gone.
  int ReadMem(U32 Addr, U32 NumBytes, U8* paData, std::string* psError);

private:
  bool ReadLine(std::string* psLine, DEADLINE Deadline);
  // *psReply is the text that the command has returned, empty when it has returned something else.
  bool Execute(const std::string& sRequest, std::string* psReply, std::string* psError);
  bool Fail(const char* sReason, std::string* psError);

  CTcpSocket m_Socket;
  std::string m_sInput;
};

// Takes the bytes out of a memory dump, lines of "address: 0x12 0x34 ..."; the number of them.
U32 ParseMemoryDump(std::string_view sDump, U32 MaxBytes, U8* paData);
