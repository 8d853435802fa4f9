/// What a result keeps of its source: metadata from each kind of file to each, resolution, coding. The files are
/// furnished and looked at by Exiv2's own readers and writers of files, which the program does not use.
#include <exiv2/error.hpp>
#include <exiv2/image.hpp>

#include <algorithm>
#include <cstring>
#include <utility>

#ifdef VLVK_WITH_HEIF
#include <libheif/heif.h>
#endif

#include "tests/tools/tool_support.h"
#include "tools/picture/jpeg.h"
#include "tools/picture/metadata.h"
#include "tools/picture/picture_file.h"
#include "tools/picture/png.h"

#ifdef __SANITIZE_ADDRESS__
// The encoder of the pictures that are read here keeps some memory to the end.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libx265";
}
#endif

namespace vlvk::tool_test {
namespace {

using tool::Picture;
using tool::PictureKind;

constexpr PictureKind kWritten[] = {PictureKind::kPng, PictureKind::kJpeg, PictureKind::kWebp};

// As an unknown camera has them: text that no library takes apart.
const std::string kMakerNote = "Unknown Maker\1\2\3 notes of its own";

Exiv2::Image::AutoPtr openBytes(const Bytes& file) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  auto image = Exiv2::ImageFactory::open(file.data(), static_cast<long>(file.size()));
  image->readMetadata();
  return image;
}

Exiv2::ExifData cameraExif() {
  Exiv2::ExifData exif;
  exif["Exif.Image.Orientation"] = std::uint16_t{6};
  exif["Exif.Image.XResolution"] = Exiv2::Rational(300, 1);
  exif["Exif.Image.YResolution"] = Exiv2::Rational(150, 1);
  exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
  exif["Exif.Photo.DateTimeOriginal"] = "2026:05:04 03:02:01";
  exif["Exif.Photo.PixelXDimension"] = std::uint16_t{24};
  exif["Exif.Photo.PixelYDimension"] = std::uint32_t{16};
  exif["Exif.GPSInfo.GPSLatitude"] = Exiv2::Rational(47, 1);
  Exiv2::DataValue note(reinterpret_cast<const Exiv2::byte*>(kMakerNote.data()), static_cast<long>(kMakerNote.size()));
  exif.add(Exiv2::ExifKey("Exif.Photo.MakerNote"), &note);
  const Bytes thumbnail = corpusPicture("gray_ycc_jpg");
  Exiv2::ExifThumb(exif).setJpegThumbnail(thumbnail.data(), static_cast<long>(thumbnail.size()));
  return exif;
}

const char kXmp[] = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF
 xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description rdf:about=""
 xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:tiff="http://ns.adobe.com/tiff/1.0/"
 xmlns:exif="http://ns.adobe.com/exif/1.0/" xmlns:xap="http://ns.adobe.com/xap/1.0/"
 xmlns:g="http://ns.adobe.com/xap/1.0/g/img/" xmlns:own="http://example.com/own/"
 tiff:Orientation="6" exif:PixelXDimension="24" own:mood="calm">
 <dc:creator><rdf:Seq><rdf:li>A photographer</rdf:li></rdf:Seq></dc:creator>
 <xap:Thumbnails><rdf:Alt><rdf:li rdf:parseType="Resource"><g:image>AAAA</g:image></rdf:li></rdf:Alt></xap:Thumbnails>
 </rdf:Description></rdf:RDF></x:xmpmeta>)";

// 24 x 16 as stored: a ramp that no turn leaves as it is.
Picture stored() {
  Picture picture(24, 16);
  for (int i = 0; i < 24 * 16 * 4; ++i)
    picture.pixels[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 255 : i / 4 % 24 * 8 + i / 96 * 3);
  picture.colorProfile = tool::decodePng(corpusPicture("rgb_profile_png")).colorProfile;
  return picture;
}

Bytes photoOf(PictureKind kind) {
  const Bytes plain = tool::encodePicture(kind, stored(), 100);
  auto image = openBytes(plain);
  image->setExifData(cameraExif());
  image->setXmpPacket(kXmp);
  image->writeXmpFromPacket(true);
  if (kind == PictureKind::kJpeg) {
    Exiv2::IptcData iptc;
    iptc["Iptc.Application2.City"] = "Graz";
    image->setIptcData(iptc);
  }
  image->writeMetadata();
  Exiv2::BasicIo& io = image->io();
  io.open();
  const Exiv2::DataBuf file = io.read(static_cast<long>(io.size()));
  return {file.pData_, file.pData_ + file.size_};
}

