/// Any sequence of frames on a filter of each target: every byte must be the one of the naive model.
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "fuzz/check.h"
#include "fuzz/frame_steps.h"
#include "fuzz/input.h"
#include "rows/row_loops.h"

namespace {

using fuzz::FrameStep;
using fuzz::Refusal;

constexpr int kMaxFrames = 4;

struct Side {
  Side(const char* name, IBeautyResourceLoader* loader) : target(name), filter(1, loader) {}

  const char* target;
  fuzz::Filter filter;
};

void expectPredicted(const FrameStep& step, const FrameStep& expected, const char* target) {
  const std::string differences[] = {step.picture.difference(expected.picture), step.chroma.difference(expected.chroma),
                                     step.out.difference(expected.out)};
  static constexpr const char* kPlanes[] = {"picture", "chroma", "out"};
  for (int i = 0; i < 3; ++i) {
    if (differences[i].empty()) continue;
    fuzz::fail(std::string(target) + ", " + kPlanes[i] + ", " + differences[i] + "\n" + step.describe());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const model::Resource resource = fuzz::drawResource(input);
  fuzz::Loader loader(&resource, input.flag());
  model::Filter model(&resource);
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  std::list<Side> sides;
  for (int i = 0; i < targets; ++i)
    sides.emplace_back(sets[i]->name, &loader);

  const bool rgbOrder = input.flag();
  for (int i = 0; i < kMaxFrames && (i == 0 || !input.empty()); ++i) {
    FrameStep step = fuzz::drawStep(input, rgbOrder);
    step.refusal = Refusal::kNone;
    FrameStep expected = step;
    fuzz::predict(model, expected);
    for (Side& side : sides) {
      fuzz::check(vlvk::forceRowLoops(side.target), "a target is missing");
      FrameStep frame = step;
      if (side.filter.run(frame) != 0) fuzz::fail("refused: " + step.describe());
      expectPredicted(frame, expected, side.target);
    }
  }
  return 0;
}
