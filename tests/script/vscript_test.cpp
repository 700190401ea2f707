// The script's host: loading, hooks, and commands as script functions.

#include <QFile>
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
#include "shell/settings/sys_vars.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* LOAD_ONLY = "void OnProjectLoad (void) { Window.Show(\"loaded\"); }";

std::vector<std::string> ConsoleErrors() {
  std::vector<std::string> Lines;
  while (DrainConsole([&](const CONSOLE_MSG& Msg) {
    if (Msg.ColorID == CONSOLE_COLOR_ERROR) Lines.push_back(Msg.Text);
  })) {
  }
  return Lines;
}

class CVScriptTest : public testing::Test {
protected:
  CVScriptTest() {
    VScript::SetHost({});
    ConsoleErrors();
    Record(ACTION_WINDOW_SHOW);
    Record(ACTION_UTIL_SLEEP);
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
    Handle(ID, [this, ID] { m_Calls.push_back(GetActionArgs(ID).join(QLatin1Char('|')).toStdString()); });
  }

  QString Path() const { return m_Dir.filePath(QStringLiteral("test.vdebug")); }
  int Load(const QByteArray& Text) {
    QFile File(Path());
    EXPECT_TRUE(File.open(QIODevice::WriteOnly));
    File.write(Text);
    File.close();
    return VScript::Load(Path());
  }
  // Runs statements as OnProjectLoad.
  int Run(const QByteArray& Statements) {
    EXPECT_EQ(0, Load("void OnProjectLoad (void) {" + Statements + "}"));
    const int Result = VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    EXPECT_FALSE(VScript::HasError()) << VScript::GetErrorText().toStdString();
    return Result;
  }

  std::vector<std::string> m_Calls;

private:
  QTemporaryDir m_Dir;
  std::vector<U32> m_Handled;
};

TEST_F(CVScriptTest, LoadTellsWhatIsWrong) {
  struct LOAD_CASE {
    const char* sText;
    int Result;
    const char* sError;
    bool Loaded;
  };
  const LOAD_CASE aCases[] = {
      {"", -1, "empty file", false},
      {"void AfterTargetHalt (void) {}", -1, "Required user function missing: void OnProjectLoad (void);", true},
      {"\nint x;", 0, "Expected a '(' at line 2", true},
      {"void OnProjectLoad (void) {\n  nonsense\n}\n/*", 0, "C-comment has not been closed properly at line 4", true},
      {"void OnProjectLoad (void) { nonsense }", 0, "", true},
  };
  for (const LOAD_CASE& Case : aCases) {
    EXPECT_EQ(Case.Result, Load(Case.sText)) << Case.sText;
    EXPECT_EQ(Case.sError, VScript::GetErrorText().toStdString()) << Case.sText;
    EXPECT_EQ(*Case.sError != 0, VScript::HasError()) << Case.sText;
    EXPECT_EQ(*Case.sError == 0, VScript::HasFunction(HOOK_ON_PROJECT_LOAD)) << Case.sText;
    EXPECT_EQ(Case.Loaded, VScript::IsLoaded()) << Case.sText;
    EXPECT_EQ(Path(), VScript::GetFilePath());
  }
  EXPECT_EQ(-1, VScript::Load(Path() + QStringLiteral(".missing")));
  EXPECT_EQ(QStringLiteral("file not found"), VScript::GetErrorText());
}

TEST_F(CVScriptTest, AFailingHookStopsTheScriptUntilTheNextLoad) {
  ASSERT_EQ(
      0, Load("void OnProjectLoad (void) {\n  Window.Show(\"a\");\n  Window.Show(\"b\") \n}\nvoid DebugStart () {}"));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_EQ(QStringLiteral("Expected a ';' at line 4"), VScript::GetErrorText());
  EXPECT_EQ(QStringLiteral("Window.Show(\"b\") \n}\nvoid DebugStart () {}"), VScript::GetErrorStatement());
  EXPECT_THAT(m_Calls, ElementsAre("a", "b"));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_DEBUG_START));
  EXPECT_EQ(0, Load(LOAD_ONLY));
  EXPECT_EQ(0, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_EQ("loaded", m_Calls.back());
  EXPECT_EQ(-2, VScript::ExecFunction(HOOK_DEBUG_START));
  EXPECT_FALSE(VScript::HasError()) << "a hook that the project leaves out is no error";
}

