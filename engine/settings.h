/// The settings of a handle.
#ifndef VLVK_ENGINE_SETTINGS_H
#define VLVK_ENGINE_SETTINGS_H

#include <vlvk/makeup.h>

namespace vlvk {

/// What a handle does until it is configured.
VlvkSettings defaultSettings();

/// Reads a caller's settings, all or none.
///
/// @param given     of any version; null is VLVK_NULL_POINTER
/// @param settings  written where the result is VLVK_OK
VlvkResult readSettings(const VlvkSettings* given, VlvkSettings& settings);

}  // namespace vlvk

#endif
