/// A sheet on libgd, which scales, and brings letters that need no font file.
#include "tools/commands/canvas.h"

#include <gd.h>
#include <gdfontg.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr int kInk = 0x202020;

// A result shows every failure. libgd would write a line of its own in addition.
void ignoreMessage(int /*priority*/, const char* /*format*/, va_list /*arguments*/) {}

int overWhite(const std::uint8_t* pixel) {
  int color = 0;
  for (int c = 0; c < 3; ++c)
    color = color << 8 | (pixel[c] * pixel[3] + 255 * (255 - pixel[3]) + 127) / 255;
  return color;
}

}  // namespace

void SheetCanvas::Release::operator()(gdImageStruct* image) const {
  gdImageDestroy(image);
}

SheetCanvas::Image SheetCanvas::makeImage(int width, int height) {
  gdSetErrorMethod(ignoreMessage);
  Image image(gdImageCreateTrueColor(width, height));
  if (!image) throw Error("not enough memory");
  gdImageFilledRectangle(image.get(), 0, 0, width - 1, height - 1, kWhite);
  return image;
}

SheetCanvas::SheetCanvas(int width, int height) : image_(makeImage(width, height)) {}

void SheetCanvas::drawPicture(const Picture& picture, const Region& part, const Region& place) {
  const Image source = makeImage(part.width, part.height);
  for (int y = 0; y < part.height; ++y) {
    const std::uint8_t* pixel = picture.row(part.y + y) + std::size_t{4} * static_cast<std::size_t>(part.x);
    for (int x = 0; x < part.width; ++x, pixel += 4)
      source->tpixels[y][x] = overWhite(pixel);
  }
  gdImageCopyResampled(image_.get(), source.get(), place.x, place.y, 0, 0, place.width, place.height, part.width,
                       part.height);
}

int SheetCanvas::letterWidth() {
  return gdFontGetGiant()->w;
}

int SheetCanvas::letterHeight() {
  return gdFontGetGiant()->h;
}

void SheetCanvas::writeText(const std::string& text, int x, int y, int scale, bool upwards) {
  const int length = letterWidth() * static_cast<int>(text.size());
  const int width = upwards ? letterHeight() : length;
  const int height = upwards ? length : letterHeight();
  const Image line = makeImage(width, height);
  std::string letters = text;
  auto* bytes = reinterpret_cast<unsigned char*>(letters.data());
  if (upwards) {
    gdImageStringUp(line.get(), gdFontGetGiant(), 0, height - 1, bytes, kInk);
  } else {
    gdImageString(line.get(), gdFontGetGiant(), 0, 0, bytes, kInk);
  }
  gdImageCopyResized(image_.get(), line.get(), x - width * scale / 2, y - height * scale / 2, 0, 0, width * scale,
                     height * scale, width, height);
}

Picture SheetCanvas::picture() const {
  Picture result(image_->sx, image_->sy);
  for (int y = 0; y < result.height; ++y) {
    std::uint8_t* pixel = result.row(y);
    for (int x = 0; x < result.width; ++x, pixel += 4) {
      const int color = image_->tpixels[y][x];
      pixel[0] = static_cast<std::uint8_t>(color >> 16);
      pixel[1] = static_cast<std::uint8_t>(color >> 8);
      pixel[2] = static_cast<std::uint8_t>(color);
      pixel[3] = 255;
    }
  }
  return result;
}

}  // namespace vlvk::tool
