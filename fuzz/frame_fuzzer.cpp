/// Any sequence of frames on one filter: 0 or -1 as the call deserves, and nothing changes that the call does not own.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/check.h"
#include "fuzz/frame_steps.h"
#include "fuzz/input.h"
#include "rows/row_loops.h"

namespace {

using fuzz::Call;
using fuzz::Delivery;
using fuzz::FrameStep;
using fuzz::Refusal;

constexpr int kMaxFrames = 6;

/// Whether the call has this fault at all.
bool mustFail(const FrameStep& step) {
  switch (step.refusal) {
    case Refusal::kNone:
      return false;
    case Refusal::kNoChroma:
      return step.call != Call::kBgra;
    case Refusal::kNarrowStride:
      return step.call == Call::kInternal;
    default:
      return true;
  }
}

void expectSame(const FrameStep& step, const fuzz::Plane& plane, const fuzz::Plane& before, bool wholly,
                const char* name) {
  const std::string difference = plane.difference(before, !wholly);
  if (!difference.empty()) fuzz::fail(std::string(name) + " changed, " + difference + "\n" + step.describe());
}

void runStep(fuzz::Filter& filter, FrameStep& step) {
  const FrameStep before = step;
  const bool failing = mustFail(step);
  if (filter.run(step) != (failing ? -1 : 0)) fuzz::fail("not the expected result: " + step.describe());
  const bool ontoItself = step.delivery == Delivery::kOntoItself;
  expectSame(step, step.picture, before.picture, failing || !ontoItself, "picture");
  expectSame(step, step.chroma, before.chroma, failing || !ontoItself, "chroma");
  expectSame(step, step.out, before.out, failing, "out");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  vlvk::forceRowLoops(sets[input.byte() % targets]->name);
  const model::Resource resource = fuzz::drawResource(input);
  fuzz::Loader loader(&resource, input.flag());
  fuzz::Filter filter(1, resource.present || input.flag() ? &loader : nullptr);
  const bool rgbOrder = input.flag();
  for (int i = 0; i < kMaxFrames && (i == 0 || !input.empty()); ++i) {
    FrameStep step = fuzz::drawStep(input, rgbOrder);
    runStep(filter, step);
  }
  return 0;
}
