// What the client says to a server, and what it makes of the answers.

#include <set>

#include "fake_server.h"
#include "probe/gdb/hex.h"
#include "probe/gdb/memory_map.h"
#include "probe/gdb/rsp_packet.h"
#include "server_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string PacketOf(const std::string& sBody) {
  return CFakeServer::Packet(sBody);
}

TEST(RspReader, CutsItemsOutOfAnyStream) {
  const std::pair<std::string, std::vector<std::string>> CASES[] = {
      {"+$OK#9a", {"+", "OK"}},
      {"$#00", {""}},
      {"noise$OK#9a\r\n$S05#b8", {"OK", "S05"}},
      {"$0* #7a", {"0000"}},  // a run of three more
      {PacketOf("0*\"00"), {"00000000"}},
      {PacketOf("}\x03}]"), {"#}"}},  // escapes
      {"-$OK#9A", {"-", "OK"}},       // digits of either case
      {"$OK#00$OK#9a", {"bad", "OK"}},
      {"$O$OK#9a", {"bad", "OK"}},  // the rest of the first one was lost
      {"%Stop:T05#00+", {"+"}},     // a damaged notification is nobody's reply
      {PacketOf("*a"), {"long"}},   // nothing to repeat
      {PacketOf("a*"), {"long"}},
      {PacketOf("a*\x1f"), {"long"}},  // a run of less than three
      {PacketOf("a}"), {"long"}},
      {"$OK#9", {}},
      {"$OK", {}},
  };
  for (const auto& [sInput, Expected] : CASES) {
    for (const size_t ChunkSize : {sInput.size(), size_t(1)}) {
      SCOPED_TRACE(sInput + " by " + std::to_string(ChunkSize));
      CRspReader Reader;
      std::vector<std::string> Items;
      for (size_t i = 0; i < sInput.size(); i += ChunkSize) {
        Reader.Feed(std::string_view(sInput).substr(i, ChunkSize));
        std::string sBody;
        for (RSP_ITEM Item; (Item = Reader.Next(&sBody)) != RSP_ITEM::NONE;) {
          Items.push_back(Item == RSP_ITEM::ACK            ? "+"
                          : Item == RSP_ITEM::NAK          ? "-"
                          : Item == RSP_ITEM::BAD_CHECKSUM ? "bad"
                          : Item == RSP_ITEM::TOO_LONG     ? "long"
                                                           : sBody);
        }
      }
      EXPECT_EQ(Items, Expected);
    }
  }
}

TEST(MemoryMap, RefusesWhatMakesNoSense) {
  const std::pair<const char*, bool> CASES[] = {
      {R"(<memory type="ram" start="0x20000000" length="65536"/>)", true},
      {R"(<memory type="ram" start="0xffff0000" length="0x10000"/><memory type="rom" start="0" length="0x1000"/>)",
       true},
      {R"(<memory type="ram" start="0xffff0000" length="0x10001"/>)", false},
      {R"(<memory type="ram" start="0x100000000" length="4"/>)", false},
      {R"(<memory type="ram" start="0" length="0"/>)", false},
      {R"(<memory type="flash" start="0" length="0x1000"/>)", false},
      {R"(<memory type="flash" start="0" length="0x1000"><property name="blocksize">0</property></memory>)", false},
      {R"(<memory type="flash" start="0" length="8192"><property name="blocksize"> 0x400 </property></memory>)", true},
      {R"(<memory type="wax" start="0" length="4"/>)", false},
      {R"(<memory type="ram" start="0" length="8"/><memory type="ram" start="4" length="8"/>)", false},
  };
  for (const auto& [sRegions, bValid] : CASES) {
    SCOPED_TRACE(sRegions);
    GDB_MEMORY_MAP Map;
    std::string sError;
    EXPECT_EQ(ParseMemoryMap("<memory-map>" + std::string(sRegions) + "</memory-map>", &Map, &sError), bValid);
    EXPECT_EQ(sError.empty(), bValid);
    EXPECT_EQ(Map.Regions.empty(), !bValid);
  }
}

class ProtocolTest : public CServerTest {
protected:
  void ConnectAs(const char* sDevice, U32 CoreIndex = 0) {
    ASSERT_EQ(Connect(m_Server.Address(), sDevice, CoreIndex), 0);
  }
  // Replies in place of the server's own, by the beginning of the request.
  void Answer(std::vector<std::pair<std::string, std::string>> Replies) {
    m_Server.Fault = [Replies](const std::string& sRequest, std::string* psRaw) {
      for (const auto& [sBeginning, sReply] : Replies) {
        if (!sRequest.starts_with(sBeginning)) continue;
        *psRaw = "+" + sReply;
        return true;
      }
      return false;
    };
  }
  static std::string Hex(const std::string& sText) {
    std::string sResult;
    AppendHex(&sResult, sText.data(), sText.size());
    return sResult;
  }

