// One call from each entry: linking, arguments, errors, results, echo, and what the console prints about it.

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_enable.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_link.h"
#include "shell/actions/builtin_commands.h"
#include "shell/actions/command_console.h"
#include "shell/log/console_print.h"
#include "tests/common/print.h"

using namespace Qt::StringLiterals;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Lines that wait in the console, errors marked with "!".
std::vector<std::string> Console() {
  std::vector<std::string> Lines;
  while (DrainConsole([&](const CONSOLE_MSG& Msg) {
    Lines.push_back((Msg.ColorID == CONSOLE_COLOR_ERROR ? "!" : "") + std::string(Msg.Text));
  })) {
  }
  return Lines;
}

// A window's worth of actions whose handlers are watched by the echo.
class CTestWindow : public QObject {
public:
  QAction* Add(const char* sName, const std::function<void()>& Handler) {
    auto* pAction = new QAction(this);
    pAction->setObjectName(QLatin1String(sName));
    ConnectAction(pAction, this, Handler);
    return pAction;
  }
};

class DispatchTest : public testing::Test {
protected:
  void SetUp() override { ClearConsoleRing(); }
  void TearDown() override {
    for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) UnregisterActionHandler(ID);
  }
};

TEST_F(DispatchTest, LinkingDecoratesAndTheLastOneOwnsTheRow) {
  CTestWindow First;
  CTestWindow Second;
  QAction* pFirst = First.Add("actionMemoryFill", [] {});
  QAction* pSecond = Second.Add("actionMemoryFill", [] {});
  First.Add("actionOfNobody", [] {});
  First.Add("", [] {});
  pSecond->setEnabled(false);
  LinkActions(&First);
  EXPECT_EQ(GetAction(ACTION_MEMORY_FILL), pFirst);
  EXPECT_EQ(FindActionID(pFirst), ACTION_MEMORY_FILL);
  EXPECT_EQ(pFirst->shortcut(), QKeySequence("Ctrl+F"));
  EXPECT_EQ(pFirst->toolTip(), "Fill memory (Ctrl+F)");
  EXPECT_TRUE(IsActionEnabled(ACTION_MEMORY_FILL, false));
  LinkActions(&Second);
  EXPECT_EQ(GetAction(ACTION_MEMORY_FILL), pSecond);
  EXPECT_FALSE(pFirst->isEnabled()) << "takes the state of its successor";
  EXPECT_FALSE(IsActionEnabled(ACTION_MEMORY_FILL, false));
  UnlinkActions(&First);
  EXPECT_EQ(GetAction(ACTION_MEMORY_FILL), pSecond);
  UnlinkActions(&Second);
  EXPECT_EQ(GetAction(ACTION_MEMORY_FILL), nullptr);
  EXPECT_EQ(GetHotkey(ACTION_MEMORY_FILL), QString());
  EXPECT_EQ(GetUnlinkedActions(), QStringList{"actionOfNobody"});
}

TEST_F(DispatchTest, ACommandWithoutAWindowCannotBeExecuted) {
  EXPECT_EQ(COMMAND_DISABLED, ExecuteCommand("Help.About()"));
  EXPECT_EQ(GetLastCommand().sError, "Command disabled");
  for (const U32 ID : {ACTION_HELP_ABOUT, NUM_ACTIONS, ACTION_ASM_EXPORT}) EXPECT_EQ(-1, TriggerAction(ID));
  EXPECT_EQ(-1, PerformAction(5000, 1));
  EXPECT_THAT(Console(), ElementsAre("Help.About: Command disabled", "Help.About: Command disabled"));
}

TEST_F(DispatchTest, WindowsTakeRowsOverFromHandlersAndGiveThemBack) {
  QString sTrace;
  RegisterActionHandler(ACTION_VIEW_LINE, [&] { sTrace += u'h'; });
  EXPECT_TRUE(IsServedByHandler(ACTION_VIEW_LINE));
  {
    CTestWindow Window;
    Window.Add("actionViewLine", [&] { sTrace += u'w'; });
    LinkActions(&Window);
    PerformAction(ACTION_VIEW_LINE, 1);
    UnlinkActions(&Window);
    PerformAction(ACTION_VIEW_LINE, 1);
    LinkActions(&Window);
    PerformAction(ACTION_VIEW_LINE, 1);
  }
  PerformAction(ACTION_VIEW_LINE, 1);
  EXPECT_EQ(sTrace, "whwh");
}

