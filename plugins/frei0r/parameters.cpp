/// See parameters.h.
#include "plugins/frei0r/parameters.h"

#include <algorithm>
#include <cmath>

#include "plugins/frei0r/frei0r_api.h"

namespace vlvk::frei0r {
namespace {

constexpr std::array<ParameterText, kParameterCount> kTexts = {{
    {"whitening", F0R_PARAM_DOUBLE, "How much lighter; 0 leaves colours alone"},
    {"softening", F0R_PARAM_DOUBLE, "Smoothing of skin; 0: none"},
    {"radius", F0R_PARAM_DOUBLE,
     "Reach of the smoothing, times 128 pixels, rounded up to a multiple of 8; 0: goes with the size of the frame"},
    {"relative contrast", F0R_PARAM_BOOL,
     "Measure contrast against the brightness around it, which keeps edges and eyes in dim light; off: in levels"},
    {"whiten skin only", F0R_PARAM_BOOL, "Whiten what has the colour of skin; off: the whole picture"},
    {"even tone", F0R_PARAM_DOUBLE, "Evening of skin colour, such as red spots; 0: none"},
    {"table", F0R_PARAM_STRING, "Path of a colour table, an adjust.vlk file; empty: none"},
}};

constexpr double kPixelsOfRadius = 128;

int scaled(double number, double whole) {
  return static_cast<int>(std::lround(std::clamp(number, 0.0, 1.0) * whole));
}

bool isOn(double number) {
  return number >= 0.5;
}

// 0 pixels would be no smoothing at all, which softening is there for.
int radiusOf(double number) {
  return number > 0 ? std::max(scaled(number, kPixelsOfRadius), 1) : VLVK_RADIUS_AUTO;
}

}  // namespace

const ParameterText& parameterText(int parameter) {
  return kTexts[static_cast<unsigned>(parameter)];
}

VlvkSettings settingsOf(const Numbers& numbers) {
  VlvkSettings settings = {};
  vlvkSettingsInit(&settings, sizeof settings);
  settings.whitening = scaled(numbers[kWhitening], 100);
  settings.softening = scaled(numbers[kSoftening], 1000);
  settings.radius = radiusOf(numbers[kRadius]);
  settings.contrast = isOn(numbers[kRelativeContrast]) ? VLVK_CONTRAST_RELATIVE : VLVK_CONTRAST_ABSOLUTE;
  settings.whitenArea = isOn(numbers[kWhitenSkinOnly]) ? VLVK_WHITEN_SKIN : VLVK_WHITEN_ALL;
  settings.evenTone = scaled(numbers[kEvenTone], 1000);
  return settings;
}

}  // namespace vlvk::frei0r
