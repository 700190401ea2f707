// Texts can be read on dark desktops of several makes, and a light one leaves their colours alone.

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

#include "contrast.h"
#include "shell/look/look.h"
#include "shell/settings/color_table.h"
#include "shell/settings/colors.h"

namespace {

constexpr double MIN_CONTRAST = 4.5;

constexpr U32 TEXT_COLORS[] = {
    COLOR_CHANGE_LEVEL_1_FG, COLOR_CHANGE_LEVEL_2_FG,   COLOR_CHANGE_LEVEL_3_FG,  COLOR_SYNTAX_REGISTER,
    COLOR_SYNTAX_LABEL,      COLOR_SYNTAX_MNEMONIC,     COLOR_SYNTAX_IMMEDIATE,   COLOR_SYNTAX_KEYWORD,
    COLOR_SYNTAX_DIRECTIVE,  COLOR_SYNTAX_STRING,       COLOR_SYNTAX_COMMENT,     COLOR_SYNTAX_TEXT,
    COLOR_LINE_NUMBERS,      COLOR_LOGGING_SCRIPT,      COLOR_LOGGING_USER,       COLOR_LOGGING_ERROR,
    COLOR_LOGGING_VNODE,     COLOR_TABLE_ITEM_INACTIVE, COLOR_TABLE_FILTER_MATCH,
};

struct DESKTOP {
  QRgb Window;
  QRgb Base;
};
// Black, neutral, blue, and light for a dark one.
constexpr DESKTOP DARK_DESKTOPS[] = {
    {0xFF000000, 0xFF000000}, {0xFF2B2B2B, 0xFF1E1E1E}, {0xFF31363B, 0xFF232629}, {0xFF3C3F41, 0xFF45494A}};

void UseDesktop(const DESKTOP& Desktop, Qt::GlobalColor Text) {
  QPalette Palette;
  Palette.setColor(QPalette::Window, QColor(Desktop.Window));
  Palette.setColor(QPalette::Base, QColor(Desktop.Base));
  Palette.setColor(QPalette::Text, Text);
  Palette.setColor(QPalette::WindowText, Text);
  QApplication::setPalette(Palette);
  UpdatePaletteColors();
}

TEST(ContrastTest, TextsAreReadableOnDarkDesktops) {
  for (const DESKTOP& Desktop : DARK_DESKTOPS) {
    UseDesktop(Desktop, Qt::white);
    for (const U32 ID : TEXT_COLORS) {
      const QColor Text = GetTextColor(ID);
      EXPECT_GE(Contrast(Text, Desktop.Base), MIN_CONTRAST)
          << std::hex << Desktop.Base << " " << GetColorInfo(ID)->sName;
      EXPECT_GE(Contrast(Text, Desktop.Window), MIN_CONTRAST)
          << std::hex << Desktop.Base << " " << GetColorInfo(ID)->sName;
    }
  }
}

TEST(ContrastTest, LightDesktopAndTheUsersOwnColoursStayAsTheyAre) {
  UseDesktop({0xFFEFEFEF, 0xFFFFFFFF}, Qt::black);
  for (const U32 ID : TEXT_COLORS) EXPECT_EQ(GetTextColor(ID), GetColor(ID)) << GetColorInfo(ID)->sName;
  UseDesktop(DARK_DESKTOPS[1], Qt::white);
  SetColorRgb(COLOR_SYNTAX_KEYWORD, 0xFF101010, false);
  EXPECT_EQ(GetTextColor(COLOR_SYNTAX_KEYWORD), QColor(0x10, 0x10, 0x10));
  ResetColors();
}

}  // namespace