std::string entry(const Exiv2::ExifData& exif, const char* key) {
  const auto found = exif.findKey(Exiv2::ExifKey(key));
  return found == exif.end() ? "none" : found->toString();
}

std::string entry(const Exiv2::XmpData& xmp, const char* key) {
  const auto found = xmp.findKey(Exiv2::XmpKey(key));
  return found == xmp.end() ? "none" : found->toString();
}

void expectDescribes(const Bytes& file, const Picture& picture) {
  const auto image = openBytes(file);
  Exiv2::ExifData& exif = image->exifData();
  EXPECT_EQ(entry(exif, "Exif.Image.Orientation"), "1");
  EXPECT_EQ(entry(exif, "Exif.Image.XResolution"), "150/1");  // the sides have changed places
  EXPECT_EQ(entry(exif, "Exif.Image.YResolution"), "300/1");
  EXPECT_EQ(entry(exif, "Exif.Photo.DateTimeOriginal"), "2026:05:04 03:02:01");
  EXPECT_EQ(entry(exif, "Exif.Photo.PixelXDimension"), std::to_string(picture.width));
  EXPECT_EQ(entry(exif, "Exif.Photo.PixelYDimension"), std::to_string(picture.height));
  EXPECT_EQ(entry(exif, "Exif.GPSInfo.GPSLatitude"), "47/1");
  Bytes note(kMakerNote.size());
  const auto found = exif.findKey(Exiv2::ExifKey("Exif.Photo.MakerNote"));
  ASSERT_TRUE(found != exif.end());
  found->copy(note.data(), Exiv2::invalidByteOrder);
  EXPECT_EQ(note, bytesOf(kMakerNote));
  EXPECT_EQ(Exiv2::ExifThumb(exif).copy().size_, 0);
  EXPECT_EQ(entry(image->xmpData(), "Xmp.dc.creator"), "A photographer");
  EXPECT_EQ(entry(image->xmpData(), "Xmp.tiff.Orientation"), "1");
  EXPECT_EQ(entry(image->xmpData(), "Xmp.exif.PixelXDimension"), std::to_string(picture.width));
  expectHolds(image->xmpPacket(), "calm");
  EXPECT_EQ(image->xmpPacket().find("AAAA"), std::string::npos);
  const Exiv2::DataBuf& profile = *image->iccProfile();
  EXPECT_EQ(Bytes(profile.pData_, profile.pData_ + profile.size_), picture.colorProfile);
}

void expectAllWritten(const Picture& picture, bool iptc) {
  EXPECT_EQ(picture.width, 16);
  EXPECT_EQ(picture.height, 24);
  EXPECT_FALSE(picture.colorProfile.empty());
  for (const PictureKind kind : kWritten) {
    SCOPED_TRACE(tool::nameOf(kind));
    tool::Notes notes;
    const Bytes file = tool::encodePicture(kind, picture, {}, &notes);
    expectDescribes(file, picture);
    const Picture again = tool::decodePicture(kind, file, &notes);
    EXPECT_TRUE(notes.empty()) << notes.front();
    EXPECT_EQ(again.width, 16);
    ASSERT_TRUE(again.origin.density.has_value());
    EXPECT_NEAR(again.origin.density->x * 0.0254, 150, 0.02);
    EXPECT_NEAR(again.origin.density->y * 0.0254, 300, 0.02);
    if (!iptc) continue;
    const auto image = openBytes(file);
    const auto city = image->iptcData().findKey(Exiv2::IptcKey("Iptc.Application2.City"));
    EXPECT_EQ(kind == PictureKind::kJpeg ? city->toString() : entry(image->xmpData(), "Xmp.photoshop.City"), "Graz");
  }
}

TEST(Metadata, GoesFromEveryKindToEveryKindAndFitsTheResult) {
  for (const PictureKind kind : kWritten) {
    SCOPED_TRACE(tool::nameOf(kind));
    tool::Notes notes;
    const Picture picture = tool::decodePicture(kind, photoOf(kind), &notes);
    EXPECT_TRUE(notes.empty()) << notes.front();
    expectAllWritten(picture, kind == PictureKind::kJpeg);
  }
}

