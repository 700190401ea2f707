// Variables: what their texts are taken for, their ranges, and the commands that edit them.

#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "shell/settings/named_constants.h"
#include "shell/settings/preferences.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"

namespace {

class VariablesTest : public testing::Test {
protected:
  void SetUp() override { ResetVars(); }
  void TearDown() override {
    for (const U32 ID : {VAR_TIF_SPEED, VAR_TIF_SCAN_CHAIN_LEN}) RegisterVarAccessor(ID, {});
    ResetVars();
  }
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
  EXPECT_EQ(GetVarInfo(NUM_VARS), nullptr);
  EXPECT_EQ(FindVar(QStringLiteral("58")), nullptr);
  EXPECT_EQ(FindVar(QStringLiteral("-1")), nullptr);
  EXPECT_EQ(FindVar(QStringLiteral("PREF_NONE")), nullptr);
}

struct VALUE_CASE {
  VAR_ID ID;
  const char* sText;
  bool Ok;
  I32 Value;
};

TEST_F(VariablesTest, TextsOfValues) {
  const VALUE_CASE Cases[] = {
      {VAR_ACCESS_WIDTH, "Word", true, 4},
      {VAR_ACCESS_WIDTH, "AW_WORD", true, 4},
      {VAR_ACCESS_WIDTH, "\"word\"", true, 4},
      {VAR_ACCESS_WIDTH, "4", true, 4},
      {VAR_ACCESS_WIDTH, "3", true, 4},  // the index of an entry, as the last resort
      {VAR_ACCESS_WIDTH, "7", false, 0},
      {VAR_ACCESS_WIDTH, "-1", false, 0},
      {VAR_ACCESS_WIDTH, "Long", false, 0},
      {VAR_RESET_MODE, "RM_BREAK_AT_MAIN", true, 1},
      {VAR_RESET_MODE, "reset & run", true, 2},
      {VAR_TIF_SPEED, "4 MHz", true, 4'000'000},
      {VAR_TIF_SPEED, "FREQ_ADAPTIVE", true, 0xFFFF},
      {VAR_TIF_SPEED, "FREQ_200_HZ", false, 0},  // a frequency that the interface does not have
      {VAR_TIF_SPEED, "0xFFFF", true, 0xFFFF},
      {VAR_HSS_SPEED, "max", true, 0},
      {VAR_HSS_SPEED, "2 kHz", true, 2000},
      {VAR_RTT_ENABLED, "Enabled", true, 1},
      {VAR_RTT_ENABLED, "0x0", true, 0},
      {VAR_RTT_ENABLED, "2", false, 0},
      {VAR_TIF_SCAN_CHAIN_LEN, "0x10", true, 16},
      {VAR_TIF_SCAN_CHAIN_LEN, "1000000000", true, 1'000'000'000},
      {VAR_TIF_SCAN_CHAIN_LEN, "1000000001", false, 0},
      {VAR_TIF_SCAN_CHAIN_LEN, "4294967312", false, 0},  // 16 in the low 32 bits
      {VAR_TIF_SCAN_CHAIN_LEN, "-1", false, 0},
      {VAR_SWO_SPEED, "4 MHz", true, 4'000'000},
      {VAR_SWO_SPEED, "1.5 MHz", true, 1'500'000},
      {VAR_SWO_SPEED, "FREQ_20_KHZ", true, 20'000},
      {VAR_SWO_SPEED, "3000 MHz", false, 0},
      {VAR_SWO_SPEED, "fast", false, 0},
      {VAR_TRACE_PORT_DELAY_0, "-100000", true, -100'000},
      {VAR_TRACE_PORT_DELAY_0, "-100001", false, 0},
      {PREF_MAX_SYMBOL_MEMBERS, "100001", false, 0},
      {PREF_LINE_NUMBER_FREQ, "all lines", true, 2},
      {PREF_TERMINAL_EOL_FORMAT, "EOL_FORMAT_MAC", true, 2},
      {VAR_BREAK_AT_THIS_SYMBOL, "main", false, 0},
  };
  for (const VALUE_CASE& Case : Cases) {
    bool bOk = false;
    const U32 Value = ParseVarValue(GetVarInfo(Case.ID), QLatin1String(Case.sText), &bOk);
    EXPECT_EQ(bOk, Case.Ok) << GetVarName(Case.ID).toStdString() << " " << Case.sText;
    EXPECT_EQ(static_cast<I32>(Value), Case.Value) << GetVarName(Case.ID).toStdString() << " " << Case.sText;
  }
}

TEST_F(VariablesTest, TextOfAValueOutsideItsRange) {
  EXPECT_EQ(GetVarText(GetVarInfo(VAR_TRACE_PORT_DELAY_1), static_cast<U32>(-200000)),
            QLatin1String("Value -200000 is out of range (Min: -100000, Max: 100000)"));
  EXPECT_EQ(GetVarText(GetVarInfo(PREF_MAX_SYMBOL_MEMBERS), 100001),
            QLatin1String("Value 100001 is out of range (Min: 0, Max: 100000)"));
  EXPECT_EQ(GetVarText(GetVarInfo(VAR_SWO_SPEED), 12345), QLatin1String("12345 Hz"));
  EXPECT_EQ(GetVarRangeText(GetVarInfo(VAR_TRACE_PORT_DELAY_1)), QLatin1String("-100000 - 100000"));
  EXPECT_EQ(GetVarRangeText(GetVarInfo(VAR_TIF_SPEED)), QLatin1String("0 - 50000000"));
}

TEST_F(VariablesTest, SettingFromTextChangesNothingOnFailure) {
  const SYS_VAR* pSymbol = GetVarInfo(VAR_BREAK_AT_THIS_SYMBOL);
  EXPECT_EQ(0, SetVarFromText(pSymbol, QString(100, u'a'), 0));
  EXPECT_EQ(-1, SetVarFromText(pSymbol, QString(101, u'b'), 0));
  EXPECT_EQ(GetVarText(pSymbol), QString(100, u'a'));
  EXPECT_EQ(-1, SetVarValue(pSymbol, 1, 0));
  const SYS_VAR* pMembers = GetVarInfo(PREF_MAX_SYMBOL_MEMBERS);
  EXPECT_FALSE(IsVarSet(pMembers));
  EXPECT_EQ(-2, SetVarFromText(pMembers, QStringLiteral("-3"), 1));
  EXPECT_EQ(-1, SetVarFromText(pMembers, QStringLiteral("1e3"), 1));
  EXPECT_EQ(GetVarValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
  EXPECT_FALSE(IsVarSet(pMembers));
  EXPECT_EQ(0, SetVarFromText(pMembers, QStringLiteral("\"0x20\""), 0));
  EXPECT_TRUE(IsVarSet(pMembers));
  EXPECT_EQ(GetVarSavedValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
}

TEST_F(VariablesTest, EditSysVarAnswersWithCanonicalTextsOrTheErrorWords) {
  const struct {
    const char* sID;
    const char* sValue;
    const char* sName;
    const char* sText;
    const char* sError;
    const char* sDetail;
  } Cases[] = {
      {"var_trace_source", "0", "VAR_TRACE_SOURCE", "\"None\"", "", ""},
      {"14", "TRACE_SOURCE_SWO", "VAR_TRACE_SOURCE", "\"SWO\"", "", ""},
      {"VAR_TRACE_PORT_DELAY_0", "1234", "VAR_TRACE_PORT_DELAY_0", "1200", "", ""},
      {"VAR_TRACE_PORT_DELAY_0", "49", "VAR_TRACE_PORT_DELAY_0", "0", "", ""},
      {"VAR_TRACE_PORT_DELAY_3", "-1", "VAR_TRACE_PORT_DELAY_3", "-50", "", ""},
      {"VAR_BREAK_AT_THIS_SYMBOL", "Reset_Handler", "VAR_BREAK_AT_THIS_SYMBOL", "\"Reset_Handler\"", "", ""},
      {"VAR_FOO", "0", "", "", "unknown system variable", "\"VAR_FOO\""},
      {"99", "0", "", "", "unknown system variable", "\"99\""},
      {"VAR_ACCESS_WIDTH", "7", "", "", "invalid parameter", "\"7\""},
      {"VAR_TRACE_PORT_DELAY_0", "100050", "", "", "invalid parameter", "\"100050\""},
  };
  for (const auto& Case : Cases) {
    const VAR_EDIT Edit = EditSysVar(QLatin1String(Case.sID), QLatin1String(Case.sValue));
    EXPECT_EQ(Edit.sName.toStdString(), Case.sName);
    EXPECT_EQ(Edit.sText.toStdString(), Case.sText);
    EXPECT_EQ(Edit.sError.toStdString(), Case.sError);
    EXPECT_EQ(Edit.sDetail.toStdString(), Case.sDetail);
  }
  EXPECT_EQ(EditPreference(QStringLiteral("PREF_FOO"), QStringLiteral("1"), true).sError,
            QLatin1String("unknown preference"));
}

TEST_F(VariablesTest, ListenersHearOfSuccessfulEditsOnly) {
  QList<std::pair<U32, U32>> SysVars;
  QList<std::pair<U32, U32>> Preferences;
  const int A = AddSysVarListener([&](U32 ID, U32 Value) { SysVars.append({ID, Value}); });
  const int B = AddPreferenceListener([&](U32 ID, U32 Value) { Preferences.append({ID, Value}); });
  EditSysVar(QStringLiteral("VAR_TRACE_PORT_DELAY_1"), QStringLiteral("77"));
  EditSysVar(QStringLiteral("VAR_RTT_ENABLED"), QStringLiteral("maybe"));
  EditSysVar(QStringLiteral("VAR_ALLOW_DEBUG_MODIFIED_SRC"), QStringLiteral("yes"));
  EditPreference(QStringLiteral("PREF_TAB_SPACING"), QStringLiteral("8"), false);
  EditPreference(QStringLiteral("VAR_RTT_ENABLED"), QStringLiteral("on"), false);
  RemoveVarListener(A);
  RemoveVarListener(B);
  EditSysVar(QStringLiteral("VAR_RTT_ENABLED"), QStringLiteral("no"));
  EXPECT_EQ(SysVars, (QList<std::pair<U32, U32>>{{VAR_TRACE_PORT_DELAY_1, 50}}));
  EXPECT_EQ(Preferences, (QList<std::pair<U32, U32>>{{PREF_TAB_SPACING, 8}, {VAR_RTT_ENABLED, 1}}));
}

TEST_F(VariablesTest, OnlySavedPreferencesReachTheStore) {
  SetSettingsInMemory(true);
  EditPreference(QStringLiteral("PREF_TAB_SPACING"), QStringLiteral("4"), true);
  EditPreference(QStringLiteral("PREF_SHOW_TOOLTIPS"), QStringLiteral("no"), false);
  EditSysVar(QStringLiteral("VAR_RTT_ENABLED"), QStringLiteral("yes"));
  SavePreferences();
  const SETTING_GROUP Group = {QStringLiteral("AppData"), QStringLiteral("Preferences"), QStringLiteral("Preferences")};
  EXPECT_EQ(GetSettingKeys(Group).size(), 36);
  SetSetting(Group, QStringLiteral("PREF_LINE_NUMBER_FREQ"), QStringLiteral("77"));
  SetSetting(Group, QStringLiteral("PREF_MAX_SYMBOL_MEMBERS"), QStringLiteral("garbage"));
  ResetVars();
  LoadPreferences();
  EXPECT_EQ(GetVarValue(PREF_TAB_SPACING), 4u);
  EXPECT_EQ(GetVarValue(PREF_SHOW_TOOLTIPS), 1u);
  EXPECT_EQ(GetVarValue(PREF_LINE_NUMBER_FREQ), 2u) << "a stored value that the row does not have";
  EXPECT_EQ(GetVarValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
  EXPECT_EQ(GetVarValue(VAR_RTT_ENABLED), 0u);
}

TEST_F(VariablesTest, AccessorsOwnTheirValue) {
  std::atomic<U32> Speed = 1000;
  RegisterVarAccessor(VAR_TIF_SPEED, {[&] { return Speed.load(); }, [&](U32 Value) { Speed = Value; }});
  EXPECT_EQ(GetVarText(GetVarInfo(VAR_TIF_SPEED)), QLatin1String("1 kHz"));
  EXPECT_EQ(EditSysVar(QStringLiteral("VAR_TIF_SPEED"), QStringLiteral("2 MHz")).sError, QString());
  EXPECT_EQ(Speed, 2'000'000u);
  ResetVars();
  EXPECT_EQ(GetVarValue(VAR_TIF_SPEED), 2'000'000u);
}

TEST_F(VariablesTest, ValuesAreReadWhileTheMainThreadSetsThem) {
  std::atomic<bool> Stop = false;
  std::atomic<bool> Torn = false;
  std::thread Reader([&] {
    while (!Stop) {
      const U32 Value = GetVarValue(VAR_SWO_SPEED);
      if (Value != 0 && Value != 0x55555555u && Value != 0x2AAAAAAAu) Torn = true;
    }
  });
  for (int i = 0; i < 20000; ++i) SetVarValue(GetVarInfo(VAR_SWO_SPEED), i % 2 ? 0x55555555u : 0x2AAAAAAAu, 0);
  Stop = true;
  Reader.join();
  EXPECT_FALSE(Torn);
}

}  // namespace
