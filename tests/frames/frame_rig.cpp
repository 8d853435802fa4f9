/// See frame_rig.h.
#include "tests/frames/frame_rig.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace frame_rig {
namespace {

std::size_t sizeOf(int rowBytes, int rows, int stride) {
  if (rowBytes <= 0 || rows <= 0) return 0;
  return static_cast<std::size_t>(rows - 1) * static_cast<std::size_t>(std::abs(stride)) +
         static_cast<std::size_t>(rowBytes);
}

Shape randomShape(Kind kind, int width, int height, bool rgbOrder, Random& random) {
  const int sign = random.pick({1, 1, -1});
  const auto stride = [&](int rowBytes) { return rowBytes + random.pick({0, 0, 4, random.between(1, 70)}); };
  const int pixels = sign * stride(4 * width);
  const auto guard = random.pick({Guard::kBehind, Guard::kBehind, Guard::kBefore});
  if (kind.call == Call::kBgra) return {kind, false, width, height, {sign * stride(4 * width), 0, pixels}, guard};
  if (kind.call == Call::kVideo) return {kind, rgbOrder, width, height, {width, width, pixels}, guard};
  return {kind, rgbOrder, width, height, {stride(width), sign * stride(width), pixels}, guard};
}

}  // namespace

Plane::Plane(int bytesOfRow, int rowCount, int rowStride, Guard guard)
    : rowBytes(bytesOfRow),
      rows(bytesOfRow > 0 ? rowCount : 0),
      stride(rowStride),
      memory(sizeOf(rowBytes, rows, stride), guard, 0xC5) {}

std::size_t Plane::offset(int y) const {
  const int line = stride < 0 && rows > 0 ? rows - 1 - y : y;
  return static_cast<std::size_t>(line) * static_cast<std::size_t>(std::abs(stride));
}

void Plane::put(const Bytes& bytes) const {
  std::copy(bytes.begin(), bytes.end(), memory.data());
}

void Plane::fill(Content content, Random& random) const {
  testing_support::fill(content, row(0), rowBytes, rows, stride, random);
}

std::string Plane::difference(const Bytes& expected, bool rowsCount) const {
  if (expected.empty() || std::memcmp(memory.data(), expected.data(), expected.size()) == 0) return "";
  const auto pitch = static_cast<std::size_t>(std::max(std::abs(stride), 1));
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const bool inRow = i % pitch < static_cast<std::size_t>(rowBytes);
    if (memory.data()[i] == expected[i] || (inRow && !rowsCount)) continue;
    const auto line = static_cast<int>(i / pitch);
    std::ostringstream text;
    text << "row " << (stride < 0 ? rows - 1 - line : line) << ", byte " << i % pitch << " of " << rowBytes << ": got "
         << int{memory.data()[i]} << ", expected " << int{expected[i]};
    return text.str();
  }
  return "";
}

Filter::~Filter() {
  std::free(nv12Scratch);
}

void Filter::put(const model::Settings& settings) {
  put_whitenIntensity(settings.whiten);
  put_softenSkinIntensity(settings.soften);
  put_colorAdjustIntensity(settings.colorAdjust);
  radius = settings.radius;
}

// Chroma ends with the last whole pair of the last whole row pair: nothing after it is ever needed.
Frame::Frame(const Shape& s)
    : shape(s),
      isBgra(s.kind.call == Call::kBgra),
      isOverwritten(s.kind.delivery == Delivery::kOntoItself),
      planes{Plane(isBgra ? s.width * 4 : s.width, s.height, s.strides[0], s.guard),
             Plane(isBgra ? 0 : s.width & ~1, s.height / 2, s.strides[1], s.guard),
             Plane(s.kind.delivery == Delivery::kToPixels ? s.width * 4 : 0, s.height, s.strides[2], s.guard)} {}

Frame::Frame(Kind kind, int width, int height, bool rgbOrder, Random& random)
    : Frame(randomShape(kind, width, height, rgbOrder, random)) {
  planes[0].fill(random.pick(testing_support::kLumaContents), random);
  planes[1].fill(random.pick({Content::kSkinPairs, Content::kSkinPairs, Content::kSkinPairs, Content::kNoise}), random);
  for (int y = 0; !shape.rgbOrder && y < planes[1].rows; ++y) {
    for (int x = 0; x < planes[1].rowBytes; x += 2)
      std::swap(planes[1].row(y)[x], planes[1].row(y)[x + 1]);
  }
  planes[2].fill(Content::kNoise, random);
}

void Frame::put(const Memory& content) const {
  for (std::size_t i = 0; i < 3; ++i)
    planes[i].put(content[i]);
}

