#include "probe/gdb/server.h"

#include <algorithm>

#include "probe/gdb/hex.h"
#include "probe/gdb/xml_document.h"
#include "probe/text.h"

namespace {

constexpr int CONNECT_LIMIT_MS = 3000;
constexpr int DOCUMENTS_LIMIT_MS = 4000;  // for the register description, and for the memory map
constexpr int MONITOR_LIMIT_MS = 5000;
constexpr U32 DEFAULT_PACKET_SIZE = 400;  // of a server that does not say
constexpr U32 MIN_PACKET_SIZE = 64;
constexpr U32 MAX_PACKET_SIZE = 32 * 1024;
constexpr size_t MAX_CONSOLE_SIZE = 64 * 1024;
constexpr int MAX_THREAD_REPLIES = 64;

}  // namespace

CGdbServer::CGdbServer(CMessages& Messages) : m_Messages(Messages) {
  m_Connection.OnConsole = [this](const std::string& sText) {
    if (!m_bCaptureConsole) {
      m_Messages.Add(MSG_KIND::LOG, std::string(Trimmed(sText)));
    } else if (m_sConsole.size() < MAX_CONSOLE_SIZE) {
      m_sConsole += sText;
    }
  };
}

bool CGdbServer::Open(const GDB_SERVER_ADDRESS& Address, U32 CoreIndex, std::string* psError) {
  if (!m_Connection.Open(Address.sHost, Address.Port, DeadlineIn(CONNECT_LIMIT_MS))) {
    *psError = m_Connection.Error();
    return false;
  }
  m_bReady = Handshake(CoreIndex, psError);
  if (m_bReady) return true;
  if (!m_Connection.IsOpen()) *psError = m_Connection.Error();
  m_Connection.Close(*psError);
  return false;
}

bool CGdbServer::Request(const std::string& sBody, std::string* psReply, int LimitMs) {
  if (!m_Connection.IsOpen()) return false;
  if (m_Connection.Request(sBody, psReply, DeadlineIn(LimitMs))) return true;
  if (m_bReady) m_Messages.Add(MSG_KIND::ERROR, m_Connection.Error());
  return false;
}

bool CGdbServer::Command(const std::string& sBody, std::string* psReply, int LimitMs) {
  std::string sReply;
  const bool bOk = Request(sBody, &sReply, LimitMs) && sReply == "OK";
  if (psReply) *psReply = sReply;
  return bOk;
}

void CGdbServer::ReadSupported(std::string_view sReply) {
  m_PacketSize = DEFAULT_PACKET_SIZE;
  for (std::string_view sFeature : SplitTrimmed(sReply, ';')) {
    constexpr std::string_view PACKET_SIZE = "PacketSize=";
    U64 Size = 0;
    if (sFeature.starts_with(PACKET_SIZE) && ParseHex(sFeature.substr(PACKET_SIZE.size()), &Size)) {
      m_PacketSize = static_cast<U32>(std::clamp<U64>(Size, MIN_PACKET_SIZE, MAX_PACKET_SIZE));
    }
    if (sFeature == "QStartNoAckMode+") m_bNoAckMode = true;
    if (sFeature == "qXfer:features:read+") m_bHasDescription = true;
    if (sFeature == "qXfer:memory-map:read+") m_bHasMemoryMap = true;
  }
}

bool CGdbServer::ReadDocument(const std::string& sObject, const std::string& sName, std::string* psText,
                              DEADLINE Deadline) {
  const U32 ChunkSize = m_PacketSize - MIN_PACKET_SIZE / 4;
  psText->clear();
  std::string sReply;
  do {
    const std::string sRequest =
        FormatText("qXfer:%s:read:%s:%zx,%x", sObject.c_str(), sName.c_str(), psText->size(), ChunkSize);
    if (!m_Connection.Request(sRequest, &sReply, Deadline)) return false;
    if (sReply.empty() || (sReply[0] != 'm' && sReply[0] != 'l')) return false;
    if (sReply.size() == 1 && sReply[0] == 'm') return false;
    *psText += std::string_view(sReply).substr(1);
    if (psText->size() > CXmlDocument::MAX_SIZE) return false;
  } while (sReply[0] == 'm');
  return true;
}

