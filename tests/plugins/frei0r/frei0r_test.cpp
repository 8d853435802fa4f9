/// The frei0r plugin in a host: what it says of itself, and its results against the engine's own.
#include <cmath>
#include <set>
#include <thread>

#include "tests/plugins/frei0r/frei0r_host.h"

namespace frei0r_test {
namespace {

TEST(Frei0r, TellsWhatItIsAndWhatCanBeSet) {
  const char* const names[] = {"whitening",        "softening", "radius", "relative contrast",
                               "whiten skin only", "even tone", "table"};
  const double initial[] = {0.5, 1, 0, 1, 0, 0, 0};
  for (int load = 0; load < 2; ++load) {  // hosts unload what they only ask
    const Plugin plugin;
    f0r_plugin_info_t info = {};
    plugin.info(&info);
    EXPECT_STREQ(info.name, "vlvkmakeup");
    EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_FILTER);
    EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_RGBA8888);
    ASSERT_EQ(info.num_params, 7);
    const Filter filter(plugin, 8, 8);
    std::set<std::string> explanations = {info.explanation, ""};
    for (int i = 0; i < 7; ++i) {
      f0r_param_info_t parameter = {};
      plugin.paramInfo(&parameter, i);
      EXPECT_STREQ(parameter.name, names[i]);
      EXPECT_EQ(parameter.type, i == 6 ? F0R_PARAM_STRING : i == 3 || i == 4 ? F0R_PARAM_BOOL : F0R_PARAM_DOUBLE) << i;
      EXPECT_TRUE(explanations.insert(parameter.explanation).second) << parameter.explanation;
      EXPECT_EQ(i < 6 ? filter.get(i) : 0, initial[i]) << i;
    }
    EXPECT_STREQ(filter.get<char*>(6), "");
  }
}

TEST(Frei0r, DefaultsGiveTheEnginesDefaultResultAtAnySizeAndKeepAlpha) {
  const Plugin plugin;
  for (const auto& [width, height] : {std::pair{853U, 481U}, {17U, 13U}, {1U, 1U}, {640U, 360U}, {2056U, 8U}}) {
    const Filter filter(plugin, width, height);
    const Pixels source = skinNoise(width, height);
    const Pixels result = filter.apply(source);
    EXPECT_EQ(result, expected(source, width)) << width << " x " << height;
    EXPECT_EQ(result, filter.apply(source, true)) << width << " x " << height;
    const auto* bytes = reinterpret_cast<const unsigned char*>(source.data());
    const auto* changed = reinterpret_cast<const unsigned char*>(result.data());
    for (std::size_t i = 3; i < source.size() * 4; i += 4)
      ASSERT_EQ(bytes[i], changed[i]) << i;
  }
}

TEST(Frei0r, ParametersChangeTheNextFrame) {
  const struct {
    int parameter;
    double value;
    int32_t VlvkSettings::*setting;
    int32_t wanted;
  } steps[] = {
      {0, 0.3, &VlvkSettings::whitening, 30},
      {0, 0.297, &VlvkSettings::whitening, 30},
      {0, 7, &VlvkSettings::whitening, 100},
      {1, 0.25, &VlvkSettings::softening, 250},
      {1, INFINITY, &VlvkSettings::softening, 1000},
      {2, 0.25, &VlvkSettings::radius, 32},
      {2, 1e-9, &VlvkSettings::radius, 1},
      {2, 1e300, &VlvkSettings::radius, 128},
      {2, -1, &VlvkSettings::radius, -1},
      {3, 0.49, &VlvkSettings::contrast, VLVK_CONTRAST_ABSOLUTE},
      {3, 0.5, &VlvkSettings::contrast, 0},
      {4, 1, &VlvkSettings::whitenArea, VLVK_WHITEN_SKIN},
      {5, 0.6, &VlvkSettings::evenTone, 600},
      {5, 1, &VlvkSettings::evenTone, 1000},
      {1, -INFINITY, &VlvkSettings::softening, 0},
      {4, -0.1, &VlvkSettings::whitenArea, 0},
      {0, 0, &VlvkSettings::whitening, 0},
  };
  const Plugin plugin;
  const Filter filter(plugin, 424, 301);
  const Pixels source = skinNoise(424, 301);
  VlvkSettings settings = defaultSettings();
  for (const auto& step : steps) {
    const Pixels before = filter.apply(source);
    const bool same = settings.*step.setting == step.wanted;
    settings.*step.setting = step.wanted;
    for (const double value : {step.value, static_cast<double>(NAN)})
      filter.set(step.parameter, value);
    for (const int none : {-1, 7})
      filter.set(none, 0.1);
    EXPECT_EQ(filter.get(step.parameter), step.value);
    const Pixels result = filter.apply(source);
    EXPECT_EQ(result, expected(source, 424, settings)) << step.parameter << " = " << step.value;
    EXPECT_EQ(result == before, same) << step.parameter << " = " << step.value << " shows nothing";
  }
}

