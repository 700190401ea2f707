// Fonts: what inherits from what, the fixed-pitch form, and which of them the settings keep.

#include <gtest/gtest.h>

#include <QFontInfo>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"

using namespace Qt::StringLiterals;

namespace {

const SETTING_GROUP GROUP = {u"AppData"_s, u"Preferences"_s, u"Fonts"_s};

QFont FontOf(const char* sText) {
  bool bOk = false;
  const QFont Font = TextToFont(QLatin1String(sText), &bOk);
  EXPECT_TRUE(bOk) << sText;
  return Font;
}

class FontsTest : public testing::Test {
protected:
  void SetUp() override { SetSettingsInMemory(true); }
  void TearDown() override {
    for (U32 ID = 0; ID < NUM_FONTS; ++ID) SetFont(ID, GetInheritedFont(ID), true);
    SaveColorsAndFonts();
  }
};

TEST_F(FontsTest, AFontReachesThoseThatInheritIt) {
  // A font is set; the others that have its size then. Two have the toolkit's font and inherit none of these.
  const std::pair<U32, QList<U32>> CASES[] = {
      {FONT_APP,
       {FONT_APP, FONT_APP_MONO, FONT_ITEM_NAME, FONT_ITEM_VALUE, FONT_TABLE_HEADER, FONT_SRC_CODE, FONT_SRC_ASM_CODE,
        FONT_ASM_CODE, FONT_CONSOLE}},
      {FONT_APP_MONO, {FONT_APP_MONO, FONT_ITEM_VALUE, FONT_SRC_CODE, FONT_SRC_ASM_CODE, FONT_ASM_CODE}},
      {FONT_ITEM_NAME, {FONT_ITEM_NAME, FONT_TABLE_HEADER}},
      {FONT_SRC_CODE, {FONT_SRC_CODE, FONT_SRC_ASM_CODE}},
      {FONT_CONSOLE, {FONT_CONSOLE}},
      {FONT_LINE_NUMBERS, {FONT_LINE_NUMBERS}},
  };
  for (const auto& [Changed, Heirs] : CASES) {
    SetFont(Changed, FontOf("DejaVu Serif, 31pt, Bold"), false, false);
    for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
      EXPECT_EQ(GetFont(ID).pointSize() == 31, Heirs.contains(ID)) << Changed << " to " << ID;
      EXPECT_EQ(IsFontModified(ID), ID == Changed);
    }
    SetFont(Changed, GetInheritedFont(Changed), false, false);
    EXPECT_FALSE(IsFontModified(Changed)) << "the inherited font counts as none";
  }
}

TEST_F(FontsTest, TheFixedPitchFormIsOneAndKeepsSizeAndStyle) {
  for (const char* const sText : {"DejaVu Sans, 11pt, Normal", "DejaVu Serif, 20pt, Bold Italic"}) {
    const QFont Font = FontOf(sText);
    const QFont Mono = MonospacedForm(Font);
    EXPECT_TRUE(QFontInfo(Mono).fixedPitch()) << sText;
    EXPECT_EQ(QFontInfo(Mono).family().toStdString(), Mono.family().toStdString()) << "a family that there is";
    const auto StyleOf = [](const QFont& f) { return std::tuple(f.pointSize(), f.weight(), f.italic()); };
    EXPECT_EQ(StyleOf(Mono), StyleOf(Font)) << sText;
    EXPECT_EQ(MonospacedForm(Mono), Mono);
  }
  EXPECT_EQ(MonospacedForm(FontOf("courier new, 9pt, Normal")).family(), u"courier new"_s);
}

TEST_F(FontsTest, TheSettingsKeepWhatWasSavedAndNotWhatACommandSet) {
  SetFont(FONT_SRC_CODE, FontOf("DejaVu Serif, 14pt, Bold"), true);
  SetFont(FONT_SRC_CODE, FontOf("DejaVu Serif, 15pt, Normal"), false);
  SetFont(FONT_ASM_CODE, FontOf("DejaVu Serif, 16pt, Normal"), false);
  EXPECT_EQ(GetFont(FONT_SRC_CODE).pointSize(), 15);
  SetSetting(GROUP, u"FONT_CONSOLE"_s, u"DejaVu Sans, 60pt, Normal"_s);
  SaveColorsAndFonts();
  EXPECT_EQ(GetSettingKeys(GROUP), QStringList{"FONT_SRC_CODE"});
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) SetFont(ID, GetInheritedFont(ID), true);
  SetSetting(GROUP, u"FONT_CONSOLE"_s, u"DejaVu Sans, 60pt, Normal"_s);
  LoadColorsAndFonts();
  EXPECT_EQ(FontToText(FONT_SRC_CODE), u"DejaVu Serif,  14pt,  Bold"_s);
  EXPECT_FALSE(IsFontModified(FONT_ASM_CODE));
  EXPECT_FALSE(IsFontModified(FONT_CONSOLE)) << "a size that is refused";
}

}  // namespace
