// The script's host: loading, hooks, and commands as script functions.

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script/text_file.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/log/console_print.h"
#include "shell/settings/colors.h"
#include "tests/common/files.h"

namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* LOAD_ONLY = "void OnProjectLoad (void) { Window.Show(\"loaded\"); }";

constexpr I32 ANY_COLOR = -1;

std::vector<std::string> ConsoleLines(I32 ColorID = CONSOLE_COLOR_ERROR) {
  std::vector<std::string> Lines;
  const auto Keep = [&](const CONSOLE_MSG& Msg) {
    if (ColorID == ANY_COLOR || Msg.ColorID == ColorID) Lines.push_back(Msg.Text);
  };
  while (DrainConsole(Keep)) continue;
  return Lines;
}

class CVScriptTest : public testing::Test {
protected:
  CVScriptTest() {
    VScript::SetHost({});
    ConsoleLines();
    for (const U32 ID : {ACTION_WINDOW_SHOW, ACTION_UTIL_SLEEP}) Record(ID);
  }
  ~CVScriptTest() override {
    for (const U32 ID : m_Handled) UnregisterActionHandler(ID);
    VScript::SetHost({});
    VScript::Close();
  }

  void Handle(U32 ID, const std::function<void()>& Handler) {
    m_Handled.push_back(ID);
    RegisterActionHandler(ID, Handler);
  }
  // Keeps the arguments of each run of a command.
  void Record(U32 ID) {
    Handle(ID, [this, ID] { m_Calls.push_back(GetActionArgs(ID).join(u'|').toStdString()); });
  }

  QString Path() const { return m_Dir.filePath(u"test.vdebug"_s); }
  int Load(const QByteArray& Text) { return VScript::Load(WriteBytes(Path(), Text)); }
  static std::string ErrorText() { return VScript::GetErrorText().toStdString(); }
  // Runs statements as OnProjectLoad.
  int Run(const QByteArray& Statements) {
    EXPECT_EQ(0, Load("void OnProjectLoad (void) {" + Statements + "}"));
    const int Result = VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    EXPECT_FALSE(VScript::HasError()) << ErrorText();
    return Result;
  }

  std::vector<std::string> m_Calls;

private:
  QTemporaryDir m_Dir;
  std::vector<U32> m_Handled;
};

TEST_F(CVScriptTest, AFailingHookStopsTheScriptUntilTheNextLoad) {
  ASSERT_EQ(
      0, Load("void OnProjectLoad (void) {\n  Window.Show(\"a\");\n  Window.Show(\"b\") \n}\nvoid DebugStart () {}"));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_EQ("Expected a ';' at line 4", ErrorText());
  EXPECT_EQ(u"Window.Show(\"b\") \n}\nvoid DebugStart () {}"_s, VScript::GetErrorStatement());
  EXPECT_THAT(m_Calls, ElementsAre("a", "b"));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_DEBUG_START));
  EXPECT_EQ(0, Load(LOAD_ONLY));
  EXPECT_EQ(0, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_EQ("loaded", m_Calls.back());
  EXPECT_EQ(-2, VScript::ExecFunction(HOOK_DEBUG_START));
  EXPECT_FALSE(VScript::HasError()) << "a hook that the project leaves out is no error";
}

TEST_F(CVScriptTest, AFileCountsAsChangedWhenItsTextIs) {
  ASSERT_EQ(0, Load(LOAD_ONLY));
  ASSERT_TRUE(WriteTextFile(Path(), QString::fromLatin1(LOAD_ONLY)));
  EXPECT_FALSE(VScript::IsFileChanged()) << "saved again with the same text";
  EXPECT_EQ(0, VScript::Reload());
  ASSERT_TRUE(WriteTextFile(Path(), u"void OnProjectLoad (void) {}\nvoid DebugStart (void) {}\n"_s));
  EXPECT_TRUE(VScript::IsFileChanged());
  EXPECT_EQ(1, VScript::Reload());
  EXPECT_TRUE(VScript::HasFunction(HOOK_DEBUG_START));
  EXPECT_EQ(Path(), VScript::GetFilePath());
  EXPECT_FALSE(VScript::IsFileChanged());
  EXPECT_THAT(m_Calls, IsEmpty()) << "a reload runs nothing";
  ASSERT_EQ(0, VScript::LoadText(u"void OnProjectLoad (void) {\n}\n"_s));
  EXPECT_TRUE(VScript::IsFileChanged());
  ASSERT_TRUE(VScript::SaveText(Path()));
  EXPECT_FALSE(VScript::IsFileChanged()) << "other line ends are no change by somebody else";
  EXPECT_EQ("void OnProjectLoad (void) {\r\n}\r\n", ReadBytes(Path()));
  QFile::remove(Path());
  EXPECT_FALSE(VScript::IsFileChanged());
  EXPECT_EQ(-1, Load(""));
  EXPECT_FALSE(VScript::IsFileChanged()) << "an empty file is not loaded again and again";
}

