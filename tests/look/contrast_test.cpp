// Texts can be read on dark desktops of several makes, and a light one leaves their colours alone.

#include <gtest/gtest.h>

#include <cmath>

#include <QApplication>
#include <QPalette>

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
  const char* sName;
  QRgb Window;
  QRgb Base;
};
constexpr DESKTOP DARK_DESKTOPS[] = {
    {"black", 0xFF000000, 0xFF000000},
    {"neutral", 0xFF2B2B2B, 0xFF1E1E1E},
    {"blue", 0xFF31363B, 0xFF232629},
    {"light for a dark one", 0xFF3C3F41, 0xFF45494A},
};

double Luminance(QRgb Color) {
  double Sum = 0;
  const int aChannels[] = {qRed(Color), qGreen(Color), qBlue(Color)};
  const double aWeights[] = {0.2126, 0.7152, 0.0722};
  for (int i = 0; i < 3; ++i) {
    const double c = aChannels[i] / 255.0;
    Sum += aWeights[i] * (c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
  }
  return Sum;
}

double Contrast(QRgb a, QRgb b) {
  return (std::max(Luminance(a), Luminance(b)) + 0.05) / (std::min(Luminance(a), Luminance(b)) + 0.05);
}

void UseDesktop(QRgb Window, QRgb Base, Qt::GlobalColor Text) {
  QPalette Palette;
  Palette.setColor(QPalette::Window, QColor(Window));
  Palette.setColor(QPalette::Base, QColor(Base));
  Palette.setColor(QPalette::Text, Text);
  Palette.setColor(QPalette::WindowText, Text);
  QApplication::setPalette(Palette);
  UpdatePaletteColors();
}

TEST(ContrastTest, TextsAreReadableOnDarkDesktops) {
  for (const DESKTOP& Desktop : DARK_DESKTOPS) {
    UseDesktop(Desktop.Window, Desktop.Base, Qt::white);
    for (const U32 ID : TEXT_COLORS) {
      const QRgb Text = GetTextColor(ID).rgb();
      EXPECT_GE(Contrast(Text, Desktop.Base), MIN_CONTRAST) << Desktop.sName << " " << GetColorInfo(ID)->sName;
      EXPECT_GE(Contrast(Text, Desktop.Window), MIN_CONTRAST) << Desktop.sName << " " << GetColorInfo(ID)->sName;
    }
  }
}

TEST(ContrastTest, ColoursOfOneKindStayApartOnADarkDesktop) {
  UseDesktop(DARK_DESKTOPS[1].Window, DARK_DESKTOPS[1].Base, Qt::white);
  const U32 aKinds[] = {COLOR_SYNTAX_KEYWORD, COLOR_SYNTAX_STRING, COLOR_SYNTAX_COMMENT, COLOR_SYNTAX_TEXT};
  for (const U32 a : aKinds) {
    for (const U32 b : aKinds) {
      if (a != b) EXPECT_NE(GetTextColor(a), GetTextColor(b));
    }
  }
}

TEST(ContrastTest, LightDesktopAndTheUsersOwnColoursStayAsTheyAre) {
  UseDesktop(0xFFEFEFEF, 0xFFFFFFFF, Qt::black);
  for (const U32 ID : TEXT_COLORS) EXPECT_EQ(GetTextColor(ID), GetColor(ID)) << GetColorInfo(ID)->sName;
  UseDesktop(DARK_DESKTOPS[1].Window, DARK_DESKTOPS[1].Base, Qt::white);
  SetColorRgb(COLOR_SYNTAX_KEYWORD, 0xFF101010, false);
  EXPECT_EQ(GetTextColor(COLOR_SYNTAX_KEYWORD), QColor(0x10, 0x10, 0x10));
  ResetColors();
}

}  // namespace
