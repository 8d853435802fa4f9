/// See frame_steps.h.
#include "fuzz/frame_steps.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "tests/support/random_content.h"

namespace fuzz {
namespace {

using testing_support::Content;
using testing_support::Random;

constexpr int kMaxWidth = 300;
constexpr int kMaxHeight = 80;
constexpr std::uint8_t kPadding = 0xC5;

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

/// Bytes of the input itself over and over, or a kind of content.
void fillPlane(Input& input, Plane& plane, bool skin) {
  const auto content = skin ? input.pick({Content::kSkinPairs, Content::kNoise, Content::kSkinPairs, Content::kWhite})
                            : input.pick({Content::kNoise, Content::kFaintNoise, Content::kGradient, Content::kEdges,
                                          Content::kFlat, Content::kCheckerboard, Content::kWhite, Content::kBlack});
  Random random(input.word());
  model::Bytes rows = plane.compact(plane.rowBytes());
  testing_support::fill(content, rows.data(), plane.rowBytes(), plane.rows(), plane.rowBytes(), random);
  const int own = input.byte();
  if (own < 32 && own > 0) {
    model::Bytes pattern(static_cast<std::size_t>(own));
    std::generate(pattern.begin(), pattern.end(), [&] { return input.byte(); });
    for (std::size_t i = 0; i < rows.size(); ++i)
      rows[i] = pattern[i % pattern.size()];
  }
  plane.putRows(rows, plane.rowBytes());
}

}  // namespace

Plane::Plane(int rowBytes, int rows, int stride)
    : rowBytes_(rowBytes),
      rows_(rowBytes > 0 ? rows : 0),
      stride_(stride),
      bytes_(rows_ > 0 ? static_cast<std::size_t>(rows_ - 1) * static_cast<std::size_t>(std::abs(stride)) +
                             static_cast<std::size_t>(rowBytes)
                       : 1,
             kPadding) {}

std::size_t Plane::offset(int y) const {
  const int line = stride_ < 0 && rows_ > 0 ? rows_ - 1 - y : y;
  return static_cast<std::size_t>(line) * static_cast<std::size_t>(std::abs(stride_));
}

model::Bytes Plane::compact(int pitch) const {
  model::Bytes bytes(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(pitch));
  for (int y = 0; y < rows_; ++y)
    std::copy_n(row(y), rowBytes_, bytes.begin() + std::ptrdiff_t{y} * pitch);
  return bytes;
}

void Plane::putRows(const model::Bytes& bytes, int pitch) {
  for (int y = 0; y < rows_; ++y)
    std::copy_n(bytes.begin() + std::ptrdiff_t{y} * pitch, rowBytes_, row(y));
}

std::string Plane::difference(const Plane& expected, bool outsideRows) const {
  const auto pitch = static_cast<std::size_t>(std::max(std::abs(stride_), 1));
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    const bool inRow = i % pitch < static_cast<std::size_t>(rowBytes_);
    if (bytes_[i] == expected.bytes_[i] || (outsideRows && inRow)) continue;
    const auto line = static_cast<int>(i / pitch);
    return "row " + std::to_string(stride_ < 0 ? rows_ - 1 - line : line) + ", byte " + std::to_string(i % pitch) +
           ": got " + std::to_string(bytes_[i]) + ", expected " + std::to_string(expected.bytes_[i]);
  }
  return "";
}

FrameStep drawStep(Input& input, bool usualOrder) {
  const model::Settings settings = drawSettings(input);
  const int threads = input.byte() % 16 == 0 ? input.between(1, 90) : input.between(1, 9);
  const Call call = usualOrder ? input.pick({Call::kVideo, Call::kInternal, Call::kVideo, Call::kInternal, Call::kBgra})
                               : input.pick({Call::kVideo, Call::kInternal, Call::kBgra, Call::kInternal});
  const bool bgra = call == Call::kBgra;
  const Delivery delivery = input.pick({Delivery::kOntoItself, Delivery::kToPixels, Delivery::kOntoItself,
                                        bgra ? Delivery::kNowhere : Delivery::kToPixels});
  const bool rgbOrder = usualOrder != (input.byte() % 8 == 0);
  const int width = input.byte() % 4 == 0 ? input.between(0, kMaxWidth) : input.between(0, 70);
  const int height = input.between(0, kMaxHeight);
  const int refusal = input.byte();
  // Without strides of the caller's, rows follow each other. Chroma ends with the last whole pair of the last whole row
  // pair.
  const bool free = call == Call::kInternal;
  const int lumaStride = free ? drawStride(input, width, false) : width;
  const int chromaStride = free ? drawStride(input, width, true) : width;
  FrameStep step{settings,
                 threads,
                 call,
                 delivery,
                 rgbOrder && !bgra,
                 width,
                 height,
                 refusal > 0 && refusal < 8 ? static_cast<Refusal>(refusal) : Refusal::kNone,
                 bgra ? Plane(width * 4, height, drawStride(input, width * 4, true)) : Plane(width, height, lumaStride),
                 Plane(bgra ? 0 : width & ~1, height / 2, chromaStride),
                 Plane(delivery == Delivery::kToPixels ? width * 4 : 0, height, drawStride(input, width * 4, true))};
  fillPlane(input, step.picture, false);
  fillPlane(input, step.chroma, true);
  fillPlane(input, step.out, false);
  return step;
}

