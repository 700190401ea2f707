#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <fstream>
#include <thread>

#include "probe_fixture.h"

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

class WebTest : public CProbeTest {
protected:
  U32 Port() {
    VNODE_WEB_INFO Info = {};
    reinterpret_cast<VNODE_WEB_INFO_FUNC>(API.VNODE_GetpFunc(VNODE_FUNC_WEB_PORT))(&Info);
    return Info.Port;
  }

  // The whole answer, empty when nobody answers.
  static std::string Send(U32 Port, const std::string& sRequest) {
    const int Socket = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in Address = {};
    Address.sin_family = AF_INET;
    Address.sin_port = htons(static_cast<uint16_t>(Port));
    Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    std::string sAnswer;
    if (connect(Socket, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)) == 0 &&
        send(Socket, sRequest.data(), sRequest.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(sRequest.size())) {
      char acPart[4096];
      for (ssize_t Num; (Num = recv(Socket, acPart, sizeof(acPart), 0)) > 0;) sAnswer.append(acPart, acPart + Num);
    }
    close(Socket);
    return sAnswer;
  }
  std::string Request(const std::string& sLine, const std::string& sHost) {
    return Send(Port(), sLine + " HTTP/1.1\r\n" + (sHost.empty() ? "" : "Host: " + sHost + "\r\n") +
                            "Connection: close\r\n\r\n");
  }
  std::string OwnHost() { return "127.0.0.1:" + std::to_string(Port()); }

  static std::string Get(U32 Port, const std::string& sPath) {
    return Send(Port, "GET " + sPath + " HTTP/1.0\r\nHost: 127.0.0.1:" + std::to_string(Port) + "\r\n\r\n");
  }
  // Asks the library for nothing, which may be busy.
  static QJsonObject StateAt(U32 Port) {
    const std::string sAnswer = Get(Port, "/state.json");
    const auto Body = static_cast<int>(std::min(sAnswer.find("\r\n\r\n"), sAnswer.size()));
    const auto Document = QJsonDocument::fromJson(QByteArray::fromStdString(sAnswer).mid(Body));
    EXPECT_TRUE(Document.isObject()) << sAnswer;
    return Document.object();
  }
  QJsonObject State() { return StateAt(Port()); }
  std::string RunState() { return State()[u"target"]["state"_L1].toString().toStdString(); }
};

TEST_F(WebTest, PortIsThereWhileTheProbeIsOpen) {
  EXPECT_EQ(Port(), 0u);
  ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  const U32 FirstPort = Port();
  ASSERT_NE(FirstPort, 0u);
  ASSERT_EQ(API.VNODEARM_Open(), nullptr) << "opened once more";
  EXPECT_EQ(Port(), FirstPort);
  EXPECT_EQ(RunState(), "not connected");
  API.VNODEARM_Close();
  EXPECT_EQ(Port(), 0u);
  EXPECT_EQ(Send(FirstPort, "GET / HTTP/1.0\r\n\r\n"), "");
}

TEST_F(WebTest, ServesItsOwnPagesToThisMachineOnly) {
  ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  const std::string sOwn = OwnHost(), sPort = ":" + std::to_string(Port());
  const std::tuple<const char*, std::string, const char*> CASES[] = {
      {"GET /", sOwn, "200"},
      {"GET /", "LocalHost" + sPort, "200"},
      {"GET /state.json?x=1", sOwn, "200"},
      {"GET /page.css", sOwn, "200"},
      {"GET /refresh.js", sOwn, "200"},
      {"GET /nothing", sOwn, "404"},
      {"GET /../../etc/passwd", sOwn, "404"},
      {"HEAD /", sOwn, "405"},
      {"POST /", sOwn, "405"},
      {"GET /", "rebound.example" + sPort, "403"},
      {"GET /", "127.0.0.1", "403"},
      {"GET /", "127.0.0.1:1", "403"},
      {"GET /state.json", "", "40"},  // no HTTP/1.1; the library may refuse it by itself
  };
  for (const auto& [sLine, sHost, sCode] : CASES) {
    EXPECT_THAT(Request(sLine, sHost),
                testing::AllOf(testing::StartsWith(std::string("HTTP/1.1 ") + sCode), Not(HasSubstr("Access-Control"))))
        << sLine << " at " << sHost;
  }
  // The kernel's list of sockets: address and port in hexadecimal, 0A for one that listens.
  char acLine[32];
  std::snprintf(acLine, sizeof(acLine), "0100007F:%04X 00000000:0000 0A", Port());
  std::ifstream File("/proc/net/tcp");
  const std::string sSockets{std::istreambuf_iterator<char>(File), {}};
  EXPECT_THAT(sSockets, HasSubstr(acLine));
}

