/// Frames as an input describes them, one after the other for one filter: settings, geometry, planes and the call.
#ifndef VLVK_FUZZ_FRAME_STEPS_H
#define VLVK_FUZZ_FRAME_STEPS_H

#include "fuzz/input.h"
#include "tests/frames/frame_rig.h"

namespace fuzz {

struct FrameStep {
  /// @param usualOrder  NV21 or NV12: most frames have it, as every change makes the filter build tables for a while
  /// @param isSmall     a frame of few pixels and threads, with settings that keep a filter's tables
  FrameStep(Input& input, bool usualOrder, bool isSmall);

  /// Applies the settings, makes the call and ends the process where result or memory is wrong.
  void check(frame_rig::Filter& filter, const frame_rig::Frame::Memory& expected, bool resultsCount) const;

  model::Settings settings;
  int threads;
  frame_rig::Refusal refusal;
  frame_rig::Frame frame;
};

/// Overwrites the rows with bytes of the input over and over, if it says so.
void fillWithInput(Input& input, const frame_rig::Plane& plane);

/// Whether an input wants all that is slow: large frames, many threads, new tables and filters or handles of its own.
inline bool asksForSlow(Input& input) {
  return input.byte() % 16 == 0;
}

/// Puts a target in use and returns its number.
int drawTarget(Input& input);

/// A filter for small frames of that order. Kept from input to input, since its tables take longer than many such
/// frames.
frame_rig::Rig& keptRig(int target, bool rgbOrder);

/// The host's picture, as the input wants it: there, in part, or missing.
model::Resource drawResource(Input& input);

}  // namespace fuzz

#endif
