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
#include "shell/actions/command_history.h"
#include "shell/actions/command_text.h"
#include "shell/log/console_print.h"
#include "shell/settings/colors.h"
#include "shell/settings/sys_vars.h"

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
  EXPECT_EQ(pFirst->shortcut(), QKeySequence(QStringLiteral("Ctrl+F")));
  EXPECT_EQ(pFirst->toolTip(), QLatin1String("Fill memory (Ctrl+F)"));
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

TEST_F(DispatchTest, ADestroyedWindowLeavesNothingBehind) {
  auto pWindow = std::make_unique<CTestWindow>();
  pWindow->Add("actionViewMemory", [] {});
  LinkActions(pWindow.get());
  EXPECT_EQ(0, PerformAction(ACTION_VIEW_MEMORY, 5));
  pWindow.reset();
  Console();
  EXPECT_EQ(-1, PerformAction(ACTION_VIEW_MEMORY, 5));
  EXPECT_EQ(GetAction(ACTION_VIEW_MEMORY), nullptr);
  EXPECT_THAT(Console(), ElementsAre("View.Memory: Command disabled"));
}

TEST_F(DispatchTest, ACommandWithoutAWindowCannotBeExecuted) {
  EXPECT_EQ(COMMAND_DISABLED, ExecuteCommand(QStringLiteral("Help.About()")));
  EXPECT_EQ(GetLastCommand().sError, QLatin1String("Command disabled"));
  EXPECT_EQ(-1, TriggerAction(ACTION_HELP_ABOUT));
  EXPECT_EQ(-1, TriggerAction(NUM_ACTIONS));
  EXPECT_EQ(-1, PerformAction(5000, 1));
  EXPECT_EQ(-1, TriggerAction(ACTION_ASM_EXPORT));
  EXPECT_THAT(Console(), ElementsAre("Help.About: Command disabled", "Help.About: Command disabled"));
}

TEST_F(DispatchTest, EveryRowCanBeServedByAHandler) {
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    int NumCalls = 0;
    RegisterActionHandler(ID, [&NumCalls] { ++NumCalls; });
    SetActionResult(ID, 1000 + ID);
    EXPECT_EQ(PerformAction(ID), 1000 + ID);
    EXPECT_EQ(NumCalls, 1) << ID;
    UnregisterActionHandler(ID);
    EXPECT_EQ(-1, PerformAction(ID));
    EXPECT_EQ(NumCalls, 1) << ID;
    Console();
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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
  EXPECT_EQ(sTrace, QLatin1String("whwh"));
  UnregisterActionHandler(ACTION_VIEW_LINE);
}

TEST_F(DispatchTest, ArgumentsErrorsAndResultsOfOneCall) {
  QStringList Seen;
  RegisterActionHandler(ACTION_TARGET_SET_REG, [&] {
    Seen = GetActionArgs(ACTION_TARGET_SET_REG);
    if (!CheckActionArgs(ACTION_TARGET_SET_REG)) return;
    bool bOk = false;
    const I64 Value = GetActionArgNumber(ACTION_TARGET_SET_REG, 1, &bOk);
    if (!bOk) {
      SetActionError(ACTION_TARGET_SET_REG, ActionError::INVALID_PARAMETER, QStringLiteral("\"") + Seen.at(1) + u'"');
      return;
    }
    SetActionResult(ACTION_TARGET_SET_REG, static_cast<U64>(Value));
  });
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, QStringLiteral("R0"), QStringLiteral("0x1F")), 31);
  EXPECT_EQ(Seen, (QStringList{"R0", "0x1F"}));
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, QStringLiteral("\"R1\""), 7u), 7);
  EXPECT_EQ(Seen, (QStringList{"R1", "7"}));
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, QStringLiteral("R0")), 7) << "an older result of the row";
  EXPECT_EQ(GetLastCommand().sError, QLatin1String("wrong parameter count"));
  EXPECT_EQ(PerformAction(ACTION_TARGET_SET_REG, 1, 2, 3), 7);
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand(QStringLiteral("target.setreg R0 zero")));
  EXPECT_THAT(Console(),
              ElementsAre("Target.SetReg (\"R0\", 0x1F);", "Target.SetReg (\"R1\", 7);", "Target.SetReg (\"R0\");",
                          "!Target.SetReg (\"R0\"): wrong parameter count", "Target.SetReg (\"1\", 2, 3);",
                          "!Target.SetReg (\"1\", 2, 3): wrong parameter count", "Target.SetReg (\"R0\", zero);",
                          "!Target.SetReg (\"R0\", zero): invalid parameter: \"zero\""));
  EXPECT_TRUE(GetActionArgs(ACTION_TARGET_SET_REG).isEmpty());
  EXPECT_TRUE(GetActionError(ACTION_TARGET_SET_REG).isEmpty());
  UnregisterActionHandler(ACTION_TARGET_SET_REG);
}

