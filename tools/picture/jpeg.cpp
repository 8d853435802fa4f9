/// JPEG through libjpeg-turbo.
///
/// As with libpng, errors leave the library by longjmp: each step that calls it is a function of its own without
/// objects, and returns false after an error.
#include "tools/picture/jpeg.h"

#include <cstddef>
#include <cstdio>  // jpeglib.h needs FILE and size_t declared before it

#include <jpeglib.h>

#include <jerror.h>

#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;
constexpr unsigned int kMarkerLimit = 0xFFFF;
constexpr int kMaxScans = 500;
constexpr char kExifSignature[] = "Exif\0";  // six bytes with the zero that ends it

// libjpeg hands back a pointer to `base`, which therefore comes first.
struct ErrorState {
  jpeg_error_mgr base{};
  std::jmp_buf jump{};
  char text[JMSG_LENGTH_MAX] = "";
};

[[noreturn]] void onError(j_common_ptr codec) {
  auto* state = reinterpret_cast<ErrorState*>(codec->err);
  codec->err->format_message(codec, state->text);
  std::longjmp(state->jump, 1);
}

// Warnings after which pixels are missing or made up. The others are about markers and order, and cost nothing.
bool isDamage(int code) {
  return code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE || code == JWRN_MUST_RESYNC ||
         code == JWRN_ARITH_BAD_CODE;
}

void onMessage(j_common_ptr codec, int level) {
  if (level < 0 && isDamage(codec->err->msg_code)) onError(codec);
}

// Scans of a few bytes each could keep the decoder busy for hours. Real pictures have about ten.
void onProgress(j_common_ptr codec) {
  if (reinterpret_cast<j_decompress_ptr>(codec)->input_scan_number <= kMaxScans) return;
  auto* state = reinterpret_cast<ErrorState*>(codec->err);
  std::snprintf(state->text, sizeof state->text, "more than %d scans", kMaxScans);
  std::longjmp(state->jump, 1);
}

void onOutput(j_common_ptr /*codec*/) {}

jpeg_error_mgr* prepareErrors(ErrorState* state) {
  jpeg_std_error(&state->base);
  state->base.error_exit = onError;
  state->base.emit_message = onMessage;
  state->base.output_message = onOutput;
  return &state->base;
}