TEST_F(DispatchTest, ArgumentsErrorsAndResultsOfOneCall) {
  QStringList Seen;
  RegisterActionHandler(ACTION_TARGET_SET_REG, [&] {
    Seen = GetActionArgs(ACTION_TARGET_SET_REG);
    if (!CheckActionArgs(ACTION_TARGET_SET_REG)) return;
    bool bOk = false;
    const I64 Value = GetActionArgNumber(ACTION_TARGET_SET_REG, 1, &bOk);
    if (!bOk) {
      SetActionError(ACTION_TARGET_SET_REG, ActionError::INVALID_PARAMETER, u"\"%1\""_s.arg(Seen.at(1)));
      return;
    }
    SetActionResult(ACTION_TARGET_SET_REG, static_cast<U64>(Value));
  });
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, "R0", "0x1F"), 31);
  EXPECT_EQ(Seen, (QStringList{"R0", "0x1F"}));
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, "\"R1\"", 7u), 7);
  EXPECT_EQ(Seen, (QStringList{"R1", "7"}));
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, "R0"), 7) << "an older result of the row";
  EXPECT_EQ(GetLastCommand().sError, "wrong parameter count");
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, 1, 2, 3), 7);
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand("target.setreg R0 zero"));
  EXPECT_THAT(Console(),
              ElementsAre("Target.SetReg (\"R0\", 0x1F);", "Target.SetReg (\"R1\", 7);", "Target.SetReg (\"R0\");",
                          "!Target.SetReg (\"R0\"): wrong parameter count", "Target.SetReg (\"1\", 2, 3);",
                          "!Target.SetReg (\"1\", 2, 3): wrong parameter count", "Target.SetReg (\"R0\", zero);",
                          "!Target.SetReg (\"R0\", zero): invalid parameter: \"zero\""));
  EXPECT_TRUE(GetActionArgs(ACTION_TARGET_SET_REG).isEmpty());
  EXPECT_TRUE(GetActionError(ACTION_TARGET_SET_REG).isEmpty());
}

TEST_F(DispatchTest, StoredArgumentsAreUsedWhenNoneAreGiven) {
  QString sSeen;
  RegisterActionHandler(ACTION_VIEW_SOURCE, [&] { sSeen = GetFirstActionArg(ACTION_VIEW_SOURCE); });
  SetActionArgs(ACTION_VIEW_SOURCE, "main");
  PerformAction(ACTION_VIEW_SOURCE);
  EXPECT_EQ(sSeen, "main");
  PerformAction(ACTION_VIEW_SOURCE);
  EXPECT_EQ(sSeen, QString()) << "gone after one run";
  EXPECT_EQ(GetLastCommand().sError, "wrong parameter count");
}

TEST_F(DispatchTest, EchoComesBeforeOrAfterTheHandlerAsTheRowSays) {
  RegisterActionHandler(ACTION_FILE_CLOSE_ALL, [] { PrintConsole("closing"); });
  RegisterActionHandler(ACTION_FILE_SAVE_ALL, [] { PrintConsole("saving"); });
  RegisterActionHandler(ACTION_WATCH, [] { PrintConsole("watching"); });
  RegisterActionHandler(ACTION_FILE_NEW_PROJECT, [] { SuppressEcho(ACTION_FILE_NEW_PROJECT); });
  PerformAction(ACTION_FILE_CLOSE_ALL);
  PerformAction(ACTION_FILE_SAVE_ALL);
  PerformAction(ACTION_WATCH, "x");
  PerformAction(ACTION_FILE_NEW_PROJECT);
  EXPECT_THAT(Console(), ElementsAre("closing", "File.CloseAll();", "File.SaveAll();", "saving", "watching"));
}

TEST_F(DispatchTest, EchoWaitsWhileTheCommandMayBeCompletedOrCalledOff) {
  QString sChosen;
  RegisterActionHandler(ACTION_FILE_OPEN, [&] {
    if (GetActionArgs(ACTION_FILE_OPEN).isEmpty() && sChosen.isEmpty()) return SuppressEcho(ACTION_FILE_OPEN);
    if (!sChosen.isEmpty()) SetActionArgs(ACTION_FILE_OPEN, QStringList{sChosen});
    PrintConsole("opening");
    PerformAction(ACTION_UTIL_LOG, "inner");
  });
  RegisterActionHandler(ACTION_UTIL_LOG, [] { PrintConsole("logged"); });
  RegisterActionHandler(ACTION_DEBUG_STEP_INTO, [] {
    SuppressEcho(ACTION_DEBUG_STEP_INTO);
    SetActionError(ACTION_DEBUG_STEP_INTO, ActionError::NOT_CONNECTED);
  });
  PerformAction(ACTION_FILE_OPEN);
  PerformAction(ACTION_DEBUG_STEP_INTO);
  EXPECT_THAT(Console(), ElementsAre("!Debug.StepInto(): not connected")) << "called off, and refused";
  sChosen = "a.elf";
  PerformAction(ACTION_FILE_OPEN);
  EXPECT_THAT(Console(), ElementsAre("File.Open (\"a.elf\");", "opening", "Util.Log (\"inner\");", "logged"));
}