TEST_F(DispatchTest, StoredArgumentsAreUsedWhenNoneAreGiven) {
  QString sSeen;
  RegisterActionHandler(ACTION_VIEW_SOURCE, [&] { sSeen = GetFirstActionArg(ACTION_VIEW_SOURCE); });
  SetActionArgs(ACTION_VIEW_SOURCE, QStringLiteral("main"));
  PerformAction(ACTION_VIEW_SOURCE);
  EXPECT_EQ(sSeen, QLatin1String("main"));
  PerformAction(ACTION_VIEW_SOURCE);
  EXPECT_EQ(sSeen, QString()) << "gone after one run";
  EXPECT_EQ(GetLastCommand().sError, QLatin1String("wrong parameter count"));
  UnregisterActionHandler(ACTION_VIEW_SOURCE);
}

TEST_F(DispatchTest, EchoComesBeforeOrAfterTheHandlerAsTheRowSays) {
  RegisterActionHandler(ACTION_FILE_CLOSE_ALL, [] { PrintConsole(QStringLiteral("closing")); });
  RegisterActionHandler(ACTION_FILE_SAVE_ALL, [] { PrintConsole(QStringLiteral("saving")); });
  RegisterActionHandler(ACTION_WATCH, [] { PrintConsole(QStringLiteral("watching")); });
  RegisterActionHandler(ACTION_FILE_NEW_PROJECT, [] { SuppressEcho(ACTION_FILE_NEW_PROJECT); });
  PerformAction(ACTION_FILE_CLOSE_ALL);
  PerformAction(ACTION_FILE_SAVE_ALL);
  PerformAction(ACTION_WATCH, QStringLiteral("x"));
  PerformAction(ACTION_FILE_NEW_PROJECT);
  EXPECT_THAT(Console(), ElementsAre("closing", "File.CloseAll();", "File.SaveAll();", "saving", "watching"));
  for (const U32 ID : {ACTION_FILE_CLOSE_ALL, ACTION_FILE_SAVE_ALL, ACTION_WATCH, ACTION_FILE_NEW_PROJECT}) {
    UnregisterActionHandler(ID);
  }
}

TEST_F(DispatchTest, EchoWaitsWhileTheCommandMayBeCompletedOrCalledOff) {
  QString sChosen;
  RegisterActionHandler(ACTION_FILE_OPEN, [&] {
    if (GetActionArgs(ACTION_FILE_OPEN).isEmpty() && sChosen.isEmpty()) return SuppressEcho(ACTION_FILE_OPEN);
    if (!sChosen.isEmpty()) SetActionArgs(ACTION_FILE_OPEN, QStringList{sChosen});
    PrintConsole(QStringLiteral("opening"));
    PerformAction(ACTION_UTIL_LOG, QStringLiteral("inner"));
  });
  RegisterActionHandler(ACTION_UTIL_LOG, [] { PrintConsole(QStringLiteral("logged")); });
  RegisterActionHandler(ACTION_DEBUG_STEP_INTO, [] {
    SuppressEcho(ACTION_DEBUG_STEP_INTO);
    SetActionError(ACTION_DEBUG_STEP_INTO, ActionError::NOT_CONNECTED);
  });
  PerformAction(ACTION_FILE_OPEN);
  PerformAction(ACTION_DEBUG_STEP_INTO);
  EXPECT_THAT(Console(), ElementsAre("!Debug.StepInto(): not connected")) << "called off, and refused";
  sChosen = QStringLiteral("a.elf");
  PerformAction(ACTION_FILE_OPEN);
  EXPECT_THAT(Console(), ElementsAre("File.Open (\"a.elf\");", "opening", "Util.Log (\"inner\");", "logged"));
  for (const U32 ID : {ACTION_FILE_OPEN, ACTION_UTIL_LOG, ACTION_DEBUG_STEP_INTO}) UnregisterActionHandler(ID);
}

