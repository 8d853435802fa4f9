/// Any sequence of frames on one filter: 0 or -1 as the call deserves, and nothing changes that the call does not own.
#include <cstddef>
#include <cstdint>

#include "fuzz/frame_steps.h"
#include "rows/row_loops.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  vlvk::forceRowLoops(sets[input.byte() % targets]->name);
  const model::Resource resource = fuzz::drawResource(input);
  frame_rig::Loader loader(&resource);
  loader.throws = input.flag();
  frame_rig::Filter filter(1, resource.present || input.flag() ? &loader : nullptr);
  const bool rgbOrder = input.flag();
  for (int i = 0; i < 6 && (i == 0 || !input.empty()); ++i) {
    const fuzz::FrameStep step(input, rgbOrder);
    step.check(filter, step.frame.content(), false);
  }
  return 0;
}