TEST(Metadata, DamagedIsLeftOutWithARemark) {
  Picture picture = stored();
  picture.origin.metadata = {corpusPicture("exif_far"), "<x:xmpmeta", {}, {}};
  tool::Notes notes;
  EXPECT_EQ(tool::readMetadata(&picture.origin, &notes), 1);
  ASSERT_EQ(notes.size(), 2U);
  expectHolds(notes[0], "its EXIF data cannot be read and is left out");
  EXPECT_TRUE(picture.origin.metadata.exif.empty() && picture.origin.metadata.xmp.empty());
  // A JPEG has 64 KiB for each; the others have room.
  std::string& xmp = picture.origin.metadata.xmp = kXmp;
  xmp.replace(xmp.find("calm"), 4, 70000, 'x');
  EXPECT_GT(tool::decodePng(tool::encodePng(picture, &notes)).origin.metadata.xmp.size(), 70000U);
  EXPECT_EQ(notes.size(), 2U);
  EXPECT_EQ(tool::decodeJpeg(tool::encodeJpeg(picture, {}, &notes)).origin.metadata.xmp, "");
  expectHolds(notes.back(), "its XMP data does not fit");
}

TEST(Metadata, OrientationOfXmpCountsWhereExifHasNone) {
  Picture picture = stored();
  picture.origin.metadata.xmp = kXmp;
  EXPECT_EQ(tool::readMetadata(&picture.origin, nullptr), 6);
  picture.origin.metadata.exif = corpusPicture("exif");
  picture.origin.metadata.exif[19] = 3;
  EXPECT_EQ(tool::readMetadata(&picture.origin, nullptr), 3);
}

TEST(Metadata, TextsAndColorsGoWhereTheyFit) {
  Picture picture = stored();
  picture.colorProfile.clear();
  picture.origin.metadata.texts = {{"Title", "Caf\xC3\xA9", true, true, "de", "Titel"},
                                   {"Comment", "kept", false, false, "", ""}};
  picture.origin.colors = tool::StatedColors{100000, {31270, 32900, 68000, 32000, 26500, 69000, 15000, 6000}};
  tool::Notes notes;
  const Picture again = tool::decodePng(tool::encodePng(picture, &notes), &notes);
  EXPECT_TRUE(notes.empty());
  ASSERT_EQ(again.origin.metadata.texts.size(), 2U);
  const tool::Text& title = again.origin.metadata.texts[0];
  EXPECT_EQ(title.name + title.text + title.language + title.translatedName,
            std::string("TitleCaf\xC3\xA9") + "deTitel");
  EXPECT_EQ(again.origin.colors.value().gamma, 100000);
  EXPECT_EQ(again.origin.colors->chromaticities, picture.origin.colors->chromaticities);
  const Picture jpeg = tool::decodeJpeg(tool::encodeJpeg(again, {}, &notes));
  EXPECT_EQ(notes, (tool::Notes{"its texts do not fit and are left out",
                                "its gamma and primaries do not fit and are left out"}));
  ASSERT_EQ(jpeg.origin.metadata.texts.size(), 1U);
  EXPECT_EQ(jpeg.origin.metadata.texts[0].text, "kept");
}

TEST(Metadata, ResolutionWithoutExifIsKept) {
  for (const double perMetre : {300 / 0.0254, 11800.0}) {
    Picture picture = stored();
    picture.origin.density = tool::Density{perMetre, perMetre / 2};
    for (const PictureKind kind : kWritten) {
      const auto density = tool::decodePicture(kind, tool::encodePicture(kind, picture)).origin.density;
      ASSERT_TRUE(density && density->absolute);
      EXPECT_NEAR(density->x, perMetre, 0.6) << tool::nameOf(kind);
      EXPECT_NEAR(density->y, perMetre / 2, 0.6) << tool::nameOf(kind);
    }
  }
}

#ifdef VLVK_WITH_HEIF

struct HeifDetails {
  heif_compression_format format;
  int bits = 8;
};

void expectOk(const heif_error& error) {
  ASSERT_EQ(error.code, heif_error_Ok) << error.message;
}

heif_error keep(heif_context* /*context*/, const void* data, std::size_t size, void* file) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  static_cast<Bytes*>(file)->assign(bytes, bytes + size);
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

