// Named constants, colours, fonts, and the command line.

#include <set>

#include <gtest/gtest.h>

#include "shell/settings/cmd_line_args.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/settings_cache.h"

namespace {

TEST(NamedConstants, SymbolsAreUniqueAndFoundInAnyCase) {
  std::set<std::string> Symbols;
  for (const NAMED_CONST& Const : NamedConsts) {
    EXPECT_TRUE(Symbols.insert(Const.sSymbol).second) << Const.sSymbol;
    const NAMED_CONST* pFound = FindNamedConst(QString::fromLatin1(Const.sSymbol).toLower());
    ASSERT_NE(pFound, nullptr) << Const.sSymbol;
    // "DISABLED" is also the display text of an earlier row, which then answers
    if (QLatin1String(pFound->sSymbol) != QLatin1String(Const.sSymbol)) {
      EXPECT_LT(pFound, &Const);
      EXPECT_EQ(QString::fromLatin1(pFound->sDisplayText).compare(QLatin1String(Const.sSymbol), Qt::CaseInsensitive),
                0);
    }
  }
  EXPECT_EQ(FindNamedConst(QStringLiteral("NOTHING")), nullptr);
  EXPECT_EQ(FindNamedConst(QString()), nullptr);
  EXPECT_EQ(NamedConstValue(QStringLiteral("\"Read/Write\"")), 2);
  EXPECT_EQ(NamedConstValue(QStringLiteral("rm_break_at_main")), 1);
  EXPECT_STREQ(FindNamedConstByValue(QStringLiteral("BP_STATE_"), 3)->sSymbol, "BP_STATE_DISABLED");
}

struct NUMBER_CASE {
  const char* sText;
  bool Ok;
  I64 Value;
};

TEST(NamedConstants, NumbersOfEveryBase) {
  const NUMBER_CASE Cases[] = {
      {"0x20000000", true, 0x20000000},
      {" 0XfF ", true, 255},
      {"010", true, 8},
      {"-0x10", true, -16},
      {"4294967295", true, 4294967295},
      {"AW_HALF_WORD", true, 2},
      {"\"16\"", true, 16},
      {"08", false, 0},
      {"0x", false, 0},
      {"", false, 0},
      {"12 34", false, 0},
      {"1.5", false, 0},
      {"99999999999999999999", false, 0},
  };
  for (const NUMBER_CASE& Case : Cases) {
    bool bOk = false;
    const I64 Value = ParseConstOrNumber(QLatin1String(Case.sText), &bOk);
    EXPECT_EQ(bOk, Case.Ok) << Case.sText;
    if (!Case.Ok) continue;
    EXPECT_EQ(Value, Case.Value) << Case.sText;
  }
}

TEST(NamedConstants, Frequencies) {
  const NUMBER_CASE Cases[] = {
      {"auto", true, 0},          {"Adaptive", true, 65535}, {"4 MHz", true, 4'000'000}, {"500kHz", true, 500'000},
      {"0.5 mhz", true, 500'000}, {"32768 Hz", true, 32768}, {"4000", false, 0},         {"MHz", false, 0},
      {"4 GHz", false, 0},        {"5000 MHz", false, 0},    {"-1 Hz", false, 0},
  };
  for (const NUMBER_CASE& Case : Cases) {
    bool bOk = false;
    EXPECT_EQ(ParseFrequency(QLatin1String(Case.sText), &bOk), Case.Value) << Case.sText;
    EXPECT_EQ(bOk, Case.Ok) << Case.sText;
  }
}

TEST(Colors, NamesPaletteRolesAndStore) {
  SetSettingsInMemory(true);
  ResetColors();
  SetPaletteColors(0xFF202020u, 0xFF303030u);
  EXPECT_EQ(FindColor(QStringLiteral("color_pc_active")), COLOR_PC_ACTIVE);
  EXPECT_EQ(FindColor(QStringLiteral("PC Row Active")), COLOR_PC_ACTIVE);
  EXPECT_EQ(FindColor(QStringLiteral("44")), COLOR_TABLE_FILTER_MATCH);
  EXPECT_EQ(FindColor(QStringLiteral("45")), -1);
  EXPECT_EQ(FindColor(QStringLiteral("no color")), -1);
  EXPECT_EQ(GetColorRgb(COLOR_PC_ACTIVE), 0xFF77FF6Du);
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFF202020u);
  SetPaletteColors(0xFFFFFFFFu, 0xFF303030u);
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFFFFFFFFu) << "follows the palette while it is not set";
  EXPECT_FALSE(IsColorModified(COLOR_CHANGE_LEVEL_1_BG));

  SetColorRgb(COLOR_CHANGE_LEVEL_1_BG, 0xFF112233u, true);
  SetColorRgb(COLOR_PC_ACTIVE, 0xFF445566u, false);
  SaveColors();
  const SETTING_GROUP Group = {QStringLiteral("AppData"), QStringLiteral("Preferences"), QStringLiteral("Colors")};
  EXPECT_EQ(GetSettingKeys(Group), QStringList{"COLOR_CHANGE_LEVEL_1_BG"});
  EXPECT_EQ(GetSetting(Group, QStringLiteral("COLOR_CHANGE_LEVEL_1_BG")), QStringLiteral("#112233"));
  SetSetting(Group, QStringLiteral("COLOR_PC_INACTIVE"), QStringLiteral("#12345Z"));
  ResetColors();
  LoadColors();
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFF112233u);
  EXPECT_TRUE(IsColorModified(COLOR_CHANGE_LEVEL_1_BG));
  EXPECT_EQ(GetColorRgb(COLOR_PC_ACTIVE), 0xFF77FF6Du);
  EXPECT_EQ(GetColorRgb(COLOR_PC_INACTIVE), 0xFFE3FFC1u) << "an unreadable text gives the default";
  ResetColors();
  SaveColors();
  EXPECT_TRUE(GetSettingKeys(Group).isEmpty());
  EXPECT_EQ(-1, SetColorRgb(NUM_COLORS, 0, true));
}

