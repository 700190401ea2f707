#include "fake_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "probe/gdb/hex.h"
#include "probe/text.h"

namespace {

std::string CoreRegisters() {
  std::string sText;
  for (int i = 0; i < 13; ++i) sText += FormatText(R"(<reg name="r%d" bitsize="32"/>)", i);
  for (const char* sName : {"sp", "lr", "pc", "xPSR"}) sText += FormatText(R"(<reg name="%s" bitsize="32"/>)", sName);
  return sText;
}

std::string Unescaped(const std::string& sText) {
  std::string sResult;
  for (size_t i = 0; i < sText.size(); ++i) {
    const bool bEscaped = sText[i] == '}' && i + 1 < sText.size();
    sResult += bEscaped ? static_cast<char>(sText[++i] ^ 0x20) : sText[i];
  }
  return sResult;
}

std::string HexOf(const void* pData, size_t NumBytes) {
  std::string sText;
  AppendHex(&sText, pData, NumBytes);
  return sText;
}

}  // namespace

CFakeServer::CFakeServer() : Flash(MEMORY_SIZE, 0xFF), Ram(MEMORY_SIZE), m_Erased(MEMORY_SIZE / BLOCK_SIZE) {
  aRegs[15] = FLASH_ADDR + 0x100;
  aRegs[16] = 1u << 24;
  m_Listener.Listen();
  m_Thread = std::thread(&CFakeServer::Serve, this);
}

CFakeServer::~CFakeServer() {
  m_bQuit = true;
  shutdown(m_Connection, SHUT_RDWR);
  m_Thread.join();
}

std::string CFakeServer::Packet(const std::string& sBody) {
  const U8 Sum = std::accumulate(sBody.begin(), sBody.end(), U8(0));
  return '$' + sBody + FormatText("#%02x", Sum);
}

std::vector<std::string> CFakeServer::Requests() {
  std::lock_guard Lock(m_Mutex);
  return m_Requests;
}

int CFakeServer::CountOf(const std::string& sBeginning) {
  const auto All = Requests();
  return static_cast<int>(
      std::count_if(All.begin(), All.end(), [&](const auto& s) { return s.starts_with(sBeginning); }));
}

void CFakeServer::SendRaw(const std::string& sBytes) {
  static_cast<void>(send(m_Connection, sBytes.data(), sBytes.size(), MSG_NOSIGNAL));
}

void CFakeServer::Serve() {
  while (!m_bQuit) {
    pollfd Item = {m_Listener.Socket(), POLLIN, 0};
    if (poll(&Item, 1, 20) <= 0) continue;
    m_Connection = accept(m_Listener.Socket(), nullptr, nullptr);
    m_bAcks = true;
    m_sInput.clear();
    ServeConnection();
    close(m_Connection);
    m_Connection = -1;
  }
}

bool CFakeServer::TakeRequest(std::string* psRequest) {
  for (;;) {
    const size_t Start = m_sInput.find_first_of("$\x03");
    if (Start != std::string::npos && m_sInput[Start] == 3) {
      m_sInput.erase(0, Start + 1);
      *psRequest = "<interrupt>";
      return true;
    }
    const size_t End = Start == std::string::npos ? Start : m_sInput.find('#', Start);
    if (End != std::string::npos && End + 2 < m_sInput.size()) {
      *psRequest = m_sInput.substr(Start + 1, End - Start - 1);
      m_sInput.erase(0, End + 3);
      return true;
    }
    char acBuffer[4096];
    const ssize_t Count = recv(m_Connection, acBuffer, sizeof(acBuffer), 0);
    if (Count <= 0) return false;
    m_sInput.append(acBuffer, static_cast<size_t>(Count));
  }
}

void CFakeServer::ServeConnection() {
  std::string sRequest;
  while (TakeRequest(&sRequest)) {
    {
      std::lock_guard Lock(m_Mutex);
      m_Requests.push_back(sRequest);
    }
    std::string sRaw;
    if (Fault(sRequest, &sRaw)) {
      if (sRaw == CLOSE) return;
      if (sRaw.starts_with(FLOOD)) {
        const std::string sEndless = sRaw.substr(std::string(FLOOD).size());
        while (send(m_Connection, sEndless.data(), sEndless.size(), MSG_NOSIGNAL) > 0 && !m_bQuit) {
        }
        return;
      }
      SendRaw(sRaw);
      continue;
    }
    if (sRequest == "<interrupt>") {
      SendRaw(Packet("T02"));
      continue;
    }
    const bool bResume = sRequest == "c" || sRequest.starts_with("vCont;c");
    SendRaw((m_bAcks ? "+" : "") + (bResume ? std::string() : Packet(ReplyTo(sRequest))));
    if (sRequest == "QStartNoAckMode") m_bAcks = false;
  }
}

