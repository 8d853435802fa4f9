/// Any sequence of frames on a filter of each target: every byte must be the one of the naive model.
#include <cstddef>
#include <cstdint>
#include <deque>

#include "fuzz/check.h"
#include "fuzz/frame_steps.h"
#include "rows/row_loops.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const model::Resource resource = fuzz::drawResource(input);
  frame_rig::Loader loader(&resource);
  loader.throws = input.flag();
  model::Filter model(&resource);
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  std::deque<frame_rig::Filter> filters;
  for (int i = 0; i < targets; ++i)
    filters.emplace_back(1, &loader);

  const bool rgbOrder = input.flag();
  for (int i = 0; i < 4 && (i == 0 || !input.empty()); ++i) {
    fuzz::FrameStep step(input, rgbOrder);
    step.refusal = frame_rig::Refusal::kNone;
    model.put(step.settings);
    const frame_rig::Frame::Memory before = step.frame.content();
    const frame_rig::Frame::Memory expected = step.frame.predict(model);
    for (std::size_t side = 0; side < filters.size(); ++side) {
      fuzz::check(vlvk::forceRowLoops(sets[side]->name), "a target is missing");
      step.frame.put(before);
      step.check(filters[side], expected, true);
    }
  }
  return 0;
}
