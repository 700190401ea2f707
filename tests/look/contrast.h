#pragma once
// Contrast of two colours, from 1 to 21.

#include <algorithm>
#include <cmath>

#include <QColor>

inline double Luminance(const QColor& Color) {
  const auto Linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * Linear(Color.redF()) + 0.7152 * Linear(Color.greenF()) + 0.0722 * Linear(Color.blueF());
}

inline double Contrast(const QColor& A, const QColor& B) {
  const auto [Dark, Light] = std::minmax({Luminance(A), Luminance(B)});
  return (Light + 0.05) / (Dark + 0.05);
}
