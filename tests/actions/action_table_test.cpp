// The whole table, row by row, and the lookups over it.

#include <set>

#include <QKeySequence>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include "shell/actions/action_enable.h"
#include "shell/actions/action_info.h"
#include "shell/actions/command_text.h"

namespace {

TEST(ActionTable, EveryRowIsConsistent) {
  static const QRegularExpression PrototypeForm(
      QStringLiteral("^__api__ int ([A-Za-z]+\\.[A-Za-z0-9]+) ?\\((.*)\\);$"));
  static const QRegularExpression ParamForm(
      QStringLiteral("^(const char\\*|unsigned char\\*|unsigned char|unsigned int|int) ([A-Za-z0-9]+)$"));
  std::set<QString> ObjectNames;
  std::set<QString> CommandNames;
  int NumCommands = 0;
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    const ACTION_INFO Info = GetActionInfo(ID);
    SCOPED_TRACE(Info.sObjectName.toStdString());
    EXPECT_EQ(Info.ActionID, ID);
    EXPECT_TRUE(Info.sObjectName.startsWith(u"action"));
    EXPECT_TRUE(ObjectNames.insert(Info.sObjectName).second);
    EXPECT_FALSE(Info.sDisplayText.isEmpty());
    EXPECT_LE(Info.EchoAfterPerform, Info.EchoCommand);
    if (!Info.sHotkey.isEmpty()) {
      const QKeySequence Keys(Info.sHotkey);
      EXPECT_EQ(Keys.count(), 1);
      EXPECT_NE(Keys[0].key(), Qt::Key_unknown);
      EXPECT_EQ(QKeySequence(Keys.toString()), Keys);
    }
    if (Info.sPrototype.isEmpty()) {
      EXPECT_EQ(GetParamCount(ID), 0);
      EXPECT_TRUE(GetCommandName(ID).isEmpty());
      EXPECT_TRUE(Info.sDescription.isEmpty());
      continue;
    }
    ++NumCommands;
    const QRegularExpressionMatch Match = PrototypeForm.match(Info.sPrototype);
    ASSERT_TRUE(Match.hasMatch()) << Info.sPrototype.toStdString();
    EXPECT_EQ(GetCommandName(ID), Match.captured(1));
    EXPECT_TRUE(CommandNames.insert(GetCommandName(ID).toLower()).second);
    EXPECT_FALSE(Info.sDescription.isEmpty());
    const QString sParams = Match.captured(2);
    EXPECT_EQ(GetParamCount(ID), sParams == u"void" ? 0 : sParams.count(u',') + 1);
    EXPECT_LE(GetParamCount(ID), 7);
    for (int i = 0; i < GetParamCount(ID); ++i) {
      const QRegularExpressionMatch Param = ParamForm.match(GetParamText(ID, i));
      ASSERT_TRUE(Param.hasMatch()) << GetParamText(ID, i).toStdString();
      EXPECT_EQ(IsStringParam(ID, i), Param.captured(1).endsWith(u'*'));
    }
    EXPECT_FALSE(IsStringParam(ID, GetParamCount(ID)));
    EXPECT_EQ(FindCommand(GetCommandName(ID).toUpper()), ID);
  }
  EXPECT_EQ(NumCommands, 151);
  EXPECT_EQ(GetCommandIDs().size(), NumCommands);
}

TEST(ActionTable, FixedPointsOfTheNumbering) {
  const struct {
    U32 ID;
    const char* sObjectName;
    const char* sHotkey;
    bool Echo;
    bool EchoAfter;
  } Rows[] = {
      {0, "actionFileNewProject", "Ctrl+N", true, true},
      {30, "actionDebugContinue", "F5", true, false},
      {48, "actionDebugResetRun", "", false, false},
      {66, "actionWindowShowConsole", "Shift+Alt+C", true, false},
      {125, "actionWatch", "Ctrl+W", false, false},
      {183, "actionExpandAll", "Alt++", false, false},
      {273, "actionCoverageInclude", "", true, false},
      {314, "actionTimelineZoomIn", "+", false, false},
      {330, "actionWinSetDisplayFormatHex", "Alt+2", false, false},
  };
  for (const auto& Row : Rows) {
    const ACTION_INFO Info = GetActionInfo(Row.ID);
    EXPECT_EQ(Info.sObjectName.toStdString(), Row.sObjectName);
    EXPECT_EQ(Info.sHotkey.toStdString(), Row.sHotkey);
    EXPECT_EQ(Info.EchoCommand, Row.Echo);
    EXPECT_EQ(Info.EchoAfterPerform, Row.EchoAfter);
  }
}