Frame::Memory Frame::predict(model::Filter& model) const {
  Memory memory = content();
  const auto& [kind, rgbOrder, width, height, strides, guard] = shape;
  Byte* const picture = memory[0].data() + planes[0].offset(0);
  Byte* const chroma = memory[1].data() + planes[1].offset(0);
  Byte* const pixels = kind.delivery == Delivery::kToPixels ? memory[2].data() + planes[2].offset(0) : nullptr;
  if (isBgra) {
    model.processBgra(picture, width, height, strides[0], isOverwritten ? picture : pixels,
                      strides[isOverwritten ? 0 : 2]);
  } else {
    model.processVideo(picture, strides[0], chroma, strides[1], width, height, pixels, strides[2], rgbOrder);
  }
  return memory;
}

bool Frame::mustFail(Refusal refusal) const {
  if (refusal == Refusal::kNoChroma) return !isBgra;
  if (refusal == Refusal::kNarrowStride) return shape.kind.call == Call::kInternal;
  return refusal != Refusal::kNone;
}

int Frame::run(Filter& filter, Refusal refusal) const {
  const auto& strides = shape.strides;
  int width = refusal == Refusal::kNegativeWidth ? -1 - shape.width : shape.width;
  int height = refusal == Refusal::kNegativeHeight ? INT_MIN + shape.height : shape.height;
  if (refusal == Refusal::kHuge) width = height = INT_MAX - shape.width;
  const int lumaStride = refusal == Refusal::kHuge ? width : refusal == Refusal::kNarrowStride ? width - 1 : strides[0];
  Byte* const picture = refusal == Refusal::kNoPicture ? nullptr : planes[0].row(0);
  Byte* const chroma = refusal == Refusal::kNoChroma ? nullptr : planes[1].row(0);
  Byte* const pixels = shape.kind.delivery == Delivery::kToPixels ? planes[2].row(0) : nullptr;
  const auto call = [&] {
    if (isBgra) {
      return filter.processBGRAVideo(picture, width, height, strides[0], isOverwritten ? picture : pixels,
                                     strides[isOverwritten ? 0 : 2]);
    }
    if (shape.kind.call == Call::kVideo) {  // strides that are ignored: no value of theirs may matter
      return filter.processVideo(picture, -1, chroma, INT_MIN, width, height, pixels, strides[2], shape.rgbOrder);
    }
    return filter.processVideoInternal(picture, lumaStride, chroma, strides[1], width, height, pixels, strides[2],
                                       shape.rgbOrder);
  };
  if (refusal != Refusal::kNoThreads) return call();
  const int threads = filter.threadCount;  // not before: hosts may write it while frames run
  filter.threadCount = 1 - threads;
  const int result = call();
  filter.threadCount = threads;
  return result;
}

std::string Frame::difference(const Memory& expected, bool resultsCount) const {
  static constexpr const char* kNames[] = {"picture: ", "chroma: ", "pixels: "};
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string text = planes[i].difference(expected[i], resultsCount || (i == 2) == isOverwritten);
    if (!text.empty()) return kNames[i] + text;
  }
  return "";
}

std::string Frame::check(Filter& filter, const Memory& expected, Refusal refusal, bool resultsCount) const {
  const bool failing = mustFail(refusal);
  const int result = run(filter, refusal);
  const std::string wrong =
      result == (failing ? -1 : 0) ? difference(expected, failing || resultsCount) : "result " + std::to_string(result);
  if (wrong.empty()) return "";
  static constexpr const char* kCalls[] = {"processVideo ", "processVideoInternal ", "processBGRAVideo "};
  static constexpr const char* kDeliveries[] = {" to pixels", " onto itself", " nowhere"};
  std::ostringstream text;
  text << wrong << "; " << kCalls[static_cast<int>(shape.kind.call)] << shape.width << " x " << shape.height
       << kDeliveries[static_cast<int>(shape.kind.delivery)] << (shape.rgbOrder ? ", NV21" : ", NV12") << ", strides "
       << shape.strides[0] << ' ' << shape.strides[1] << ' ' << shape.strides[2] << ", whiten "
       << filter.whitenIntensity << ", soften " << filter.softenSkinIntensity << ", radius " << filter.radius
       << ", colorAdjust " << filter.colorAdjustIntensity << ", " << filter.threadCount << " threads, refusal "
       << static_cast<int>(refusal);
  return text.str();
}

const model::Resource& noisePicture() {
  static const model::Resource resource = [] {
    model::Resource made{true, Bytes(model::kPictureSize)};
    Random random(77);
    std::generate(made.payload.begin(), made.payload.end(), [&] { return random.byte(); });
    return made;
  }();
  return resource;
}

int Loader::getResFromName(const char* name, unsigned char* dst) {
  ++calls;
  onCall();
  if (std::strcmp(name, "adjust.vlk") != 0) return -1;
  std::copy(resource_->payload.begin(), resource_->payload.end(), dst);
#if !defined(__wasm__)  // where an exception ends everything
  if (!resource_->present && (throws || calls % 3 == 2)) throw 0;
#endif
  return resource_->present ? calls / 2 % 2 * INT_MAX : -calls;
}

void Rig::put(const model::Settings& settings) {
  filter.put(settings);
  expected.put(settings);
}

}  // namespace frame_rig