TEST_F(DispatchTest, DisabledMenuEntriesStillAnswerInTheirOwnWords) {
  RegisterActionHandler(ACTION_DEBUG_CONTINUE,
                        [] { SetActionError(ACTION_DEBUG_CONTINUE, ActionError::NOT_CONNECTED); });
  RegisterActionHandler(ACTION_DEBUG_RESET, [] {});
  UpdateActions({});
  EXPECT_FALSE(IsActionEnabled(ACTION_DEBUG_CONTINUE, true));
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand(QStringLiteral("Debug.Continue")));
  EXPECT_EQ(COMMAND_DISABLED, ExecuteCommand(QStringLiteral("Debug.Reset")));
  UpdateActions({.Connected = true});
  EXPECT_EQ(COMMAND_RAN, ExecuteCommand(QStringLiteral("Debug.Reset")));
  EXPECT_THAT(Console(), ElementsAre("Debug.Continue();", "!Debug.Continue(): not connected",
                                     "Debug.Reset: Command disabled", "Debug.Reset();"));
  UnregisterActionHandler(ACTION_DEBUG_CONTINUE);
  UnregisterActionHandler(ACTION_DEBUG_RESET);
}

TEST_F(DispatchTest, SaveNamesTheActiveDocument) {
  RegisterActionHandler(ACTION_FILE_SAVE, [] {});
  UpdateActions({.DocumentOpen = true, .ActiveDocumentModified = true, .sActiveDocument = QStringLiteral("R&D.c")});
  EXPECT_EQ(GetAction(ACTION_FILE_SAVE)->text(), QLatin1String("&Save R&&D.c"));
  UpdateActions({.DocumentOpen = true, .sActiveDocument = QStringLiteral("main.c")});
  EXPECT_EQ(GetAction(ACTION_FILE_SAVE)->text(), QLatin1String("&Save"));
  UnregisterActionHandler(ACTION_FILE_SAVE);
}

TEST_F(DispatchTest, CheckableActionsToggleAsAClickWould) {
  CTestWindow Window;
  QList<bool> Seen;
  QAction* pToggle = Window.Add("actionMemoryAutoRefresh", [] {});
  pToggle->setCheckable(true);
  QObject::connect(pToggle, &QAction::triggered, [&](bool bChecked) { Seen.append(bChecked); });
  QActionGroup Group(&Window);
  QAction* pOne = Window.Add("actionMemoryView1ByteItems", [] {});
  QAction* pTwo = Window.Add("actionMemoryView2ByteItems", [] {});
  for (QAction* pAction : {pOne, pTwo}) pAction->setCheckable(true), Group.addAction(pAction);
  LinkActions(&Window);
  TriggerAction(ACTION_MEMORY_AUTO_REFRESH);
  TriggerAction(ACTION_MEMORY_AUTO_REFRESH);
  EXPECT_EQ(Seen, (QList<bool>{true, false}));
  TriggerAction(ACTION_MEMORY_VIEW_2_BYTE_ITEMS);
  TriggerAction(ACTION_MEMORY_VIEW_2_BYTE_ITEMS);
  EXPECT_TRUE(pTwo->isChecked());
  EXPECT_FALSE(pOne->isChecked());
  EXPECT_THAT(Console(), IsEmpty()) << "rows without a command have no text";
}

TEST_F(DispatchTest, AHandlerMayDestroyItsOwnWindow) {
  auto* pWindow = new CTestWindow;
  pWindow->Add("actionFileExit", [pWindow] { delete pWindow; });
  LinkActions(pWindow);
  EXPECT_EQ(0, TriggerAction(ACTION_FILE_EXIT));
  EXPECT_EQ(-1, TriggerAction(ACTION_FILE_EXIT));
}

TEST_F(DispatchTest, UnknownCommandsGetTheHint) {
  EXPECT_EQ(COMMAND_FAILED, ExecuteCommand(QStringLiteral("Fil.Open x;")));
  EXPECT_THAT(Console(), ElementsAre("!Fil.Open x: unknown command. Type ? or help for a list of available commands."));
  EXPECT_EQ(COMMAND_FAILED, ExecuteCommand(QStringLiteral("   ")));
}

