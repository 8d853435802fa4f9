/// See makeup_rig.h.
#include "tests/engine/makeup_rig.h"

#include <algorithm>
#include <sstream>

namespace makeup_rig {
namespace {

frame_rig::Plane planeOf(const Shape& s, int plane) {
  const int bytes = makeup_model::rowBytes(s.format, plane, s.width);
  return {bytes, makeup_model::rowsOf(s.format, plane, s.height), bytes + s.slack[static_cast<std::size_t>(plane)],
          s.guard};
}

}  // namespace

Shape randomShape(int format, int colors, int width, int height, Random& random) {
  Shape shape{format, colors, width, height, {}, random.pick({Guard::kBehind, Guard::kBehind, Guard::kBefore})};
  for (int& slack : shape.slack)
    slack = random.pick({0, 0, 16, random.between(1, 70)});
  return shape;
}

Picture::Picture(const Shape& s) : shape(s), planes{planeOf(s, 0), planeOf(s, 1), planeOf(s, 2)} {}

void Picture::fill(Random& random) const {
  planes[0].fill(random.pick(testing_support::kLumaContents), random);
  const int spread = random.pick({0, 12, 40, 128});
  const auto near = [&](int centre) { return static_cast<Byte>(centre + random.between(-spread, spread)); };
  const auto fillRows = [&](std::size_t plane, std::initializer_list<int> centres) {
    std::size_t i = 0;
    for (int y = 0; y < planes[plane].rows; ++y)
      std::generate_n(planes[plane].row(y), planes[plane].rowBytes,
                      [&] { return near(centres.begin()[i++ % centres.size()]); });
  };
  if (shape.format == VLVK_NV21) fillRows(1, {155, 110});
  if (shape.format == VLVK_NV12) fillRows(1, {110, 155});
  if (shape.format == VLVK_I420) fillRows(1, {110});
  if (shape.format == VLVK_I420) fillRows(2, {155});
  if (!makeup_model::isPixels(shape.format) || random.between(0, 3) == 0) return;
  const bool fours = makeup_model::rowBytes(shape.format, 0, 1) == 4;
  fillRows(0, fours ? std::initializer_list<int>{190, 150, 140, 128} : std::initializer_list<int>{190, 150, 140});
}

void Picture::put(const Memory& content) const {
  for (std::size_t i = 0; i < 3; ++i)
    planes[i].put(content[i]);
}

VlvkFrame Picture::frameIn(const std::array<Byte*, 3>& memory) const {
  VlvkFrame frame{};
  frame.size = sizeof frame;
  frame.format = shape.format;
  frame.matrix = (shape.colors & 2) != 0 ? VLVK_BT709 : VLVK_BT601;
  frame.range = shape.colors & 1;
  frame.width = shape.width;
  frame.height = shape.height;
  for (std::size_t i = 0; i < 3 && planes[i].rows > 0; ++i) {
    frame.plane[i] = memory[i];
    frame.stride[i] = planes[i].stride;
  }
  return frame;
}

std::string Picture::difference(const Memory& expected) const {
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string text = planes[i].difference(expected[i]);
    if (!text.empty()) return "plane " + std::to_string(i) + ", " + text;
  }
  return "";
}

VlvkSettings settingsOf(int whitening, int softening, int radius, int threads) {
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  settings.whitening = whitening;
  settings.softening = softening;
  settings.radius = radius;
  settings.contrast = VLVK_CONTRAST_ABSOLUTE;
  settings.threads = threads;
  return settings;
}

Handle create(const VlvkSettings& settings) {
  VlvkMakeup* makeup = nullptr;
  vlvkMakeupCreate(&makeup, &settings);
  return Handle(makeup);
}

const Bytes& noiseTable() {
  static const Bytes file = [] {
    Bytes bytes = {0, 0, 0, 0, 0, 4, 0, 0, 0, 4, 0, 0};  // 1024 * 1024 bytes, neighbours exchanged, masked
    const Bytes& picture = frame_rig::noisePicture().payload;
    for (std::size_t i = 0; i < picture.size(); ++i)
      bytes.push_back(picture[i ^ 1] ^ 0x5A);
    return bytes;
  }();
  return file;
}

std::string check(VlvkMakeup* makeup, const VlvkSettings& settings, bool hasTable, const Picture& source,
                  const Picture& target) {
  const Picture::Memory before = source.content();
  Picture::Memory expected = target.content();
  makeup_model::process(source.frame(), target.frameIn(expected), settings,
                        hasTable ? frame_rig::noisePicture().payload.data() : nullptr);
  const VlvkFrame from = source.frame();
  const VlvkFrame to = target.frame();
  const VlvkResult result = vlvkMakeupProcess(makeup, &from, &to, nullptr);
  std::string wrong = result == VLVK_OK ? target.difference(expected) : vlvkResultText(result);
  if (wrong.empty() && &source != &target) wrong = source.difference(before);
  if (wrong.empty()) return "";
  std::ostringstream text;
  const auto show = [&](const Shape& s) {
    text << "format " << s.format << ", colors " << s.colors << ", slack " << s.slack[0] << ' ' << s.slack[1] << ' '
         << s.slack[2];
  };
  text << wrong << "; " << source.shape.width << " x " << source.shape.height << ", ";
  show(source.shape);
  text << (&source == &target ? " in place of " : " to ");
  show(target.shape);
  text << "; whitening " << settings.whitening << ", softening " << settings.softening << ", radius " << settings.radius
       << ", threads " << settings.threads << (hasTable ? ", table" : "");
  return text.str();
}

}  // namespace makeup_rig