std::string FrameStep::describe() const {
  static constexpr const char* kCalls[] = {"processVideo", "processVideoInternal", "processBGRAVideo"};
  static constexpr const char* kDeliveries[] = {"to pixels", "onto itself", "nowhere"};
  std::ostringstream text;
  text << kCalls[static_cast<int>(call)] << ' ' << width << " x " << height << ' '
       << kDeliveries[static_cast<int>(delivery)] << (rgbOrder ? ", NV21" : ", NV12") << ", strides "
       << picture.stride() << ' ' << chroma.stride() << ' ' << out.stride() << ", whiten " << settings.whiten
       << ", soften " << settings.soften << ", radius " << settings.radius << ", colorAdjust " << settings.colorAdjust
       << ", " << threads << " threads, refusal " << static_cast<int>(refusal);
  return text.str();
}

model::Resource drawResource(Input& input) {
  static const model::Bytes noise = [] {
    model::Bytes bytes(model::kPictureSize);
    Random random(77);
    std::generate(bytes.begin(), bytes.end(), [&] { return random.byte(); });
    return bytes;
  }();
  const int kind = input.byte() % 8;
  if (kind == 0) return {.present = false, .payload = {}};
  if (kind == 1) return {.present = true, .payload = {}};
  if (kind < 4) return {.present = true, .payload = {noise.begin(), noise.begin() + (input.word() >> 12)}};
  return {.present = true, .payload = noise};
}

int Loader::getResFromName(const char* /*name*/, unsigned char* dst) {
  if (!resource_->present && throws_) throw std::runtime_error("no such resource");
  if (!resource_->present) return -1;
  std::copy(resource_->payload.begin(), resource_->payload.end(), dst);
  return 0;
}

Filter::~Filter() {
  std::free(nv12Scratch);
}

int Filter::run(FrameStep& step) {
  put_whitenIntensity(step.settings.whiten);
  put_softenSkinIntensity(step.settings.soften);
  put_colorAdjustIntensity(step.settings.colorAdjust);
  radius = step.settings.radius;
  threadCount = step.refusal == Refusal::kNoThreads ? -step.threads + 1 : step.threads;

  const bool bgra = step.call == Call::kBgra;
  int width = step.refusal == Refusal::kNegativeWidth ? -1 - step.width : step.width;
  int height = step.refusal == Refusal::kNegativeHeight ? INT_MIN + step.height : step.height;
  if (step.refusal == Refusal::kHuge) width = height = INT_MAX - step.width;
  std::uint8_t* picture = step.refusal == Refusal::kNoPicture ? nullptr : step.picture.row(0);
  std::uint8_t* chroma = step.refusal == Refusal::kNoChroma ? nullptr : step.chroma.row(0);
  std::uint8_t* out = step.delivery == Delivery::kToPixels ? step.out.row(0) : nullptr;
  if (bgra) {
    const bool ontoItself = step.delivery == Delivery::kOntoItself;
    return processBGRAVideo(picture, width, height, step.picture.stride(), ontoItself ? picture : out,
                            ontoItself ? step.picture.stride() : step.out.stride());
  }
  if (step.call == Call::kVideo) {
    return processVideo(picture, -1, chroma, INT_MIN, width, height, out, step.out.stride(), step.rgbOrder);
  }
  const int lumaStride = step.refusal == Refusal::kHuge           ? width
                         : step.refusal == Refusal::kNarrowStride ? width - 1
                                                                  : step.picture.stride();
  return processVideoInternal(picture, lumaStride, chroma, step.chroma.stride(), width, height, out, step.out.stride(),
                              step.rgbOrder);
}

void predict(model::Filter& model, FrameStep& step) {
  model.put(step.settings);
  const int width = step.width;
  const int pixelBytes = width * 4;
  model::Bytes out = step.out.compact(pixelBytes);
  if (step.call == Call::kBgra) {
    const model::Bytes source = step.picture.compact(pixelBytes);
    if (step.delivery == Delivery::kOntoItself) out = source;
    // Empty pictures have no address; the model takes none for "nowhere".
    out.reserve(1);
    model.processBgra(source.data(), width, step.height, pixelBytes,
                      step.delivery == Delivery::kNowhere ? nullptr : out.data(), pixelBytes);
    (step.delivery == Delivery::kOntoItself ? step.picture : step.out).putRows(out, pixelBytes);
    return;
  }
  model::Bytes luma = step.picture.compact(width);
  model::Bytes chroma = step.chroma.compact(width);
  out.reserve(1);
  model.processVideo(luma, chroma, width, step.height, step.delivery == Delivery::kToPixels ? out.data() : nullptr,
                     pixelBytes, step.rgbOrder);
  step.picture.putRows(luma, width);
  step.chroma.putRows(chroma, width);
  step.out.putRows(out, pixelBytes);
}

}  // namespace fuzz
