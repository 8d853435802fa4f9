/// A host of frei0r plugins, as frei0r.h describes one, and what the engine makes of the same frame without a plugin.
#ifndef VLVK_TESTS_PLUGINS_FREI0R_FREI0R_HOST_H
#define VLVK_TESTS_PLUGINS_FREI0R_FREI0R_HOST_H

#include <dlfcn.h>

#include <cstring>
#include <string>
#include <vector>

#include <vlvk/makeup.h>
#include "plugins/frei0r/frei0r_api.h"
#include "tests/plugins/engine_input.h"

namespace frei0r_test {

using Pixels = std::vector<std::uint32_t>;
using plugin_test::Bytes;
using plugin_test::defaultSettings;
using plugin_test::randomTable;
using plugin_test::writeFile;

/// The built plugin, loaded.
struct Plugin {
  Plugin() { EXPECT_GE(find<decltype(&f0r_init)>("f0r_init")(), 0); }
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  ~Plugin() {
    find<decltype(&f0r_deinit)>("f0r_deinit")();
    EXPECT_EQ(dlclose(library), 0);
  }
  template <class Function>
  Function find(const char* name) const {
    return reinterpret_cast<Function>(dlsym(library, name));
  }

  void* library = dlopen(VLVK_FREI0R_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  decltype(&f0r_get_plugin_info) info = find<decltype(info)>("f0r_get_plugin_info");
  decltype(&f0r_get_param_info) paramInfo = find<decltype(paramInfo)>("f0r_get_param_info");
  decltype(&f0r_construct) construct = find<decltype(construct)>("f0r_construct");
  decltype(&f0r_destruct) destruct = find<decltype(destruct)>("f0r_destruct");
  decltype(&f0r_set_param_value) set = find<decltype(set)>("f0r_set_param_value");
  decltype(&f0r_get_param_value) get = find<decltype(get)>("f0r_get_param_value");
  decltype(&f0r_update) update = find<decltype(update)>("f0r_update");
};

/// A use of the plugin.
struct Filter {
  Filter(const Plugin& p, unsigned width, unsigned height) : plugin(p), instance(p.construct(width, height)) {}
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;
  ~Filter() { plugin.destruct(instance); }

  void set(int parameter, double value) const { plugin.set(instance, &value, parameter); }
  void setTable(std::string path) const {
    f0r_param_string text = path.data();
    plugin.set(instance, &text, 6);
    path.assign(path.size(), '?');  // the plugin has its own copy
  }
  template <class Value = double>
  Value get(int parameter) const {
    Value value = {};
    plugin.get(instance, &value, parameter);
    return value;
  }
  Pixels apply(Pixels source, bool inPlace = false) const {
    Pixels other(source.size());
    Pixels& target = inPlace ? source : other;
    plugin.update(instance, 0.04, source.data(), target.data());
    return target;
  }

  const Plugin& plugin;
  const f0r_instance_t instance;
};

/// Noise around skin colours, dark at the top, with any alpha.
inline Pixels skinNoise(unsigned width, unsigned height) {
  testing_support::Random random(width);
  Pixels pixels(std::size_t{width} * height);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto level = [&](std::size_t l) {
      return static_cast<std::uint8_t>(l * i / pixels.size() + random.byte() / 16);
    };
    const std::uint8_t bytes[] = {level(230), level(165), level(140), random.byte()};
    std::memcpy(&pixels[i], bytes, sizeof bytes);
  }
  return pixels;
}

/// The engine's result.
///
/// @param table  a resource file; empty: none
inline Pixels expected(Pixels pixels, unsigned width, const VlvkSettings& settings = defaultSettings(),
                       const Bytes& table = {}) {
  const int columns = static_cast<int>(width);
  const int rows = static_cast<int>(pixels.size() / width);
  const VlvkFrame frame = {
      sizeof frame, VLVK_RGBA, 0, 0, columns, rows, {reinterpret_cast<unsigned char*>(pixels.data())}, {columns * 4}};
  VlvkMakeup* makeup = nullptr;
  EXPECT_EQ(vlvkMakeupCreate(&makeup, &settings), VLVK_OK);
  EXPECT_EQ(vlvkMakeupSetTable(makeup, table.empty() ? nullptr : table.data(), table.size()), VLVK_OK);
  EXPECT_EQ(vlvkMakeupProcess(makeup, &frame, &frame, nullptr), VLVK_OK);
  vlvkMakeupDestroy(makeup);
  return pixels;
}

}  // namespace frei0r_test

#endif
