/// Any frames through handles, of any formats, colorimetries, strides, masks and settings, on any target: every byte
/// must be the one of the naive model. Handles are kept from input to input, small frames with small changes of
/// settings for most.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "fuzz/frame_steps.h"
#include "fuzz/input.h"
#include "fuzz/pace.h"
#include "rows/row_loops.h"
#include "tests/engine/makeup_rig.h"

namespace {

using makeup_rig::Engine;
using makeup_rig::Picture;

/// With a table the whitening and the byte order of pixels stay as they are: another makes it anew.
Engine& keptEngine(int kind, bool hasTable) {
  static std::map<int, std::unique_ptr<Engine>> engines;
  std::unique_ptr<Engine>& engine = engines[kind];
  if (engine == nullptr) {
    engine = std::make_unique<Engine>(makeup_rig::settingsOf(30, 1000, 20));
    engine->setTable(hasTable);
  }
  return *engine;
}

struct Step {
  Step(fuzz::Input& input, bool isSlow)
      : from(makeup_rig::kFormats[input.byte() % 9]),
        to(makeup_rig::kFormats[input.byte() % 9]),
        inPlace(input.byte() % 3 == 0),
        random(input.word()),
        source(from, input.byte() % 4, input.between(1, isSlow ? 200 : 24), input.between(1, isSlow ? 100 : 20),
               random),
        target(to, input.byte() % 4, source.frame.width, source.frame.height, random),
        settings(makeup_rig::settingsOf(input.pick({0, 50, input.between(0, 100)}), input.between(0, 1000),
                                        input.byte() % 4 == 0 ? input.between(0, 128) : input.between(0, 20),
                                        isSlow ? input.between(1, 64) : 1 + input.byte() % 3)) {
    if (input.byte() % 4 != 0) settings.softening = 1000;
    for (const auto& plane : source.planes)
      fuzz::fillWithInput(input, plane);
    const int kind = input.byte();
    settings.contrast = kind & 1;
    settings.whitenArea = kind / 2 & 1;
    if ((kind & 4) != 0) settings.evenTone = input.between(1, 1000);
    if ((kind & 56) == 8) settings.radius = VLVK_RADIUS_AUTO;
    if ((kind & 192) == 64) mask.emplace(input.between(1, 70), input.between(1, 50), random);
  }

  int from, to;
  bool inPlace;
  makeup_rig::Random random;
  Picture source, target;
  VlvkSettings settings;
  std::optional<makeup_rig::Mask> mask;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool isSlow = fuzz::asksForSlow(input);
  if (isSlow && !fuzz::mayBeSlow()) return 0;
  const int target = fuzz::drawTarget(input);
  Engine own(makeup_rig::settingsOf(50, 1000, 20));
  for (int i = 0; i < 4 && (i == 0 || !input.empty()); ++i) {
    Step step(input, isSlow);
    const bool hasTable = input.byte() % 4 == 0;
    if (isSlow) own.setTable(hasTable);
    const int to = step.inPlace ? step.from : step.to;
    const int pixels = makeup_model::isPixels(to) ? to : step.from;
    const bool isBgr = makeup_model::isPixels(pixels) && pixels % 2 == 1;
    Engine& engine = isSlow ? own : keptEngine(target * 4 + hasTable * (2 + isBgr), hasTable);
    if (!isSlow && hasTable) step.settings.whitening = engine.settings.whitening;
    engine.put(step.settings);
    engine.mask = step.mask ? &step.mask->mask : nullptr;
    const std::string wrong = engine.check(step.source, step.inPlace ? step.source : step.target);
    if (!wrong.empty()) fuzz::fail(vlvk::rowLoops().name + (": " + wrong));
  }
  return 0;
}