TEST_F(CVScriptTest, CommandsGetTheirArgumentsAsTexts) {
  for (const U32 ID : {ACTION_BREAK_SET_ON_DATA, ACTION_BREAK_SET_EX, ACTION_BREAK_SET_ON_SYMBOL}) Record(ID);
  Run("int x; x = -5; Util.Sleep(x);"
      "Break.SetOnData(0x20000000, 3, AT_READ_WRITE, AW_HALF_WORD, 5, 0xFFFFFFFF);"
      "Break.SetEx(0x80000ab, BP_TYPE_HARD);"
      "Break.SetOnSymbol(\"Counter\", AT_WRITE_ONLY, 99, 1, 0);"
      "Window.Show(\"\xC3\xA4, \\t\\\\\");");
  EXPECT_THAT(m_Calls, ElementsAre("-5", "0x20000000|0x3|AT_READ_WRITE|AW_HALF_WORD|0x5|0xFFFFFFFF",
                                   "0x80000AB|BP_TYPE_HARD", "Counter|AT_WRITE_ONLY|99|0x1|0x0", "\xC3\xA4, \t\\"));
}

TEST_F(CVScriptTest, ANumberIsNoString) {
  Run("Util.Sleep(Window.Show(26) == 0xFFFFFFFF); Util.Sleep(Util.Log(-1) == 0xFFFFFFFF);");
  Run("Util.Sleep(Util.Sleep(\"1\") == 0xFFFFFFFF);");
  EXPECT_THAT(m_Calls, ElementsAre("1", "1", "1"));
  EXPECT_THAT(ConsoleLines(), ElementsAre("Invalid user function parameter: 0x1A (26)",
                                          "Invalid user function parameter: 0xFFFFFFFFFFFFFFFF "
                                          "(18446744073709551615)",
                                          "Invalid user function parameter: \"1\""));
}

TEST_F(CVScriptTest, TheInnermostHookIsBlamed) {
  Handle(ACTION_DEBUG_CONNECT, [] { VScript::ExecFunction(HOOK_AFTER_TARGET_CONNECT); });
  ASSERT_EQ(0, Load("void OnProjectLoad (void) { Debug.Connect(); Util.Sleep(1); }\n"
                    "void AfterTargetConnect (void) { int i; i = 0; i /= i; }"));
  VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
  EXPECT_EQ("Error in script function void AfterTargetConnect (void);", ErrorText());
  EXPECT_THAT(m_Calls, IsEmpty());
}

TEST_F(CVScriptTest, AnErrorShowsItsPlace) {
  const QByteArray Spaces(80, ' ');
  // script, error, the lines that show it, the first one without the path
  const std::tuple<QByteArray, const char*, QByteArray> aCases[] = {
      {"void OnProjectLoad (void) {\r\n\tUtil.Sleep (x);\r\n}\r\n", "Unknown identifier at line 2",
       ":2:14\n\tUtil.Sleep (x);\n\t            ^"},
      {"void OnProjectLoad (void) {\n  int a;\n  Window.Show(\"\xC3\xA4\"); a = 5 / 0; }",
       "Error in script function void OnProjectLoad (void);",
       ":3:29\n  Window.Show(\"\xC3\xA4\"); a = 5 / 0; }\n                            ^"},
      {"void OnProjectLoad (void) {\n  int a[2;\n}", "Error in script function void OnProjectLoad (void);",
       ":2:10\n  int a[2;\n         ^"},
      {"void OnProjectLoad (void) {\n  Window.Show(\"a\")\n}", "Expected a ';' at line 3",
       ":3:1\n  Window.Show(\"a\")\n}\n^"},
      {"void OnProjectLoad (void) {\n  {\n\n\n\n", "Unexpected end of file looking for '}' at line 6",
       ":6:1\nvoid OnProjectLoad (void) {\n...\n\n^"},
      {"void OnProjectLoad (void) { Util.Sleep(" + QByteArray(200, ' ') + "x" + QByteArray(200, '1') + ");}",
       "Unknown identifier at line 1", ":1:240\n" + Spaces + "x" + QByteArray(39, '1') + "\n" + Spaces + "^"},
  };
  for (const auto& [Text, sError, Excerpt] : aCases) {
    ASSERT_EQ(0, Load(Text));
    VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    EXPECT_EQ(sError, ErrorText());
    EXPECT_EQ(Path().toStdString() + Excerpt.toStdString(), VScript::GetErrorExcerpt().join(u'\n').toStdString());
  }
  EXPECT_EQ(0, Load(LOAD_ONLY));
  EXPECT_TRUE(VScript::GetErrorExcerpt().isEmpty());
}

TEST_F(CVScriptTest, AScriptThatIsDroppedWhileItRunsLeavesNoTrace) {
  Handle(ACTION_DEBUG_CONNECT, [] {
    VScript::RequestClose();
    VScript::Close();
  });
  for (const char* const sBody : {"Debug.Connect(); Window.Show(\"behind\");", "Debug.Connect()"}) {
    ASSERT_EQ(0, Load(QByteArray("void OnProjectLoad (void) {") + sBody + "}"));
    VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    EXPECT_FALSE(VScript::HasError()) << sBody;
    EXPECT_FALSE(VScript::IsLoaded());
    EXPECT_EQ(0, VScript::CallLevel());
  }
  EXPECT_THAT(m_Calls, IsEmpty());
}

}  // namespace
