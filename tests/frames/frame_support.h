/// Frames to run through the filter: guarded planes with content, the call itself, and the comparison with the model.
#ifndef VLVK_TESTS_FRAMES_FRAME_SUPPORT_H
#define VLVK_TESTS_FRAMES_FRAME_SUPPORT_H

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "tests/frames/frame_model.h"
#include "tests/support/plane.h"

namespace frame_tests {

using testing_support::Content;
using testing_support::Guard;
using testing_support::Plane;
using testing_support::Random;

/// A resource without any order in it: neighbouring colours land far apart, so a wrong pixel shows.
const model::Resource& noisePicture();

class Loader final : public IBeautyResourceLoader {
 public:
  explicit Loader(const model::Resource* resource) : resource_(resource) {}
  int getResFromName(const char* name, unsigned char* dst) override;
  int calls = 0;
  std::function<void()> onCall = [] {};  ///< a host that is up to something in the middle of a frame

 private:
  const model::Resource* resource_;
};

enum class Kind { kInPlace, kToPixels, kBgra, kBgraOntoItself, kBgraNowhere };
inline constexpr std::array kKinds = {Kind::kInPlace, Kind::kToPixels, Kind::kBgra, Kind::kBgraOntoItself,
                                      Kind::kBgraNowhere};

/// Mostly skin colours over a random kind of luma, so that smoothing shows.
class Frame {
 public:
  /// @param rgbOrder  NV21 and RGBA; BGRA kinds have the other order whatever is asked for
  Frame(Kind kind, int width, int height, bool rgbOrder, Random& random);

  using Memory = std::array<model::Bytes, 3>;  // picture, chroma, out

  /// Works out what the frame becomes from what it holds now.
  const Memory& predict(model::Filter& filter);
  int run(CFastEdgePreserved& filter);
  /// Puts the content back that the frame was made with.
  void reset();

  testing::AssertionResult isPredicted() const { return holds(expected_); }
  testing::AssertionResult isUntouched() const { return holds(original_); }
  testing::AssertionResult holds(const Memory& expected) const;

  std::string describe() const;
  int width() const { return width_; }
  int height() const { return height_; }

  /// Where the frame lies, for calls with arguments of one's own.
  unsigned char* picture() const { return picture_.data(); }
  unsigned char* chroma() const { return chroma_.data(); }
  unsigned char* out() const;
  int outStride() const { return out_.stride(); }
  bool isBgra() const { return kind_ != Kind::kInPlace && kind_ != Kind::kToPixels; }

 private:
  Memory content() const { return {picture_.bytes(), chroma_.bytes(), out_.bytes()}; }

  Kind kind_;
  int width_;
  int height_;
  bool rgbOrder_;
  Guard guard_;
  Plane picture_;  // luma, or BGRA pixels
  Plane chroma_;
  Plane out_;
  Memory original_;
  Memory expected_;
};

/// A filter and its model, side by side.
class Rig {
 public:
  explicit Rig(int threadCount, const model::Resource& resource = noisePicture());
  ~Rig();

  void put(const model::Settings& settings);
  /// Runs a frame and expects success and the model's bytes.
  void check(Frame& frame);

  Loader loader;
  CFastEdgePreserved filter;
  model::Filter expected;

 private:
  model::Settings settings_;
};

}  // namespace frame_tests

#endif
