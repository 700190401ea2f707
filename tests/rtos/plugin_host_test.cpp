// The plug-in host with a real plug-in, and the services that it offers with a real program.

#include <gtest/gtest.h>

#include <QLibrary>

#include "program/database/elfapi.h"
#include "rtos/plugin_host.h"
#include "rtos/plugin_services.h"

using namespace Qt::StringLiterals;

namespace {

QString Plugin(const char* sVariant) {
  return QStringLiteral(VEXOR_TEST_BIN "/sample_plugin_") + QLatin1String(sVariant) + u".so"_s;
}

class CPluginHostTest : public testing::Test {
protected:
  ~CPluginHostTest() override { Host.Unload(); }

  const PLUGIN_HOST_API* Services() {
    using HOST_FUNC = const PLUGIN_HOST_API* (*)();
    return reinterpret_cast<HOST_FUNC>(QLibrary::resolve(Host.GetPath(), "SAMPLE_Host"))();
  }
  void SetTasks(U32 NumTasks, U32 Current) {
    using SET_FUNC = void (*)(U32, U32);
    reinterpret_cast<SET_FUNC>(QLibrary::resolve(Host.GetPath(), "SAMPLE_Set"))(NumTasks, Current);
  }

  CPluginHost& Host = CPluginHost::Get();
};

}  // namespace

TEST_F(CPluginHostTest, RefusesWhatIsNoPlugin) {
  const std::pair<QString, const char*> aCase[] = {
      {Plugin("none"), "Plugin libary was not found or could not be loaded"},
      {QStringLiteral(VEXOR_SOURCE_DIR "/README.md"), "Plugin libary was not found or could not be loaded"},
      {Plugin("missing"), "Plugin does not provide all required functions"},
      {Plugin("no_name"), "Plugin does not provide a valid name"},
      {Plugin("no_api"), "Plugin does not provide required API structure"},
  };
  for (const auto& [sPath, sError] : aCase) {
    ASSERT_TRUE(Host.Load(Plugin("good")));
    EXPECT_FALSE(Host.Load(sPath)) << sError;
    EXPECT_EQ(Host.GetLastError(), QLatin1String(sError));
    EXPECT_FALSE(Host.IsLoaded() || Host.HasCurrTask()) << sError;
    EXPECT_EQ(Host.OnDebugStart(), -1);
    EXPECT_EQ(Host.GetName(), QString()) << sError;
  }
}

TEST_F(CPluginHostTest, AsksAPluginForWhatItOffers) {
  EXPECT_EQ(Host.GetTaskNames(), QStringList());
  ASSERT_TRUE(Host.Load(Plugin("good"))) << Host.GetLastError().toStdString();
  EXPECT_EQ(Host.GetName(), u"Sample OS"_s);
  EXPECT_EQ(Host.GetVersion(), 10203u);
  EXPECT_TRUE(Host.SupportsInfo(0));
  EXPECT_FALSE(Host.SupportsInfo(1));
  EXPECT_EQ(Host.OnDebugStart(), 11);
  EXPECT_EQ(Host.OnUpdate(0), -1);  // not offered
  SetTasks(2, 8);
  EXPECT_EQ(Host.GetTaskNames(), QStringList({"idle", "logger"}));
  EXPECT_EQ(Host.GetTaskName(Host.GetCurrTaskID()), u"logger"_s);
  SetTasks(1, 7);  // a task that has ended stays known
  EXPECT_EQ(Host.GetTaskId(u"logger"_s), 8u);
  EXPECT_EQ(Host.GetTaskId(u"main"_s), 0u);
  SetTasks(3, 7);
  EXPECT_EQ(Host.GetTaskName(9), QString(264, u'x'));
  SetTasks(0xFFFFFFFF, 7);
  EXPECT_EQ(Host.GetTaskNames().size(), 3);
  ASSERT_TRUE(Host.Load(Plugin("good")));
  SetTasks(0, 0);
  EXPECT_EQ(Host.GetTaskNames(), QStringList());
}

TEST_F(CPluginHostTest, ServicesAnswerFromTheProgram) {
  ASSERT_TRUE(Host.Load(Plugin("good")));
  const PLUGIN_HOST_API& API = *Services();
  EXPECT_EQ(API.NumFuncs, 17u);
  ASSERT_GE(ELFAPI_Load(QStringLiteral(VEXOR_SOURCE_DIR "/tests/corpus/data/gcc_v5_O0.elf")), 0);
  // As gdb has them: ptype /o, print &. Symbol and member; result, address and size.
  const std::tuple<const char*, const char*, I32, U32, U32> aCase[] = {
      {"tail", nullptr, 0, 0x200000B0, 4},      {"tail", "count", 0, 0, 1},  // behind the pointer
      {"no_such_symbol", nullptr, -1, 0, 0},    {"tail", "no_such_member", -1, 0, 0},
      {"main", "member_of_a_number", -1, 0, 0}, {"node", "real", 0, 8, 4},  // in a union without a name
  };
  for (const auto& [sSymbol, sMember, Result, Addr, Size] : aCase) {
    SCOPED_TRACE(testing::Message() << sSymbol << "." << (sMember ? sMember : ""));
    U32 FoundAddr = 1, FoundSize = 1;
    EXPECT_EQ(API.GetSymInfo(sSymbol, sMember, &FoundAddr, &FoundSize), Result);
    EXPECT_EQ(FoundAddr, Addr);
    EXPECT_EQ(FoundSize, Size);
  }
  ELFAPI_Unload();
  U8 Byte = 0;
  EXPECT_EQ(API.ReadMem(0x20000000, 0, &Byte), -1);
  EXPECT_EQ(API.ReadMem(0x20000000, 64'000'000, &Byte), -1);
  EXPECT_EQ(API.ReadMem(0x20000000, 1, &Byte), -1);  // there is no target
}

TEST_F(CPluginHostTest, ValuesAreFilledUpAndCut) {
  ASSERT_TRUE(Host.Load(Plugin("good")));
  PLUGIN_SERVICES Evaluating;
  Evaluating.Evaluate = [](const QString& sExpression, QByteArray* pValue) {
    *pValue = "\x01\x02";
    return sExpression == u"bad"_s ? -9 : 0;
  };
  char acValue[4] = {9, 9, 9, 9};
  EXPECT_EQ(Services()->GetVar("x", acValue, 3), -5);  // nobody evaluates
  SetPluginServices(Evaluating);
  EXPECT_EQ(Services()->GetVar("x", acValue, 3), 0);
  EXPECT_EQ(QByteArray(acValue, 4), QByteArray("\x01\x02\x00\x09", 4));
  EXPECT_EQ(Services()->GetVar("bad", acValue, 1), -9);
  EXPECT_EQ(Services()->GetVar("x", acValue, 0), -5);
  EXPECT_EQ(Services()->GetVar(nullptr, acValue, 1), -5);
  SetPluginServices({});
}
