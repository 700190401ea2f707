// Variables: what their texts are taken for, their ranges, and the commands that edit them.

#include <set>

#include <gtest/gtest.h>

#include "shell/settings/named_constants.h"
#include "shell/settings/preferences.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "tests/common/print.h"

namespace {

class VariablesTest : public testing::Test {
protected:
  void SetUp() override { ResetVars(); }
  void TearDown() override { ResetVars(); }
};

TEST_F(VariablesTest, EveryRowIsConsistent) {
  std::set<std::string> Names;
  for (U32 ID = 0; ID < NUM_VARS; ++ID) {
    const SYS_VAR* pVar = GetVarInfo(ID);
    SCOPED_TRACE(pVar->sName);
    EXPECT_TRUE(Names.insert(pVar->sName).second);
    EXPECT_EQ(FindVar(QString::number(ID)), pVar);
    EXPECT_EQ(FindVar(GetVarName(ID).toLower()), pVar);
    EXPECT_EQ(GetVarIndex(pVar), ID);
    if (pVar->Type == VAR_TYPE_STRING) continue;
    EXPECT_TRUE(IsVarValueAllowed(pVar, pVar->Default));
    EXPECT_EQ(GetVarValue(ID), static_cast<U32>(pVar->Default));
    // what a list shows reads back as the same value
    bool bOk = false;
    EXPECT_EQ(ParseVarValue(pVar, GetVarText(pVar), &bOk), GetVarValue(ID));
    EXPECT_TRUE(bOk);
    const QStringList ValueNames = GetVarValueNames(pVar);
    const QList<I64> Values = GetVarValues(pVar);
    for (qsizetype i = 0; i < Values.size(); ++i) {
      EXPECT_EQ(static_cast<I64>(ParseVarValue(pVar, ValueNames[i], &bOk)), Values[i]) << ValueNames[i].toStdString();
      EXPECT_TRUE(bOk);
      EXPECT_EQ(GetVarText(pVar, static_cast<U32>(Values[i])), ValueNames[i]);
    }
  }
  for (const char* sName : {"58", "-1", "PREF_NONE"}) EXPECT_EQ(FindVar(sName), nullptr) << sName;
}

TEST_F(VariablesTest, TextsOfValues) {
  const std::tuple<VAR_ID, const char*, bool, I32> Cases[] = {
      {VAR_ACCESS_WIDTH, "AW_WORD", true, 4},
      {VAR_ACCESS_WIDTH, "\"word\"", true, 4},
      {VAR_ACCESS_WIDTH, "3", true, 4},  // the index of an entry, as the last resort
      {VAR_ACCESS_WIDTH, "7", false, 0},
      {VAR_ACCESS_WIDTH, "-1", false, 0},
      {VAR_RESET_MODE, "RM_BREAK_AT_MAIN", true, 1},
      {VAR_RESET_MODE, "reset & run", true, 2},
      {VAR_TIF_SPEED, "FREQ_ADAPTIVE", true, 0xFFFF},
      {VAR_TIF_SPEED, "FREQ_200_HZ", false, 0},  // a frequency that the interface does not have
      {VAR_TIF_SPEED, "0xFFFF", true, 0xFFFF},
      {VAR_RTT_ENABLED, "Enabled", true, 1},
      {VAR_RTT_ENABLED, "0x0", true, 0},
      {VAR_TIF_SCAN_CHAIN_LEN, "0x10", true, 16},
      {VAR_TIF_SCAN_CHAIN_LEN, "4294967312", false, 0},  // 16 in the low 32 bits
      {VAR_TIF_SCAN_CHAIN_LEN, "99999999999999999999", false, 0},
      {VAR_TIF_SCAN_CHAIN_LEN, "010", true, 8},
      {VAR_TIF_SCAN_CHAIN_LEN, "08", false, 0},
      {VAR_TIF_SCAN_CHAIN_LEN, "12 34", false, 0},
      {VAR_SWO_SPEED, "1.5 MHz", true, 1'500'000},
      {VAR_SWO_SPEED, "FREQ_20_KHZ", true, 20'000},
      {VAR_SWO_SPEED, "3000 MHz", false, 0},
      {VAR_SWO_SPEED, "500kHz", true, 500'000},
      {VAR_SWO_SPEED, "MHz", false, 0},
      {VAR_SWO_SPEED, "4 GHz", false, 0},
      {VAR_SWO_SPEED, "-1 Hz", false, 0},
      {VAR_TRACE_PORT_DELAY_0, "-100000", true, -100'000},
      {VAR_TRACE_PORT_DELAY_0, " -0xA0", true, -160},
      {PREF_TERMINAL_EOL_FORMAT, "EOL_FORMAT_MAC", true, 2},
      {VAR_BREAK_AT_THIS_SYMBOL, "main", false, 0},
  };
  for (const auto& [ID, sText, bGood, Value] : Cases) {
    bool bOk = false;
    const U32 Parsed = ParseVarValue(GetVarInfo(ID), QLatin1String(sText), &bOk);
    EXPECT_EQ(bOk, bGood) << GetVarName(ID).toStdString() << " " << sText;
    EXPECT_EQ(static_cast<I32>(Parsed), Value) << GetVarName(ID).toStdString() << " " << sText;
  }
}

TEST_F(VariablesTest, TextOfAValueOutsideItsRange) {
  EXPECT_EQ(GetVarText(GetVarInfo(VAR_TRACE_PORT_DELAY_1), static_cast<U32>(-200000)),
            "Value -200000 is out of range (Min: -100000, Max: 100000)");
  EXPECT_EQ(GetVarText(GetVarInfo(VAR_SWO_SPEED), 12345), "12345 Hz");
  EXPECT_EQ(GetVarRangeText(GetVarInfo(VAR_TRACE_PORT_DELAY_1)), "-100000 - 100000");
}

TEST_F(VariablesTest, SettingFromTextChangesNothingOnFailure) {
  const SYS_VAR* pSymbol = GetVarInfo(VAR_BREAK_AT_THIS_SYMBOL);
  EXPECT_EQ(0, SetVarFromText(pSymbol, QString(100, u'a'), 0));
  EXPECT_EQ(-1, SetVarFromText(pSymbol, QString(101, u'b'), 0));
  EXPECT_EQ(GetVarText(pSymbol), QString(100, u'a'));
  const SYS_VAR* pMembers = GetVarInfo(PREF_MAX_SYMBOL_MEMBERS);
  EXPECT_FALSE(IsVarSet(pMembers));
  EXPECT_EQ(-2, SetVarFromText(pMembers, "-3", 1));
  EXPECT_EQ(-1, SetVarFromText(pMembers, "1e3", 1));
  EXPECT_EQ(GetVarValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
  EXPECT_FALSE(IsVarSet(pMembers));
  EXPECT_EQ(0, SetVarFromText(pMembers, "\"0x20\"", 0));
  EXPECT_TRUE(IsVarSet(pMembers));
  EXPECT_EQ(GetVarSavedValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
}

TEST_F(VariablesTest, ListenersHearOfSuccessfulEditsOnly) {
  QList<std::pair<U32, U32>> Told;
  const auto Note = [&](U32 ID, U32 Value) { Told.append({ID, Value}); };
  const int aListeners[] = {AddSysVarListener(Note), AddPreferenceListener(Note)};
  EditSysVar("VAR_TRACE_PORT_DELAY_1", "77");
  EditSysVar("VAR_RTT_ENABLED", "maybe");
  EditSysVar("VAR_ALLOW_DEBUG_MODIFIED_SRC", "yes");
  EditPreference("PREF_TAB_SPACING", "8", false);
  EditPreference("VAR_RTT_ENABLED", "on", false);
  EXPECT_EQ(EditPreference("VAR_BREAK_AT_THIS_SYMBOL", "start_up", false).sError, "invalid parameter");
  for (const int Listener : aListeners) RemoveVarListener(Listener);
  EditSysVar("VAR_RTT_ENABLED", "no");
  EXPECT_EQ(Told,
            (QList<std::pair<U32, U32>>{{VAR_TRACE_PORT_DELAY_1, 50}, {PREF_TAB_SPACING, 8}, {VAR_RTT_ENABLED, 1}}));
}

TEST_F(VariablesTest, OnlySavedPreferencesReachTheStore) {
  SetSettingsInMemory(true);
  EditPreference("PREF_TAB_SPACING", "4", true);
  EditPreference("PREF_SHOW_TOOLTIPS", "no", false);
  EditSysVar("VAR_RTT_ENABLED", "yes");
  SavePreferences();
  const SETTING_GROUP Group = {"AppData", "Preferences", "Preferences"};
  EXPECT_EQ(GetSettingKeys(Group).size(), 36);
  SetSetting(Group, "PREF_LINE_NUMBER_FREQ", "77");
  SetSetting(Group, "PREF_MAX_SYMBOL_MEMBERS", "garbage");
  ResetVars();
  LoadPreferences();
  EXPECT_EQ(GetVarValue(PREF_TAB_SPACING), 4u);
  EXPECT_EQ(GetVarValue(PREF_SHOW_TOOLTIPS), 1u);
  EXPECT_EQ(GetVarValue(PREF_LINE_NUMBER_FREQ), 2u) << "a stored value that the row does not have";
  EXPECT_EQ(GetVarValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
  EXPECT_EQ(GetVarValue(VAR_RTT_ENABLED), 0u);
}

}  // namespace
