// Servers that are broken, dying or hostile. Whatever they do, a call ends with an error in bounded time, and a
// session with a good server can be started afterwards.

#include <unistd.h>

#include <chrono>

#include "fake_server.h"
#include "probe/gdb/rsp_packet.h"
#include "server_fixture.h"

namespace {

using testing::HasSubstr;

constexpr int CALL_LIMIT_MS = 6000;

struct FAULT {
  const char* sName;
  const char* sRequest;  // what it begins with, in whose place the fault comes
  std::string sRaw;      // what is sent then; empty: nothing at all
  const char* sError;    // part of an error message
};

std::string Packet(const std::string& sBody) {
  return CFakeServer::Packet(sBody);
}

// Sent for ever.
std::string Flood(const std::string& sBegin, char c) {
  return CFakeServer::FLOOD + sBegin + std::string(1000, c);
}

std::string Deep(int Levels, const char* sBegin = "<target>") {
  std::string sText = sBegin;
  for (int i = 0; i < Levels; ++i) sText += "<a>";
  return sText;
}

std::string Target(const std::string& sElements) {
  std::string sBody = "l<target>";
  AppendEscaped(&sBody, sElements.data(), sElements.size());
  return Packet(sBody + "</target>");
}

class HostileServerTest : public CServerTest {
protected:
  void Break(const FAULT& Fault) {
    m_Server.Fault = [Fault](const std::string& sRequest, std::string* psRaw) {
      *psRaw = Fault.sRaw;
      return sRequest.starts_with(Fault.sRequest);
    };
  }
  void ExpectError(const char* sText) {
    std::lock_guard Lock(Messages.Mutex);
    EXPECT_THAT(Messages.Errors, testing::Contains(HasSubstr(sText)));
  }
  // Ends what was begun, and works with the same server in its proper state.
  void ExpectGoodSession() {
    API.VNODEARM_Close();
    m_Server.Fault = nullptr;
    ASSERT_EQ(Connect(m_Server.Address(), "Cortex-M3"), 0);
    EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
    EXPECT_EQ(ReadReg(VNODE_REG_PC), m_Server.aRegs[15]);
    API.VNODEARM_Close();
    Messages.Errors.clear();
  }
  template <typename CALL>
  void ExpectInTime(CALL Call) {
    const auto Begin = std::chrono::steady_clock::now();
    Call();
    EXPECT_LT(std::chrono::steady_clock::now() - Begin, std::chrono::milliseconds(CALL_LIMIT_MS));
  }

