#include <QApplication>
#include <QPalette>

#include "shell/look/look.h"
#include "shell/settings/color_table.h"

namespace {
constexpr int MAX_LIGHTNESS = 255;
constexpr int DARK_LIGHTNESS = 128;
constexpr int PLACEHOLDER_CONTRAST = 48;  // of lightness
constexpr int PLACEHOLDER_ALPHA = 128;

// Some desktops give a dark palette without saying what hints in empty fields look like.
void MakePlaceholdersReadable() {
  QPalette Palette = QApplication::palette();
  const int Contrast = Palette.color(QPalette::PlaceholderText).lightness() - Palette.color(QPalette::Base).lightness();
  if (std::abs(Contrast) >= PLACEHOLDER_CONTRAST) return;
  QColor Color = Palette.color(QPalette::Text);
  Color.setAlpha(PLACEHOLDER_ALPHA);
  Palette.setColor(QPalette::PlaceholderText, Color);
  if (Palette != QApplication::palette()) QApplication::setPalette(Palette);
}

}  // namespace

QColor GetColor(U32 ID) {
  return QColor::fromRgba(GetColorRgb(ID));
}

QColor ReadableColor(const QColor& Color) {
  if (!IsDarkPalette() || Color.lightness() >= DARK_LIGHTNESS) return Color;
  return QColor::fromHsl(Color.hslHue(), Color.hslSaturation(), MAX_LIGHTNESS - Color.lightness(), Color.alpha());
}

QColor GetTextColor(U32 ID) {
  return IsColorModified(ID) ? GetColor(ID) : ReadableColor(GetColor(ID));
}

void UpdatePaletteColors() {
  MakePlaceholdersReadable();
  const QPalette Palette = QApplication::palette();
  SetPaletteColors(Palette.color(QPalette::Base).rgba(), Palette.color(QPalette::Window).rgba());
}

bool IsDarkPalette() {
  return QApplication::palette().color(QPalette::Window).lightness() < DARK_LIGHTNESS;
}