TEST_F(CVScriptTest, AFileCountsAsChangedWhenItsTextIs) {
  EXPECT_FALSE(VScript::IsFileChanged());
  ASSERT_EQ(0, Load(LOAD_ONLY));
  EXPECT_FALSE(VScript::IsFileChanged());
  ASSERT_TRUE(WriteTextFile(Path(), QString::fromLatin1(LOAD_ONLY)));
  EXPECT_FALSE(VScript::IsFileChanged()) << "saved again with the same text";
  EXPECT_EQ(0, VScript::Reload());
  ASSERT_TRUE(WriteTextFile(Path(), QStringLiteral("void OnProjectLoad (void) {}\nvoid DebugStart (void) {}\n")));
  EXPECT_TRUE(VScript::IsFileChanged());
  EXPECT_EQ(1, VScript::Reload());
  EXPECT_TRUE(VScript::HasFunction(HOOK_DEBUG_START));
  EXPECT_EQ(Path(), VScript::GetFilePath());
  EXPECT_FALSE(VScript::IsFileChanged());
  EXPECT_THAT(m_Calls, IsEmpty()) << "a reload runs nothing";
  ASSERT_EQ(0, VScript::LoadText(QStringLiteral("void OnProjectLoad (void) {\n}\n")));
  EXPECT_TRUE(VScript::IsFileChanged());
  ASSERT_TRUE(VScript::SaveText(Path()));
  EXPECT_FALSE(VScript::IsFileChanged()) << "other line ends are no change by somebody else";
  bool bOk = false;
  EXPECT_EQ(QStringLiteral("void OnProjectLoad (void) {\r\n}\r\n"), ReadTextFile(Path(), &bOk));
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
  EXPECT_THAT(ConsoleErrors(), ElementsAre("Invalid user function parameter: 0x1A (26)",
                                           "Invalid user function parameter: 0xFFFFFFFFFFFFFFFF "
                                           "(18446744073709551615)",
                                           "Invalid user function parameter: \"1\""));
}

TEST_F(CVScriptTest, MessagesAreShownWithoutTheirCommand) {
  Run("Util.Sleep(Util.Log(\"one\")); Util.Log(\"\"); Util.Log(\"two\");");
  std::vector<std::string> Lines;
  DrainConsole([&](const CONSOLE_MSG& Msg) {
    if (Msg.ColorID == CONSOLE_COLOR_SCRIPT) Lines.push_back(Msg.Text);
    EXPECT_EQ(std::string::npos, std::string(Msg.Text).find("Util.Log")) << Msg.Text;
  });
  EXPECT_THAT(Lines, ElementsAre("one", "two"));
  EXPECT_THAT(m_Calls, ElementsAre("0"));
}

TEST_F(CVScriptTest, ResultsOfCommandsAreUnsigned) {
  Handle(ACTION_ELF_GET_BASE_ADDR, [] { SetActionResult(ACTION_ELF_GET_BASE_ADDR, 0xFFFFFFFF); });
  Handle(ACTION_DEBUG_RUN_TO, [] { SetActionResult(ACTION_DEBUG_RUN_TO, static_cast<U64>(-1)); });
  Run("Util.Sleep(Elf.GetBaseAddr() == 0xFFFFFFFF); Util.Sleep(Debug.RunTo(\"main\") == 0xFFFFFFFF);"
      "Util.Sleep(Elf.GetBaseAddr() < 0); Util.Sleep(Debug.Halt() == 0xFFFFFFFF);");
  EXPECT_THAT(m_Calls, ElementsAre("1", "1", "0", "1")) << "the last command has no handler";
}

TEST_F(CVScriptTest, ConstantsOfAllTablesAreVisible) {
  Run("Util.Sleep(RM_BREAK_AT_MAIN == RM_BREAK_AT_SYMBOL); Util.Sleep(VAR_ACCESS_WIDTH == PREF_SHOW_ASM_CODE_PROFILE);"
      "Util.Sleep(COLOR_LOGGING_SCRIPT); Util.Sleep(FONT_APP_MONO != FONT_APP_MONO);");
  EXPECT_THAT(m_Calls, ElementsAre("1", "0", std::to_string(CONSOLE_COLOR_SCRIPT), "0"));
}