  CFakeServer m_Server;
};

TEST_F(ProtocolTest, EveryByteIsWrittenWithAndWithoutBinaryPackets) {
  std::vector<U8> Written(2000), Read(2000);
  for (size_t i = 0; i < Written.size(); ++i) Written[i] = static_cast<U8>(i);
  for (const bool bBinary : {true, false}) {
    std::fill(m_Server.Ram.begin(), m_Server.Ram.end(), U8(0));
    if (!bBinary) Answer({{"X", PacketOf("")}});
    ConnectAs("Cortex-M3");
    EXPECT_EQ(API.VNODEARM_WriteMem(CFakeServer::RAM_ADDR + 3, 2000, Written.data()), 0);
    EXPECT_EQ(API.VNODEARM_ReadMem(CFakeServer::RAM_ADDR + 3, 2000, Read.data()), 0);
    EXPECT_EQ(Written, Read);
    EXPECT_EQ(m_Server.CountOf("M") > 0, !bBinary);
    API.VNODEARM_Close();
  }
}

TEST_F(ProtocolTest, TransfersEndAtTheFirstByteThatDoesNotAnswer) {
  ConnectAs("Cortex-M3");
  const U32 End = CFakeServer::RAM_ADDR + CFakeServer::MEMORY_SIZE;
  std::vector<U8> Data(4000);
  for (const auto& [Addr, Num] : {std::pair(End - 1236, 1236), {End, 0}, {0xFFFFFFFC, 0}}) {
    EXPECT_EQ(API.VNODEARM_ReadMemEx(Addr, 4000, Data.data(), 0), Num);
    EXPECT_EQ(API.VNODEARM_WriteMemEx(Addr, 4000, Data.data(), 0), Num);
  }
  U32 aItems[4];
  U8 aStatus[4];
  EXPECT_EQ(API.VNODEARM_ReadMemU32(End - 8, 4, aItems, aStatus), 2);
  EXPECT_THAT(aStatus, ElementsAre(0, 0, 1, 1));
}

TEST_F(ProtocolTest, AFewItemsAreAccessedInTheirWidth) {
  ConnectAs("Cortex-M3");
  U8 aData[8];
  for (const auto& [Width, NumRequests] : {std::pair(0, 1u), {4, 2u}, {2, 4u}, {1, 8u}}) {
    const size_t Before = m_Server.Requests().size();
    EXPECT_EQ(API.VNODEARM_ReadMemEx(CFakeServer::RAM_ADDR, 8, aData, Width), 8);
    EXPECT_EQ(m_Server.Requests().size() - Before, NumRequests);
  }
}

TEST_F(ProtocolTest, LostAndLateBytesAreMadeUpFor) {
  m_Server.sSupported = "PacketSize=400";  // with acknowledgements
  ConnectAs("Cortex-M3");
  int NumAsked = 0;
  m_Server.Fault = [&](const std::string& sRequest, std::string* psRaw) {
    if (!sRequest.starts_with("m")) return false;
    *psRaw = ++NumAsked < 3 ? "-" : "+" + PacketOf("01020304");
    return true;
  };
  EXPECT_EQ(ReadWord(CFakeServer::RAM_ADDR), 0x04030201u) << "sent again until it was taken";
  EXPECT_EQ(NumAsked, 3);
  // Console output, and a stop that crossed the request.
  Answer({{"m", PacketOf("O" + Hex("hello")) + PacketOf("T05") + PacketOf("05060708")}});
  EXPECT_EQ(ReadWord(CFakeServer::RAM_ADDR), 0x08070605u);
  EXPECT_THAT(Messages.Logs, testing::Contains("hello"));
}

