/// See frame_support.h.
#include "tests/frames/frame_support.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <utility>

namespace frame_tests {
namespace {

void fillSkinPixels(const Plane& plane, Random& random) {
  for (int y = 0; y < plane.height(); ++y) {
    for (int x = 0; x + 3 < plane.width(); x += 4) {
      const int light = random.between(-70, 50);
      const std::array<int, 4> skin = {125, 150, 200, 77};
      for (int i = 0; i < 4; ++i) {
        const int value = skin[static_cast<std::size_t>(i)] + light + random.between(-12, 12);
        plane.row(y)[x + i] = static_cast<unsigned char>(std::clamp(value, 0, 255));
      }
    }
  }
}

void swapPairs(const Plane& plane) {
  for (int y = 0; y < plane.height(); ++y) {
    for (int x = 0; x + 1 < plane.width(); x += 2)
      std::swap(plane.row(y)[x], plane.row(y)[x + 1]);
  }
}

bool isBgraKind(Kind kind) {
  return kind != Kind::kInPlace && kind != Kind::kToPixels;
}
bool hasOut(Kind kind) {
  return kind == Kind::kToPixels || kind == Kind::kBgra;
}

}  // namespace

const model::Resource& noisePicture() {
  static const model::Resource resource = [] {
    model::Resource made{true, model::Bytes(model::kPictureSize)};
    Random random(77);
    for (auto& byte : made.payload)
      byte = random.byte();
    return made;
  }();
  return resource;
}

int Loader::getResFromName(const char* name, unsigned char* dst) {
  ++calls;
  onCall();
  EXPECT_STREQ(name, "adjust.vlk");
  if (!resource_->present) return -1;
  std::copy(resource_->payload.begin(), resource_->payload.end(), dst);
  return 0;
}

// Chroma ends with the last whole pair of the last whole row pair: nothing behind it is ever needed.
Frame::Frame(Kind kind, int width, int height, bool rgbOrder, Random& random)
    : kind_(kind),
      width_(width),
      height_(height),
      rgbOrder_(rgbOrder && !isBgraKind(kind)),
      guard_(random.pick({Guard::kBehind, Guard::kBehind, Guard::kBefore})),
      picture_(isBgraKind(kind) ? width * 4 : width, height,
               isBgraKind(kind) ? width * 4 + random.pick({0, 0, 3, 64}) : width, guard_,
               random.pick(testing_support::kLumaContents), random),
      chroma_(isBgraKind(kind) ? 0 : width & ~1, height / 2, width, guard_,
              random.pick({Content::kSkinPairs, Content::kSkinPairs, Content::kSkinPairs, Content::kNoise}), random),
      out_(hasOut(kind) ? width * 4 : 0, height, width * 4 + random.pick({0, 0, 4, 37}), guard_, Content::kNoise,
           random) {
  if (!rgbOrder_) swapPairs(chroma_);
  if (isBgra() && random.between(0, 3) != 0) fillSkinPixels(picture_, random);
  original_ = content();
}

unsigned char* Frame::out() const {
  if (kind_ == Kind::kBgraOntoItself) return picture_.data();
  return hasOut(kind_) ? out_.data() : nullptr;
}

const Frame::Memory& Frame::predict(model::Filter& filter) {
  expected_ = content();
  auto& [picture, chroma, out] = expected_;
  if (isBgra()) {
    // The model wants the pixels as they were even where it writes over them.
    const model::Bytes source = picture;
    model::Byte* to = kind_ == Kind::kBgraOntoItself ? picture.data() : hasOut(kind_) ? out.data() : nullptr;
    filter.processBgra(source.data(), width_, height_, picture_.stride(), to,
                       kind_ == Kind::kBgraOntoItself ? picture_.stride() : out_.stride());
  } else {
    filter.processVideo(picture, chroma, width_, height_, hasOut(kind_) ? out.data() : nullptr, out_.stride(),
                        rgbOrder_);
  }
  return expected_;
}

int Frame::run(CFastEdgePreserved& filter) {
  if (isBgra()) {
    return filter.processBGRAVideo(picture(), width_, height_, picture_.stride(), out(),
                                   kind_ == Kind::kBgraOntoItself ? picture_.stride() : out_.stride());
  }
  // The strides of the planes are ignored: no value of theirs may matter.
  return filter.processVideo(picture(), width_ + 5, chroma(), -3, width_, height_, out(), out_.stride(), rgbOrder_);
}

void Frame::reset() {
  const Plane* planes[] = {&picture_, &chroma_, &out_};
  for (std::size_t i = 0; i < 3; ++i)
    std::copy(original_[i].begin(), original_[i].end(), planes[i]->data());
}

testing::AssertionResult Frame::holds(const Memory& expected) const {
  const std::pair<const char*, const Plane*> planes[] = {
      {isBgra() ? "BGRA: " : "luma: ", &picture_}, {"chroma: ", &chroma_}, {"out: ", &out_}};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto same = sameBytes(*planes[i].second, expected[i]);
    if (!same) return testing::AssertionFailure() << planes[i].first << same.message() << describe();
  }
  return testing::AssertionSuccess();
}

std::string Frame::describe() const {
  static constexpr std::array kNames = {"in place", "to pixels", "BGRA", "BGRA onto itself", "BGRA nowhere"};
  std::ostringstream text;
  text << width_ << " x " << height_ << (rgbOrder_ ? " NV21 " : " NV12 ") << kNames[static_cast<std::size_t>(kind_)];
  return text.str();
}

Rig::Rig(int threadCount, const model::Resource& resource)
    : loader(&resource), filter(threadCount, &loader), expected(&resource) {}

// The filter leaves this one buffer to its host.
Rig::~Rig() {
  std::free(filter.nv12Scratch);
}

void Rig::put(const model::Settings& settings) {
  filter.put_whitenIntensity(settings.whiten);
  filter.put_softenSkinIntensity(settings.soften);
  filter.put_colorAdjustIntensity(settings.colorAdjust);
  filter.radius = settings.radius;
  expected.put(settings);
  settings_ = settings;
}

void Rig::check(Frame& frame) {
  frame.predict(expected);
  EXPECT_EQ(frame.run(filter), 0) << frame.describe();
  EXPECT_TRUE(frame.isPredicted()) << ", whiten " << settings_.whiten << ", soften " << settings_.soften << ", radius "
                                   << settings_.radius << ", colorAdjust " << settings_.colorAdjust << ", "
                                   << filter.threadCount << " threads";
}

}  // namespace frame_tests
