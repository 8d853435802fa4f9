/// What tests of plugins give to the engine beside a plugin, and to the plugin.
#ifndef VLVK_TESTS_PLUGINS_ENGINE_INPUT_H
#define VLVK_TESTS_PLUGINS_ENGINE_INPUT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <vlvk/makeup.h>
#include "tests/support/random_content.h"

namespace plugin_test {

using Bytes = std::vector<std::uint8_t>;

inline VlvkSettings defaultSettings() {
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  return settings;
}

/// A resource file of any colours.
inline Bytes randomTable() {
  testing_support::Random random(7);
  Bytes file(12 + (1 << 20));
  std::generate(file.begin() + 12, file.end(), [&] { return random.byte(); });
  file[5] = file[9] = 4;  // 1024 * 1024 bytes follow
  return file;
}

/// Writes a file of the running test.
///
/// @return its path
inline std::string writeFile(const std::string& name, const Bytes& bytes) {
  const std::string path =
      testing::TempDir() + testing::UnitTest::GetInstance()->current_test_info()->name() + '-' + name;
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
  return path;
}

}  // namespace plugin_test

#endif
