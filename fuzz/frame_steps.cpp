/// See frame_steps.h.
#include "fuzz/frame_steps.h"

#include <algorithm>
#include <climits>
#include <map>
#include <string>

#include "rows/row_loops.h"

namespace fuzz {
namespace {

using frame_rig::Call;
using frame_rig::Content;
using frame_rig::Delivery;
using frame_rig::Guard;
using frame_rig::Refusal;

int drawSetting(Input& input) {
  const int kind = input.byte();
  if (kind < 8) return input.pick({0, -1, 1, INT_MAX, INT_MIN, INT_MAX - 7, 1 << 30, -1000});
  if (kind < 64) return static_cast<int>(input.word());
  return input.between(0, kind < 192 ? 255 : 1200);
}

model::Settings drawSettings(Input& input) {
  const int kind = input.byte();
  model::Settings settings;
  if ((kind & 33) == 33) settings.whiten = drawSetting(input);
  if ((kind & 2) != 0) settings.soften = drawSetting(input);
  if ((kind & 4) != 0) settings.radius = drawSetting(input);
  if ((kind & 8) != 0) settings.colorAdjust = 0;
  if ((kind & 24) == 24) settings.colorAdjust = drawSetting(input);
  return settings;
}

/// Rows of `bytes` bytes, some way apart; upside down where that is possible.
int drawStride(Input& input, int bytes, bool mayBeNegative) {
  const int kind = input.byte();
  const int stride = bytes + ((kind & 2) != 0 ? input.between(0, 70) : 0);
  return mayBeNegative && (kind & 5) == 5 ? -stride : stride;
}

frame_rig::Shape drawShape(Input& input, bool usualOrder, bool isSmall, Refusal& refusal) {
  const Call call = usualOrder ? input.pick({Call::kVideo, Call::kInternal, Call::kVideo, Call::kInternal, Call::kBgra})
                               : input.pick({Call::kVideo, Call::kInternal, Call::kBgra, Call::kInternal});
  const bool bgra = call == Call::kBgra;
  const Delivery delivery = input.pick({Delivery::kOntoItself, Delivery::kToPixels, Delivery::kOntoItself,
                                        bgra ? Delivery::kNowhere : Delivery::kToPixels});
  const bool rgbOrder = usualOrder != (input.byte() % 8 == 0);
  const int width = input.byte() % 4 == 0 ? input.between(0, isSmall ? 40 : 300) : input.between(0, isSmall ? 20 : 70);
  const int height = input.between(0, isSmall ? 26 : 80);
  const int fault = input.byte();
  refusal = fault < 8 ? static_cast<Refusal>(fault) : Refusal::kNone;
  // Without strides of the caller's, rows follow each other.
  const bool free = call == Call::kInternal;
  const int luma = free ? drawStride(input, width, false) : width;
  const int chroma = free ? drawStride(input, width, true) : width;
  const int picture = bgra ? drawStride(input, width * 4, true) : luma;
  const int pixels = drawStride(input, width * 4, true);
  return {{call, delivery}, rgbOrder && !bgra,         width,
          height,           {picture, chroma, pixels}, (width + height) % 2 == 0 ? Guard::kBehind : Guard::kBefore};
}

/// Bytes of the input itself over and over, or a kind of content.
void fillPlane(Input& input, const frame_rig::Plane& plane, bool skin) {
  const auto content = skin ? input.pick({Content::kSkinPairs, Content::kNoise, Content::kSkinPairs, Content::kWhite})
                            : input.pick({Content::kNoise, Content::kFaintNoise, Content::kGradient, Content::kEdges,
                                          Content::kFlat, Content::kCheckerboard, Content::kWhite, Content::kBlack});
  frame_rig::Random random(input.word());
  plane.fill(content, random);
  fillWithInput(input, plane);
}

int drawThreads(Input& input, bool isSmall) {
  const bool many = input.byte() % 16 == 0;
  return input.between(1, isSmall ? 3 : many ? 90 : 9);
}

}  // namespace

void fillWithInput(Input& input, const frame_rig::Plane& plane) {
  const int own = input.byte();
  if (own >= 32 || own == 0) return;
  model::Bytes pattern(static_cast<std::size_t>(own));
  std::generate(pattern.begin(), pattern.end(), [&] { return input.byte(); });
  std::size_t i = 0;
  for (int y = 0; y < plane.rows; ++y)
    std::generate_n(plane.row(y), plane.rowBytes, [&] { return pattern[i++ % pattern.size()]; });
}

FrameStep::FrameStep(Input& input, bool usualOrder, bool isSmall)
    : settings(drawSettings(input)),
      threads(drawThreads(input, isSmall)),
      frame(drawShape(input, usualOrder, isSmall, refusal)) {
  if (isSmall) settings.whiten = model::Settings().whiten;
  if (isSmall) settings.colorAdjust = model::Settings().colorAdjust;
  for (const auto& plane : frame.planes)
    fillPlane(input, plane, &plane == &frame.planes[1]);
}

void FrameStep::check(frame_rig::Filter& filter, const frame_rig::Frame::Memory& expected, bool resultsCount) const {
  filter.put(settings);
  filter.threadCount = threads;
  const std::string wrong = frame.check(filter, expected, refusal, resultsCount);
  if (!wrong.empty()) fail(vlvk::rowLoops().name + (": " + wrong));
}

int drawTarget(Input& input) {
  int targets = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(targets);
  const int target = input.byte() % targets;
  check(vlvk::forceRowLoops(sets[target]->name), "a target is missing");
  return target;
}

frame_rig::Rig& keptRig(int target, bool rgbOrder) {
  static std::map<int, frame_rig::Rig> rigs;
  return rigs.try_emplace(2 * target + rgbOrder, 1).first->second;
}

model::Resource drawResource(Input& input) {
  model::Resource resource = frame_rig::noisePicture();
  const int kind = input.byte() % 8;
  if (kind < 2) resource.payload.clear();
  if (kind == 0) resource.present = false;
  if (kind == 2 || kind == 3) resource.payload.resize(input.word() >> 12);
  return resource;
}

}  // namespace fuzz
