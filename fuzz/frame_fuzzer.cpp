/// Any sequence of frames on one filter: 0 or -1 as the call deserves, and nothing changes that the call does not own.
#include <cstddef>
#include <cstdint>

#include "fuzz/frame_steps.h"
#include "fuzz/pace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool isSlow = fuzz::asksForSlow(input);
  if (isSlow && !fuzz::mayBeSlow()) return 0;
  const int target = fuzz::drawTarget(input);
  const model::Resource resource = isSlow ? fuzz::drawResource(input) : model::Resource();
  frame_rig::Rig own(1, resource);
  own.loader.throws = isSlow && input.flag();
  if (!resource.present && !input.flag()) own.filter.loader = nullptr;
  const bool usualOrder = isSlow && input.flag();
  for (int i = 0; i < 6 && (i == 0 || !input.empty()); ++i) {
    const fuzz::FrameStep step(input, isSlow ? usualOrder : input.flag(), !isSlow);
    frame_rig::Rig& rig = isSlow ? own : fuzz::keptRig(target, step.frame.shape.rgbOrder);
    step.check(rig.filter, step.frame.content(), false);
  }
  return 0;
}