TEST_F(ProtocolTest, RegistersAreFoundInEveryLayout) {
  const auto Reg = [](const char* sName, int Bits) {
    return "<reg name=\"" + std::string(sName) + "\" bitsize=\"" + std::to_string(Bits) + "\"/>";
  };
  const std::string sModes = Reg("sp", 32) + Reg("cpsr", 32) + Reg("sp_irq", 32);
  struct CASE {
    const char* sName;
    std::string sRegisters, sAll;  // the description's elements, none: the old layout; reply to "g"
    const char* sDevice;
    U32 Index, Value;
  };
  const CASE CASES[] = {
      {"legacy", "", std::string(16 * 8, '0') + std::string(8 * 24, 'f') + "00000000d3000060", "ARM9", 8, 0x600000D3},
      {"by number", R"(<reg name="pc" bitsize="32" regnum="1"/><reg name="r0" bitsize="32" regnum="0"/>)",
       "0102030405060708", "Cortex-M3", VNODE_REG_PC, 0x08070605},
      {"narrow ones", Reg("primask", 1) + Reg("control", 3) + Reg("pc", 32), "010205060708", "Cortex-M3", VNODE_REG_PC,
       0x08070605},
      {"half a double", Reg("d0", 64) + Reg("d1", 64), "0102030405060708090a0b0c0d0e0f10", "Cortex-M4",
       VNODE_REG_S0 + 3, 0x100F0E0D},
      {"parts of one", Reg("primask", 1) + Reg("basepri", 8) + Reg("faultmask", 1) + Reg("control", 2), "01400102",
       "Cortex-M3", VNODE_REG_CFBP, 0x02014001},
      {"another mode's", sModes, "11111111d300000022222222", "Cortex-A9", 32, 0x22222222},
      {"the present mode's", sModes, "11111111d300000022222222", "Cortex-A9", 26, 0x11111111},
      {"unavailable ones", Reg("r0", 32) + Reg("r1", 32) + Reg("r2", 32), "00000000xxxxxxxx22222222", "Cortex-M3", 2,
       0x22222222},
      {"big endian", Reg("r1", 32) + Reg("cpsr", 32), "01020304600000d3", "ARM9", 1, 0x01020304},
  };
  for (const CASE& Case : CASES) {
    SCOPED_TRACE(Case.sName);
    m_Server.sSupported = Case.sRegisters.empty() ? "PacketSize=400" : "qXfer:features:read+";
    m_Server.sRegisters = Case.sRegisters;
    m_Server.bSingleRegisters = false;
    Answer({{"g", PacketOf(Case.sAll)}});
    ConnectAs(Case.sDevice);
    EXPECT_EQ(ReadReg(Case.Index), Case.Value);
    EXPECT_TRUE(Case.sAll.find('x') == std::string::npos || !HasReg(1));
    for (const U32 Index : {200u, 0xFFFFFFFFu}) EXPECT_TRUE(!HasReg(Index) && API.VNODEARM_WriteReg(Index, 1) != 0);
    API.VNODEARM_Close();
  }
}

TEST_F(ProtocolTest, ARegisterIsWrittenByItselfOrWithAllOthers) {
  for (const bool bSingle : {true, false}) {
    m_Server.bSingleRegisters = bSingle;
    ConnectAs("Cortex-M3");
    EXPECT_EQ(API.VNODEARM_WriteReg(7, 0xCAFE0000 + bSingle), 0);
    EXPECT_EQ(m_Server.aRegs[7], 0xCAFE0000 + bSingle);
    EXPECT_EQ(m_Server.aRegs[15], CFakeServer::FLASH_ADDR + 0x100);
    EXPECT_EQ(ReadReg(7), 0xCAFE0000 + bSingle);
    EXPECT_EQ(m_Server.CountOf("G") > 0, !bSingle);
    m_Server.aRegs[16] = 0x60000000;  // as behind a reset without a program
    EXPECT_EQ(API.VNODEARM_WriteReg(VNODE_REG_PC, 0x08000200), 0);
    EXPECT_EQ(m_Server.aRegs[15], 0x08000200u);
    EXPECT_EQ(m_Server.aRegs[16], 0x61000000u) << "the core can execute what stands there";
    m_Server.aRegs[15] = CFakeServer::FLASH_ADDR + 0x100;
    API.VNODEARM_Close();
  }
}

