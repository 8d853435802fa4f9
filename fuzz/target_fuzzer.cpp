/// Any sequence of frames on a filter of each target: every byte must be the one of the naive model.
#include <cstddef>
#include <cstdint>
#include <deque>

#include "fuzz/frame_steps.h"
#include "fuzz/pace.h"
#include "rows/row_loops.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool isSlow = fuzz::asksForSlow(input);
  if (isSlow && !fuzz::mayBeSlow()) return 0;
  const model::Resource resource = isSlow ? fuzz::drawResource(input) : model::Resource();
  const bool throws = isSlow && input.flag();
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  std::deque<frame_rig::Rig> own;
  for (int target = 0; target < targets; ++target)
    own.emplace_back(1, resource).loader.throws = throws;

  const bool usualOrder = isSlow && input.flag();
  for (int i = 0; i < 4 && (i == 0 || !input.empty()); ++i) {
    fuzz::FrameStep step(input, isSlow ? usualOrder : input.flag(), !isSlow);
    step.refusal = frame_rig::Refusal::kNone;
    const auto rigOf = [&](int target) -> frame_rig::Rig& {
      return isSlow ? own[static_cast<std::size_t>(target)] : fuzz::keptRig(target, step.frame.shape.rgbOrder);
    };
    model::Filter& model = rigOf(0).expected;
    model.put(step.settings);
    const frame_rig::Frame::Memory before = step.frame.content();
    const frame_rig::Frame::Memory expected = step.frame.predict(model);
    for (int target = 0; target < targets; ++target) {
      fuzz::check(vlvk::forceRowLoops(sets[target]->name), "a target is missing");
      step.frame.put(before);
      step.check(rigOf(target).filter, expected, true);
    }
  }
  return 0;
}
