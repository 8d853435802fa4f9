/// The frei0r plugin when memory runs out.
#include "tests/plugins/frei0r/frei0r_host.h"
#include "tests/support/failing_system.h"

namespace frei0r_test {
namespace {

/// What is said on standard error by a call in which all allocations from the n-th on fail.
template <class Call>
std::string saidWithoutMemory(int n, Call call) {
  testing::internal::CaptureStderr();
  testing_support::memoryFault.arm(n, INT_MAX);
  call();
  testing_support::memoryFault.armed = false;
  return testing::internal::GetCapturedStderr();
}

TEST(FailingFrei0r, WithoutMemoryThereIsNoInstanceAndFramesStayAsTheyAre) {
  const std::string reason = std::string(vlvkResultText(VLVK_NO_MEMORY)) + "\n";
  const Plugin plugin;
  const Pixels source = skinNoise(40, 30);
  const Pixels plain = expected(source, 40);
  std::string path = writeFile("table.vlk", randomTable());

  int tries = 0;
  f0r_instance_t instance = nullptr;
  for (; instance == nullptr; ++tries) {
    const std::string said = saidWithoutMemory(tries, [&] { instance = plugin.construct(40, 30); });
    EXPECT_EQ(said, instance == nullptr ? "vlvkmakeup: no engine: " + reason : "");
  }
  EXPECT_GE(tries, 3) << "allocations of the plugin do not come through this executable";
  plugin.destruct(instance);

  const Filter filter(plugin, 40, 30);
  Pixels result(source.size());
  for (const char* what : {"vlvkmakeup: frames stay as they are: ", ""}) {  // once
    const auto update = [&] { plugin.update(filter.instance, 0, source.data(), result.data()); };
    EXPECT_EQ(saidWithoutMemory(0, update), *what == '\0' ? "" : what + reason);
    EXPECT_EQ(result, source);
    result.assign(source.size(), 0);
  }
  EXPECT_EQ(filter.apply(source), plain);

  f0r_param_string text = path.data();
  for (tries = 0; !saidWithoutMemory(tries, [&] { plugin.set(filter.instance, &text, 6); }).empty(); ++tries) {
    EXPECT_EQ(filter.apply(source), plain) << tries;
    filter.setTable("");  // or the next try would be none
  }
  EXPECT_GE(tries, 3);
  EXPECT_NE(filter.apply(source), plain);
}

}  // namespace
}  // namespace frei0r_test
