// libFuzzer target: reads the input as what a GDB server may send. The first byte says what it stands for.
#include <cstring>

#include "probe/gdb/memory_map.h"
#include "probe/gdb/qmp_client.h"
#include "probe/gdb/register_map.h"
#include "probe/gdb/rsp_packet.h"
#include "probe/gdb/server_address.h"
#include "probe/gdb/stop_reply.h"
#include "probe/gdb/target_description.h"
#include "probe/gdb/xml_document.h"

namespace {

constexpr U32 NUM_INDICES = 80;  // more than the probe has registers

// The items of a stream, as text.
std::string ItemsOf(std::string_view sStream, size_t ChunkSize) {
  CRspReader Reader;
  std::string sItems;
  std::string sBody;
  for (size_t i = 0; i < sStream.size(); i += ChunkSize) {
    Reader.Feed(sStream.substr(i, ChunkSize));
    for (RSP_ITEM Item; (Item = Reader.Next(&sBody)) != RSP_ITEM::NONE;) {
      sItems += static_cast<char>('0' + static_cast<int>(Item));
      if (Item == RSP_ITEM::PACKET || Item == RSP_ITEM::NOTIFICATION) sItems += sBody;
      if (Item == RSP_ITEM::PACKET && sBody.size() > CRspReader::MAX_BODY_SIZE) __builtin_trap();
      if (Item == RSP_ITEM::TOO_LONG) return sItems;  // the connection ends
      ParseStopReply(sBody);
    }
  }
  return sItems;
}

void ReadStream(std::string_view sStream) {
  if (ItemsOf(sStream, 1) != ItemsOf(sStream, std::max<size_t>(sStream.size(), 1))) __builtin_trap();
}

// Binary data comes back out of a packet as it went in.
void RoundTrip(std::string_view sData) {
  std::string sBody;
  AppendEscaped(&sBody, sData.data(), sData.size());
  CRspReader Reader;
  Reader.Feed(FramePacket(sBody));
  std::string sBack;
  if (sData.size() <= CRspReader::MAX_BODY_SIZE / 2 && (Reader.Next(&sBack) != RSP_ITEM::PACKET || sBack != sData)) {
    __builtin_trap();
  }
}

// Documents are separated by a zero byte: the first one is "target.xml", the others are what it includes.
void ReadDescription(std::string_view sInput) {
  TARGET_DESCRIPTION Description;
  std::string sError;
  const auto Source = [&](const std::string& sName, std::string* psText) {
    const size_t Split = std::min(sInput.find('\0'), sInput.size());
    *psText = sName == "target.xml" ? sInput.substr(0, Split) : sInput.substr(std::min(Split + 1, sInput.size()));
    return !psText->empty();
  };
  if (!ReadTargetDescription(Source, &Description, &sError)) {
    if (sError.empty()) __builtin_trap();
    return;
  }
  for (size_t i = 1; i < Description.Registers.size(); ++i) {
    if (Description.Registers[i - 1].Number >= Description.Registers[i].Number) __builtin_trap();
  }
  for (U32 i = 0; i < NUM_INDICES; ++i) {
    for (const REGISTER_PLACE& Place :
         {FindCortexMRegister(Description, i), FindBankedRegister(Description, i, i % (CPU_MODE_MASK + 1))}) {
      if (Place.pRegister && Place.FirstBit + Place.NumBits > Place.pRegister->NumBits) __builtin_trap();
    }
  }
}

void ReadMemoryMap(std::string_view sInput) {
  GDB_MEMORY_MAP Map;
  std::string sError;
  if (!ParseMemoryMap(std::string(sInput), &Map, &sError) && !Map.Regions.empty()) __builtin_trap();
  U64 End = 0;
  for (const GDB_MEMORY_REGION& Region : Map.Regions) {
    if (Region.Start < End || Region.Size == 0) __builtin_trap();
    End = Region.Start + Region.Size;
    if (End > 0x1'0000'0000ull || Map.Find(Region.Start) != &Region) __builtin_trap();
  }
}

void ReadTexts(std::string_view sInput) {
  U8 aData[16];
  if (ParseMemoryDump(sInput, sizeof(aData), aData) > sizeof(aData)) __builtin_trap();
  GDB_SERVER_ADDRESS Address;
  if (Address.Parse(sInput, 0) && (Address.sHost.empty() || Address.Port == 0)) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* pData, size_t NumBytes) {
  if (NumBytes == 0) return 0;
  const std::string_view sInput(reinterpret_cast<const char*>(pData) + 1, NumBytes - 1);
  void (*const apfRead[])(std::string_view) = {ReadStream, RoundTrip, ReadDescription, ReadMemoryMap, ReadTexts};
  apfRead[pData[0] % std::size(apfRead)](sInput);
  return 0;
}