  CFakeServer m_Server;
};

TEST_F(HostileServerTest, AConnectionThatCannotBeMadeFails) {
  const FAULT FAULTS[] = {
      {"no answer", "qSupported", "", "does not answer"},
      {"closes at once", "qSupported", CFakeServer::CLOSE, "closed the connection"},
      {"another protocol", "qSupported", "HTTP/1.1 400 Bad Request\r\n\r\n", "does not answer"},
      {"half a packet", "qSupported", "+$PacketSi", "does not answer"},
      {"wrong checksums", "qSupported", "$OK#00$OK#00$OK#00$OK#00$OK#00", "damaged packets"},
      {"refuses for ever", "qSupported", "-----", "refuses what it is sent"},
      {"acknowledges for ever", "qSupported", Flood("+", '+'), "not answer"},
      {"an endless packet", "qSupported", Flood("$", 'a'), "damaged"},
      {"a long packet", "qSupported", "$" + std::string(300'000, 'a'), "too long"},
      {"a packet that expands", "qSupported",
       "$" +
           [] {
             std::string s = "a";
             for (int i = 0; i < 5000; ++i) s += "*~";
             return Packet(s).substr(1);
           }(),
       "too long"},
      {"endless console output", "?", std::string(CFakeServer::FLOOD) + Packet("O41"), "not answer"},
      {"no target", "?", Packet("W00"), "no target"},
      {"an error for the state", "?", Packet("E01"), "no target"},
      {"no document", "qXfer:features", Packet("E00"), "\"target.xml\" cannot be read"},
      {"a document without end", "qXfer:features", Packet("m" + std::string(500, 'x')), "cannot be read"},
      {"an empty piece", "qXfer:features", Packet("m"), "cannot be read"},
      {"no XML", "qXfer:features", Packet("l<target"), "cannot be used"},
      {"too deep", "qXfer:features", Packet("l" + Deep(20'000)), "nested too deeply"},
      {"deep behind a comment", "qXfer:features", Packet("l" + Deep(20'000, "<!DOCTYPE t [ <!-- ]> <target>")),
       "nested too deeply"},
      {"includes itself", "qXfer:features", Target(R"(<xi:include href="target.xml"/>)"), "too many documents"},
      {"a name with a packet in it", "qXfer:features", Target(R"(<xi:include href="a:0,1#00$X"/>)"), "cannot be read"},
      {"a huge register", "qXfer:features", Target(R"(<reg name="r0" bitsize="4294967295"/>)"), "valid number or size"},
      {"a huge number", "qXfer:features", Target(R"(<reg name="r0" bitsize="32" regnum="99999999999"/>)"),
       "valid number or size"},
  };
  for (const FAULT& Fault : FAULTS) {
    SCOPED_TRACE(Fault.sName);
    Break(Fault);
    ExpectInTime([&] { EXPECT_NE(Connect(m_Server.Address(), "Cortex-M3"), 0); });
    EXPECT_FALSE(API.VNODEARM_IsConnected());
    ExpectError(Fault.sError);
    ExpectGoodSession();
  }
}

TEST_F(HostileServerTest, AServerThatDiesDuringACallLosesTheConnection) {
  U8 aData[64];
  U32 Index = 0, Value = 0;
  const auto Reset = [] { return API.VNODEARM_Reset() != 0; };
  const auto GoAndHalt = [] {
    API.VNODEARM_GoEx(0, 1);
    return API.VNODEARM_Halt() != 0;
  };
  const std::pair<FAULT, std::function<bool()>> CASES[] = {
      {{"reads no memory", "m", "", "does not answer"},
       [&] { return API.VNODEARM_ReadMem(CFakeServer::RAM_ADDR, 64, aData) != 0; }},
      {{"closes when memory is written", "X", CFakeServer::CLOSE, "closed the connection"},
       [] { return API.VNODEARM_WriteU32(CFakeServer::RAM_ADDR, 1) != 0; }},
      {{"damaged registers", "g", "$00#00", "damaged packets"},
       [&] {
         EXPECT_EQ(API.VNODEARM_Step(), 0);  // what was read before counts no more
         return API.VNODEARM_ReadRegs(&Index, &Value, aData, 1) != 0;
       }},
      {{"answers nothing any more", "", "", "does not step the core"}, [] { return API.VNODEARM_Step() != 0; }},
      {{"closes at a breakpoint", "Z", CFakeServer::CLOSE, "closed the connection"},
       [] { return API.VNODEARM_SetBPEx(CFakeServer::RAM_ADDR, VNODE_BP_IMP_ANY | VNODE_BP_THUMB) == 0; }},
      {{"closes when resumed", "c", CFakeServer::CLOSE, "closed the connection"}, GoAndHalt},
      {{"never stops", "<interrupt>", "", "does not stop the core"}, GoAndHalt},
      {{"ends its target", "c", Packet("W01"), "target has ended"},
       [&] {
         API.VNODEARM_GoEx(0, 1);
         return WaitFor([] { return API.VNODEARM_IsHalted() < 0; });
       }},
      {{"no reset", "qRcmd", Packet(""), "does not execute \"reset halt\""}, Reset},
      {{"no answer to a reset", "qRcmd", "", "does not answer"}, Reset},
  };
  for (const auto& [Fault, Fails] : CASES) {
    SCOPED_TRACE(Fault.sName);
    ASSERT_EQ(Connect(m_Server.Address(), "Cortex-M3"), 0);
    Break(Fault);
    ExpectInTime([&, &Fails = Fails] { EXPECT_TRUE(Fails()); });
    ExpectError(Fault.sError);
    ExpectInTime([&] { ExpectGoodSession(); });
  }
}

// Answers that are no answers, and leave the connection in order.
TEST_F(HostileServerTest, WrongAnswersAreFailuresOfTheirCallAlone) {
  ASSERT_EQ(Connect(m_Server.Address(), "Cortex-M3"), 0);
  U8 aData[64] = {};
  for (const char* sReply : {"E01", "", "zz", "123", "OK"}) {
    SCOPED_TRACE(sReply);
    Break({"", "m", Packet(sReply), ""});
    EXPECT_EQ(API.VNODEARM_ReadMemEx(CFakeServer::RAM_ADDR, 64, aData, 0), 0);
    Break({"", "X", Packet(sReply), ""});
    EXPECT_EQ(API.VNODEARM_WriteMemEx(CFakeServer::RAM_ADDR, 64, aData, 0), std::string(sReply) == "OK" ? 64 : 0);
  }
  Break({"", "m", Packet(std::string(400, 'f')), ""});
  EXPECT_EQ(API.VNODEARM_ReadMemEx(CFakeServer::RAM_ADDR, 64, aData, 0), 0) << "more than was asked for";
  Break({"", "m", Packet("11223344"), ""});
  EXPECT_EQ(API.VNODEARM_ReadMemEx(CFakeServer::RAM_ADDR, 64, aData, 0), 64) << "a part at a time";
  m_Server.Fault = [](const std::string& sRequest, std::string* psRaw) {
    usleep(1000);
    *psRaw = Packet("E01");
    return sRequest.starts_with("m");
  };
  std::vector<U8> Items(50'000, 1), Statuses(50'000);
  ExpectInTime([&] { EXPECT_EQ(API.VNODEARM_ReadMemU8(0, 50'000, Items.data(), Statuses.data()), 0); });
  EXPECT_EQ(Statuses, std::vector<U8>(50'000, 1));
  EXPECT_EQ(Items, std::vector<U8>(50'000));
  m_Server.Fault = nullptr;
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  EXPECT_TRUE(HasReg(VNODE_REG_PC));
}

TEST_F(HostileServerTest, NoServerAndBadAddressesFail) {
  const CLoopbackPort Unused;
  ExpectInTime([&] { EXPECT_NE(Connect(Unused.Address(), "Cortex-M3"), 0); });
  ExpectError("Cannot connect to 127.0.0.1");
#ifndef __SANITIZE_THREAD__  // which fails on the C library's own thread that looks names up
  ExpectInTime([&] { EXPECT_NE(Connect("no-such-host.invalid:1234", "Cortex-M3"), 0); });
  ExpectError("no-such-host.invalid");
#endif
  for (const char* sText :
       {"", ":1", "host:", "host:0", "host:65536", "host:1x", "[::1", "host,qmp", "host,qmp=0", "a,b"}) {
    EXPECT_EQ(API.VNODEARM_SelectIP(sText, 0), 1) << sText;
  }
}

}  // namespace
