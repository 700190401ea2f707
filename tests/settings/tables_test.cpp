// Named constants, colours, fonts, and the command line.

#include <optional>
#include <set>

#include <gtest/gtest.h>

#include "shell/settings/cmd_line_args.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/settings_cache.h"
#include "tests/common/print.h"

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
  EXPECT_EQ(FindNamedConst("NOTHING"), nullptr);
  EXPECT_EQ(FindNamedConst(QString()), nullptr);
  EXPECT_EQ(NamedConstValue("\"Read/Write\""), 2);
  EXPECT_EQ(NamedConstValue("rm_break_at_main"), 1);
  EXPECT_STREQ(FindNamedConstByValue("BP_STATE_", 3)->sSymbol, "BP_STATE_DISABLED");
}

// Texts and their values; those without one are refused.
using NUMBER_CASE = std::pair<const char*, std::optional<I64>>;

TEST(NamedConstants, NumbersOfEveryBase) {
  const NUMBER_CASE Cases[] = {
      {"0x20000000", 0x20000000},
      {" 0XfF ", 255},
      {"010", 8},
      {"-0x10", -16},
      {"4294967295", 4294967295},
      {"AW_HALF_WORD", 2},
      {"\"16\"", 16},
      {"08", {}},
      {"0x", {}},
      {"", {}},
      {"12 34", {}},
      {"1.5", {}},
      {"99999999999999999999", {}},
  };
  for (const auto& [sText, Expected] : Cases) {
    bool bOk = false;
    const I64 Value = ParseConstOrNumber(sText, &bOk);
    EXPECT_EQ(bOk ? std::optional(Value) : std::nullopt, Expected) << sText;
  }
}

TEST(NamedConstants, Frequencies) {
  const NUMBER_CASE Cases[] = {
      {"auto", 0},          {"Adaptive", 65535}, {"4 MHz", 4'000'000}, {"500kHz", 500'000},
      {"0.5 mhz", 500'000}, {"32768 Hz", 32768}, {"4000", {}},         {"MHz", {}},
      {"4 GHz", {}},        {"5000 MHz", {}},    {"-1 Hz", {}},
  };
  for (const auto& [sText, Expected] : Cases) {
    bool bOk = false;
    const I64 Value = ParseFrequency(sText, &bOk);
    EXPECT_EQ(bOk ? std::optional(Value) : std::nullopt, Expected) << sText;
  }
}

TEST(Colors, PaletteRolesAndStore) {
  SetSettingsInMemory(true);
  ResetColors();
  SetPaletteColors(0xFF202020u, 0xFF303030u);
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFF202020u);
  SetPaletteColors(0xFFFFFFFFu, 0xFF303030u);
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFFFFFFFFu) << "follows the palette while it is not set";
  SetColorRgb(COLOR_CHANGE_LEVEL_1_BG, 0xFF112233u, true);
  SetColorRgb(COLOR_PC_ACTIVE, 0xFF445566u, false);
  SaveColors();
  const SETTING_GROUP Group = {"AppData", "Preferences", "Colors"};
  EXPECT_EQ(GetSettingKeys(Group), QStringList{"COLOR_CHANGE_LEVEL_1_BG"});
  EXPECT_EQ(GetSetting(Group, "COLOR_CHANGE_LEVEL_1_BG"), "#112233");
  SetSetting(Group, "COLOR_PC_INACTIVE", "#12345Z");
  ResetColors();
  LoadColors();
  EXPECT_EQ(GetColorRgb(COLOR_CHANGE_LEVEL_1_BG), 0xFF112233u);
  EXPECT_EQ(GetColorRgb(COLOR_PC_ACTIVE), 0xFF77FF6Du);
  EXPECT_EQ(GetColorRgb(COLOR_PC_INACTIVE), 0xFFE3FFC1u) << "an unreadable text gives the default";
  ResetColors();
  SaveColors();
  EXPECT_TRUE(GetSettingKeys(Group).isEmpty());
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
  // A font's text and what it is written as; nothing when it is refused.
  const std::pair<const char*, const char*> Cases[] = {
      {"Courier New, 10pt, Normal", "Courier New,  10pt,  Normal"},
      {"\"Courier New\",8pt,bold oblique", "Courier New,  8pt,  Bold Italic"},
      {"Sans, 59pt, Italic", "Sans,  59pt,  Italic"},
      {"Courier New, 60pt, Normal", ""},
      {"Courier New, 0pt, Normal", ""},
      {"Courier New, big, Normal", ""},
      {"Courier New, 10pt", ""},
      {"A, B, 10pt, Normal", ""},
      {"", ""},
  };
  for (const auto& [sText, sCanonical] : Cases) {
    bool bOk = false;
    const FONT_SPEC Font = ParseFontText(sText, &bOk);
    EXPECT_EQ(bOk ? FontSpecText(Font).toStdString() : "", sCanonical);
  }
  EXPECT_TRUE(IsMonospacedFamily("dejavu sans mono"));
  EXPECT_FALSE(IsMonospacedFamily("DejaVu Sans"));
}

TEST(CmdLine, OptionsAndValues) {
  // Device, host interface and identifier, target interface, its speed, program, log, its interval, debug mode.
  const std::pair<QStringList, const char*> Cases[] = {
      {{"vexor", "--DEVICE", "\"STM32F407IE\"", "-if", "SWD", "-usb", "-speed", "4000"},
       "STM32F407IE|USB||SWD|4000||||0"},
      {{"vexor", "-programfile", "C:\\a\\\\b.elf", "-nonsense", "-debug"}, "|||||C:/a/b.elf|||1"},
      {{"vexor", "-select", "USB=801000123", "-loginterval", "1", "-device"}, "|USB|801000123|||||1|0"},
      {{"-lumpack", "-ip", "192.168.1.2:3333", "-select", "usb", "-logfile", "-debug"},
       "MK66FN2M0XXX18|USB||SWD|2000||||1"},
  };
  for (const auto& [Args, sExpected] : Cases) {
    const CMD_LINE_ARGS A = ParseCmdLine(Args);
    const QStringList Found = {A.sDevice,   A.sHostIF,      A.sHostIFIdent,
                               A.sTargetIF, A.sTIFSpeed,    A.sProgramFile,
                               A.sLogFile,  A.sLogInterval, QString::number(A.DebugMode)};
    EXPECT_EQ(Found.join('|').toStdString(), sExpected);
  }
}

}  // namespace