TEST_F(ProtocolTest, FlashIsProgrammedInBlocksAndKeepsWhatIsNotWritten) {
  m_Server.Flash[0x3FF] = 0x55;
  m_Server.Flash[0x1400] = 0x66;
  ConnectAs("Cortex-M3");
  std::vector<U8> Image(0x1001);  // from the end of the first block into the sixth
  for (size_t i = 0; i < Image.size(); ++i) Image[i] = static_cast<U8>(i * 3);
  EXPECT_NE(API.VNODEARM_WriteMem(CFakeServer::FLASH_ADDR, 4, Image.data()), 0) << "not without a download";

  API.VNODEARM_BeginDownload(0);
  EXPECT_EQ(API.VNODEARM_WriteMem(CFakeServer::FLASH_ADDR + 0x400, 0x1001, Image.data()), 0);
  EXPECT_EQ(API.VNODEARM_WriteU32(CFakeServer::RAM_ADDR, 0x12345678), 0);
  EXPECT_EQ(m_Server.CountOf("vFlash"), 0) << "collected";
  EXPECT_EQ(API.VNODEARM_EndDownload(), VNODE_DOWNLOAD_OK);
  EXPECT_TRUE(std::equal(Image.begin(), Image.end(), m_Server.Flash.begin() + 0x400));
  EXPECT_EQ(m_Server.Flash[0x3FF], 0x55);
  EXPECT_EQ(m_Server.Flash[0x1401], 0xFF);
  EXPECT_EQ(m_Server.Ram[0], 0x78);
  EXPECT_EQ(m_Server.CountOf("vFlashErase"), 5);
  EXPECT_THAT(Messages.Logs, testing::Contains("Programmed 5120 bytes of flash"));

  API.VNODEARM_BeginDownload(0);
  EXPECT_EQ(API.VNODEARM_WriteMem(CFakeServer::FLASH_ADDR + 0x400, 0x1001, Image.data()), 0);
  EXPECT_EQ(API.VNODEARM_EndDownload(), VNODE_DOWNLOAD_OK);
  EXPECT_EQ(m_Server.CountOf("vFlashErase"), 5) << "nothing differs";
}

TEST_F(ProtocolTest, ADownloadTellsThePhaseThatFailed) {
  const std::tuple<const char*, const char*, int> CASES[] = {
      {"vFlashErase", "E01", VNODE_DOWNLOAD_PROGRAM_FAILED},       {"vFlashErase", "", VNODE_DOWNLOAD_PROGRAM_FAILED},
      {"vFlashWrite", "E.memtype", VNODE_DOWNLOAD_PROGRAM_FAILED}, {"vFlashDone", "E01", VNODE_DOWNLOAD_PROGRAM_FAILED},
      {"vFlashWrite", "OK", VNODE_DOWNLOAD_VERIFY_FAILED},  // says so, and writes nothing
  };
  U32 NumDownloads = 0;
  for (const auto& [sRequest, sReply, Result] : CASES) {
    SCOPED_TRACE(std::string(sRequest) + " " + sReply);
    ConnectAs("Cortex-M3");
    Answer({{sRequest, PacketOf(sReply)}});
    API.VNODEARM_BeginDownload(0);
    EXPECT_EQ(API.VNODEARM_WriteU32(CFakeServer::FLASH_ADDR, 0x12345678 + ++NumDownloads), 0);
    EXPECT_EQ(API.VNODEARM_EndDownload(), Result);
    EXPECT_EQ(API.VNODEARM_EndDownload(), Result) << "told once more";
    API.VNODEARM_Close();
    m_Server.Fault = nullptr;
  }
}

TEST_F(ProtocolTest, BreakpointsAreOfTheKindThatTheMemoryTakes) {
  ConnectAs("Cortex-M3");
  m_Server.Ram[0] = 0x00;
  m_Server.Ram[1] = 0xF0;  // the first half of a wide instruction
  const std::tuple<U32, U32, const char*, U32> CASES[] = {
      {CFakeServer::RAM_ADDR, VNODE_BP_IMP_ANY, "Z0,20000000,3", VNODE_BP_IS_SOFT_RAM},
      {CFakeServer::RAM_ADDR + 4, VNODE_BP_IMP_HW, "Z1,20000004,2", VNODE_BP_IS_HARD},
      {CFakeServer::FLASH_ADDR, VNODE_BP_IMP_ANY, "Z1,8000000,3", VNODE_BP_IS_HARD},  // erased: reads as wide
      {CFakeServer::FLASH_ADDR + 2, VNODE_BP_IMP_SW, "Z0,8000002,3", VNODE_BP_IS_SOFT_FLASH},
  };
  for (const auto& [Addr, Flags, sRequest, Implementation] : CASES) {
    SCOPED_TRACE(sRequest);
    const int Handle = API.VNODEARM_SetBPEx(Addr, Flags | VNODE_BP_THUMB);
    ASSERT_NE(Handle, 0);
    EXPECT_EQ(ImpFlagsOf(Handle), Implementation);
    EXPECT_EQ(m_Server.CountOf(sRequest), 1);
    EXPECT_EQ(API.VNODEARM_ClrBPEx(Handle), 0);
    EXPECT_EQ(m_Server.CountOf("z" + std::string(sRequest + 1)), 1);
  }
  Answer({{"Z1", PacketOf("E28")}});  // all comparators are in use
  const int Handle = API.VNODEARM_SetBPEx(CFakeServer::FLASH_ADDR, VNODE_BP_IMP_ANY | VNODE_BP_THUMB);
  EXPECT_EQ(ImpFlagsOf(Handle), VNODE_BP_IS_SOFT_FLASH);
  Answer({{"Z", PacketOf("")}});
  EXPECT_EQ(API.VNODEARM_SetBPEx(CFakeServer::FLASH_ADDR + 4, VNODE_BP_IMP_ANY | VNODE_BP_THUMB), 0);
  EXPECT_EQ(API.VNODEARM_SetBPEx(CFakeServer::RAM_ADDR, VNODE_BP_IMP_ANY | VNODE_BP_ARM), 0) << "no ARM code";
}

