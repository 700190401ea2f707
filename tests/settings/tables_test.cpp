// Named constants, colours, fonts, and the command line.

#include <set>

#include <gtest/gtest.h>

#include "shell/settings/cmd_line_args.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/settings_cache.h"
#include "tests/common/print.h"

namespace {

TEST(NamedConstants, SymbolsAreUnique) {
  std::set<std::string> Symbols;
  for (const NAMED_CONST& Const : NamedConsts) EXPECT_TRUE(Symbols.insert(Const.sSymbol).second) << Const.sSymbol;
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
