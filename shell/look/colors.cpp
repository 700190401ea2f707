#include <QApplication>
#include <QPalette>

#include "shell/look/look.h"
#include "shell/settings/color_table.h"

namespace {
constexpr int DARK_LIGHTNESS = 128;  // of 255
}

QColor GetColor(U32 ID) {
  return QColor::fromRgba(GetColorRgb(ID));
}

void UpdatePaletteColors() {
  const QPalette Palette = QApplication::palette();
  SetPaletteColors(Palette.color(QPalette::Base).rgba(), Palette.color(QPalette::Window).rgba());
}

bool IsDarkPalette() {
  return QApplication::palette().color(QPalette::Window).lightness() < DARK_LIGHTNESS;
}
