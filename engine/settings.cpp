/// Defaults and ranges of the settings.
#include "engine/settings.h"

#include <cstdint>
#include <cstring>

#include "engine/band_team.h"
#include "engine/versioned.h"

namespace vlvk {

namespace {

struct Limits {
  std::int32_t VlvkSettings::*member;
  std::int32_t least;
  std::int32_t most;
};

constexpr Limits kLimits[] = {
    {&VlvkSettings::whitening, 0, 100},
    {&VlvkSettings::softening, 0, 1000},
    {&VlvkSettings::radius, VLVK_RADIUS_AUTO, 128},
    {&VlvkSettings::contrast, VLVK_CONTRAST_RELATIVE, VLVK_CONTRAST_ABSOLUTE},
    {&VlvkSettings::whitenArea, VLVK_WHITEN_ALL, VLVK_WHITEN_SKIN},
    {&VlvkSettings::evenTone, 0, 1000},
    {&VlvkSettings::threads, 0, kMostBands},
};

}  // namespace

VlvkSettings defaultSettings() {
  VlvkSettings settings{};
  settings.size = sizeof settings;
  settings.whitening = 50;
  settings.softening = 1000;
  settings.radius = VLVK_RADIUS_AUTO;
  settings.contrast = VLVK_CONTRAST_RELATIVE;
  return settings;
}

VlvkResult readSettings(const VlvkSettings* given, VlvkSettings& settings) {
  if (given == nullptr) return VLVK_NULL_POINTER;
  VlvkSettings read{};
  if (!copyVersioned<kFirstSettingsSize>(*given, read)) return VLVK_OTHER_VERSION;
  for (const Limits& limits : kLimits) {
    const std::int32_t value = read.*limits.member;
    if (value < limits.least || value > limits.most) return VLVK_BAD_SETTING;
  }
  read.size = sizeof read;
  settings = read;
  return VLVK_OK;
}

}  // namespace vlvk

void vlvkSettingsInit(VlvkSettings* settings, size_t size) {
  if (settings == nullptr || size < vlvk::kFirstSettingsSize || size > vlvk::kLargestStructure) return;
  const VlvkSettings defaults = vlvk::defaultSettings();
  std::memset(settings, 0, size);
  std::memcpy(settings, &defaults, sizeof defaults < size ? sizeof defaults : size);
  settings->size = static_cast<uint32_t>(size);
}
