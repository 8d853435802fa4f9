/// Frames as an input describes them, one after the other for one filter: settings, geometry, planes and the call.
#ifndef VLVK_FUZZ_FRAME_STEPS_H
#define VLVK_FUZZ_FRAME_STEPS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "fuzz/input.h"
#include "tests/frames/frame_model.h"

namespace fuzz {

/// The bytes from the first of the first row to the last of the last one, no more, on the heap: the address sanitizer
/// sees every access beside them. With a negative stride row 0 is the last one in memory. A plane without rows has a
/// byte all the same, so that it has an address.
class Plane {
 public:
  Plane(int rowBytes, int rows, int stride);

  std::uint8_t* row(int y) { return bytes_.data() + offset(y); }
  const std::uint8_t* row(int y) const { return bytes_.data() + offset(y); }

  int rowBytes() const { return rowBytes_; }
  int rows() const { return rows_; }
  int stride() const { return stride_; }

  /// The rows without what lies between them, `pitch` bytes apart, and back.
  model::Bytes compact(int pitch) const;
  void putRows(const model::Bytes& bytes, int pitch);

  /// Where two planes of one geometry differ first, in words; empty where they do not. `outsideRows`: only what lies
  /// between the rows counts.
  std::string difference(const Plane& expected, bool outsideRows = false) const;

 private:
  std::size_t offset(int y) const;

  int rowBytes_;
  int rows_;
  int stride_;
  model::Bytes bytes_;
};

/// A call that must give -1, and why.
enum class Refusal {
  kNone,
  kNoPicture,
  kNoChroma,
  kNegativeWidth,
  kNegativeHeight,
  kHuge,
  kNarrowStride,
  kNoThreads,
};

enum class Call { kVideo, kInternal, kBgra };
enum class Delivery { kToPixels, kOntoItself, kNowhere };  // kNowhere: BGRA only

struct FrameStep {
  model::Settings settings;
  int threads;
  Call call;
  Delivery delivery;
  bool rgbOrder;
  int width;
  int height;
  Refusal refusal;
  Plane picture;  // luma, or BGRA pixels
  Plane chroma;
  Plane out;

  std::string describe() const;
};

/// @param usualOrder  NV21 or NV12: most frames have it, as every change makes the filter build tables for a while
FrameStep drawStep(Input& input, bool usualOrder);

/// The host's picture, as the input wants it: there, in part, missing, or a loader that throws.
model::Resource drawResource(Input& input);

class Loader final : public IBeautyResourceLoader {
 public:
  Loader(const model::Resource* resource, bool throws) : resource_(resource), throws_(throws) {}
  int getResFromName(const char* name, unsigned char* dst) override;

 private:
  const model::Resource* resource_;
  bool throws_;
};

/// A filter that also gives back the one buffer that filters leave to their host.
class Filter : public CFastEdgePreserved {
 public:
  using CFastEdgePreserved::CFastEdgePreserved;
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;
  ~Filter() override;

  /// Applies the settings of a step and runs it. Returns what the call returns.
  int run(FrameStep& step);
};

/// Planes after the step, from those before it. The step must not be a refusal.
void predict(model::Filter& model, FrameStep& step);

}  // namespace fuzz

#endif