TEST(Frei0r, ATableThatCannotBeReadLeavesTheOneOfBefore) {
  const Plugin plugin;
  const Filter filter(plugin, 61, 40);
  const Pixels source = skinNoise(61, 40);
  const Bytes table = randomTable();
  const std::string good = writeFile("good.vlk", table);
  const std::string cut = writeFile("cut.vlk", Bytes(table.begin(), table.end() - 1));
  const std::string missing = testing::TempDir() + "missing.vlk";
  const auto said = [&](const std::string& path) {
    testing::internal::CaptureStderr();
    for (int i = 0; i < 3; ++i)
      filter.setTable(path);  // as hosts do, for each frame
    EXPECT_EQ(filter.get<char*>(6), path);
    return testing::internal::GetCapturedStderr();
  };
  const Pixels without = expected(source, 61);
  const Pixels with = expected(source, 61, defaultSettings(), table);
  for (const Pixels& before : {without, with}) {
    EXPECT_EQ(said(missing), "vlvkmakeup: " + missing + ": No such file or directory\n");
    EXPECT_EQ(said("/"), "vlvkmakeup: /: Is a directory\n");
    for (const std::string& path : {cut, std::string("/dev/zero")})
      EXPECT_EQ(said(path), "vlvkmakeup: " + path + ": " + vlvkResultText(VLVK_BAD_TABLE) + "\n");
    EXPECT_EQ(filter.apply(source), before);
    EXPECT_EQ(said(good), "");
    EXPECT_EQ(filter.apply(source), with);
  }
  EXPECT_EQ(said(""), "");
  EXPECT_EQ(filter.apply(source), without);
}

TEST(Frei0r, InstancesWorkAtOnceAndByThemselves) {
  const Plugin plugin;
  const Bytes table = randomTable();
  const std::string path = writeFile("threads.vlk", table);
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      const Pixels source = skinNoise(30 + 7 * t, 45);
      VlvkSettings settings = defaultSettings();
      settings.whitening = static_cast<int>(10 * t);
      for (int round = 0; round < 4; ++round) {
        const Filter filter(plugin, 30 + 7 * t, 45);
        filter.set(0, 0.1 * t);
        filter.setTable(t % 2 == 0 ? path : "");
        const Pixels wanted = expected(source, 30 + 7 * t, settings, t % 2 == 0 ? table : Bytes());
        for (int frame = 0; frame < 3; ++frame)
          EXPECT_EQ(filter.apply(source, frame == 1), wanted) << t;
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST(Frei0r, FramesThatTheEngineDoesNotTakeGiveNoInstance) {
  const Plugin plugin;
  for (const auto& [width, height] : {std::pair{0U, 8U}, {8U, 0U}, {65536U, 8U}, {8U, 65536U}, {~0U, 8U}}) {
    testing::internal::CaptureStderr();
    const Filter filter(plugin, width, height);
    EXPECT_EQ(testing::internal::GetCapturedStderr().rfind("vlvkmakeup: no such frames: ", 0), 0U);
    EXPECT_EQ(filter.instance, nullptr);
    filter.set(0, 1);  // hosts that do not look go on with it
    EXPECT_EQ(filter.get(0), 0);
    filter.apply({1});
  }
}

}  // namespace
}  // namespace frei0r_test