struct Decoder {
  Decoder() {
    codec.err = prepareErrors(&errors);
    progress.progress_monitor = onProgress;
  }
  ~Decoder() { jpeg_destroy_decompress(&codec); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  bool isCmyk() const { return codec.out_color_space == JCS_CMYK; }

  ErrorState errors;
  jpeg_progress_mgr progress{};
  jpeg_decompress_struct codec{};
};

bool readHeader(Decoder* decoder, std::span<const std::uint8_t> file) {
  if (setjmp(decoder->errors.jump) != 0) return false;
  jpeg_create_decompress(&decoder->codec);
  decoder->codec.progress = &decoder->progress;
  jpeg_mem_src(&decoder->codec, file.data(), file.size());
  jpeg_save_markers(&decoder->codec, kExifMarker, kMarkerLimit);
  jpeg_save_markers(&decoder->codec, kProfileMarker, kMarkerLimit);
  jpeg_read_header(&decoder->codec, TRUE);
  const J_COLOR_SPACE stored = decoder->codec.jpeg_color_space;
  decoder->codec.out_color_space = stored == JCS_CMYK || stored == JCS_YCCK ? JCS_CMYK : JCS_EXT_RGBA;
  return true;
}

bool readRows(Decoder* decoder, Picture* picture) {
  if (setjmp(decoder->errors.jump) != 0) return false;
  jpeg_start_decompress(&decoder->codec);
  while (decoder->codec.output_scanline < decoder->codec.output_height) {
    JSAMPROW row = picture->row(static_cast<int>(decoder->codec.output_scanline));
    jpeg_read_scanlines(&decoder->codec, &row, 1);
  }
  jpeg_finish_decompress(&decoder->codec);
  return true;
}

bool findColorProfile(Decoder* decoder, JOCTET** profile, unsigned int* size) {
  if (setjmp(decoder->errors.jump) != 0) return false;
  return jpeg_read_icc_profile(&decoder->codec, profile, size) != FALSE;
}

void readColorProfile(Decoder* decoder, Picture* picture) {
  JOCTET* profile = nullptr;
  unsigned int size = 0;
  if (!findColorProfile(decoder, &profile, &size)) return;
  const std::unique_ptr<JOCTET, decltype(&std::free)> owner(profile, std::free);
  if (isRgbProfile({profile, size})) picture->colorProfile.assign(profile, profile + size);
}

int readOrientation(const Decoder& decoder) {
  for (jpeg_saved_marker_ptr marker = decoder.codec.marker_list; marker != nullptr; marker = marker->next) {
    const std::span<const std::uint8_t> data(marker->data, marker->data_length);
    if (marker->marker != kExifMarker || data.size() < sizeof kExifSignature) continue;
    if (std::memcmp(data.data(), kExifSignature, sizeof kExifSignature) != 0) continue;
    return exifOrientation(data.subspan(sizeof kExifSignature));
  }
  return 1;
}

// In place. Ink is stored inverted (255: none) by every program that marks its files as Adobe's do.
void cmykToRgba(Picture* picture, bool inverted) {
  const int flip = inverted ? 0 : 255;
  for (int y = 0; y < picture->height; ++y) {
    std::uint8_t* pixel = picture->row(y);
    for (int x = 0; x < picture->width; ++x, pixel += 4) {
      const int paper = pixel[3] ^ flip;
      for (int c = 0; c < 3; ++c)
        pixel[c] = static_cast<std::uint8_t>(((pixel[c] ^ flip) * paper + 127) / 255);
      pixel[3] = 255;
    }
  }
}

[[noreturn]] void failToRead(const Decoder& decoder) {
  throw Error(std::string("not a readable JPEG picture (") + decoder.errors.text + ")");
}

struct Encoder {
  Encoder() { codec.err = prepareErrors(&errors); }
  ~Encoder() {
    jpeg_destroy_compress(&codec);
    std::free(bytes);
  }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  ErrorState errors;
  jpeg_compress_struct codec{};
  unsigned char* bytes = nullptr;
  unsigned long size = 0;  // NOLINT(google-runtime-int): the library's type
};

void overWhite(const std::uint8_t* pixels, int count, std::uint8_t* result) {
  for (int i = 0; i < count * 4; ++i) {
    const int alpha = pixels[i | 3];
    result[i] = static_cast<std::uint8_t>((pixels[i] * alpha + 255 * (255 - alpha) + 127) / 255);
  }
}

void configure(jpeg_compress_struct* codec, const Picture& picture, int quality) {
  codec->image_width = static_cast<JDIMENSION>(picture.width);
  codec->image_height = static_cast<JDIMENSION>(picture.height);
  codec->input_components = 4;
  codec->in_color_space = JCS_EXT_RGBX;
  jpeg_set_defaults(codec);
  jpeg_set_quality(codec, quality, TRUE);
  codec->optimize_coding = TRUE;
  codec->comp_info[0].h_samp_factor = 1;
  codec->comp_info[0].v_samp_factor = 1;
}

bool writeAll(Encoder* encoder, const Picture& picture, int quality, std::uint8_t* line) {
  if (setjmp(encoder->errors.jump) != 0) return false;
  jpeg_compress_struct* codec = &encoder->codec;
  jpeg_create_compress(codec);
  jpeg_mem_dest(codec, &encoder->bytes, &encoder->size);
  configure(codec, picture, quality);
  jpeg_start_compress(codec, TRUE);
  if (!picture.colorProfile.empty()) {
    jpeg_write_icc_profile(codec, picture.colorProfile.data(), static_cast<unsigned int>(picture.colorProfile.size()));
  }
  while (codec->next_scanline < codec->image_height) {
    overWhite(picture.row(static_cast<int>(codec->next_scanline)), picture.width, line);
    jpeg_write_scanlines(codec, &line, 1);
  }
  jpeg_finish_compress(codec);
  return true;
}

}  // namespace

Picture decodeJpeg(std::span<const std::uint8_t> file) {
  Decoder decoder;
  if (!readHeader(&decoder, file)) failToRead(decoder);
  checkPictureSize(decoder.codec.image_width, decoder.codec.image_height);
  Picture picture(static_cast<int>(decoder.codec.image_width), static_cast<int>(decoder.codec.image_height));
  const int orientation = readOrientation(decoder);
  readColorProfile(&decoder, &picture);
  if (!readRows(&decoder, &picture)) failToRead(decoder);
  if (decoder.isCmyk()) cmykToRgba(&picture, decoder.codec.saw_Adobe_marker != FALSE);
  return upright(std::move(picture), orientation);
}

std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality) {
  Encoder encoder;
  std::vector<std::uint8_t> line(picture.rowBytes());
  if (!writeAll(&encoder, picture, quality, line.data())) {
    throw Error(std::string("cannot be written as JPEG (") + encoder.errors.text + ")");
  }
  return {encoder.bytes, encoder.bytes + encoder.size};
}

}  // namespace vlvk::tool
