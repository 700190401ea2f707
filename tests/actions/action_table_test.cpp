// The whole table, row by row, and the lookups over it.

#include <set>

#include <QKeySequence>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include "shell/actions/action_enable.h"
#include "shell/actions/action_info.h"
#include "shell/actions/command_text.h"
#include "tests/common/print.h"

namespace {

TEST(ActionTable, EveryRowIsConsistent) {
  static const QRegularExpression PrototypeForm("^__api__ int ([A-Za-z]+\\.[A-Za-z0-9]+) ?\\((.*)\\);$");
  static const QRegularExpression ParamForm(
      "^(const char\\*|unsigned char\\*|unsigned char|unsigned int|int) ([A-Za-z0-9]+)$");
  std::set<QString> ObjectNames;
  std::set<QString> CommandNames;
  int NumCommands = 0;
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    const ACTION_INFO Info = GetActionInfo(ID);
    SCOPED_TRACE(Info.sObjectName.toStdString());
    EXPECT_TRUE(Info.sObjectName.startsWith(u"action"));
    EXPECT_TRUE(ObjectNames.insert(Info.sObjectName).second);
    EXPECT_LE(Info.EchoAfterPerform, Info.EchoCommand);
    if (!Info.sHotkey.isEmpty()) {
      const QKeySequence Keys(Info.sHotkey);
      EXPECT_EQ(Keys.count(), 1);
      EXPECT_NE(Keys[0].key(), Qt::Key_unknown);
      EXPECT_EQ(QKeySequence(Keys.toString()), Keys);
    }
    if (Info.sPrototype.isEmpty()) {
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
    EXPECT_EQ(FindCommand(GetCommandName(ID).toUpper()), ID);
  }
  EXPECT_EQ(NumCommands, 151);
}

TEST(ActionTable, AliasesWorkInBothDirections) {
  const std::pair<const char*, ACTION_ID> Names[] = {
      {"watch", ACTION_WATCH},
      {"Window.SetNumberBase", ACTION_WIN_SET_DISPLAY_FORMAT},
      {"Edit.Break", ACTION_BREAK_EDIT},
      {"Project.SetPeripheralFile", ACTION_PROJ_ADD_SVD_FILE},
      {"Project.SetRootPath", ACTION_PROJ_ADD_ROOT_PATH},
      {"Project.SetTIFScanChain", ACTION_SET_JTAG_CONFIG},
  };
  for (const auto& [sName, ID] : Names) EXPECT_EQ(FindCommand(sName), U32(ID)) << sName;
  EXPECT_EQ(GetAliasPrototype(ACTION_SET_JTAG_CONFIG), "__api__ int Project.SetTIFScanChain (int DRPre, int IRLen);");
}

TEST(ActionTable, EnableRules) {
  const ACTION_STATE Idle;
  const ACTION_STATE Running = {.Connected = true};
  const ACTION_STATE Halted = {.Connected = true, .Halted = true, .PCHasSource = true};
  const ACTION_STATE Editing = {
      .ProjectOpen = true, .DocumentOpen = true, .ActiveDocumentModified = true, .AnyDocumentModified = true};
  const ACTION_STATE Broken = {.HasBreakpoint = true};
  const ACTION_STATE States[] = {Idle, Running, Halted, Editing, Broken};
  // With arguments or not, in each of the states, "-" where it does not matter: A accepted, G enabled in menus, V
  // visible.
  const std::tuple<ACTION_ID, bool, QStringList> Cases[] = {
      {ACTION_DEBUG_START, false, {"AGV", ""}},
      {ACTION_DEBUG_CONTINUE, false, {"A", "A", "AGV"}},
      {ACTION_DEBUG_HALT, false, {"AV", "AGV", "A"}},
      {ACTION_DEBUG_STOP, false, {"A", "AGV"}},
      {ACTION_DEBUG_ATTACH, false, {"-", "V"}},
      {ACTION_DEBUG_RESET, false, {"V"}},
      {ACTION_DEBUG_STEP_INTO, false, {"-", "AV"}},
      {ACTION_DEBUG_STEP_OVER, false, {"-", "-", "AGV"}},
      {ACTION_DEBUG_RUN_TO, false, {"-", "-", "AV"}},
      {ACTION_DEBUG_RUN_TO, true, {"-", "-", "AGV"}},
      {ACTION_VIEW_CALL_GRAPH, false, {"A"}},
      {ACTION_VIEW_CALL_GRAPH, true, {"AGV"}},
      {ACTION_VIEW_PC_LINE, false, {"-", "AG", "AGV"}},
      {ACTION_VIEW_MEMORY, false, {""}},
      {ACTION_FILE_SAVE, false, {"V", "-", "-", "AGV"}},
      {ACTION_FILE_SAVE_ALL, false, {"V", "-", "-", "AGV"}},
      {ACTION_FILE_SAVE_PROJ_AS, false, {"-", "-", "-", "AGV"}},
      {ACTION_FILE_OPEN_RECENT_PROGRAM, false, {"AG"}},
      {ACTION_BREAK_CLEAR_ALL, false, {"-", "-", "V", "-", "AGV"}},
      {ACTION_BREAK_CLEAR_ALL_ON_DATA, false, {"-", "-", "-", "-", "V"}},
      {ACTION_TARGET_READ_U32, false, {"AGV"}},
      {ACTION_BP_SET, false, {"AGV"}},
  };
  for (const auto& [ID, bHasArgs, Verdicts] : Cases) {
    for (qsizetype i = 0; i < Verdicts.size(); ++i) {
      if (Verdicts[i] == "-") continue;
      const ACTION_ENABLE Enable = EvaluateEnableRule(ID, States[i], bHasArgs);
      const QString sVerdict =
          QString(Enable.Accepted ? "A" : "") + (Enable.GuiEnabled ? "G" : "") + (Enable.Visible ? "V" : "");
      EXPECT_EQ(sVerdict, Verdicts[i]) << GetActionInfo(ID).sObjectName.toStdString() << " in state " << i;
    }
  }
}

}  // namespace
