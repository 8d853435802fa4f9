/// PNG through libpng.
///
/// libpng leaves its functions by longjmp, which must not skip destructors. So each step that calls it is a function of
/// its own without objects, and returns false after an error; what it works on belongs to the caller.
#include "tools/picture/png.h"

#include <png.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <csetjmp>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

constexpr char kXmpKey[] = "XML:com.adobe.xmp";

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

// The library takes memory for a whole chunk of text before it reads it, whatever length it claims, and passes over
// what makes an animation: a chunk before the pixels with the number of frames.
void checkChunks(std::span<const std::uint8_t> file) {
  constexpr std::size_t kSignature = 8;
  constexpr std::size_t kHead = 8;    // length, type
  constexpr std::size_t kFrame = 12;  // and check sum
  bool pixels = false;
  file = file.subspan(std::min(kSignature, file.size()));
  while (file.size() >= kHead) {
    const std::size_t length = png_get_uint_32(file.data());
    if (file.size() < kFrame || length > file.size() - kFrame) {
      throw Error("not a readable PNG picture (the file ends early)");
    }
    const std::string_view type(reinterpret_cast<const char*>(file.data() + 4), 4);
    if (type == "IEND") return;  // what follows is no part of the picture
    pixels = pixels || type == "IDAT";
    if (type == "acTL" && !pixels && length >= 4 && png_get_uint_32(file.data() + kHead) > 1) {
      throw Error("an animated PNG, only still pictures are read");
    }
    file = file.subspan(kFrame + length);
  }
}

// Suggested palettes and the like would be unpacked and kept, as much of it as a hostile file likes. Of text, in which
// some programs keep metadata, there is a limit.
void ignoreUnusedChunks(png_structp png) {
  static constexpr png_byte kUsed[] = "cHRM\0eXIf\0gAMA\0iCCP\0iTXt\0pHYs\0sRGB\0tEXt\0zTXt";
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_AS_DEFAULT, kUsed, sizeof kUsed / 5);
  png_set_chunk_cache_max(png, 64);
  png_set_chunk_malloc_max(png, 8 << 20);
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

// Where there is no profile and no chunk that says sRGB, of which the library would tell the values here, too.
std::optional<StatedColors> statedColorsOf(const Decoder& decoder) {
  if (png_get_valid(decoder.png, decoder.info, PNG_INFO_sRGB) != 0) return std::nullopt;
  StatedColors colors;
  auto& c = colors.chromaticities;
  const bool gamma = png_get_gAMA_fixed(decoder.png, decoder.info, &colors.gamma) != 0;
  const bool primaries =
      png_get_cHRM_fixed(decoder.png, decoder.info, c.data(), &c[1], &c[2], &c[3], &c[4], &c[5], &c[6], &c[7]) != 0;
  return gamma || primaries ? std::optional(colors) : std::nullopt;
}

void readColors(const Decoder& decoder, Picture* picture, Notes* notes) {
  png_charp name = nullptr;
  int compression = 0;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(decoder.png, decoder.info, &name, &compression, &profile, &size) != 0) {
    picture->colorProfile = rgbProfile({profile, size}, notes);
  }
  if (picture->colorProfile.empty()) picture->origin.colors = statedColorsOf(decoder);
}

// What programs older than the chunk eXIf keep in a text: a line with a name, one with the length, and the bytes in
// hexadecimal digits, with line ends among them.
std::vector<std::uint8_t> bytesOfRawProfile(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  std::size_t start = text.find_first_not_of('\n');
  for (int line = 0; line < 2 && start != std::string_view::npos; ++line)
    start = text.find('\n', start + (line == 0 ? 0 : 1));
  if (start == std::string_view::npos) return bytes;
  const auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  int high = -1;
  for (const char c : text.substr(start)) {
    if (std::isxdigit(static_cast<unsigned char>(c)) == 0) continue;
    if (high >= 0) bytes.push_back(static_cast<std::uint8_t>(high << 4 | digit(c)));
    high = high >= 0 ? -1 : digit(c);
  }
  return bytes;
}

