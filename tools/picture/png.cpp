/// PNG through libpng.
///
/// libpng leaves its functions by longjmp, which must not skip destructors. So each step that calls it is a function of
/// its own without objects, and returns false after an error; what it works on belongs to the caller.
#include "tools/picture/png.h"

#include <png.h>

#include <csetjmp>
#include <cstddef>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

// What libpng had to say, kept outside of its own memory.
struct Complaint {
  char text[128] = "";
};

[[noreturn]] void onError(png_structp png, png_const_charp message) {
  auto* complaint = static_cast<Complaint*>(png_get_error_ptr(png));
  std::strncpy(complaint->text, message, sizeof complaint->text - 1);
  png_longjmp(png, 1);
}

void onWarning(png_structp /*png*/, png_const_charp /*message*/) {}

struct Decoder {
  explicit Decoder(std::span<const std::uint8_t> file) : rest(file) {
    png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &complaint, onError, onWarning);
    if (png != nullptr) info = png_create_info_struct(png);
  }
  ~Decoder() { png_destroy_read_struct(&png, &info, nullptr); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  std::span<const std::uint8_t> rest;
  Complaint complaint;
  png_structp png = nullptr;
  png_infop info = nullptr;
};

void onRead(png_structp png, png_bytep bytes, std::size_t count) {
  auto* decoder = static_cast<Decoder*>(png_get_io_ptr(png));
  if (count > decoder->rest.size()) png_error(png, "the file ends early");
  std::memcpy(bytes, decoder->rest.data(), count);
  decoder->rest = decoder->rest.subspan(count);
}

// Text, palettes to suggest and the like would be unpacked and kept, as much of it as a hostile file likes.
void ignoreUnusedChunks(png_structp png) {
  static constexpr png_byte kUsed[] = "cHRM\0eXIf\0gAMA\0iCCP\0sRGB";  // beside those that no picture is without
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_AS_DEFAULT, kUsed, sizeof kUsed / 5);
}

// Reads up to the first pixels and asks for RGBA, whatever the file holds.
bool readHeader(Decoder* decoder) {
  if (setjmp(png_jmpbuf(decoder->png)) != 0) return false;
  png_set_read_fn(decoder->png, decoder, onRead);
  png_set_user_limits(decoder->png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);  // our own limit gives a better message
  ignoreUnusedChunks(decoder->png);
  png_read_info(decoder->png, decoder->info);
  png_set_expand(decoder->png);
  png_set_scale_16(decoder->png);
  png_set_gray_to_rgb(decoder->png);
  png_set_add_alpha(decoder->png, 0xFF, PNG_FILLER_AFTER);
  png_set_interlace_handling(decoder->png);
  return true;
}

bool readRows(Decoder* decoder, png_bytepp rows) {
  if (setjmp(png_jmpbuf(decoder->png)) != 0) return false;
  png_read_image(decoder->png, rows);
  png_read_end(decoder->png, decoder->info);
  return true;
}

bool isTransparent(const Decoder& decoder) {
  return (png_get_color_type(decoder.png, decoder.info) & PNG_COLOR_MASK_ALPHA) != 0 ||
         png_get_valid(decoder.png, decoder.info, PNG_INFO_tRNS) != 0;
}

void readColorProfile(const Decoder& decoder, Picture* picture) {
  png_charp name = nullptr;
  int compression = 0;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(decoder.png, decoder.info, &name, &compression, &profile, &size) == 0) return;
  if (isRgbProfile({profile, size})) picture->colorProfile.assign(profile, profile + size);
}

int readOrientation(const Decoder& decoder) {
#ifdef PNG_eXIf_SUPPORTED
  png_bytep exif = nullptr;
  png_uint_32 size = 0;
  if (png_get_eXIf_1(decoder.png, decoder.info, &size, &exif) != 0) return exifOrientation({exif, size});
#endif
  return 1;
}

[[noreturn]] void failToRead(const Decoder& decoder) {
  throw Error(std::string("not a readable PNG picture (") + decoder.complaint.text + ")");
}

struct Encoder {
  Encoder() {
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &complaint, onError, onWarning);
    if (png != nullptr) info = png_create_info_struct(png);
  }
  ~Encoder() { png_destroy_write_struct(&png, &info); }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  std::vector<std::uint8_t> file;
  Complaint complaint;
  png_structp png = nullptr;
  png_infop info = nullptr;
};

bool append(std::vector<std::uint8_t>* file, const std::uint8_t* bytes, std::size_t count) noexcept {
  try {
    file->insert(file->end(), bytes, bytes + count);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void onWrite(png_structp png, png_bytep bytes, std::size_t count) {
  if (!append(&static_cast<Encoder*>(png_get_io_ptr(png))->file, bytes, count)) png_error(png, "not enough memory");
}

void onFlush(png_structp /*png*/) {}

bool writeAll(Encoder* encoder, const Picture& picture) {
  if (setjmp(png_jmpbuf(encoder->png)) != 0) return false;
  png_set_write_fn(encoder->png, encoder, onWrite, onFlush);
  png_set_benign_errors(encoder->png, 1);  // a profile that libpng finds fault with is left out
  png_set_IHDR(encoder->png, encoder->info, static_cast<png_uint_32>(picture.width),
               static_cast<png_uint_32>(picture.height), 8,
               picture.hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (!picture.colorProfile.empty()) {
    png_set_iCCP(encoder->png, encoder->info, "icc", PNG_COMPRESSION_TYPE_BASE, picture.colorProfile.data(),
                 static_cast<png_uint_32>(picture.colorProfile.size()));
  }
  png_write_info(encoder->png, encoder->info);
  if (!picture.hasAlpha) png_set_filler(encoder->png, 0, PNG_FILLER_AFTER);
  for (int y = 0; y < picture.height; ++y)
    png_write_row(encoder->png, picture.row(y));
  png_write_end(encoder->png, nullptr);
  return true;
}

}  // namespace

Picture decodePng(std::span<const std::uint8_t> file) {
  Decoder decoder(file);
  if (decoder.info == nullptr) throw Error("not enough memory");
  if (!readHeader(&decoder)) failToRead(decoder);
  const png_uint_32 width = png_get_image_width(decoder.png, decoder.info);
  const png_uint_32 height = png_get_image_height(decoder.png, decoder.info);
  checkPictureSize(width, height);
  Picture picture(static_cast<int>(width), static_cast<int>(height));
  picture.hasAlpha = isTransparent(decoder);
  std::vector<png_bytep> rows(height);
  for (int y = 0; y < picture.height; ++y)
    rows[static_cast<std::size_t>(y)] = picture.row(y);
  if (!readRows(&decoder, rows.data())) failToRead(decoder);
  readColorProfile(decoder, &picture);
  return upright(std::move(picture), readOrientation(decoder));
}

std::vector<std::uint8_t> encodePng(const Picture& picture) {
  Encoder encoder;
  if (encoder.info == nullptr) throw Error("not enough memory");
  if (!writeAll(&encoder, picture))
    throw Error(std::string("cannot be written as PNG (") + encoder.complaint.text + ")");
  return std::move(encoder.file);
}

}  // namespace vlvk::tool