TEST_F(ProtocolTest, ABreakpointThatCanDoWithoutMakesRoomInTheComparator) {
  constexpr U32 FIRST = CFakeServer::FLASH_ADDR + 0x100;  // where the core stands
  // The request that is refused, what the first one is then, whether there is a second one, and what is installed.
  const std::tuple<const char*, const char*, U32, bool, std::set<std::string>> CASES[] = {
      {"moves", "-", VNODE_BP_IS_SOFT_FLASH, true, {"0,8000100,3", "1,8000104,3"}},
      {"cannot move", "Z0", VNODE_BP_IS_HARD, false, {"1,8000100,3"}},
      {"moves in vain", "Z1,8000104", VNODE_BP_IS_HARD, false, {"1,8000100,3"}},
      {"is not let go", "z1", VNODE_BP_IS_HARD, false, {"1,8000100,3"}},
  };
  for (const auto& [sName, sRefused, FirstIs, bSecond, Expected] : CASES) {
    SCOPED_TRACE(sName);
    std::set<std::string> Installed;
    m_Server.Fault = [&, sRefused = sRefused](const std::string& sRequest, std::string* psRaw) {
      const auto IsHard = [](const std::string& sPoint) { return sPoint[0] == '1'; };
      const std::string sPoint = sRequest.substr(1);
      const bool bFull = sRequest.starts_with("Z1") && std::any_of(Installed.begin(), Installed.end(), IsHard);
      *psRaw = "+" + PacketOf("E28");
      if (bFull || sRequest.starts_with(sRefused)) return true;
      if (sRequest[0] == 'Z') Installed.insert(sPoint);
      const size_t NumRemoved = sRequest[0] == 'z' ? Installed.erase(sPoint) : 1;
      EXPECT_EQ(NumRemoved, 1u) << sRequest;
      return false;
    };
    m_Server.aRegs[15] = FIRST;
    ConnectAs("Cortex-M3");
    const int First = API.VNODEARM_SetBPEx(FIRST, VNODE_BP_IMP_ANY | VNODE_BP_THUMB);
    EXPECT_EQ(API.VNODEARM_SetBPEx(FIRST + 4, VNODE_BP_IMP_HW | VNODE_BP_THUMB) != 0, bSecond);
    EXPECT_EQ(ImpFlagsOf(First), FirstIs);
    EXPECT_EQ(Installed, Expected);
    EXPECT_EQ(API.VNODEARM_Step(), 0) << "without it, as what it is now";
    EXPECT_EQ(Installed, Expected);
    API.VNODEARM_Close();
  }
}

