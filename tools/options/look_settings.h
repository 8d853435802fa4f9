/// The settings of a look as options and as axes of a sheet: names, values, and what --help says.
#ifndef VLVK_TOOLS_OPTIONS_LOOK_SETTINGS_H
#define VLVK_TOOLS_OPTIONS_LOOK_SETTINGS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <vlvk/makeup.h>

namespace vlvk::tool {

/// A word that stands for a value.
struct ValueWord {
  const char* word;
  int value;
};

/// Takes numbers, words, or both.
struct LookSetting {
  const char* option;
  const char* title;  ///< what a picture calls it
  std::int32_t VlvkSettings::*value;
  const char* help;
  std::span<const ValueWord> words;
  int low = 0;
  int high = -1;  ///< below `low`: no numbers
};

inline constexpr ValueWord kRadiusWords[] = {{"auto", VLVK_RADIUS_AUTO}};
inline constexpr ValueWord kContrastWords[] = {{"relative", VLVK_CONTRAST_RELATIVE},
                                               {"absolute", VLVK_CONTRAST_ABSOLUTE}};
inline constexpr ValueWord kWhitenAreaWords[] = {{"all", VLVK_WHITEN_ALL}, {"skin", VLVK_WHITEN_SKIN}};

inline constexpr LookSetting kLookSettings[] = {
    {"--whiten", "whitening (percent)", &VlvkSettings::whitening, "Whitening in percent", {}, 0, 100},
    {"--whiten-area", "area of whitening", &VlvkSettings::whitenArea,
     "What whitening lifts: the whole picture, or what has the colour of skin", kWhitenAreaWords},
    {"--soften", "softening", &VlvkSettings::softening, "Strength of skin smoothing", {}, 0, 1000},
    {"--radius", "radius (pixels)", &VlvkSettings::radius,
     "Reach of the smoothing in pixels, rounded up to a multiple of 8; 0: none; auto: by the size of the picture",
     kRadiusWords, 0, 128},
    {"--contrast", "contrast", &VlvkSettings::contrast,
     "What the smoothing takes for an edge: contrast relative to the brightness around it, or in levels",
     kContrastWords},
    {"--even-tone",
     "evening of tone",
     &VlvkSettings::evenTone,
     "Evening of the colour of skin, such as red spots; 0: none",
     {},
     0,
     1000},
};

/// The values that it takes: "auto|0..128".
std::string valuesOf(const LookSetting& setting);

/// A value as options and sheets write it.
std::string spelled(const LookSetting& setting, int value);

/// One of its values. Throws Error, a bare reason, for another text.
int readSetting(const LookSetting& setting, std::string_view text);

/// One direction of a sheet: a setting and the values that it takes in turn.
struct SheetAxis {
  const LookSetting* setting;
  std::vector<int> values;
};

/// "whiten", "soften" and so on, as readAxis takes them.
std::vector<std::string> axisNames();

/// "whiten=0,25,50". Throws Error, a bare reason, for another text.
SheetAxis readAxis(const std::string& text);

}  // namespace vlvk::tool

#endif