std::string CFakeServer::Document(const std::string& sRequest) const {
  std::string sText;
  if (sRequest.starts_with("qXfer:features:read:target.xml:")) {
    sText = R"(<?xml version="1.0"?><target><feature name="core">)" +
            (sRegisters.empty() ? CoreRegisters() : sRegisters) + "</feature></target>";
  } else {
    sText = FormatText(R"(<memory-map><memory type="flash" start="0x%x" length="0x%x"><property name="blocksize">)"
                       R"(0x%x</property></memory><memory type="ram" start="0x%x" length="0x%x"/></memory-map>)",
                       FLASH_ADDR, MEMORY_SIZE, BLOCK_SIZE, RAM_ADDR, MEMORY_SIZE);
  }
  unsigned Offset = 0, Size = 0;
  std::sscanf(sRequest.substr(sRequest.rfind(':') + 1).c_str(), "%x,%x", &Offset, &Size);
  const std::string sPart = sText.substr(std::min<size_t>(Offset, sText.size()), std::min(Size, 200u));
  return (Offset + sPart.size() < sText.size() ? "m" : "l") + sPart;
}

U8* CFakeServer::Byte(U32 Addr) {
  if (Addr >= FLASH_ADDR && Addr - FLASH_ADDR < MEMORY_SIZE) return &Flash[Addr - FLASH_ADDR];
  return Addr >= RAM_ADDR && Addr - RAM_ADDR < MEMORY_SIZE ? &Ram[Addr - RAM_ADDR] : nullptr;
}

std::string CFakeServer::ReplyToMemory(const std::string& sRequest) {
  unsigned Addr = 0, Size = 0;
  std::sscanf(sRequest.c_str() + 1, "%x,%x", &Addr, &Size);
  std::string sResult;
  std::vector<U8> Data;
  const std::string sData = sRequest.substr(std::min(sRequest.find(':'), sRequest.size() - 1) + 1);
  if (sRequest[0] == 'M') ParseHexBytes(sData, &Data);
  if (sRequest[0] == 'X') {
    const std::string sBinary = Unescaped(sData);
    Data.assign(sBinary.begin(), sBinary.end());
  }
  if (sRequest[0] != 'm' && Data.size() != Size) return "E03";
  for (unsigned i = 0; i < Size; ++i) {
    U8* pByte = Byte(Addr + i);
    if (!pByte) return "E01";
    if (sRequest[0] == 'm') {
      AppendHex(&sResult, pByte, 1);
    } else if (Addr + i < RAM_ADDR) {
      return "E02";  // flash
    } else {
      *pByte = Data[i];
    }
  }
  return sRequest[0] == 'm' ? sResult : "OK";
}

std::string CFakeServer::ReplyToFlash(const std::string& sRequest) {
  unsigned Addr = 0, Size = 0;
  if (sRequest == "vFlashDone") {
    std::fill(m_Erased.begin(), m_Erased.end(), U8(0));
    return "OK";
  }
  std::sscanf(sRequest.c_str() + sRequest.find(':') + 1, "%x,%x", &Addr, &Size);
  const U32 Offset = Addr - FLASH_ADDR;
  if (Offset >= MEMORY_SIZE || Size > MEMORY_SIZE - Offset) return "E01";
  if (sRequest.starts_with("vFlashErase")) {
    if (Offset % BLOCK_SIZE != 0 || Size % BLOCK_SIZE != 0) return "E02";
    std::fill_n(Flash.begin() + Offset, Size, U8(0xFF));
    std::fill_n(m_Erased.begin() + Offset / BLOCK_SIZE, Size / BLOCK_SIZE, U8(1));
    return "OK";
  }
  const std::string sData = Unescaped(sRequest.substr(sRequest.find(':', sRequest.find(':') + 1) + 1));
  for (size_t i = 0; i < sData.size(); ++i) {
    if (Offset + i >= MEMORY_SIZE || !m_Erased[(Offset + i) / BLOCK_SIZE]) return "E04";
    Flash[Offset + i] = static_cast<U8>(sData[i]);
  }
  return "OK";
}

std::string CFakeServer::ReplyTo(const std::string& sRequest) {
  const std::string sCode = sRequest.substr(0, 1);
  if (sRequest.starts_with("qSupported")) return sSupported;
  if (sRequest == "?") return "S05";
  if (sRequest.starts_with("qXfer:")) return Document(sRequest);
  if (sRequest == "QStartNoAckMode" || sCode == "Z" || sCode == "z") return "OK";
  if (sCode == "m" || sCode == "M" || sCode == "X") return ReplyToMemory(sRequest);
  if (sRequest.starts_with("vFlash")) return ReplyToFlash(sRequest);
  if (sCode == "g") return HexOf(aRegs, sizeof(aRegs));
  std::vector<U8> Bytes;
  if (sCode == "G" && ParseHexBytes(sRequest.substr(1), &Bytes) && Bytes.size() == sizeof(aRegs)) {
    std::copy(Bytes.begin(), Bytes.end(), reinterpret_cast<U8*>(aRegs));
    return "OK";
  }
  if (sCode == "s" || sRequest.starts_with("vCont;s")) {
    aRegs[15] += 2;
    return "T05hwbreak:;thread:01;";
  }
  unsigned Number = 0, Value = 0;
  if (bSingleRegisters && std::sscanf(sRequest.c_str(), "P%x=%x", &Number, &Value) == 2 && Number < 17) {
    aRegs[Number] = __builtin_bswap32(Value);
    return "OK";
  }
  if (bSingleRegisters && std::sscanf(sRequest.c_str(), "p%x", &Number) == 1) {
    return Number < 17 ? HexOf(&aRegs[Number], 4) : "E01";
  }
  return "";
}
