/// JPEG through libjpeg-turbo.
///
/// As with libpng, errors leave the library by longjmp: each step that calls it is a function of its own without
/// objects, and returns false after an error.
#include "tools/picture/jpeg.h"

#include <cstddef>
#include <cstdio>  // jpeglib.h needs FILE and size_t declared before it

#include <jpeglib.h>

#include <jerror.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

using namespace std::string_view_literals;

constexpr int kExifMarker = JPEG_APP0 + 1;  // and XMP
constexpr int kProfileMarker = JPEG_APP0 + 2;
constexpr int kPhotoshopMarker = JPEG_APP0 + 13;
constexpr std::size_t kMarkerLimit = 0xFFFF;
constexpr std::size_t kMaxSegment = kMarkerLimit - 2;
constexpr int kMaxScans = 500;
constexpr int kPerInch = 1;  // units of density
constexpr int kPerCentimeter = 2;
constexpr std::string_view kExifSignature = "Exif\0\0"sv;
constexpr std::string_view kXmpSignature = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kPhotoshopSignature = "Photoshop 3.0\0"sv;

// The library's fast Huffman decoder passes over invalid codes in silence, its careful one reports them. It takes the
// careful one where it sees fewer than 512 bytes for each block of an MCU ahead.
constexpr std::size_t kPiece = 256;

// Bytes that cameras leave between the last block and the next marker. More is data of the picture that was not used,
// as after a damaged code that stood for fewer bits or blocks than the right one.
constexpr int kMaxUnusedBytes = 8;

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

struct Source {
  jpeg_source_mgr base{};
  std::span<const std::uint8_t> file;
  std::size_t given = 0;  // bytes of it that the library has been handed
};

void onSource(j_decompress_ptr /*codec*/) {}

boolean onMoreNeeded(j_decompress_ptr codec) {
  auto* source = reinterpret_cast<Source*>(codec->src);
  const std::span<const std::uint8_t> rest = source->file.subspan(source->given);
  if (rest.empty()) ERREXIT(codec, JWRN_JPEG_EOF);
  source->base.next_input_byte = rest.data();
  source->base.bytes_in_buffer = std::min(rest.size(), kPiece);
  source->given += source->base.bytes_in_buffer;
  return TRUE;
}

void onSkip(j_decompress_ptr codec, long count) {  // NOLINT(google-runtime-int): the library's type
  auto* source = reinterpret_cast<Source*>(codec->src);
  const auto bytes = static_cast<std::size_t>(std::max(count, 0L));
  const std::size_t here = std::min(bytes, source->base.bytes_in_buffer);
  source->base.next_input_byte += here;
  source->base.bytes_in_buffer -= here;
  source->given += std::min(bytes - here, source->file.size() - source->given);
}