// 64 x 48 with red left and blue right half, turned by the file by 90 degrees, and with EXIF that says so once more.
Bytes heifOf(const HeifDetails& details) {
  heif_image* image = nullptr;
  const bool deep = details.bits > 8;
  expectOk(heif_image_create(64, 48, heif_colorspace_RGB,
                             deep ? heif_chroma_interleaved_RRGGBB_LE : heif_chroma_interleaved_RGB, &image));
  expectOk(heif_image_add_plane(image, heif_channel_interleaved, 64, 48, details.bits));
  int stride = 0;
  std::uint8_t* plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  for (int i = 0; i < 64 * 48 * 3; ++i) {
    const int sample = i % 3 == (i / 3 % 64 < 32 ? 0 : 2) ? (1 << details.bits) - 1 : 0;
    std::uint8_t* at = plane + i / 192 * stride + i % 192 * (deep ? 2 : 1);
    at[0] = static_cast<std::uint8_t>(sample);
    if (deep) at[1] = static_cast<std::uint8_t>(sample >> 8);
  }
  const Bytes profile = stored().colorProfile;
  if (!deep) expectOk(heif_image_set_raw_color_profile(image, "prof", profile.data(), profile.size()));
  heif_context* context = heif_context_alloc();
  heif_encoder* encoder = nullptr;
  expectOk(heif_context_get_encoder_for_format(context, details.format, &encoder));
  heif_encoder_set_lossy_quality(encoder, 90);
  heif_encoding_options* options = heif_encoding_options_alloc();
  options->image_orientation = heif_orientation_rotate_90_cw;
  options->macOS_compatibility_workaround_no_nclx_profile = 0;
  heif_image_handle* handle = nullptr;
  expectOk(heif_context_encode_image(context, image, encoder, options, &handle));
  Exiv2::Blob exif;
  Exiv2::ExifParser::encode(exif, Exiv2::bigEndian, cameraExif());
  expectOk(heif_context_add_exif_metadata(context, handle, exif.data(), static_cast<int>(exif.size())));
  expectOk(heif_context_add_XMP_metadata(context, handle, kXmp, sizeof kXmp - 1));
  Bytes file;
  heif_writer writer{1, keep};
  expectOk(heif_context_write(context, &writer, &file));
  heif_encoding_options_free(options);
  heif_image_handle_release(handle);
  heif_encoder_release(encoder);
  heif_context_free(context);
  heif_image_release(image);
  return file;
}

TEST(Heif, IsReadUprightOnceWithItsMetadata) {
  for (const HeifDetails details : {HeifDetails{heif_compression_HEVC}, HeifDetails{heif_compression_AV1},
                                    HeifDetails{heif_compression_HEVC, 10}}) {
    SCOPED_TRACE(details.format);
    const Bytes file = heifOf(details);
    const Picture picture = tool::decodePicture(PictureKind::kHeif, file);
    ASSERT_EQ(picture.width, 48);
    ASSERT_EQ(picture.height, 64);
    EXPECT_FALSE(picture.hasAlpha);
    const std::uint8_t* top = picture.row(8) + 96;
    const std::uint8_t* bottom = picture.row(56) + 96;
    EXPECT_TRUE(top[0] > 240 && top[2] < 15 && bottom[0] < 15 && bottom[2] > 240 && top[3] == 255)
        << details.bits << " bits, " << int{top[0]} << ' ' << int{top[2]} << ' ' << int{bottom[0]} << ' '
        << int{bottom[2]};
    EXPECT_EQ(picture.colorProfile.empty(), details.bits > 8);
    const Bytes written = tool::encodeJpeg(picture);
    const auto image = openBytes(written);
    EXPECT_EQ(entry(image->exifData(), "Exif.Image.Orientation"), "1");
    EXPECT_EQ(entry(image->exifData(), "Exif.Photo.PixelXDimension"), "48");
    EXPECT_EQ(entry(image->xmpData(), "Xmp.dc.creator"), "A photographer");
    for (const std::size_t size : {file.size() / 2, file.size() - 40})
      expectHolds(reasonOf([&] { tool::decodePicture(PictureKind::kHeif, {file.data(), size}); }), "not a readable");
  }
  Bytes hdr = heifOf({heif_compression_HEVC, 10});
  const Bytes colors = bytesOf("nclx");  // primaries and transfer function follow, 16 bits each
  std::search(hdr.begin(), hdr.end(), colors.begin(), colors.end())[7] = 16;
  expectHolds(reasonOf([&] { tool::decodePicture(PictureKind::kHeif, hdr); }), "an HDR picture");
}

#endif

}  // namespace
}  // namespace vlvk::tool_test
