#pragma once
// Framing of the GDB remote serial protocol: "$body#checksum", acknowledgements, escapes and run lengths.

#include <string>
#include <string_view>

#include "base/types.h"

// The packet of a body that holds no '$' and no '#'.
std::string FramePacket(std::string_view sBody);
// Binary data as it stands in a body.
void AppendEscaped(std::string* psBody, const void* pData, size_t NumBytes);

enum class RSP_ITEM {
  NONE,  // more input is needed
  PACKET,
  NOTIFICATION,
  ACK,
  NAK,
  BAD_CHECKSUM,
  TOO_LONG,  // a packet or what it expands to is longer than the limit, or its run lengths make no sense
};

// Cuts received bytes into items. What belongs to none of them is skipped.
class CRspReader {
public:
  // Bytes of a packet's body, as received and as expanded.
  static constexpr size_t MAX_BODY_SIZE = 256 * 1024;

  void Feed(std::string_view sInput);
  // Takes the next item; *psBody is the expanded body of a packet or notification.
  RSP_ITEM Next(std::string* psBody);
  void Clear();

private:
  RSP_ITEM TakeBody(std::string* psBody);

  std::string m_sInput;
  size_t m_Pos = 0;
  size_t m_Searched = 0;  // up to here the packet at m_Pos has no end
};
