/// Frames to run through a filter: planes with strides in guarded memory, the call itself, and the comparison with the
/// model. For tests and fuzzers, so without a test library: what is wrong comes back in words, nothing wrong as "".
#ifndef VLVK_TESTS_FRAMES_FRAME_RIG_H
#define VLVK_TESTS_FRAMES_FRAME_RIG_H

#include <array>
#include <functional>
#include <string>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "tests/frames/frame_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/random_content.h"

namespace frame_rig {

using model::Byte;
using model::Bytes;
using testing_support::Content;
using testing_support::Guard;
using testing_support::Random;

/// The bytes from the first of the first row to the last of the last one, no more. With a negative stride row 0 is the
/// last one in memory. All bytes start as 0xC5.
struct Plane {
  Plane(int bytesOfRow, int rowCount, int rowStride, Guard guard = Guard::kBehind);

  /// Where row y begins in memory.
  std::size_t offset(int y) const;
  Byte* row(int y) const { return memory.data() + offset(y); }

  /// All of the memory, what lies between the rows included.
  Bytes bytes() const { return {memory.data(), memory.data() + memory.size()}; }
  void put(const Bytes& bytes) const;
  /// Fills the rows; what lies between them stays.
  void fill(Content content, Random& random) const;

  /// Where the memory differs from bytes() of another time. Without `rowsCount` only between the rows.
  std::string difference(const Bytes& expected, bool rowsCount = true) const;

  const int rowBytes, rows, stride;
  const testing_support::GuardedBuffer memory;
};

enum class Call { kVideo, kInternal, kBgra };              ///< processVideo, processVideoInternal, processBGRAVideo
enum class Delivery { kToPixels, kOntoItself, kNowhere };  ///< kNowhere: BGRA alone
struct Kind {
  Call call;
  Delivery delivery;
};
inline constexpr Kind kVideoToPixels = {Call::kVideo, Delivery::kToPixels};
inline constexpr Kind kVideoInPlace = {Call::kVideo, Delivery::kOntoItself};
inline constexpr Kind kInternalToPixels = {Call::kInternal, Delivery::kToPixels};
inline constexpr Kind kBgraToPixels = {Call::kBgra, Delivery::kToPixels};
inline constexpr Kind kBgraOntoItself = {Call::kBgra, Delivery::kOntoItself};
inline constexpr Kind kKinds[] = {kVideoToPixels,
                                  kVideoInPlace,
                                  kInternalToPixels,
                                  {Call::kInternal, Delivery::kOntoItself},
                                  kBgraToPixels,
                                  kBgraOntoItself,
                                  {Call::kBgra, Delivery::kNowhere}};

/// What makes a call give -1.
enum class Refusal { kNone, kNoPicture, kNoChroma, kNegativeWidth, kNegativeHeight, kHuge, kNarrowStride, kNoThreads };

struct Shape {
  Kind kind;
  bool rgbOrder;  ///< NV21 and RGBA; false for BGRA pictures
  int width, height;
  int strides[3];  ///< picture, chroma, pixels; processVideo has no choice of the first two
  Guard guard = Guard::kBehind;
};

/// A filter that also frees the one buffer that filters leave to their host.
class Filter final : public CFastEdgePreserved {
 public:
  using CFastEdgePreserved::CFastEdgePreserved;
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;
  ~Filter() override;

  void put(const model::Settings& settings);
};

struct Frame {
  using Memory = std::array<Bytes, 3>;  ///< picture, chroma, pixels

  explicit Frame(const Shape& s);
  /// With any strides and luma, and chroma that is mostly skin, so that smoothing shows. Never NV21 for BGRA.
  Frame(Kind kind, int width, int height, bool rgbOrder, Random& random);

  Memory content() const { return {planes[0].bytes(), planes[1].bytes(), planes[2].bytes()}; }
  void put(const Memory& content) const;
  /// What the frame becomes from what it holds now.
  Memory predict(model::Filter& model) const;

  /// Whether a call of this kind has such a fault at all.
  bool mustFail(Refusal refusal) const;
  int run(Filter& filter, Refusal refusal = Refusal::kNone) const;

  /// Where the frame differs. Without `resultsCount` only where no call may write.
  std::string difference(const Memory& expected, bool resultsCount = true) const;
  /// Runs, and says what is wrong with result and memory. Where results do not count, those of a refusal do.
  std::string check(Filter& filter, const Memory& expected, Refusal refusal = Refusal::kNone,
                    bool resultsCount = true) const;

  const Shape shape;
  const bool isBgra, isOverwritten;
  const std::array<Plane, 3> planes;  ///< luma or BGRA pixels; chroma, unless BGRA; pixels, where they go there
};

/// A resource without any order in it: neighbouring colours land far apart, so a wrong pixel shows.
const model::Resource& noisePicture();

/// Copies what there is of a resource and says that it is there or not, in all ways: with 0 and above, below 0, and by
/// an exception.
class Loader final : public IBeautyResourceLoader {
 public:
  explicit Loader(const model::Resource* resource) : resource_(resource) {}
  int getResFromName(const char* name, unsigned char* dst) override;

  int calls = 0;
  bool throws = false;                   ///< every missing resource is an exception
  std::function<void()> onCall = [] {};  ///< a host that is up to something in the middle of a frame

 private:
  const model::Resource* resource_;
};

/// A filter and its model, side by side.
struct Rig {
  explicit Rig(int threads, const model::Resource& resource = noisePicture())
      : loader(&resource), filter(threads, &loader), expected(&resource) {}

  void put(const model::Settings& settings);
  std::string check(const Frame& frame) { return frame.check(filter, frame.predict(expected)); }

  Loader loader;
  Filter filter;
  model::Filter expected;
};

}  // namespace frame_rig

#endif
