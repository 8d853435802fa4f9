/// See makeup_rig.h.
#include "tests/engine/makeup_rig.h"

#include <algorithm>
#include <sstream>

namespace makeup_rig {
namespace {

frame_rig::Plane planeOf(int format, std::size_t plane, int width, int height, int slack, Guard guard) {
  const int bytes = makeup_model::rowBytes(format, plane, width);
  return {bytes, plane == 0 ? height : (height + 1) / 2, bytes + slack, guard};
}

VlvkFrame describe(int format, int colors, int width, int height, const std::array<frame_rig::Plane, 3>& planes) {
  VlvkFrame frame = {sizeof frame, format, colors >= 2 ? VLVK_BT709 : VLVK_BT601, colors % 2, width, height, {}, {}};
  for (std::size_t i = 0; i < 3 && planes[i].rows > 0; ++i) {
    frame.plane[i] = planes[i].row(0);
    frame.stride[i] = planes[i].stride;
  }
  return frame;
}

std::array<int, 3> drawSlack(Random& random) {
  const auto draw = [&] { return random.pick({0, 0, 16, random.between(1, 70)}); };
  return {draw(), draw(), draw()};
}

}  // namespace

Picture::Picture(int format, int colors, int width, int height, std::array<int, 3> slack, Guard guard)
    : planes{planeOf(format, 0, width, height, slack[0], guard), planeOf(format, 1, width, height, slack[1], guard),
             planeOf(format, 2, width, height, slack[2], guard)},
      frame(describe(format, colors, width, height, planes)) {}

Picture::Picture(int format, int colors, int width, int height, Random& random)
    : Picture(format, colors, width, height, drawSlack(random), random.pick({Guard::kBehind, Guard::kBefore})) {
  const int spread = random.pick({0, 12, 40, 128});
  const bool ofPixels = makeup_model::isPixels(format);
  const bool randomRows = random.between(0, 3) == 0;
  const int skin[4] = {190, 150, 140, 128};
  for (std::size_t plane = 0; plane < 3; ++plane) {
    planes[plane].fill(random.pick(testing_support::kLumaContents), random);
    if (ofPixels ? randomRows : plane == 0) continue;
    for (int i = 0; i < planes[plane].rows * planes[plane].rowBytes; ++i) {
      const int x = i % planes[plane].rowBytes;
      const bool isU = format == VLVK_I420 ? plane == 1 : (x % 2 == 0) == (format == VLVK_NV12);
      const int centre = ofPixels ? skin[x % makeup_model::rowBytes(format, 0, 1)] : isU ? 110 : 155;
      planes[plane].row(i / planes[plane].rowBytes)[x] = static_cast<Byte>(centre + random.between(-spread, spread));
    }
  }
}

VlvkFrame Picture::frameIn(Memory& memory) const {
  VlvkFrame copy = frame;
  for (std::size_t i = 0; i < 3; ++i)
    copy.plane[i] = memory[i].data();
  return copy;
}

std::string Picture::difference(const Memory& expected) const {
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string text = planes[i].difference(expected[i]);
    if (!text.empty()) return "plane " + std::to_string(i) + ", " + text;
  }
  return "";
}

Mask::Mask(int width, int height, Random& random)
    : plane(width, height, width + random.pick({0, random.between(1, 40)})),
      mask{sizeof mask, width, height, plane.stride, plane.row(0)} {
  plane.fill(random.pick({testing_support::Content::kEdges, testing_support::Content::kNoise,
                          testing_support::Content::kEdges, testing_support::Content::kFlat}),
             random);
}

VlvkSettings settingsOf(int whitening, int softening, int radius, int threads) {
  return {sizeof(VlvkSettings), whitening, softening, radius, VLVK_CONTRAST_ABSOLUTE, VLVK_WHITEN_ALL, 0, threads};
}

const Bytes& tableFile() {
  static const Bytes file = [] {
    Bytes bytes = {0, 0, 0, 0, 0, 4, 0, 0, 0, 4, 0, 0};  // 1024 * 1024 bytes, neighbours exchanged, masked
    const Bytes& picture = frame_rig::noisePicture().payload;
    for (std::size_t i = 0; i < picture.size(); ++i)
      bytes.push_back(picture[i ^ 1] ^ 0x5A);
    return bytes;
  }();
  return file;
}

void Engine::put(const VlvkSettings& s) {
  if (vlvkMakeupConfigure(makeup, &s) == VLVK_OK) settings = s;
}

VlvkResult Engine::setTable(bool wanted) {
  const VlvkResult result = vlvkMakeupSetTable(makeup, wanted ? tableFile().data() : nullptr, tableFile().size());
  if (result == VLVK_OK) hasTable = wanted;
  return result;
}

Picture::Memory Engine::predict(const Picture& source, const Picture& target) const {
  Picture::Memory result = target.content();
  makeup_model::process(source.frame, target.frameIn(result), settings,
                        hasTable ? frame_rig::noisePicture().payload.data() : nullptr, mask);
  return result;
}

std::string Engine::check(const Picture& source, const Picture& target) const {
  const Picture::Memory before = source.content();
  const Picture::Memory expected = predict(source, target);
  const VlvkResult result = process(source, target);
  std::string wrong = result == VLVK_OK ? target.difference(expected) : vlvkResultText(result);
  if (wrong.empty() && &source != &target) wrong = source.difference(before);
  if (wrong.empty()) return "";
  std::ostringstream text;
  text << wrong << "; " << source.frame.width << " x " << source.frame.height;
  for (const VlvkFrame& f : {source.frame, target.frame}) {
    text << ", format " << f.format << " matrix " << f.matrix << " range " << f.range << " strides " << f.stride[0]
         << ' ' << f.stride[1] << ' ' << f.stride[2];
  }
  text << (&source == &target ? ", in place" : "") << "; whitening " << settings.whitening << ", softening "
       << settings.softening << ", radius " << settings.radius << ", contrast " << settings.contrast << ", area "
       << settings.whitenArea << ", tone " << settings.evenTone << ", threads " << settings.threads
       << (hasTable ? ", table" : "");
  if (mask != nullptr) text << ", mask " << mask->width << " x " << mask->height;
  return text.str();
}

}  // namespace makeup_rig