TEST_F(CVScriptTest, HooksNest) {
  std::vector<int> Running;
  Handle(ACTION_DEBUG_CONNECT, [&] {
    EXPECT_EQ(0, VScript::ExecFunction(HOOK_AFTER_TARGET_CONNECT));
    Running = {VScript::CurrentFuncID(), VScript::CallLevel()};
  });
  ASSERT_EQ(0, Load("void OnProjectLoad (void) { int i; i = 7; Debug.Connect(); Util.Sleep(i); i = 1 / (i - 7); }\n"
                    "void AfterTargetConnect (void) { int i; i = 9; Util.Sleep(i); }"));
  EXPECT_GT(0, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_THAT(m_Calls, ElementsAre("9", "7"));
  EXPECT_THAT(Running, ElementsAre(static_cast<int>(HOOK_ON_PROJECT_LOAD), 1));
  EXPECT_EQ(QStringLiteral("Error in script function void OnProjectLoad (void);"), VScript::GetErrorText());
  EXPECT_EQ(-1, VScript::GetErrorLine());
  EXPECT_EQ(0, VScript::CallLevel());
  EXPECT_EQ(HOOK_NONE, VScript::CurrentFuncID());
}

TEST_F(CVScriptTest, TheInnermostHookIsBlamed) {
  Handle(ACTION_DEBUG_CONNECT, [] { VScript::ExecFunction(HOOK_AFTER_TARGET_CONNECT); });
  ASSERT_EQ(0, Load("void OnProjectLoad (void) { Debug.Connect(); Util.Sleep(1); }\n"
                    "void AfterTargetConnect (void) { int i; i = 0; i /= i; }"));
  VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
  EXPECT_EQ(QStringLiteral("Error in script function void AfterTargetConnect (void);"), VScript::GetErrorText());
  EXPECT_THAT(m_Calls, IsEmpty());
}

TEST_F(CVScriptTest, AHookOfItsOwnOperationEndsAtTheCallLevel) {
  int NumRuns = 0;
  Handle(ACTION_DEBUG_RESET, [&] {
    ++NumRuns;
    VScript::ExecFunction(HOOK_AFTER_TARGET_RESET);
  });
  ASSERT_EQ(0, Load("void OnProjectLoad (void) {} void AfterTargetReset (void) { Debug.Reset(); }"));
  EXPECT_EQ(0, VScript::ExecFunction(HOOK_AFTER_TARGET_RESET));
  EXPECT_EQ(11, NumRuns);
  EXPECT_THAT(ConsoleErrors(),
              Contains("Error executing script function \"AfterTargetReset\": maximum call level reached."));
  EXPECT_EQ(0, VScript::CallLevel());
  EXPECT_FALSE(VScript::HasError());
}

TEST_F(CVScriptTest, RunningFunctionsEndWhenTheHostWantsToClose) {
  const char* const aBodies[] = {
      "while (1) { }",
      "do { } while (1);",
      "f(60);",
      "while (f(60)) { }",
  };
  for (const char* const sBody : aBodies) {
    ASSERT_EQ(0, Load(QByteArray("int f (int n) { if (n < 1) return 1; return f(n - 1) + f(n - 1); }\n"
                                 "void OnProjectLoad (void) { ") +
                      sBody + " Window.Show(\"behind\"); }"));
    VScript::SetHost({{}, [] { VScript::RequestClose(); }, {}});
    EXPECT_EQ(0, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD)) << sBody;
    VScript::SetHost({});
    EXPECT_FALSE(VScript::HasError()) << sBody;
    EXPECT_FALSE(VScript::HasFunction(HOOK_ON_PROJECT_LOAD)) << sBody;
    EXPECT_EQ(0, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD)) << sBody << ": refused, but no failure";
  }
  EXPECT_THAT(m_Calls, IsEmpty());
  EXPECT_EQ(0, Load(LOAD_ONLY));
  EXPECT_TRUE(VScript::HasFunction(HOOK_ON_PROJECT_LOAD));
}