TEST_F(DispatchTest, DisabledMenuEntriesStillAnswerInTheirOwnWords) {
  RegisterActionHandler(ACTION_DEBUG_CONTINUE,
                        [] { SetActionError(ACTION_DEBUG_CONTINUE, ActionError::NOT_CONNECTED); });
  RegisterActionHandler(ACTION_DEBUG_RESET, [] {});
  UpdateActions({});
  EXPECT_FALSE(IsActionEnabled(ACTION_DEBUG_CONTINUE, true));
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand("Debug.Continue"));
  EXPECT_EQ(COMMAND_DISABLED, ExecuteCommand("Debug.Reset"));
  UpdateActions({.Connected = true});
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand("Debug.Reset"));
  EXPECT_THAT(Console(), ElementsAre("Debug.Continue();", "!Debug.Continue(): not connected",
                                     "Debug.Reset: Command disabled", "Debug.Reset();"));
}

TEST_F(DispatchTest, SaveNamesTheActiveDocument) {
  RegisterActionHandler(ACTION_FILE_SAVE, [] {});
  UpdateActions({.DocumentOpen = true, .ActiveDocumentModified = true, .sActiveDocument = "R&D.c"});
  EXPECT_EQ(GetAction(ACTION_FILE_SAVE)->text(), "&Save R&&D.c");
  UpdateActions({.DocumentOpen = true, .sActiveDocument = "main.c"});
  EXPECT_EQ(GetAction(ACTION_FILE_SAVE)->text(), "&Save");
}

TEST_F(DispatchTest, CheckableActionsToggleAsAClickWould) {
  CTestWindow Window;
  QActionGroup Group(&Window);
  const QList<QAction*> Actions = {Window.Add("actionMemoryAutoRefresh", [] {}),
                                   Window.Add("actionMemoryView1ByteItems", [] {}),
                                   Window.Add("actionMemoryView2ByteItems", [] {})};
  for (QAction* const pAction : Actions) pAction->setCheckable(true);
  for (QAction* const pAction : Actions.mid(1)) Group.addAction(pAction);
  LinkActions(&Window);
  QString sChecked;
  QObject::connect(Actions[0], &QAction::triggered, [&](bool bChecked) { sChecked += bChecked ? "on " : "off "; });
  for (const U32 ID : {ACTION_MEMORY_AUTO_REFRESH, ACTION_MEMORY_AUTO_REFRESH, ACTION_MEMORY_VIEW_2_BYTE_ITEMS,
                       ACTION_MEMORY_VIEW_2_BYTE_ITEMS, ACTION_MEMORY_VIEW_1_BYTE_ITEMS}) {
    TriggerAction(ID);
    for (const QAction* const pAction : Actions) sChecked += pAction->isChecked() ? '1' : '0';
    sChecked += ' ';
  }
  EXPECT_EQ(sChecked, "on 100 off 000 001 001 010 ");
  EXPECT_THAT(Console(), IsEmpty()) << "rows without a command have no text";
}

TEST_F(DispatchTest, AHandlerMayDestroyItsOwnWindow) {
  auto* pWindow = new CTestWindow;
  pWindow->Add("actionFileExit", [pWindow] { delete pWindow; });
  LinkActions(pWindow);
  EXPECT_EQ(0, TriggerAction(ACTION_FILE_EXIT));
  EXPECT_EQ(-1, TriggerAction(ACTION_FILE_EXIT));
}

TEST_F(DispatchTest, BuiltInCommandsListThemselves) {
  RegisterBuiltinCommands();
  ExecuteCommand("Util.Log (\"a, b\")");
  ExecuteCommand("Util.Sleep soon");
  EXPECT_THAT(Console(),
              ElementsAre("Util.Log (\"a, b\");", "a, b", "Util.Sleep (soon);", "!Util.Sleep (soon): not a number"));
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand("HELP"));
  const std::vector<std::string> Lines = Console();
  ASSERT_GE(Lines.size(), 8u);
  EXPECT_EQ(Lines[0], "Help.Commands();");
  EXPECT_EQ(Lines[1], std::string(150, '-'));
  EXPECT_EQ(Lines[3], "Command                      Arguments              Hotkey          Description");
  EXPECT_TRUE(std::is_sorted(Lines.begin() + 5, Lines.end() - 1));
  EXPECT_EQ(Lines.back().substr(0, 48), "Util.Sleep                   Milliseconds       ");
  EXPECT_EQ(Lines.back().substr(68), "Pauses the current thread for a given amount of time");
}

}  // namespace
