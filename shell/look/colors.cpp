#include <QApplication>
#include <QHash>
#include <QPalette>
#include <cmath>

#include "shell/look/look.h"
#include "shell/settings/color_table.h"

namespace {
constexpr int MAX_LIGHTNESS = 255;
constexpr int DARK_LIGHTNESS = 128;
constexpr int LIGHTNESS_STEP = 4;
constexpr double MIN_CONTRAST = 4.5;      // of a text to its ground
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

// Relative luminance, 0 for black and 1 for white.
double Luminance(const QColor& Color) {
  const auto Linear = [](double Channel) {
    return Channel <= 0.04045 ? Channel / 12.92 : std::pow((Channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * Linear(Color.redF()) + 0.7152 * Linear(Color.greenF()) + 0.0722 * Linear(Color.blueF());
}

bool IsReadableOn(const QColor& Text, const QColor& Ground) {
  const double Lighter = std::max(Luminance(Text), Luminance(Ground));
  const double Darker = std::min(Luminance(Text), Luminance(Ground));
  return (Lighter + 0.05) / (Darker + 0.05) >= MIN_CONTRAST;
}

// Light enough to be read on the palette's grounds.
QColor LightenedFor(const QPalette& Palette, const QColor& Color) {
  int Lightness = std::max(Color.lightness(), MAX_LIGHTNESS - Color.lightness());
  for (;; Lightness = std::min(Lightness + LIGHTNESS_STEP, MAX_LIGHTNESS)) {
    const QColor Lighter = QColor::fromHsl(Color.hslHue(), Color.hslSaturation(), Lightness, Color.alpha());
    const bool bReadable =
        IsReadableOn(Lighter, Palette.color(QPalette::Base)) && IsReadableOn(Lighter, Palette.color(QPalette::Window));
    if (bReadable || Lightness == MAX_LIGHTNESS) return Lighter;
  }
}

}  // namespace

QColor GetColor(U32 ID) {
  return QColor::fromRgba(GetColorRgb(ID));
}

// The painting of every text asks: each colour is worked out once for a palette.
QColor ReadableColor(const QColor& Color) {
  if (!IsDarkPalette()) return Color;
  static qint64 CachedPalette = 0;
  static QHash<QRgb, QColor> Cache;
  const QPalette Palette = QApplication::palette();
  if (Palette.cacheKey() != CachedPalette) Cache.clear();
  CachedPalette = Palette.cacheKey();
  QColor& Known = Cache[Color.rgba()];
  if (!Known.isValid()) Known = LightenedFor(Palette, Color);
  return Known;
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