TEST_F(CVScriptTest, AnErrorShowsItsPlace) {
  struct EXCERPT_CASE {
    QByteArray Text;
    const char* sError;
    std::vector<std::string> Excerpt;
  };
  const EXCERPT_CASE aCases[] = {
      {"void OnProjectLoad (void) {\r\n\tUtil.Sleep (x);\r\n}\r\n",
       "Unknown identifier at line 2",
       {":2:14", "\tUtil.Sleep (x);", "\t            ^"}},
      {"void OnProjectLoad (void) {\n  int a;\n  Window.Show(\"\xC3\xA4\"); a = 5 / 0; }",
       "Error in script function void OnProjectLoad (void);",
       {":3:29", "  Window.Show(\"\xC3\xA4\"); a = 5 / 0; }", "                            ^"}},
      {"void OnProjectLoad (void) {\n  int a[2;\n}",
       "Error in script function void OnProjectLoad (void);",
       {":2:10", "  int a[2;", "         ^"}},
      {"void OnProjectLoad (void) {\n  Window.Show(\"a\")\n}",
       "Expected a ';' at line 3",
       {":3:1", "  Window.Show(\"a\")", "}", "^"}},
      {"void OnProjectLoad (void) {\n  {\n\n\n\n",
       "Unexpected end of file looking for '}' at line 6",
       {":6:1", "void OnProjectLoad (void) {", "...", "", "^"}},
      {"void OnProjectLoad (void) { Util.Sleep(" + QByteArray(200, ' ') + "x" + QByteArray(200, '1') + ");}",
       "Unknown identifier at line 1",
       {":1:240", std::string(80, ' ') + "x" + std::string(39, '1'), std::string(80, ' ') + "^"}},
  };
  for (const EXCERPT_CASE& Case : aCases) {
    ASSERT_EQ(0, Load(Case.Text));
    VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    EXPECT_EQ(Case.sError, VScript::GetErrorText().toStdString());
    EXPECT_TRUE(VScript::HasError());
    std::vector<std::string> Excerpt;
    for (const QString& sLine : VScript::GetErrorExcerpt()) Excerpt.push_back(sLine.toStdString());
    ASSERT_FALSE(Excerpt.empty());
    EXPECT_EQ(Path().toStdString() + Case.Excerpt[0], Excerpt[0]);
    Excerpt[0] = Case.Excerpt[0];
    EXPECT_EQ(Case.Excerpt, Excerpt);
  }
  EXPECT_EQ(0, Load(LOAD_ONLY));
  EXPECT_TRUE(VScript::GetErrorExcerpt().isEmpty());
}

TEST_F(CVScriptTest, AnEndlessHookCanBeStopped) {
  std::vector<bool> Running;
  VSCRIPT_HOST Host;
  Host.ProcessEvents = [] {
    EXPECT_FALSE(VScript::IsStopping());
    VScript::Stop();
    EXPECT_TRUE(VScript::IsStopping());
    EXPECT_GT(0, VScript::ExecFunction(HOOK_AFTER_TARGET_HALT)) << "no other hook begins";
  };
  Host.OnRunning = [&](bool bRunning) { Running.push_back(bRunning); };
  VScript::SetHost(Host);
  VScript::Stop();
  EXPECT_FALSE(VScript::IsStopping()) << "nothing runs";
  ASSERT_EQ(0, Load("void OnProjectLoad (void) {\n  while (1) { }\n}\n"
                    "void AfterTargetHalt (void) { Window.Show(\"never\"); }"));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_ON_PROJECT_LOAD));
  EXPECT_EQ(QStringLiteral("Script stopped by the user at line 2"), VScript::GetErrorText());
  EXPECT_FALSE(VScript::IsStopping());
  EXPECT_THAT(Running, ElementsAre(true, false));
  EXPECT_EQ(-1, VScript::ExecFunction(HOOK_AFTER_TARGET_HALT)) << "off until the next load";
  EXPECT_THAT(m_Calls, IsEmpty());
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