TEST_F(WebTest, ShowsTheStateOfTheBoard) {
  Connect("STM32F407IE");
  Load(CFirmware::Counter(0x08000000));
  for (int i = 0; i < 3; ++i) ASSERT_EQ(API.VNODEARM_Step(), 0);
  ASSERT_NE(API.VNODEARM_SetBPEx(0x08000180, VNODE_BP_IMP_HW | VNODE_BP_THUMB), 0);
  VNODEARM_DATA_EVENT Event = {sizeof(Event), 1, 0x20000100, 3, 7, 0, 1, 0};
  U32 Handle = 0;
  ASSERT_GE(API.VNODEARM_SetDataEvent(&Event, &Handle), 0);
  ASSERT_EQ(Exec("sim.fail SetBPEx 2 -1 AFTER 1"), "");
  const QJsonObject Halted = State();
  EXPECT_EQ(Halted[u"target"]["state"_L1], u"halted"_s);
  EXPECT_EQ(Halted[u"target"]["registers"_L1]["PC"_L1].toInteger(), PC());
  EXPECT_EQ(Halted[u"device"]["memories"_L1].toArray().size(), 3);
  EXPECT_EQ(Halted[u"breakpoints"].toArray().at(0)["implementation"_L1], u"breakpoint unit"_s);
  EXPECT_THAT(Request("GET /", OwnHost()), testing::AllOf(HasSubstr("0x08000180"), HasSubstr("0x20000100"),
                                                          HasSubstr("sim.fail SetBPEx"), HasSubstr("STM32F407IE")));
  const auto Channels = [this] { return State()[u"channels"].toVariant().toStringList().join(u'|').toStdString(); };
  EXPECT_EQ(Channels(), "");
  ASSERT_GE(API.VNODEARM_SWO_EnableTarget(64'000'000, 1'000'000, 0, 5), 0);
  const VNODE_HSS_BLOCK Block = {CFirmware::COUNTER, 4, 0, 0};
  ASSERT_EQ(API.VNODE_HSS_Start(&Block, 1, 1000, 0), 0);
  ASSERT_EQ(API.VNODE_RTTERMINAL_Control(0, nullptr), 0);
  EXPECT_EQ(Channels(), "SWO, ports 0x00000005|high-speed sampling|RTT, no control block found");
  EXPECT_THAT(Request("GET /", OwnHost()), HasSubstr("SWO, ports 0x00000005"));
  API.VNODEARM_SWO_DisableTarget(0xFFFFFFFF);
  API.VNODE_HSS_Stop();
  API.VNODE_RTTERMINAL_Control(1, nullptr);
  EXPECT_EQ(Channels(), "");
  API.VNODEARM_GoEx(0, 0);
  const QJsonValue Running = State()[u"target"];
  EXPECT_EQ(Running["state"_L1], u"running"_s);
  EXPECT_TRUE(Running["registers"_L1].toObject().isEmpty());
  Exec("sim.lose-connection 0");
  API.VNODEARM_IsHalted();
  EXPECT_EQ(RunState(), "connection lost");
}

TEST_F(WebTest, TellsSleepAndLockup) {
  Connect("Cortex-M3");
  Load(CFirmware::Ticker(0, 1'000'000));
  API.VNODEARM_GoEx(0, 0);
  for (const char* sState : {"asleep", "lockup"}) {
    EXPECT_TRUE(WaitFor([&] { return RunState() == sState; })) << sState << ", " << RunState();
    API.VNODEARM_Halt();
    Load(CFirmware(0).Code(CFirmware::ENTRY, {0xDE00}));
    API.VNODEARM_GoEx(0, 0);
  }
}

TEST_F(WebTest, AnswersWhileTheLibraryIsBusy) {
  Connect("Cortex-M3");
  EXPECT_EQ(RunState(), "halted");
  ASSERT_EQ(Exec("sim.slow 3000"), "");
  const U32 OpenPort = Port();
  std::atomic<bool> bReturned{false};
  std::thread Slow([&] {
    API.VNODEARM_IsHalted();
    bReturned = true;
  });
  QJsonObject Busy;
  EXPECT_TRUE(WaitFor([&] { return bReturned || (Busy = StateAt(OpenPort))[u"probe"]["busy"_L1].toBool(); }));
  EXPECT_FALSE(bReturned) << "the answer comes meanwhile";
  EXPECT_EQ(Busy[u"target"]["state"_L1], u"halted"_s) << "the last known state";
  Slow.join();
  EXPECT_FALSE(State()[u"probe"]["busy"_L1].toBool());
}

TEST_F(WebTest, ClosesWhileRequestsArrive) {
  Connect("Cortex-M3");
  for (int i = 0; i < 20; ++i) {
    const U32 OpenPort = Port();
    std::thread Reader([OpenPort] {
      while (!Get(OpenPort, "/").empty()) {
      }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(i));
    API.VNODEARM_Close();
    Reader.join();
    ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  }
}

TEST_F(WebTest, TextsOfUsersAreEscaped) {
  const std::string sPath = testing::TempDir() + "vnode_web_" + std::to_string(getpid()) + ".txt";
  std::ofstream(sPath) << R"(a"<b>&\, Me <i>, Cortex-M3, 10, 20, -, 0x20000000+2K)" << '\n';
  ASSERT_EQ(Exec("DeviceListFile=" + sPath), "");
  std::remove(sPath.c_str());
  ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  ASSERT_EQ(Exec(R"(device=a"<b>&\)"), "");
  EXPECT_EQ(State()[u"device"]["name"_L1], uR"(a"<b>&\)"_s);
  const std::string sPage = Request("GET /", OwnHost());
  EXPECT_THAT(sPage, testing::AllOf(HasSubstr(R"(a&quot;&lt;b&gt;&amp;\)"), HasSubstr("Me &lt;i&gt;")));
  EXPECT_THAT(sPage, Not(HasSubstr("<b>")));
}
