/// WebP through libwebp, its container through libwebpdemux and libwebpmux.
#include "tools/picture/webp.h"

#include <webp/decode.h>
#include <webp/demux.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <memory>
#include <string>
#include <utility>

#include "tools/io/messages.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool {
namespace {

constexpr int kLossless = 2;  // the format of a bit stream in WebPBitstreamFeatures

std::span<const std::uint8_t> findChunk(WebPDemuxer* container, const char* name) {
  WebPChunkIterator chunk{};
  if (WebPDemuxGetChunk(container, name, 1, &chunk) == 0) return {};
  const std::span<const std::uint8_t> bytes(chunk.chunk.bytes, chunk.chunk.size);
  WebPDemuxReleaseChunkIterator(&chunk);  // the bytes are those of the file
  return bytes;
}

void readChunks(std::span<const std::uint8_t> file, Picture* picture, Notes* notes) {
  const WebPData data{file.data(), file.size()};
  const std::unique_ptr<WebPDemuxer, decltype(&WebPDemuxDelete)> container(WebPDemux(&data), WebPDemuxDelete);
  if (!container) return;
  picture->colorProfile = rgbProfile(findChunk(container.get(), "ICCP"), notes);
  picture->origin.metadata.exif = withoutExifSignature(findChunk(container.get(), "EXIF"));
  const auto xmp = findChunk(container.get(), "XMP ");
  picture->origin.metadata.xmp.assign(xmp.begin(), xmp.end());
}

struct Encoder {
  Encoder() {
    WebPPictureInit(&picture);
    WebPMemoryWriterInit(&bytes);
    picture.writer = WebPMemoryWrite;
    picture.custom_ptr = &bytes;
  }
  ~Encoder() {
    WebPPictureFree(&picture);
    WebPMemoryWriterClear(&bytes);
  }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  WebPPicture picture{};
  WebPMemoryWriter bytes{};
};

WebPConfig configFor(const Picture& picture, std::optional<int> quality) {
  WebPConfig config{};
  WebPConfigInit(&config);
  config.lossless = !quality && !picture.origin.lossy ? 1 : 0;
  config.exact = 1;  // colours under full transparency stay
  // Chroma has half the resolution in every lossy WebP; this keeps edges of colour from bleeding.
  config.use_sharp_yuv = 1;
  // That of the lossless coder is effort.
  const int chosen = quality.value_or(picture.origin.jpeg ? picture.origin.jpeg->quality : kDefaultQuality);
  if (config.lossless == 0) config.quality = static_cast<float>(chosen);
  return config;
}

void encodePixels(const Picture& picture, std::optional<int> quality, Encoder* encoder) {
  const WebPConfig config = configFor(picture, quality);
  WebPPicture* target = &encoder->picture;
  target->use_argb = 1;
  target->width = picture.width;
  target->height = picture.height;
  const auto import = picture.hasAlpha ? WebPPictureImportRGBA : WebPPictureImportRGBX;
  const int stride = picture.width * 4;
  if (import(target, picture.pixels.get(), stride) == 0 || WebPEncode(&config, target) == 0) {
    throw Error("cannot be written as WebP (error " + std::to_string(target->error_code) + ")");
  }
}

void setChunk(WebPMux* container, const char* name, const void* bytes, std::size_t size) {
  if (size == 0) return;
  const WebPData data{static_cast<const std::uint8_t*>(bytes), size};
  if (WebPMuxSetChunk(container, name, &data, 0) != WEBP_MUX_OK) throw Error("not enough memory");
}

}  // namespace

Picture decodeWebp(std::span<const std::uint8_t> file, Notes* notes) {
  WebPBitstreamFeatures features{};
  if (WebPGetFeatures(file.data(), file.size(), &features) != VP8_STATUS_OK) throw Error("not a readable WebP picture");
  if (features.has_animation != 0) throw Error("an animated WebP, only still pictures are read");
  checkPictureSize(static_cast<std::uint32_t>(features.width), static_cast<std::uint32_t>(features.height));
  Picture picture(features.width, features.height);
  picture.hasAlpha = features.has_alpha != 0;
  const std::size_t size = picture.rowBytes() * static_cast<std::size_t>(picture.height);
  if (WebPDecodeRGBAInto(file.data(), file.size(), picture.pixels.get(), size, picture.width * 4) == nullptr) {
    throw Error("not a readable WebP picture (it is damaged or ends early)");
  }
  readChunks(file, &picture, notes);
  picture.origin.lossy = features.format != kLossless;
  return picture;
}

std::vector<std::uint8_t> encodeWebp(const Picture& picture, std::optional<int> quality, Notes* notes) {
  if (picture.width > WEBP_MAX_DIMENSION || picture.height > WEBP_MAX_DIMENSION) {
    throw Error("the picture of " + std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                " pixels is too large for WebP, which has at most " + std::to_string(WEBP_MAX_DIMENSION) +
                " on a side");
  }
  const Metadata metadata = metadataFor(picture.origin, {picture.width, picture.height}, {}, notes);
  Encoder encoder;
  encodePixels(picture, quality, &encoder);
  const std::unique_ptr<WebPMux, decltype(&WebPMuxDelete)> container(WebPMuxNew(), WebPMuxDelete);
  const WebPData image{encoder.bytes.mem, encoder.bytes.size};
  if (!container || WebPMuxSetImage(container.get(), &image, 0) != WEBP_MUX_OK) throw Error("not enough memory");
  setChunk(container.get(), "ICCP", picture.colorProfile.data(), picture.colorProfile.size());
  setChunk(container.get(), "EXIF", metadata.exif.data(), metadata.exif.size());
  setChunk(container.get(), "XMP ", metadata.xmp.data(), metadata.xmp.size());
  WebPData file{};
  if (WebPMuxAssemble(container.get(), &file) != WEBP_MUX_OK) throw Error("not enough memory");
  const std::unique_ptr<WebPData, decltype(&WebPDataClear)> owner(&file, WebPDataClear);
  return {file.bytes, file.bytes + file.size};
}

}  // namespace vlvk::tool
