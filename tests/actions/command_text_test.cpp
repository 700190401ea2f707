// Commands as text, in both forms and in both directions.

#include <random>

#include <gtest/gtest.h>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_link.h"
#include "shell/actions/command_text.h"
#include "tests/common/print.h"

namespace {

TEST(CommandText, LinesAreTakenApart) {
  const std::tuple<const char*, const char*, QStringList> Cases[] = {
      {"File.Open test.elf", "File.Open", {"test.elf"}},
      {"  File.Open (\"test.elf\"); ", "File.Open", {"test.elf"}},
      {"File.Open \"/a (1).elf\"", "File.Open", {"/a (1).elf"}},
      {"Debug.Start", "Debug.Start", {}},
      {"Debug.Start (  );", "Debug.Start", {}},
      {"Debug.Start void", "Debug.Start", {}},
      {"Debug.Start (", "Debug.Start", {}},
      {"Debug.Start )(", ")", {}},
      {"Util.Log (\"a, b\")", "Util.Log", {"a, b"}},
      {"Util.Log \"a b  c\"", "Util.Log", {"a b  c"}},
      {"Util.Log (\"a (1), b)\");", "Util.Log", {"a (1), b)"}},
      {"Util.Log (\"\")", "Util.Log", {""}},
      {"Break.Set 0x20000000, 1", "Break.Set", {"0x20000000,", "1"}},
      {"Break.SetEx (0x8000 , BP_TYPE_HARD)", "Break.SetEx", {"0x8000", "BP_TYPE_HARD"}},
      {"Break.SetEx (,1,)", "Break.SetEx", {"", "1", ""}},
      {"Util.Log (\"unterminated, text)", "Util.Log", {"unterminated, text"}},
      {"   ", "", {}},
      {"(1, 2)", "", {"1", "2"}},
  };
  for (const auto& [sLine, sName, Args] : Cases) {
    const COMMAND_LINE Command = SplitCommandLine(QString::fromUtf8(sLine));
    EXPECT_EQ(Command.sName.toStdString(), sName) << sLine;
    EXPECT_EQ(Command.Args, Args) << sLine << " -> " << Command.Args.join(u'|').toStdString();
  }
}

TEST(CommandText, ArgumentsAreWrittenByTheirKind) {
  const std::tuple<ACTION_ID, QStringList, const char*> Cases[] = {
      {ACTION_DEBUG_SET_RESET_MODE, {"reset & halt"}, "Debug.SetResetMode (RM_RESET_HALT);"},
      {ACTION_DEBUG_SET_RESET_MODE, {"RM_BREAK_AT_MAIN"}, "Debug.SetResetMode (RM_BREAK_AT_SYMBOL);"},
      {ACTION_EDIT_REFRESH_RATE, {"x", "2.5 kHz"}, "Edit.RefreshRate (\"x\", 2500);"},
      {ACTION_EDIT_REFRESH_RATE, {"x", "5 hz"}, "Edit.RefreshRate (\"x\", FREQ_5_HZ);"},
      {ACTION_PROJ_RELOCATE_SYMBOLS, {"*", "-16"}, "Project.RelocateSymbols (\"*\", -16);"},
      {ACTION_SET_TIF_SPEED, {"4 MHz"}, "Project.SetTIFSpeed (\"4 MHz\");"},
      {ACTION_EDIT_SYS_VAR, {"VAR_TRACE_SOURCE", "\"None\""}, "Edit.SysVar (VAR_TRACE_SOURCE, \"None\");"},
      {ACTION_BREAK_SET_ON_SYMBOL,
       {"g_x", "Read/Write", "Word", "0", "0xFF"},
       "Break.SetOnSymbol (\"g_x\", AT_READ_WRITE, AW_WORD, 0, 0xFF);"},
      {ACTION_BP_SET, {"0"}, ""},
  };
  for (const auto& [ID, Args, sText] : Cases) EXPECT_EQ(MakeCommandText(ID, Args).toStdString(), sText);
}

// What is echoed can be pasted: parsing gives the same row and the same arguments.
TEST(CommandText, EveryCommandSurvivesPrintAndParse) {
  const QStringList Texts = {"C:/Program Files/a (1).elf", "a, b", "x^y", "", "main.c:10", "äöü", "a;b"};
  const QStringList Numbers = {"0x20000000", "4294967295", "-1", "16", "017"};
  std::mt19937 Random(20);
  const auto Pick = [&](const QStringList& List) { return List.at(static_cast<qsizetype>(Random() % List.size())); };
  for (int Round = 0; Round < 20; ++Round) {
    for (const U32 ID : GetCommandIDs()) {
      QStringList Args;
      for (int i = 0; i < GetParamCount(ID); ++i) Args.append(Pick(IsStringParam(ID, i) ? Texts : Numbers));
      const QString sText = MakeCommandText(ID, Args);
      const COMMAND_LINE Command = SplitCommandLine(sText);
      EXPECT_EQ(FindCommand(Command.sName, static_cast<int>(Command.Args.size())), ID) << sText.toStdString();
      EXPECT_EQ(Command.Args, Args) << sText.toStdString();
    }
  }
}

}  // namespace
