#include "probe/gdb/rsp_packet.h"

#include <algorithm>

#include "probe/gdb/hex.h"

namespace {

constexpr char ESCAPE = '}';
constexpr char ESCAPE_XOR = 0x20;
constexpr char RUN = '*';
constexpr int RUN_BIAS = 29;  // a count is written as the printable character that much above it
constexpr int MIN_RUN = 3;
constexpr size_t NUM_CHECKSUM_DIGITS = 2;

U8 ChecksumOf(std::string_view sBody) {
  U8 Sum = 0;
  for (char c : sBody) Sum = static_cast<U8>(Sum + static_cast<U8>(c));
  return Sum;
}

// False when the result would be too long or a run has nothing to repeat.
bool Expand(std::string_view sBody, std::string* psResult) {
  psResult->clear();
  for (size_t i = 0; i < sBody.size(); ++i) {
    const char c = sBody[i];
    if (c == ESCAPE) {
      if (++i == sBody.size()) return false;
      *psResult += static_cast<char>(sBody[i] ^ ESCAPE_XOR);
    } else if (c == RUN) {
      if (++i == sBody.size() || psResult->empty()) return false;
      const int Code = static_cast<U8>(sBody[i]);
      const int Count = Code - RUN_BIAS;
      if (Count < MIN_RUN || Code > '~') return false;
      psResult->append(static_cast<size_t>(Count), psResult->back());
    } else {
      *psResult += c;
    }
    if (psResult->size() > CRspReader::MAX_BODY_SIZE) return false;
  }
  return true;
}

}  // namespace

std::string FramePacket(std::string_view sBody) {
  std::string sPacket = "$";
  sPacket += sBody;
  sPacket += '#';
  const U8 Sum = ChecksumOf(sBody);
  AppendHex(&sPacket, &Sum, sizeof(Sum));
  return sPacket;
}

void AppendEscaped(std::string* psBody, const void* pData, size_t NumBytes) {
  const char* pChars = static_cast<const char*>(pData);
  for (size_t i = 0; i < NumBytes; ++i) {
    const char c = pChars[i];
    if (c == '$' || c == '#' || c == ESCAPE || c == RUN) {
      *psBody += ESCAPE;
      *psBody += static_cast<char>(c ^ ESCAPE_XOR);
    } else {
      *psBody += c;
    }
  }
}

void CRspReader::Feed(std::string_view sInput) {
  m_sInput.erase(0, m_Pos);
  m_Searched -= std::min(m_Searched, m_Pos);
  m_Pos = 0;
  m_sInput += sInput;
}

void CRspReader::Clear() {
  m_sInput.clear();
  m_Pos = 0;
  m_Searched = 0;
}

RSP_ITEM CRspReader::TakeBody(std::string* psBody) {
  const size_t Begin = m_Pos + 1;
  // A start inside a packet: the rest of the first one was lost on the way.
  const size_t End = m_sInput.find_first_of("#$", std::max(Begin, m_Searched));
  m_Searched = std::min(End, m_sInput.size());
  if (End == std::string::npos) return m_sInput.size() - Begin > MAX_BODY_SIZE ? RSP_ITEM::TOO_LONG : RSP_ITEM::NONE;
  if (m_sInput[End] == '$') {
    m_Pos = End;
    return RSP_ITEM::BAD_CHECKSUM;
  }
  if (m_sInput.size() - End <= NUM_CHECKSUM_DIGITS) return RSP_ITEM::NONE;
  const std::string_view sRaw = std::string_view(m_sInput).substr(Begin, End - Begin);
  U64 Sum = 0;
  const bool bIntact =
      ParseHex(std::string_view(m_sInput).substr(End + 1, NUM_CHECKSUM_DIGITS), &Sum) && Sum == ChecksumOf(sRaw);
  const bool bNotification = m_sInput[m_Pos] == '%';
  m_Pos = End + 1 + NUM_CHECKSUM_DIGITS;
  if (!bIntact) return bNotification ? RSP_ITEM::NONE : RSP_ITEM::BAD_CHECKSUM;
  if (sRaw.size() > MAX_BODY_SIZE || !Expand(sRaw, psBody)) return RSP_ITEM::TOO_LONG;
  return bNotification ? RSP_ITEM::NOTIFICATION : RSP_ITEM::PACKET;
}

RSP_ITEM CRspReader::Next(std::string* psBody) {
  for (; m_Pos < m_sInput.size(); ++m_Pos) {
    switch (m_sInput[m_Pos]) {
      case '$':
      case '%': {
        const size_t Start = m_Pos;
        const RSP_ITEM Item = TakeBody(psBody);
        if (Item == RSP_ITEM::NONE && m_Pos != Start) {  // a damaged notification is dropped
          --m_Pos;
          break;
        }
        return Item;
      }
      case '+':
        ++m_Pos;
        return RSP_ITEM::ACK;
      case '-':
        ++m_Pos;
        return RSP_ITEM::NAK;
      default:
        break;
    }
  }
  return RSP_ITEM::NONE;
}
