#include "probe/gdb/qmp_client.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "probe/gdb/hex.h"
#include "probe/text.h"

namespace {

constexpr int CONNECT_LIMIT_MS = 3000;
constexpr int REPLY_LIMIT_MS = 2000;
constexpr size_t MAX_LINE_SIZE = 256 * 1024;
constexpr U32 MAX_BYTES_PER_COMMAND = 4096;

nlohmann::json Parsed(const std::string& sLine) {
  return nlohmann::json::parse(sLine, nullptr, false);
}

}  // namespace

bool CQmpClient::Fail(const char* sReason, std::string* psError) {
  *psError = sReason;
  Close();
  return false;
}

bool CQmpClient::ReadLine(std::string* psLine, DEADLINE Deadline) {
  for (;;) {
    const size_t End = m_sInput.find('\n');
    if (End != std::string::npos) {
      *psLine = m_sInput.substr(0, End);
      m_sInput.erase(0, End + 1);
      return true;
    }
    if (m_sInput.size() > MAX_LINE_SIZE || m_Socket.Receive(&m_sInput, Deadline) <= 0) return false;
  }
}

bool CQmpClient::Execute(const std::string& sRequest, std::string* psReply, std::string* psError) {
  const DEADLINE Deadline = DeadlineIn(REPLY_LIMIT_MS);
  if (!m_Socket.Send(sRequest + "\n", Deadline)) return Fail("The emulator's monitor does not take requests", psError);
  std::string sLine;
  while (ReadLine(&sLine, Deadline) && std::chrono::steady_clock::now() <= Deadline) {
    const nlohmann::json Reply = Parsed(sLine);
    if (!Reply.is_object()) return Fail("The emulator's monitor has sent what is no reply", psError);
    if (Reply.contains("error")) return Fail("The emulator's monitor refuses a request", psError);
    const auto Value = Reply.find("return");
    if (Value == Reply.end()) continue;  // an event
    *psReply = Value->is_string() ? Value->get<std::string>() : std::string();
    return true;
  }
  return Fail("The emulator's monitor does not answer", psError);
}

bool CQmpClient::Open(const std::string& sHost, U16 Port, std::string* psError) {
  m_sInput.clear();
  const DEADLINE Deadline = DeadlineIn(CONNECT_LIMIT_MS);
  if (!m_Socket.Connect(sHost, Port, Deadline, psError)) return false;
  std::string sLine;
  if (!ReadLine(&sLine, Deadline)) return Fail("The emulator's monitor does not answer", psError);
  const nlohmann::json Greeting = Parsed(sLine);
  if (!Greeting.is_object() || !Greeting.contains("QMP")) {
    return Fail("What answers on the monitor's port is no machine protocol", psError);
  }
  return Execute(R"({"execute":"qmp_capabilities"})", &sLine, psError);
}

U32 ParseMemoryDump(std::string_view sDump, U32 MaxBytes, U8* paData) {
  U32 Count = 0;
  for (std::string_view sLine : SplitTrimmed(sDump, '\n')) {
    const size_t Colon = sLine.find(':');
    if (Colon == std::string_view::npos) continue;
    for (std::string_view sByte : SplitTrimmed(sLine.substr(Colon + 1), ' ')) {
      U64 Value = 0;
      if (sByte.empty()) continue;
      if (Count == MaxBytes || !sByte.starts_with("0x") || !ParseHex(sByte.substr(2), &Value) || Value > 0xFF) {
        return Count;
      }
      paData[Count++] = static_cast<U8>(Value);
    }
  }
  return Count;
}

int CQmpClient::ReadMem(U32 Addr, U32 NumBytes, U8* paData, std::string* psError) {
  const U32 Total = static_cast<U32>(std::min<U64>(NumBytes, 0x1'0000'0000ull - Addr));
  U32 Done = 0;
  while (Done < Total) {
    const U32 Size = std::min(Total - Done, MAX_BYTES_PER_COMMAND);
    std::string sReply;
    // "x" sees memory as the core does; "xp" would leave its address translation out.
    const std::string sRequest = FormatText(
        R"({"execute":"human-monitor-command","arguments":{"command-line":"x /%uxb 0x%x"}})", Size, Addr + Done);
    if (!Execute(sRequest, &sReply, psError)) return -1;
    const U32 Count = ParseMemoryDump(sReply, Size, paData + Done);
    Done += Count;
    if (Count < Size) break;
  }
  return static_cast<int>(Done);
}