TEST_F(ProtocolTest, GoingOnFromABreakpointStopsAtTheNextInstructionsOwn) {
  ConnectAs("Cortex-M3");
  const U32 PC = ReadReg(VNODE_REG_PC);
  for (const U32 Offset : {0u, 2u}) ASSERT_NE(API.VNODEARM_SetBPEx(PC + Offset, VNODE_BP_IMP_HW | VNODE_BP_THUMB), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  EXPECT_EQ(ReadReg(VNODE_REG_PC), PC + 2);
  EXPECT_EQ(m_Server.CountOf("Z1,8000100"), 2) << "set again behind the step";
  EXPECT_EQ(m_Server.CountOf("c"), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  m_Server.SendRaw(PacketOf("T05hwbreak:;"));
  EXPECT_TRUE(WaitForHalt());
}

TEST_F(ProtocolTest, DataEventsBecomeWatchesOfARange) {
  ConnectAs("Cortex-M3");
  const std::tuple<U32, U32, U8, U8, const char*> CASES[] = {
      {0x20000010, 0, 0x01, 0x16, "Z2,20000010,1"},     // write, any width
      {0x20000010, 0, 0x05, 0x10, "Z2,20000010,4"},     // write of a word
      {0x20000010, 0, 0x02, 0x10, "Z3,20000010,2"},     // read of a halfword
      {0x20000012, 0xF, 0x00, 0x17, "Z4,20000010,10"},  // any access to 16 bytes
  };
  VNODEARM_DATA_EVENT Event = {sizeof(Event), 1, 0, 0, 0, 0xFFFFFFFF, 0, 0, {}};
  U32 Handle = 0;
  for (const auto& [Addr, AddrMask, Access, AccessMask, sRequest] : CASES) {
    SCOPED_TRACE(sRequest);
    std::tie(Event.Addr, Event.AddrMask) = std::tie(Addr, AddrMask);
    std::tie(Event.Access, Event.AccessMask) = std::tie(Access, AccessMask);
    ASSERT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), 0);
    EXPECT_EQ(m_Server.CountOf(sRequest), 1);
    EXPECT_EQ(API.VNODEARM_ClrDataEvent(Handle), 0);
    EXPECT_EQ(m_Server.CountOf("z" + std::string(sRequest + 1)), 1);
  }
  Event.AddrMask = 5;
  EXPECT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), VNODE_DATA_EVENT_INVALID) << "a mask with a hole";
  Event = {sizeof(Event), 1, 0x20000000, 0, 0, 0xFFFFFFFF, 1, 0x16, {}};
  Answer({{"Z2", PacketOf("E28")}});
  EXPECT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), VNODE_DATA_EVENT_NO_FREE_UNIT);
  Answer({{"Z2", PacketOf("")}});
  EXPECT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), VNODE_DATA_EVENT_INVALID);
}

TEST_F(ProtocolTest, TheServersOwnCommandsResetAndReachTheCoprocessor) {
  ConnectAs("Cortex-A9");
  Answer({{"qRcmd," + Hex("help"), PacketOf("OK")},
          {"qRcmd," + Hex("reset halt"), PacketOf("O" + Hex("target halted\n")) + PacketOf("OK")},
          {"qRcmd," + Hex("arm mrc 15 0 1 0 2"), PacketOf("O" + Hex("0x00c50078\n")) + PacketOf("OK")},
          {"qRcmd," + Hex("arm mcr 15 0 1 0 2 0x5"), PacketOf("OK")},
          {"qRcmd,", PacketOf("O" + Hex("invalid command name\n")) + PacketOf("OK")}});
  EXPECT_EQ(API.VNODEARM_Reset(), 0);
  U32 Value = 0;
  EXPECT_EQ(API.VNODEARM_CP15_ReadEx(1, 0, 0, 2, &Value), 0);
  EXPECT_EQ(Value, 0x00C50078u);
  EXPECT_EQ(API.VNODEARM_CP15_WriteEx(1, 0, 0, 2, 5), 0);
  EXPECT_NE(API.VNODEARM_CP15_ReadEx(1, 0, 0, 1, &Value), 0);
  Answer({{"qRcmd,", PacketOf("O" + Hex("Error: no reset line\n")) + PacketOf("OK")}});
  EXPECT_NE(API.VNODEARM_Reset(), 0);
  EXPECT_THAT(Messages.Errors, testing::Contains(HasSubstr("no reset line")));
}

TEST_F(ProtocolTest, TheCoreIndexSelectsOneOfTheServersThreads) {
  Answer({{"qfThreadInfo", PacketOf("m1,2")},
          {"qsThreadInfo", PacketOf("l")},
          {"vCont?", PacketOf("vCont;c;C;s;S")},
          {"Hg2", PacketOf("OK")}});
  ConnectAs("Cortex-A9", 1);
  EXPECT_EQ(API.VNODEARM_Step(), 0);
  EXPECT_EQ(m_Server.CountOf("vCont;s:2"), 1);
  EXPECT_GE(m_Server.CountOf("Hg2"), 2) << "again behind the stop";
  API.VNODEARM_Close();
  EXPECT_NE(Connect(m_Server.Address(), "Cortex-A9", 2), 0);
  EXPECT_THAT(Messages.Errors, testing::Contains(HasSubstr("no core with index 2")));
}

}  // namespace