// Whether the last bytes before where the library reads are padding.
bool isPadding(const Source& source, std::size_t count) {
  const std::size_t end = source.given - source.base.bytes_in_buffer;
  const std::span<const std::uint8_t> bytes = source.file.first(end).last(std::min(count, end));
  return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

// Warnings after which pixels are missing or made up. The others are about markers and order, and cost nothing: every
// viewer shows such pictures as they were meant.
bool isDamage(const jpeg_decompress_struct& codec) {
  switch (codec.err->msg_code) {
    case JWRN_JPEG_EOF:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_ARITH_BAD_CODE:
      return true;
    case JWRN_EXTRANEOUS_DATA: {
      if (codec.output_width == 0) return false;  // between the segments of the header
      const int count = codec.err->msg_parm.i[0];
      return count > kMaxUnusedBytes &&
             !isPadding(*reinterpret_cast<Source*>(codec.src), static_cast<std::size_t>(count));
    }
    default:
      return false;
  }
}

void onMessage(j_common_ptr codec, int level) {
  if (level < 0 && codec->is_decompressor != FALSE && isDamage(*reinterpret_cast<j_decompress_ptr>(codec))) {
    onError(codec);
  }
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
    source.base.init_source = source.base.term_source = onSource;
    source.base.fill_input_buffer = onMoreNeeded;
    source.base.skip_input_data = onSkip;
    source.base.resync_to_restart = jpeg_resync_to_restart;
  }
  ~Decoder() { jpeg_destroy_decompress(&codec); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  bool isCmyk() const { return codec.out_color_space == JCS_CMYK; }

  ErrorState errors;
  jpeg_progress_mgr progress{};
  Source source;
  jpeg_decompress_struct codec{};
};

bool readHeader(Decoder* decoder, std::span<const std::uint8_t> file) {
  if (setjmp(decoder->errors.jump) != 0) return false;
  jpeg_create_decompress(&decoder->codec);
  decoder->codec.progress = &decoder->progress;
  decoder->source.file = file;
  decoder->codec.src = &decoder->source.base;
  for (const int marker : {kExifMarker, kProfileMarker, kPhotoshopMarker, JPEG_COM})
    jpeg_save_markers(&decoder->codec, marker, kMarkerLimit);
  jpeg_read_header(&decoder->codec, TRUE);
  const J_COLOR_SPACE stored = decoder->codec.jpeg_color_space;
  decoder->codec.out_color_space = stored == JCS_CMYK || stored == JCS_YCCK ? JCS_CMYK : JCS_EXT_RGBA;
  return true;
}

// Reads all scans where there are several.
bool startRows(Decoder* decoder) {
  if (setjmp(decoder->errors.jump) != 0) return false;
  jpeg_start_decompress(&decoder->codec);
  return true;
}

bool readRows(Decoder* decoder, Picture* picture) {
  if (setjmp(decoder->errors.jump) != 0) return false;
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

void readColorProfile(Decoder* decoder, Picture* picture, Notes* notes) {
  JOCTET* profile = nullptr;
  unsigned int size = 0;
  if (!findColorProfile(decoder, &profile, &size)) return;
  const std::unique_ptr<JOCTET, decltype(&std::free)> owner(profile, std::free);
  picture->colorProfile = rgbProfile({profile, size}, notes);
}

// The first segment with this signature, without it.
std::span<const std::uint8_t> findSegment(const Decoder& decoder, int marker, std::string_view signature) {
  for (jpeg_saved_marker_ptr saved = decoder.codec.marker_list; saved != nullptr; saved = saved->next) {
    const std::span<const std::uint8_t> data(saved->data, saved->data_length);
    if (saved->marker != marker || data.size() <= signature.size()) continue;
    if (std::memcmp(data.data(), signature.data(), signature.size()) == 0) return data.subspan(signature.size());
  }
  return {};
}

Metadata metadataOf(const Decoder& decoder) {
  Metadata metadata;
  const auto exif = findSegment(decoder, kExifMarker, kExifSignature);
  metadata.exif.assign(exif.begin(), exif.end());
  const auto xmp = findSegment(decoder, kExifMarker, kXmpSignature);
  metadata.xmp.assign(xmp.begin(), xmp.end());
  const auto photoshop = findSegment(decoder, kPhotoshopMarker, kPhotoshopSignature);
  if (!photoshop.empty()) metadata.iptc = iptcOfPhotoshopBlock(photoshop);
  for (jpeg_saved_marker_ptr saved = decoder.codec.marker_list; saved != nullptr; saved = saved->next) {
    if (saved->marker != JPEG_COM) continue;
    metadata.texts.emplace_back().text.assign(saved->data, saved->data + saved->data_length);
  }
  return metadata;
}

std::optional<Density> densityOf(const jpeg_decompress_struct& codec) {
  const double x = codec.X_density;
  const double y = codec.Y_density;
  if (codec.saw_JFIF_marker == FALSE || x == 0 || y == 0) return std::nullopt;
  if (codec.density_unit == kPerInch) return Density{x / kInch, y / kInch};
  if (codec.density_unit == kPerCentimeter) return Density{x * 100, y * 100};
  return x != y ? std::optional(Density{x, y, false}) : std::nullopt;
}

// 1 or 2 luma samples to a chroma sample, never more than the picture has.
int chromaStep(int luma, int firstChroma, int secondChroma) {
  return luma >= 2 * std::max(firstChroma, secondChroma) ? 2 : 1;
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

bool setTables(Encoder* encoder, int quality) {
  if (setjmp(encoder->errors.jump) != 0) return false;
  jpeg_compress_struct* codec = &encoder->codec;
  if (codec->mem == nullptr) jpeg_create_compress(codec);
  codec->in_color_space = JCS_EXT_RGBX;
  codec->input_components = 4;
  jpeg_set_defaults(codec);
  jpeg_set_quality(codec, quality, TRUE);
  return true;
}

bool isNowhereCoarser(const JQUANT_TBL& table, const JQUANT_TBL& than) {
  return std::equal(std::begin(table.quantval), std::end(table.quantval), std::begin(than.quantval),
                    [](UINT16 step, UINT16 other) { return step <= other; });
}

int qualityFor(const jpeg_decompress_struct& source) {
  Encoder encoder;
  const auto keeps = [&](int quality) {
    if (!setTables(&encoder, quality)) return false;
    for (int i = 0; i < source.num_components; ++i) {
      const JQUANT_TBL* old = source.comp_info[i].quant_table;
      if (old == nullptr) old = source.quant_tbl_ptrs[source.comp_info[i].quant_tbl_no];
      const bool chroma = source.jpeg_color_space == JCS_YCbCr && i > 0;
      if (old != nullptr && !isNowhereCoarser(*encoder.codec.quant_tbl_ptrs[chroma ? 1 : 0], *old)) return false;
    }
    return true;
  };
  int quality = kDefaultQuality;
  while (quality < 100 && !keeps(quality))
    ++quality;
  return quality;
}

JpegCoding codingOf(const jpeg_decompress_struct& codec) {
  JpegCoding coding{1, 1, qualityFor(codec), codec.progressive_mode != FALSE};
  if (codec.jpeg_color_space == JCS_YCbCr && codec.num_components == 3) {
    const jpeg_component_info* component = codec.comp_info;
    coding.chromaWidth = chromaStep(component[0].h_samp_factor, component[1].h_samp_factor, component[2].h_samp_factor);
    coding.chromaHeight =
        chromaStep(component[0].v_samp_factor, component[1].v_samp_factor, component[2].v_samp_factor);
  }
  return coding;
}

void overWhite(const std::uint8_t* pixels, int count, std::uint8_t* result) {
  for (int i = 0; i < count * 4; ++i) {
    const int alpha = pixels[i | 3];
    result[i] = static_cast<std::uint8_t>((pixels[i] * alpha + 255 * (255 - alpha) + 127) / 255);
  }
}

void setDensity(jpeg_compress_struct* codec, const Density& density) {
  const auto isWhole = [](double value) { return std::abs(value - std::round(value)) < 1e-6; };
  const bool centimeters = isWhole(density.x / 100) && isWhole(density.y / 100);
  const double unit = !density.absolute ? 1 : centimeters ? 0.01 : kInch;
  const double x = std::round(density.x * unit);
  const double y = std::round(density.y * unit);
  if (x < 1 || y < 1 || x > 0xFFFF || y > 0xFFFF) return;
  codec->density_unit = static_cast<UINT8>(!density.absolute ? 0 : centimeters ? kPerCentimeter : kPerInch);
  codec->X_density = static_cast<UINT16>(x);
  codec->Y_density = static_cast<UINT16>(y);
}

void configure(jpeg_compress_struct* codec, const Picture& picture) {
  codec->image_width = static_cast<JDIMENSION>(picture.width);
  codec->image_height = static_cast<JDIMENSION>(picture.height);
  codec->optimize_coding = TRUE;
  const JpegCoding coding = picture.origin.jpeg.value_or(JpegCoding{});
  codec->comp_info[0].h_samp_factor = coding.chromaWidth;
  codec->comp_info[0].v_samp_factor = coding.chromaHeight;
  if (coding.progressive) jpeg_simple_progression(codec);
  if (picture.origin.density) setDensity(codec, *picture.origin.density);
}

// A segment with its signature. Too long ones were left out before.
std::vector<std::uint8_t> segment(std::string_view signature, std::span<const std::uint8_t> data) {
  std::vector<std::uint8_t> bytes;
  if (data.empty() || data.size() > kMaxSegment - signature.size()) return bytes;
  bytes.assign(signature.begin(), signature.end());
  bytes.insert(bytes.end(), data.begin(), data.end());
  return bytes;
}

struct Segment {
  int marker;
  std::vector<std::uint8_t> bytes;
};
using Segments = std::vector<Segment>;

Segments segmentsOf(const Metadata& metadata) {
  const std::vector<std::uint8_t> xmp(metadata.xmp.begin(), metadata.xmp.end());
  const auto photoshop = metadata.iptc.empty() ? metadata.iptc : photoshopBlockOf(metadata.iptc);
  Segments segments{{kExifMarker, segment(kExifSignature, metadata.exif)},
                    {kExifMarker, segment(kXmpSignature, xmp)},
                    {kPhotoshopMarker, segment(kPhotoshopSignature, photoshop)}};
  for (const Text& comment : metadata.texts)
    segments.push_back({JPEG_COM, {comment.text.begin(), comment.text.end()}});
  return segments;
}

bool writeAll(Encoder* encoder, const Picture& picture, const Segments& segments, std::uint8_t* line) {
  if (setjmp(encoder->errors.jump) != 0) return false;
  jpeg_compress_struct* codec = &encoder->codec;
  jpeg_mem_dest(codec, &encoder->bytes, &encoder->size);
  configure(codec, picture);
  jpeg_start_compress(codec, TRUE);
  for (const Segment& part : segments) {
    if (part.bytes.empty()) continue;
    jpeg_write_marker(codec, part.marker, part.bytes.data(), static_cast<unsigned int>(part.bytes.size()));
  }
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

Picture decodeJpeg(std::span<const std::uint8_t> file, Notes* notes) {
  Decoder decoder;
  if (!readHeader(&decoder, file)) failToRead(decoder);
  checkPictureSize(decoder.codec.image_width, decoder.codec.image_height);
  Picture picture(static_cast<int>(decoder.codec.image_width), static_cast<int>(decoder.codec.image_height));
  readColorProfile(&decoder, &picture, notes);
  if (!startRows(&decoder)) failToRead(decoder);
  picture.origin.jpeg = codingOf(decoder.codec);
  picture.origin.metadata = metadataOf(decoder);  // which the library forgets at the end
  if (!readRows(&decoder, &picture)) failToRead(decoder);
  if (decoder.isCmyk()) cmykToRgba(&picture, decoder.codec.saw_Adobe_marker != FALSE);
  picture.origin.density = densityOf(decoder.codec);
  picture.origin.lossy = true;
  return picture;
}

std::vector<std::uint8_t> encodeJpeg(const Picture& picture, std::optional<int> quality, Notes* notes) {
  static constexpr MetadataRoom kRoom{.iptc = true,
                                      .density = true,
                                      .texts = TextRoom::kComments,
                                      .maxExif = kMaxSegment - kExifSignature.size(),
                                      .maxXmp = kMaxSegment - kXmpSignature.size(),
                                      .maxText = kMaxSegment};
  const Metadata metadata = metadataFor(picture.origin, {picture.width, picture.height}, kRoom, notes);
  Encoder encoder;
  std::vector<std::uint8_t> line(picture.rowBytes());
  const int chosen = quality.value_or(picture.origin.jpeg ? picture.origin.jpeg->quality : kDefaultQuality);
  if (!setTables(&encoder, chosen) || !writeAll(&encoder, picture, segmentsOf(metadata), line.data())) {
    throw Error(std::string("cannot be written as JPEG (") + encoder.errors.text + ")");
  }
  return {encoder.bytes, encoder.bytes + encoder.size};
}

}  // namespace vlvk::tool
