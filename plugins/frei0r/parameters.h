/// The parameters of the plugin: how hosts show them, and what they mean for the engine.
#ifndef VLVK_PLUGINS_FREI0R_PARAMETERS_H
#define VLVK_PLUGINS_FREI0R_PARAMETERS_H

#include <array>

#include <vlvk/makeup.h>

namespace vlvk::frei0r {

/// Projects of hosts name parameters by these numbers: new ones come at the end.
enum Parameter {
  kWhitening,
  kSoftening,
  kRadius,
  kRelativeContrast,
  kWhitenSkinOnly,
  kEvenTone,
  kTable,  ///< a path, all before it are numbers
  kParameterCount
};

struct ParameterText {
  const char* name;
  int type;  ///< an F0R_PARAM_ of frei0r.h
  const char* explanation;
};

/// @param parameter  0 to kParameterCount - 1
const ParameterText& parameterText(int parameter);

/// The values of all parameters but the table, as hosts set them: 0 to 1, switches being on from 0.5 on.
using Numbers = std::array<double, kTable>;

/// Gives the picture that the engine's own defaults give.
inline constexpr Numbers kDefaultNumbers = {0.5, 1, 0, 1, 0, 0};

/// Settings of the engine, all in their ranges.
///
/// @param numbers  no NaN; what is out of range counts as its end
VlvkSettings settingsOf(const Numbers& numbers);

}  // namespace vlvk::frei0r

#endif