TEST(ActionTable, UnknownIdentifiersGiveEmptyAnswers) {
  for (const U32 ID : {U32(NUM_ACTIONS), 1000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(GetActionInfo(ID).ActionID, U32(NUM_ACTIONS));
    EXPECT_EQ(GetAction(ID), nullptr);
    EXPECT_TRUE(GetPrototype(ID).isEmpty());
    EXPECT_TRUE(GetCommandName(ID).isEmpty());
    EXPECT_TRUE(GetAliasPrototype(ID).isEmpty());
    EXPECT_TRUE(GetCommandText(ID).isEmpty());
    EXPECT_EQ(GetParamCount(ID), 0);
  }
  EXPECT_EQ(FindCommand(QString()), U32(NUM_ACTIONS));
  EXPECT_EQ(FindCommand(QStringLiteral("File.Opem")), U32(NUM_ACTIONS));
}

TEST(ActionTable, AliasesWorkInBothDirections) {
  const struct {
    const char* sName;
    ACTION_ID ID;
  } Names[] = {
      {"Trace", ACTION_TRACE_ADD},
      {"watch", ACTION_WATCH},
      {"Window.SetNumberBase", ACTION_WIN_SET_DISPLAY_FORMAT},
      {"Window.SetDisplayFormat", ACTION_WIN_SET_DISPLAY_FORMAT},
      {"Edit.Break", ACTION_BREAK_EDIT},
      {"Break.Edit", ACTION_BREAK_EDIT},
      {"Project.SetPeripheralFile", ACTION_PROJ_ADD_SVD_FILE},
      {"Project.SetRootPath", ACTION_PROJ_ADD_ROOT_PATH},
      {"Debug.SetNextStmnt", ACTION_DEBUG_SET_NEXT_STMNT},
      {"Project.SetTIFScanChain", ACTION_SET_JTAG_CONFIG},
  };
  for (const auto& Name : Names) EXPECT_EQ(FindCommand(QLatin1String(Name.sName)), U32(Name.ID)) << Name.sName;
  EXPECT_EQ(GetAliasPrototype(ACTION_BREAK_EDIT).section(u'(', 0, 0), QLatin1String("__api__ int Edit.Break "));
  EXPECT_EQ(GetAliasPrototype(ACTION_SET_JTAG_CONFIG),
            QLatin1String("__api__ int Project.SetTIFScanChain (int DRPre, int IRLen);"));
  EXPECT_TRUE(GetAliasPrototype(ACTION_FILE_OPEN).isEmpty());
}

TEST(ActionTable, AlternateHotkeys) {
  EXPECT_EQ(FindActionsByHotkey(QStringLiteral("F6")), QList<U32>{ACTION_DEBUG_HALT});
  EXPECT_EQ(FindActionsByHotkey(QStringLiteral("Ctrl+=")), QList<U32>{ACTION_SRC_EXPAND_LINE});
  EXPECT_TRUE(FindActionsByHotkey(QStringLiteral("=")).contains(ACTION_TIMELINE_ZOOM_IN));
  EXPECT_TRUE(FindActionsByHotkey(QStringLiteral("Ctrl+F5")).isEmpty());
}

struct ENABLE_CASE {
  ACTION_ID ID;
  ACTION_STATE State;
  bool HasArgs;
  const char* sVerdict;  // A accepted, G enabled in menus, V visible
};

TEST(ActionTable, EnableRules) {
  const ACTION_STATE Idle;
  const ACTION_STATE Running = {.Connected = true};
  const ACTION_STATE Halted = {.Connected = true, .Halted = true, .PCHasSource = true};
  const ACTION_STATE Editing = {
      .ProjectOpen = true, .DocumentOpen = true, .ActiveDocumentModified = true, .AnyDocumentModified = true};
  const ENABLE_CASE Cases[] = {
      {ACTION_DEBUG_START, Idle, false, "AGV"},
      {ACTION_DEBUG_START, Running, false, ""},
      {ACTION_DEBUG_CONTINUE, Idle, false, "A"},
      {ACTION_DEBUG_CONTINUE, Halted, false, "AGV"},
      {ACTION_DEBUG_CONTINUE, Running, false, "A"},
      {ACTION_DEBUG_HALT, Running, false, "AGV"},
      {ACTION_DEBUG_HALT, Halted, false, "A"},
      {ACTION_DEBUG_HALT, Idle, false, "AV"},
      {ACTION_DEBUG_STOP, Idle, false, "A"},
      {ACTION_DEBUG_STOP, Running, false, "AGV"},
      {ACTION_DEBUG_ATTACH, Running, false, "V"},
      {ACTION_DEBUG_RESET, Idle, false, "V"},
      {ACTION_DEBUG_STEP_INTO, Running, false, "AV"},
      {ACTION_DEBUG_STEP_OVER, Halted, false, "AGV"},
      {ACTION_DEBUG_RUN_TO, Halted, false, "AV"},
      {ACTION_DEBUG_RUN_TO, Halted, true, "AGV"},
      {ACTION_VIEW_CALL_GRAPH, Idle, false, "A"},
      {ACTION_VIEW_CALL_GRAPH, Idle, true, "AGV"},
      {ACTION_VIEW_PC_LINE, Running, false, "AG"},
      {ACTION_VIEW_PC_LINE, Halted, false, "AGV"},
      {ACTION_VIEW_MEMORY, Idle, false, ""},
      {ACTION_FILE_SAVE, Idle, false, "V"},
      {ACTION_FILE_SAVE, Editing, false, "AGV"},
      {ACTION_FILE_SAVE_ALL, Editing, false, "AGV"},
      {ACTION_FILE_SAVE_ALL, Idle, false, "V"},
      {ACTION_FILE_SAVE_PROJ_AS, Editing, false, "AGV"},
      {ACTION_FILE_OPEN_RECENT_PROGRAM, Idle, false, "AG"},
      {ACTION_BREAK_CLEAR_ALL, Halted, false, "V"},
      {ACTION_BREAK_CLEAR_ALL, {.HasBreakpoint = true}, false, "AGV"},
      {ACTION_BREAK_CLEAR_ALL_ON_DATA, {.HasBreakpoint = true}, false, "V"},
      {ACTION_TARGET_READ_U32, Idle, false, "AGV"},
      {ACTION_BP_SET, Idle, false, "AGV"},
  };
  for (const ENABLE_CASE& Case : Cases) {
    const ACTION_ENABLE Enable = EvaluateEnableRule(Case.ID, Case.State, Case.HasArgs);
    const std::string sVerdict =
        std::string(Enable.Accepted ? "A" : "") + (Enable.GuiEnabled ? "G" : "") + (Enable.Visible ? "V" : "");
    EXPECT_EQ(sVerdict, Case.sVerdict) << GetActionInfo(Case.ID).sObjectName.toStdString();
  }
}

TEST(ActionTable, F5IsNeverAmbiguous) {
  for (const bool bConnected : {false, true}) {
    for (const bool bHalted : {false, true}) {
      const ACTION_STATE State = {.Connected = bConnected, .Halted = bHalted};
      const ACTION_ENABLE Start = EvaluateEnableRule(ACTION_DEBUG_START, State, false);
      const ACTION_ENABLE Continue = EvaluateEnableRule(ACTION_DEBUG_CONTINUE, State, false);
      EXPECT_FALSE(Start.GuiEnabled && Continue.GuiEnabled) << bConnected << bHalted;
    }
  }
}

}  // namespace