TEST(Colors, DerivedColours) {
  EXPECT_EQ(ContrastColor(0xFF101010u, 0x20), 0xFF303030u);
  EXPECT_EQ(ContrastColor(0xFFF0F0F8u, 0x20), 0xFFD0D0D8u);
  EXPECT_EQ(ContrastColor(0xFF00F000u, 0x20), 0xFF20FF20u) << "dark by its lightness, one channel at its end";
  EXPECT_EQ(ContrastColor(0xFFFF1010u, 0x20), 0xFFDF0000u);
  SetPaletteColors(0xFFFFFF00u, 0xFF00FF11u);
  EXPECT_EQ(GetAlternateBase(), 0xFF7FFF08u);
}

TEST(Fonts, TextsAreReadAndWritten) {
  const struct {
    const char* sText;
    bool Ok;
    const char* sCanonical;
  } Cases[] = {
      {"Courier New, 10pt, Normal", true, "Courier New,  10pt,  Normal"},
      {"\"Courier New\",8pt,bold oblique", true, "Courier New,  8pt,  Bold Italic"},
      {"Sans, 59pt, Italic", true, "Sans,  59pt,  Italic"},
      {"Courier New, 60pt, Normal", false, ""},
      {"Courier New, 0pt, Normal", false, ""},
      {"Courier New, big, Normal", false, ""},
      {"Courier New, 10pt", false, ""},
      {"A, B, 10pt, Normal", false, ""},
      {"", false, ""},
  };
  for (const auto& Case : Cases) {
    bool bOk = false;
    const FONT_SPEC Font = ParseFontText(QLatin1String(Case.sText), &bOk);
    EXPECT_EQ(bOk, Case.Ok) << Case.sText;
    if (!Case.Ok) continue;
    EXPECT_EQ(FontSpecText(Font).toStdString(), Case.sCanonical);
  }
  EXPECT_EQ(FindFont(QStringLiteral("font_console")), FONT_CONSOLE);
  EXPECT_EQ(FindFont(QStringLiteral("11")), -1);
  EXPECT_TRUE(IsMonospacedFamily(QStringLiteral("dejavu sans mono")));
  EXPECT_FALSE(IsMonospacedFamily(QStringLiteral("DejaVu Sans")));
  // what a font falls back to ends at a font of its own
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    U32 Parent = ID;
    int NumSteps = 0;
    while (GetFontInfo(Parent)->Parent != Parent && NumSteps < 20) Parent = GetFontInfo(Parent)->Parent, ++NumSteps;
    EXPECT_LT(NumSteps, 20) << ID;
  }
}

TEST(CmdLine, OptionsAndValues) {
  const CMD_LINE_ARGS A = ParseCmdLine({"vexor", "--DEVICE", "\"STM32F407IE\"", "-if", "SWD", "-usb", "-speed", "4000",
                                        "-programfile", "C:\\a\\\\b.elf", "-nonsense", "-debug"});
  EXPECT_EQ(A.sDevice, QLatin1String("STM32F407IE"));
  EXPECT_EQ(A.sHostIF, QLatin1String("USB"));
  EXPECT_EQ(A.sHostIFIdent, QString());
  EXPECT_EQ(A.sTargetIF, QLatin1String("SWD"));
  EXPECT_EQ(A.sTIFSpeed, QLatin1String("4000"));
  EXPECT_EQ(A.sProgramFile, QLatin1String("C:/a/b.elf"));
  EXPECT_TRUE(A.DebugMode);

  const CMD_LINE_ARGS B = ParseCmdLine({"vexor", "-select", "USB=801000123", "-loginterval", "1", "-device"});
  EXPECT_EQ(B.sHostIF, QLatin1String("USB"));
  EXPECT_EQ(B.sHostIFIdent, QLatin1String("801000123"));
  EXPECT_EQ(B.sLogInterval, QLatin1String("1"));
  EXPECT_EQ(B.sDevice, QString());

  const CMD_LINE_ARGS C = ParseCmdLine({"-lumpack", "-ip", "192.168.1.2:3333", "-select", "usb", "-logfile", "-debug"});
  EXPECT_EQ(C.sDevice, QLatin1String("MK66FN2M0XXX18"));
  EXPECT_EQ(C.sHostIF, QLatin1String("USB"));
  EXPECT_EQ(C.sLogFile, QString());
  EXPECT_TRUE(C.DebugMode);
}

}  // namespace