bool CGdbServer::ReadDescriptions(std::string* psError) {
  m_Description = LegacyArmDescription();
  std::string sReason;
  if (m_bHasDescription) {
    const DEADLINE Deadline = DeadlineIn(DOCUMENTS_LIMIT_MS);
    const auto Source = [&](const std::string& sName, std::string* psText) {
      const bool bPlain = sName.find_first_of("$#}*:,") == std::string::npos;
      return bPlain && ReadDocument("features", sName, psText, Deadline);
    };
    if (!ReadTargetDescription(Source, &m_Description, &sReason)) {
      *psError = "The GDB server's description of its target cannot be used: " + sReason;
      return false;
    }
  }
  std::string sMap;
  m_MemoryMap.Regions.clear();
  if (!m_bHasMemoryMap || !ReadDocument("memory-map", "", &sMap, DeadlineIn(DOCUMENTS_LIMIT_MS))) {
    return m_Connection.IsOpen();
  }
  if (!ParseMemoryMap(std::move(sMap), &m_MemoryMap, &sReason)) {
    m_Messages.Add(MSG_KIND::WARNING, "The GDB server's memory map cannot be used: " + sReason);
  }
  return true;
}

bool CGdbServer::FindCore(U32 CoreIndex, std::string* psError) {
  m_sThread.clear();
  if (CoreIndex == 0) return true;
  std::vector<std::string> Threads;
  std::string sReply;
  for (int i = 0; i < MAX_THREAD_REPLIES && Threads.size() <= CoreIndex; ++i) {
    if (!Request(i == 0 ? "qfThreadInfo" : "qsThreadInfo", &sReply)) return false;
    if (sReply.empty() || sReply[0] != 'm') break;
    for (std::string_view sThread : SplitTrimmed(std::string_view(sReply).substr(1), ',')) {
      Threads.emplace_back(sThread);
    }
  }
  if (Threads.size() <= CoreIndex) {
    *psError = FormatText("The GDB server has no core with index %u", CoreIndex);
    return false;
  }
  m_sThread = Threads[CoreIndex];
  if (Command("Hg" + m_sThread)) return true;
  *psError = FormatText("The GDB server does not select core %u", CoreIndex);
  return false;
}

bool CGdbServer::Handshake(U32 CoreIndex, std::string* psError) {
  std::string sReply;
  if (!Request("qSupported:swbreak+;hwbreak+;vContSupported+;xmlRegisters=arm", &sReply)) return false;
  ReadSupported(sReply);
  if (m_bNoAckMode && Command("QStartNoAckMode")) m_Connection.EndAcks();
  if (!FindCore(CoreIndex, psError) || !ReadDescriptions(psError)) return false;
  if (!Request("vCont?", &sReply)) return false;
  m_bVCont =
      sReply.starts_with("vCont") && sReply.find(";c") != std::string::npos && sReply.find(";s") != std::string::npos;
  if (!Request("X0,0:", &sReply)) return false;
  m_bBinaryWrites = sReply == "OK";
  return true;
}

bool CGdbServer::Monitor(const std::string& sCommand, std::string* psOutput) {
  std::string sRequest = "qRcmd,";
  AppendHex(&sRequest, sCommand.data(), sCommand.size());
  m_sConsole.clear();
  m_bCaptureConsole = true;
  std::string sReply;
  const bool bAnswered = Request(sRequest, &sReply, MONITOR_LIMIT_MS);
  m_bCaptureConsole = false;
  *psOutput = m_sConsole;
  if (!bAnswered || sReply.empty()) return false;
  if (sReply == "OK") return true;
  // Instead of "OK" the last of the output may stand in the reply; with an odd length it is an error code.
  std::vector<U8> Text;
  if (sReply[0] == 'E' || !ParseHexBytes(sReply, &Text)) return false;
  psOutput->append(Text.begin(), Text.end());
  return true;
}

std::string CGdbServer::ResumePacket(char Action) const {
  std::string sPacket = m_bVCont ? "vCont;" : "";
  sPacket += Action;
  if (m_bVCont && !m_sThread.empty() && Action == 's') sPacket += ":" + m_sThread;
  return sPacket;
}

void CGdbServer::SelectCore() {
  if (!m_sThread.empty()) Command("Hg" + m_sThread);
}
