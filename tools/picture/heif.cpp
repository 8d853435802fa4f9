/// HEIC and AVIF through libheif.
#include "tools/picture/heif.h"

#include <libheif/heif.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kExifOffset = 4;  // bytes before EXIF data: how far past them it begins

template <typename T, void (*Release)(T*)>
struct Releaser {
  void operator()(T* object) const { Release(object); }
};
using Context = std::unique_ptr<heif_context, Releaser<heif_context, heif_context_free>>;
using Options = std::unique_ptr<heif_decoding_options, Releaser<heif_decoding_options, heif_decoding_options_free>>;
using Nclx = std::unique_ptr<heif_color_profile_nclx, Releaser<heif_color_profile_nclx, heif_nclx_color_profile_free>>;
struct HandleReleaser {
  void operator()(const heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
using Handle = std::unique_ptr<heif_image_handle, HandleReleaser>;
struct ImageReleaser {
  void operator()(const heif_image* image) const { heif_image_release(image); }
};
using Image = std::unique_ptr<heif_image, ImageReleaser>;

void check(const heif_error& error) {
  if (error.code == heif_error_Ok) return;
  throw Error(std::string("not a readable HEIC or AVIF picture (") + printable(error.message, 100) + ")");
}

Handle primaryOf(heif_context* context, std::span<const std::uint8_t> file) {
  check(heif_context_read_from_memory_without_copy(context, file.data(), file.size(), nullptr));
  heif_image_handle* handle = nullptr;
  check(heif_context_get_primary_image_handle(context, &handle));
  return Handle(handle);
}

void readColors(const heif_image_handle* handle, Picture* picture, Notes* notes) {
  std::vector<std::uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
  if (!profile.empty()) check(heif_image_handle_get_raw_color_profile(handle, profile.data()));
  picture->colorProfile = rgbProfile(profile, notes);
  heif_color_profile_nclx* found = nullptr;
  const heif_error error = heif_image_handle_get_nclx_color_profile(handle, &found);
  const Nclx colors(found);  // which is there after some errors, too
  if (error.code != heif_error_Ok) return;
  if (colors->transfer_characteristics == heif_transfer_characteristic_ITU_R_BT_2100_0_PQ ||
      colors->transfer_characteristics == heif_transfer_characteristic_ITU_R_BT_2100_0_HLG) {
    throw Error("an HDR picture (PQ or HLG), only pictures of standard range are read");
  }
  const bool wide = colors->color_primaries == heif_color_primaries_SMPTE_EG_432_1 ||
                    colors->color_primaries == heif_color_primaries_SMPTE_RP_431_2 ||
                    colors->color_primaries == heif_color_primaries_ITU_R_BT_2020_2_and_2100_0;
  if (wide && picture->colorProfile.empty()) {
    addNote(notes, "its wide colours have no ICC profile, they are taken for sRGB");
  }
}

std::vector<std::uint8_t> blockOf(const heif_image_handle* handle, heif_item_id id) {
  std::vector<std::uint8_t> block(heif_image_handle_get_metadata_size(handle, id));
  if (!block.empty()) check(heif_image_handle_get_metadata(handle, id, block.data()));
  return block;
}

std::vector<std::uint8_t> exifOf(std::span<const std::uint8_t> block) {
  if (block.size() < kExifOffset) return {};
  const std::size_t offset =
      std::size_t{block[0]} << 24 | std::size_t{block[1]} << 16 | std::size_t{block[2]} << 8 | block[3];
  block = block.subspan(kExifOffset);
  return offset < block.size() ? withoutExifSignature(block.subspan(offset)) : std::vector<std::uint8_t>{};
}

Metadata metadataOf(const heif_image_handle* handle) {
  Metadata metadata;
  std::vector<heif_item_id> ids(
      static_cast<std::size_t>(heif_image_handle_get_number_of_metadata_blocks(handle, nullptr)));
  heif_image_handle_get_list_of_metadata_block_IDs(handle, nullptr, ids.data(), static_cast<int>(ids.size()));
  for (const heif_item_id id : ids) {
    const std::string_view type = heif_image_handle_get_metadata_type(handle, id);
    const char* content = heif_image_handle_get_metadata_content_type(handle, id);
    const bool xmp = type == "mime" && content != nullptr && std::strcmp(content, "application/rdf+xml") == 0;
    if (type != "Exif" && !xmp) continue;
    const std::vector<std::uint8_t> block = blockOf(handle, id);
    if (xmp) {
      metadata.xmp.assign(block.begin(), block.end());
    } else {
      metadata.exif = exifOf(block);
    }
  }
  return metadata;
}

Image decode(const heif_image_handle* handle, bool deep) {
  const Options options(heif_decoding_options_alloc());
  if (!options) throw Error("not enough memory");
  options->strict_decoding = 1;
  heif_image* found = nullptr;
  check(heif_decode_image(handle, &found, heif_colorspace_RGB,
                          deep ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RGBA, options.get()));
  Image image(found);
  heif_error warning{};
  if (heif_image_get_decoding_warnings(image.get(), 0, &warning, 1) > 0) check(warning);
  return image;
}

void copyPixels(const heif_image* image, bool deep, Picture* picture) {
  int stride = 0;
  const std::uint8_t* plane = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
  const int width = heif_image_get_width(image, heif_channel_interleaved);
  const int height = heif_image_get_height(image, heif_channel_interleaved);
  if (plane == nullptr || width != picture->width || height != picture->height) {
    throw Error("not a readable HEIC or AVIF picture (it has not the size that it states)");
  }
  const int highest = !deep ? 255 : (1 << heif_image_get_bits_per_pixel_range(image, heif_channel_interleaved)) - 1;
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* source = plane + static_cast<std::ptrdiff_t>(y) * stride;
    std::uint8_t* row = picture->row(y);
    for (int i = 0; i < width * 4; ++i) {
      const int sample = deep ? source[2 * i] | source[2 * i + 1] << 8 : source[i];
      // What the library fills in where there is no transparency is not always opaque.
      const bool opaque = i % 4 == 3 && !picture->hasAlpha;
      row[i] = static_cast<std::uint8_t>(opaque ? 255 : (sample * 255 + highest / 2) / highest);
    }
  }
}

}  // namespace

Picture decodeHeif(std::span<const std::uint8_t> file, Notes* notes) {
  const Context context(heif_context_alloc());
  if (!context) throw Error("not enough memory");
  const Handle handle = primaryOf(context.get(), file);
  const int width = heif_image_handle_get_width(handle.get());
  const int height = heif_image_handle_get_height(handle.get());
  if (width < 1 || height < 1) throw Error("not a readable HEIC or AVIF picture (it has no size)");
  checkPictureSize(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
  if (heif_image_handle_is_premultiplied_alpha(handle.get()) != 0) {
    throw Error("a HEIC or AVIF picture with premultiplied transparency, which is not read");
  }
  const bool deep = heif_image_handle_get_luma_bits_per_pixel(handle.get()) > 8;
  if (deep) addNote(notes, kDeepNote);
  Picture picture(width, height);
  readColors(handle.get(), &picture, notes);
  const Image image = decode(handle.get(), deep);
  picture.hasAlpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
  copyPixels(image.get(), deep, &picture);
  picture.origin.metadata = metadataOf(handle.get());
  picture.origin.lossy = true;
  return picture;
}

}  // namespace vlvk::tool
