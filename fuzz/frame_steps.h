/// Frames as an input describes them, one after the other for one filter: settings, geometry, planes and the call.
#ifndef VLVK_FUZZ_FRAME_STEPS_H
#define VLVK_FUZZ_FRAME_STEPS_H

#include "fuzz/input.h"
#include "tests/frames/frame_rig.h"

namespace fuzz {

struct FrameStep {
  /// @param usualOrder  NV21 or NV12: most frames have it, as every change makes the filter build tables for a while
  FrameStep(Input& input, bool usualOrder);

  /// Applies the settings, makes the call and ends the process where result or memory is wrong.
  void check(frame_rig::Filter& filter, const frame_rig::Frame::Memory& expected, bool resultsCount) const;

  model::Settings settings;
  int threads;
  frame_rig::Refusal refusal;
  frame_rig::Frame frame;
};

/// The host's picture, as the input wants it: there, in part, or missing.
model::Resource drawResource(Input& input);

}  // namespace fuzz

#endif
