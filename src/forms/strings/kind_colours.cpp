#include "forms/strings/kind_colours.h"

#include "serial_strings/serial_string.h"

#include <cmath>

namespace qdm {
namespace {

constexpr double kReadableContrast = 5.5;  // more than normal text needs, of 1..21

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) + 0.0722 * Linear(colour.blueF());
}

QColor ReadableOn(const QColor& colour, const QColor& background) {
  const double behind = Luminance(background);
  if (behind > 0.5) return colour;
  if (colour.saturation() == 0) return QColor(0xE6, 0xE6, 0xE6);
  float hue = 0;
  float saturation = 0;
  float lightness = 0;
  colour.getHslF(&hue, &saturation, &lightness);
  QColor lighter = colour;
  while (lightness < 1.0F && (Luminance(lighter) + 0.05) / (behind + 0.05) < kReadableContrast) {
    lightness = std::fmin(1.0F, lightness + 0.02F);
    lighter = QColor::fromHslF(hue, saturation, lightness);
  }
  return lighter;
}

}  // namespace

QColor KindColourOn(std::uint8_t kind, const QColor& background) {
  return ReadableOn(QColor(static_cast<QRgb>(KindColour(kind))), background);
}

QColor ErrorColourOn(const QColor& background) { return ReadableOn(QColor(0xC0, 0, 0), background); }

}  // namespace qdm