void readRawProfile(std::string_view name, std::string_view text, Metadata* metadata) {
  std::vector<std::uint8_t> bytes = bytesOfRawProfile(text);
  const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (name == "xmp") {
    metadata->xmp = content;
  } else if (name == "iptc") {
    metadata->iptc = content.starts_with("8BIM") ? iptcOfPhotoshopBlock(bytes) : std::move(bytes);
  } else if (metadata->exif.empty() && (name == "exif" || name == "APP1")) {
    metadata->exif = withoutExifSignature(bytes);
  }
}

// Some programs repeat what EXIF says, or describe a thumbnail, which the result would contradict.
bool describesOldFile(std::string_view name) {
  return name.starts_with("exif:") || name.starts_with("tiff:") || name.starts_with("Thumb::");
}

Text textOf(const png_text& text, std::string_view content) {
  Text result;
  result.name = text.key;
  result.text = content;
  result.international = text.compression > 0;
  result.compressed = text.compression == PNG_TEXT_COMPRESSION_zTXt || text.compression == PNG_ITXT_COMPRESSION_zTXt;
  if (text.lang != nullptr) result.language = text.lang;
  if (text.lang_key != nullptr) result.translatedName = text.lang_key;
  return result;
}

Metadata metadataOf(const Decoder& decoder) {
  static constexpr std::string_view kRawProfile = "Raw profile type ";
  Metadata metadata;
  png_bytep exif = nullptr;
  png_uint_32 size = 0;
  if (png_get_eXIf_1(decoder.png, decoder.info, &size, &exif) != 0) metadata.exif = withoutExifSignature({exif, size});
  png_textp texts = nullptr;
  const int count = png_get_text(decoder.png, decoder.info, &texts, nullptr);
  for (int i = 0; i < count; ++i) {
    const std::string_view key = texts[i].key;
    const std::size_t length = texts[i].compression > 0 ? texts[i].itxt_length : texts[i].text_length;
    const std::string_view text(texts[i].text, length);
    if (key == kXmpKey) {
      metadata.xmp = text;
    } else if (key.starts_with(kRawProfile)) {
      readRawProfile(key.substr(kRawProfile.size()), text, &metadata);
    } else if (!describesOldFile(key)) {
      metadata.texts.push_back(textOf(texts[i], text));
    }
  }
  return metadata;
}