TEST_F(DispatchTest, BuiltInCommandsEditVariablesAndListThemselves) {
  RegisterBuiltinCommands();
  ResetVars();
  ExecuteCommand(QStringLiteral("Edit.SysVar VAR_TRACE_PORT_DELAY_0 1234"));
  EXPECT_EQ(GetVarValue(VAR_TRACE_PORT_DELAY_0), 1200u);
  EXPECT_TRUE(GetLastCommand().HasResult);
  EXPECT_EQ(GetLastCommand().sText, QLatin1String("Edit.SysVar (VAR_TRACE_PORT_DELAY_0, 1200);"));
  EXPECT_EQ(PerformAction(ACTION_EDIT_SYS_VAR, 99, 1), -1);
  PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("pref_tab_spacing"), 4, 1);
  EXPECT_EQ(GetVarSavedValue(PREF_TAB_SPACING), 4u);
  PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_TAB_SPACING"), 6, 0);
  PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_TAB_SPACING"));
  ExecuteCommand(QStringLiteral("Util.Log (\"a, b\")"));
  ExecuteCommand(QStringLiteral("Util.Sleep soon"));
  EXPECT_THAT(
      Console(),
      ElementsAre("Edit.SysVar (VAR_TRACE_PORT_DELAY_0, 1200);", "Edit.SysVar (99, 1);",
                  "!Edit.SysVar (99, 1): unknown system variable: \"99\"", "Edit.Preference (PREF_TAB_SPACING, 4);",
                  "Edit.Preference (PREF_TAB_SPACING);", "!Edit.Preference (PREF_TAB_SPACING): wrong parameter count",
                  "Util.Log (\"a, b\");", "a, b", "Util.Sleep (soon);", "!Util.Sleep (soon): not a number"));
  EXPECT_EQ(GetVarValue(PREF_TAB_SPACING), 6u);

  EXPECT_EQ(COMMAND_RAN, ExecuteCommand(QStringLiteral("HELP")));
  const std::vector<std::string> Lines = Console();
  ASSERT_GE(Lines.size(), 8u);
  EXPECT_EQ(Lines[0], "Help.Commands();");
  EXPECT_EQ(Lines[1], std::string(150, '-'));
  EXPECT_EQ(Lines[3], "Command                      Arguments              Hotkey          Description");
  EXPECT_TRUE(std::is_sorted(Lines.begin() + 5, Lines.end() - 1));
  EXPECT_EQ(Lines.back().substr(0, 48), "Util.Sleep                   Milliseconds       ");
  EXPECT_EQ(Lines.back().substr(68), "Pauses the current thread for a given amount of time");
  for (const U32 ID :
       {ACTION_EDIT_SYS_VAR, ACTION_EDIT_PREFERENCE, ACTION_HELP_COMMANDS, ACTION_UTIL_LOG, ACTION_UTIL_SLEEP}) {
    UnregisterActionHandler(ID);
  }
}

TEST_F(DispatchTest, ColoursAreEditedByNameAndNumber) {
  RegisterBuiltinCommands();
  ResetColors();
  QList<U32> Told;
  SetColorListener([&](U32 ID, U32 Argb) { Told << ID << Argb; });
  ExecuteCommand(QStringLiteral("Edit.Color (8, \"#102030\")"));
  EXPECT_EQ(GetLastCommand().sText, QLatin1String("Edit.Color (COLOR_PC_ACTIVE, \"#102030\");"));
  ExecuteCommand(QStringLiteral("Edit.Color \"PC Row Inactive\" 0xFF0000FF"));
  EXPECT_EQ(Told, (QList<U32>{COLOR_PC_ACTIVE, 0xFF102030u, COLOR_PC_INACTIVE, 0xFF0000FFu}));
  ExecuteCommand(QStringLiteral("Edit.Color COLOR_NONE red"));
  EXPECT_EQ(GetLastCommand().sError, QLatin1String("unknown color: \"COLOR_NONE\""));
  ExecuteCommand(QStringLiteral("Edit.Color COLOR_PC_ACTIVE reddish"));
  EXPECT_EQ(GetLastCommand().sError, QLatin1String("invalid parameter: \"reddish\""));
  EXPECT_EQ(Told.size(), 4);
  EXPECT_EQ(GetColorRgb(COLOR_PC_ACTIVE), 0xFF102030u);
  SetColorListener({});
  ResetColors();
  for (const U32 ID : {ACTION_EDIT_SYS_VAR, ACTION_EDIT_PREFERENCE, ACTION_EDIT_COLOR, ACTION_HELP_COMMANDS,
                       ACTION_UTIL_LOG, ACTION_UTIL_SLEEP}) {
    UnregisterActionHandler(ID);
  }
}

TEST(CommandHistory, KeysWalkAroundTheRing) {
  CCommandHistory History;
  EXPECT_TRUE(History.Up().isNull());
  EXPECT_TRUE(History.Down().isNull());
  for (const char* sCommand : {"a", "b", "a", "c"}) History.Add(QLatin1String(sCommand));
  EXPECT_EQ(History.Entries(), (QStringList{"c", "b", "a"}));
  QString sWalk;
  for (int i = 0; i < 4; ++i) sWalk += History.Up();
  EXPECT_EQ(sWalk, QLatin1String("cbac"));
  sWalk.clear();
  for (int i = 0; i < 4; ++i) sWalk += History.Down();
  EXPECT_EQ(sWalk, QLatin1String("abca"));
}

}  // namespace
