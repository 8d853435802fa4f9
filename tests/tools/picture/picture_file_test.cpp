/// Picture files in memory: every kind, orientation, profiles, damage.
#include <algorithm>
#include <span>
#include <utility>

#include "tests/tools/tool_support.h"
#include "tools/engine/beautify.h"
#include "tools/picture/jpeg.h"
#include "tools/picture/metadata.h"
#include "tools/picture/picture_file.h"
#include "tools/picture/png.h"
#include "tools/picture/webp.h"

namespace vlvk::tool_test {
namespace {

using Png = ToolDirectory;

Bytes pixelsOf(const tool::Picture& picture) {
  return {picture.pixels.get(), picture.pixels.get() + picture.rowBytes() * picture.height};
}

TEST_F(Png, EveryKindIsRead) {
  for (const std::string name :
       {"gray1_png", "ga_png", "palette_interlaced_png", "rgb_png", "rgba_png", "profile_png"}) {
    const Image expected = readPng(VLVK_CORPUS "/picture/" + name);
    const tool::Picture picture = tool::decodePng(corpusPicture(name));
    EXPECT_EQ(picture.width, expected.width) << name;
    EXPECT_EQ(pixelsOf(picture), expected.pixels) << name;
    EXPECT_EQ(picture.hasAlpha, name == "ga_png" || name == "palette_interlaced_png" || name == "rgba_png") << name;
  }
  // 16 bits are rounded, not cut off: 0x00FF is 1. The transparent sample is 0x0001 alone, not its neighbours.
  const tool::Picture picture = tool::decodePng(corpusPicture("rgb16_png"));
  for (int i = 0; i < 64 * 8 * 3; ++i) {
    const int sample = (i / 3 % 64 * 1031 + i / 192 * 64 + i % 3 * 21) & 65535;
    ASSERT_EQ(picture.row(i / 192)[i / 3 % 64 * 4 + i % 3], (sample + 128) / 257) << "sample " << i;
  }
  const tool::Picture keyed = tool::decodePng(corpusPicture("gray16_keyed_png"));  // its first column: 0, 1, 2
  EXPECT_TRUE(keyed.hasAlpha);
  EXPECT_EQ((Bytes{keyed.row(0)[3], keyed.row(1)[3], keyed.row(2)[3]}), (Bytes{255, 0, 255}));
}

TEST_F(Png, DamageAndSizesAreRefused) {
  const auto refusal = [](const Bytes& file) { return reasonOf([&] { tool::decodePng(file); }); };
  writeRgba(path("rgba.png"), patternImage(20, 20));
  const Bytes file = readBytes(path("rgba.png"));
  const Bytes frames{0, 0, 0, 8, 'a', 'c', 'T', 'L', 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0};
  const auto pixels = file.begin() + 33;  // the header goes before
  expectHolds(refusal(Bytes(file.begin(), pixels) + frames + Bytes(pixels, file.end())), "an animated PNG");
  for (std::size_t size = 8; size < file.size(); size += 97)
    expectHolds(refusal({file.begin(), file.begin() + size}), "not a readable PNG");
  Bytes flipped = file;
  flipped[flipped.size() / 2] ^= 0x10;
  expectHolds(refusal(flipped), "not a readable PNG");
  writePng(path("wide.png"), 32769, 1, [](int, int, int) { return 0; });
  expectHolds(refusal(readBytes(path("wide.png"))), "32769 x 1 pixels is too large");
}

Bytes withSegment(const Bytes& jpeg, std::uint8_t marker, const Bytes& data) {
  const Bytes head{0xFF, 0xD8, 0xFF, marker, 0, static_cast<std::uint8_t>(data.size() + 2)};
  return head + data + Bytes(jpeg.begin() + 2, jpeg.end());
}

void expectPixel(const tool::Picture& picture, int x, int y, const Bytes& expected) {
  for (int c = 0; c < 4; ++c)
    EXPECT_NEAR(picture.row(y)[x * 4 + c], expected[c], 3) << x << ", " << y << " channel " << c;
}

// Colours by another decoder. Ink is stored inverted where there is an Adobe marker.
TEST(Jpeg, EveryKindIsRead) {
  const Bytes adobe{'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 0};
  const std::pair<Bytes, std::pair<Bytes, Bytes>> kinds[] = {
      {corpusPicture("progressive_jpg"), {{0, 50, 99, 255}, {218, 12, 61, 255}}},
      {corpusPicture("gray_ycc_jpg"), {{243, 242, 249, 255}, {179, 178, 185, 255}}},
      {corpusPicture("gray_exif_jpg"), {{88, 88, 88, 255}, {144, 144, 144, 255}}},
      {corpusPicture("ycck_jpg"), {{0, 29, 58, 255}, {96, 6, 27, 255}}},
      {corpusPicture("cmyk_jpg"), {{105, 84, 64, 255}, {21, 135, 107, 255}}},
      {withSegment(corpusPicture("cmyk_jpg"), 0xEE, adobe), {{0, 29, 58, 255}, {96, 5, 27, 255}}}};
  for (const auto& [file, colors] : kinds) {
    const tool::Picture picture = tool::decodePicture(tool::PictureKind::kJpeg, file);
    expectPixel(picture, 0, 0, colors.first);
    expectPixel(picture, 5, 3, colors.second);
  }
}

// Four grey quarters, 32 x 16: 0 and 80 above 160 and 240.
TEST(Jpeg, PicturesAreTurnedUpright) {
  tool::Picture quarters(32, 16);
  for (int i = 0; i < 32 * 16 * 4; ++i)
    quarters.pixels[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 255 : (i / 64 % 2 + i / 1024 * 2) * 80);
  const Bytes jpeg = tool::encodeJpeg(quarters, 100);
  const std::vector<int> upright[] = {{0, 1, 2, 3}, {1, 0, 3, 2}, {3, 2, 1, 0}, {2, 3, 0, 1},
                                      {0, 2, 1, 3}, {2, 0, 3, 1}, {3, 1, 2, 0}, {1, 3, 0, 2}};
  Bytes exif = corpusPicture("exif");
  for (int orientation = 1; orientation <= 8; ++orientation) {
    exif[19] = static_cast<std::uint8_t>(orientation);
    const tool::Picture picture =
        tool::decodePicture(tool::PictureKind::kJpeg, withSegment(jpeg, 0xE1, Bytes{'E', 'x', 'i', 'f', 0, 0} + exif));
    EXPECT_EQ(picture.width, orientation < 5 ? 32 : 16);
    std::vector<int> read;
    for (const int y : {picture.height / 4, picture.height * 3 / 4}) {
      for (const int x : {picture.width / 4, picture.width * 3 / 4})
        read.push_back((picture.row(y)[x * 4] + 40) / 80);
    }
    EXPECT_EQ(read, upright[orientation - 1]) << orientation;
  }
}

TEST(Jpeg, TransparencyIsShownOverWhite) {
  tool::Picture picture(16, 16);
  for (int i = 0; i < 16 * 16 * 4; ++i)
    picture.pixels[i] = i % 4 != 3 ? 40 : i % 64 < 32 ? 0 : 255;
  const Bytes good = tool::encodeJpeg(picture, 100);
  expectPixel(tool::decodeJpeg(good), 2, 8, {255, 255, 255, 255});
  expectPixel(tool::decodeJpeg(good), 13, 8, {40, 40, 40, 255});
  EXPECT_LT(tool::encodeJpeg(picture, 1).size(), good.size());
}

TEST(Jpeg, ColorProfileGoesAlongIfRgb) {
  const tool::Picture picture = tool::decodePng(corpusPicture("rgb_profile_png"));
  EXPECT_GE(picture.colorProfile.size(), 128U);
  EXPECT_EQ(tool::decodeJpeg(tool::encodeJpeg(picture, 90)).colorProfile, picture.colorProfile);
  EXPECT_EQ(tool::decodePng(tool::encodePng(picture)).colorProfile, picture.colorProfile);
  EXPECT_EQ(tool::beautify(picture, {}).colorProfile, picture.colorProfile);
  Bytes profile(128);
  for (const std::string space : {"RGB ", "GRAY", "CMYK"}) {
    std::copy(space.begin(), space.end(), profile.begin() + 16);
    EXPECT_EQ(tool::isRgbProfile(profile), space == "RGB ");
    EXPECT_FALSE(tool::isRgbProfile(std::span(profile).first(127)));
  }
}

TEST(Jpeg, DamageAndSizesAreRefused) {
  const auto refusal = [](const Bytes& file) { return reasonOf([&] { tool::decodeJpeg(file); }); };
  for (const std::string name : {"progressive_jpg", "gray_ycc_jpg", "ycck_jpg"}) {
    const Bytes file = corpusPicture(name);
    for (std::size_t size = 3; size < file.size() - 2; size += 31)
      expectHolds(refusal({file.begin(), file.begin() + size}), "not a readable JPEG");
  }
  const Bytes start{0xFF, 0xC2, 0, 17, 8};  // height and width follow
  Bytes wide = corpusPicture("progressive_jpg");
  const auto frame = std::search(wide.begin(), wide.end(), start.begin(), start.end());
  frame[7] = 0x90;
  expectHolds(refusal(wide), "too large");
  // The first scan again and again would keep the program busy.
  Bytes file = corpusPicture("progressive_jpg");
  const std::uint8_t marks[2][2] = {{0xFF, 0xDA}, {0xFF, 0xC4}};
  const auto scan = std::search(file.begin(), file.end(), marks[0], marks[0] + 2);
  const Bytes first(scan, std::search(scan, file.end(), marks[1], marks[1] + 2));
  Bytes scans(file.begin(), scan);
  for (int i = 0; i < 500; ++i)
    scans = std::move(scans) + first;
  expectHolds(refusal(std::move(scans) + Bytes(scan, file.end())), "more than 500 scans");
}

// Of a JPEG, every code of which is damaged once: a file has no check sum, so that some changes are only another
// picture.
TEST(Jpeg, DamagedCodesAreRefused) {
  tool::Picture picture = tool::decodePng(readBytes(VLVK_SAMPLES "/portrait.png"));
  picture.height = 100;
  const Bytes file = tool::encodeJpeg(picture, 90);
  const Bytes mark{0xFF, 0xDA};
  const auto scan = std::search(file.begin(), file.end(), mark.begin(), mark.end()) - file.begin() + 14;
  // Only ones are no code, wherever they begin.
  for (std::size_t i = scan; i < file.size() - 10; i += 101) {
    Bytes damaged = file;
    for (std::size_t k = 0; k < 8; ++k)
      damaged[i + k] = k % 2 == 0 ? 0xFF : 0;
    expectHolds(reasonOf([&] { tool::decodeJpeg(damaged); }), "not a readable JPEG");
  }
  int refused = 0;
  int flips = 0;
  for (std::size_t i = scan; i < file.size() - 2; i += 37) {
    if (file[i] == 0xFF || file[i - 1] == 0xFF) continue;
    Bytes damaged = file;
    damaged[i] ^= static_cast<std::uint8_t>(1 << i % 8);
    ++flips;
    if (reasonOf([&] { tool::decodeJpeg(damaged); }) != "none") ++refused;
  }
  EXPECT_GT(refused * 100, flips * 9) << refused << " of " << flips;
}

TEST(Jpeg, IsWrittenAsFineAsItsSource) {
  tool::Picture picture = tool::decodePng(readBytes(VLVK_SAMPLES "/portrait.png"));
  picture.height = 64;
  for (const tool::JpegCoding& coding : {tool::JpegCoding{2, 2, 97, true}, tool::JpegCoding{2, 1, 80, false}}) {
    picture.origin.jpeg = coding;
    tool::Picture read = tool::decodeJpeg(tool::encodeJpeg(picture, coding.quality));
    const auto again = tool::decodeJpeg(tool::encodeJpeg(tool::upright(std::move(read), 6))).origin.jpeg;
    EXPECT_EQ(again->quality, std::max(92, coding.quality));
    EXPECT_EQ(again->chromaWidth, coding.chromaHeight);  // sides have changed places
    EXPECT_EQ(again->chromaHeight, coding.chromaWidth);
    EXPECT_EQ(again->progressive, coding.progressive);
  }
  picture.origin = {};
  EXPECT_EQ(tool::decodeJpeg(tool::encodeJpeg(picture)).origin.jpeg->chromaWidth, 1);
}

TEST(Webp, KeepsPixelsWithoutLossAndAlphaAlways) {
  tool::Picture picture = tool::decodePng(corpusPicture("rgba_png"));
  const Bytes file = tool::encodeWebp(picture);
  const tool::Picture again = tool::decodeWebp(file);
  EXPECT_TRUE(again.hasAlpha);
  EXPECT_EQ(pixelsOf(again), pixelsOf(picture));
  EXPECT_EQ(tool::encodeWebp(again), file);
  const tool::Picture lossy = tool::decodeWebp(tool::encodeWebp(picture, 80));
  EXPECT_TRUE(lossy.hasAlpha && lossy.origin.lossy);
  for (int i = 3; i < lossy.width * lossy.height * 4; i += 4)
    ASSERT_EQ(lossy.pixels[i], picture.pixels[i]);
  for (std::size_t size = 12; size < file.size() - 1; size += 7)
    expectHolds(reasonOf([&] { tool::decodeWebp({file.data(), size}); }), "not a readable WebP");
  const Bytes animated = corpusPicture("animated_webp");
  expectHolds(reasonOf([&] { tool::decodeWebp(animated); }), "an animated WebP");
}

TEST(PictureFile, NamesAndContentMustAgree) {
  EXPECT_EQ(tool::pictureKind("a.JFIF"), tool::PictureKind::kJpeg);
  EXPECT_EQ(tool::pictureKind("a.jpe"), tool::PictureKind::kJpeg);
  const std::pair<const char*, const char*> kinds[] = {
      {"rgb_png", "PNG"}, {"cmyk_jpg", "JPEG"}, {"animated_webp", "WebP"}, {"turned_avif", "HEIC or AVIF"}};
  for (int kind = 0; kind < 4; ++kind) {
    for (int content = 0; content < 4; ++content) {
      const Bytes file = corpusPicture(kinds[content].first);
      const std::string reason = reasonOf([&] { tool::decodePicture(static_cast<tool::PictureKind>(kind), file); });
      if (kind != content) expectHolds(reason, std::string("holds a ") + kinds[content].second);
    }
  }
  expectHolds(reasonOf([&] { tool::writtenKind("a.heic"); }), "only read");
}

}  // namespace
}  // namespace vlvk::tool_test