std::optional<Density> densityOf(const Decoder& decoder) {
  png_uint_32 x = 0;
  png_uint_32 y = 0;
  int unit = 0;
  if (png_get_pHYs(decoder.png, decoder.info, &x, &y, &unit) == 0 || x == 0 || y == 0) return std::nullopt;
  return Density{double(x), double(y), unit == PNG_RESOLUTION_METER};
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

int compressionOf(const Text& text) {
  if (text.international) return text.compressed ? PNG_ITXT_COMPRESSION_zTXt : PNG_ITXT_COMPRESSION_NONE;
  return text.compressed ? PNG_TEXT_COMPRESSION_zTXt : PNG_TEXT_COMPRESSION_NONE;
}

void setText(Encoder* encoder, const Text& text) {
  const auto pointer = [](const std::string& content) { return const_cast<png_charp>(content.c_str()); };  // NOLINT
  png_text entry{};
  entry.compression = compressionOf(text);
  entry.key = pointer(text.name);
  entry.text = pointer(text.text);
  entry.lang = pointer(text.language);
  entry.lang_key = pointer(text.translatedName);
  png_set_text(encoder->png, encoder->info, &entry, 1);  // copies all
}

void setColors(Encoder* encoder, const Picture& picture) {
  if (!picture.colorProfile.empty()) {
    png_set_iCCP(encoder->png, encoder->info, "icc", PNG_COMPRESSION_TYPE_BASE, picture.colorProfile.data(),
                 static_cast<png_uint_32>(picture.colorProfile.size()));
  } else if (picture.origin.colors) {
    const auto& [gamma, c] = *picture.origin.colors;
    if (gamma != 0) png_set_gAMA_fixed(encoder->png, encoder->info, gamma);
    if (c[1] != 0) png_set_cHRM_fixed(encoder->png, encoder->info, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
  }
}

// What stands before the pixels.
void setMetadata(Encoder* encoder, const Metadata& metadata, const std::optional<Density>& density) {
  if (!metadata.exif.empty()) {
    png_set_eXIf_1(encoder->png, encoder->info, static_cast<png_uint_32>(metadata.exif.size()),
                   const_cast<png_bytep>(metadata.exif.data()));  // NOLINT: the library copies it
  }
  for (const Text& text : metadata.texts)
    setText(encoder, text);
  if (density && density->x < PNG_UINT_31_MAX && density->y < PNG_UINT_31_MAX) {
    png_set_pHYs(encoder->png, encoder->info, static_cast<png_uint_32>(std::lround(density->x)),
                 static_cast<png_uint_32>(std::lround(density->y)),
                 density->absolute ? PNG_RESOLUTION_METER : PNG_RESOLUTION_UNKNOWN);
  }
}

bool writeAll(Encoder* encoder, const Picture& picture, const Metadata& metadata) {
  if (setjmp(png_jmpbuf(encoder->png)) != 0) return false;
  png_set_write_fn(encoder->png, encoder, onWrite, onFlush);
  png_set_benign_errors(encoder->png, 1);  // a profile that libpng finds fault with is left out
  png_set_IHDR(encoder->png, encoder->info, static_cast<png_uint_32>(picture.width),
               static_cast<png_uint_32>(picture.height), 8,
               picture.hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  setColors(encoder, picture);
  setMetadata(encoder, metadata, picture.origin.density);
  png_write_info(encoder->png, encoder->info);
  if (!picture.hasAlpha) png_set_filler(encoder->png, 0, PNG_FILLER_AFTER);
  for (int y = 0; y < picture.height; ++y)
    png_write_row(encoder->png, picture.row(y));
  png_write_end(encoder->png, nullptr);
  return true;
}

}  // namespace

Picture decodePng(std::span<const std::uint8_t> file, Notes* notes) {
  Decoder decoder(file);
  if (decoder.info == nullptr) throw Error("not enough memory");
  checkChunks(file);
  if (!readHeader(&decoder)) failToRead(decoder);
  if (png_get_bit_depth(decoder.png, decoder.info) > 8) addNote(notes, kDeepNote);
  const png_uint_32 width = png_get_image_width(decoder.png, decoder.info);
  const png_uint_32 height = png_get_image_height(decoder.png, decoder.info);
  checkPictureSize(width, height);
  Picture picture(static_cast<int>(width), static_cast<int>(height));
  picture.hasAlpha = isTransparent(decoder);
  std::vector<png_bytep> rows(height);
  for (int y = 0; y < picture.height; ++y)
    rows[static_cast<std::size_t>(y)] = picture.row(y);
  if (!readRows(&decoder, rows.data())) failToRead(decoder);
  readColors(decoder, &picture, notes);
  picture.origin.metadata = metadataOf(decoder);
  picture.origin.density = densityOf(decoder);
  return picture;
}

std::vector<std::uint8_t> encodePng(const Picture& picture, Notes* notes) {
  static constexpr MetadataRoom kRoom{.density = true, .colors = true, .texts = TextRoom::kAll};
  Metadata metadata = metadataFor(picture.origin, {picture.width, picture.height}, kRoom, notes);
  if (!metadata.xmp.empty()) metadata.texts.push_back({kXmpKey, std::move(metadata.xmp), true, false, "", ""});
  Encoder encoder;
  if (encoder.info == nullptr) throw Error("not enough memory");
  if (!writeAll(&encoder, picture, metadata))
    throw Error(std::string("cannot be written as PNG (") + encoder.complaint.text + ")");
  return std::move(encoder.file);
}

}  // namespace vlvk::tool
