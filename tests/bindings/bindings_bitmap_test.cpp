/// makeup_ProcessBitmap3 with bitmaps of this file's making. The library finds its AndroidBitmap functions here.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include <vlvk/rgb_to_yuv.h>
#include "bindings/android_bitmap.h"
#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

using testing_support::Content;
using testing_support::Guard;
using testing_support::Plane;
using testing_support::Random;

constexpr std::int32_t kRgba8888 = 1;

struct Bitmap {
  AndroidBitmapInfo info{};
  void* pixels = nullptr;
  int infoResult = 0;
  int lockResult = 0;
  int unlockResult = 0;
  Calls calls;
};

Bitmap& of(jobject bitmap) {
  return *reinterpret_cast<Bitmap*>(bitmap);
}

const Calls kWhole{"getInfo", "lockPixels", "unlockPixels"};

}  // namespace
}  // namespace bindings_tests

using bindings_tests::of;

int AndroidBitmap_getInfo(JNIEnv* /*env*/, jobject bitmap, AndroidBitmapInfo* info) {
  of(bitmap).calls.emplace_back("getInfo");
  if (of(bitmap).infoResult == 0) *info = of(bitmap).info;
  return of(bitmap).infoResult;
}

int AndroidBitmap_lockPixels(JNIEnv* /*env*/, jobject bitmap, void** pixels) {
  of(bitmap).calls.emplace_back("lockPixels");
  if (of(bitmap).pixels != nullptr) *pixels = of(bitmap).pixels;
  return of(bitmap).lockResult;
}

int AndroidBitmap_unlockPixels(JNIEnv* /*env*/, jobject bitmap) {
  of(bitmap).calls.emplace_back("unlockPixels");
  return of(bitmap).unlockResult;
}

namespace bindings_tests {
namespace {

class BitmapTest : public testing::Test {
 protected:
  BitmapTest() { java_.file = resourceFile(pictureFactors(), noisePicture()); }

  jint process(Bitmap* bitmap) const {
    bitmap->calls.clear();
    return makeup_ProcessBitmap3(java_.env(), nullptr, engine_.handle, reinterpret_cast<jobject>(bitmap));
  }

  mutable FakeJava java_;
  Engine engine_{java_};
};

Bitmap bitmapOf(const Plane& pixels) {
  Bitmap bitmap;
  bitmap.info = {static_cast<std::uint32_t>(pixels.width() / 4), static_cast<std::uint32_t>(pixels.height()),
                 static_cast<std::uint32_t>(pixels.stride()), kRgba8888, 0};
  bitmap.pixels = pixels.data();
  return bitmap;
}

// The bitmap as an NV21 frame, an odd last column and row of luma being those next to them.
Bytes frameOf(const Plane& pixels) {
  const int width = pixels.width() / 4;
  const int height = pixels.height();
  Bytes frame = skinFrame(width, height, 11);
  unsigned char* luma = frame.data();
  VKRGBAToNV21_NeonCall(pixels.data(), pixels.stride(), luma, width, luma + width * height, width, width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      luma[y * width + x] = luma[std::min(y, (height & ~1) - 1) * width + std::min(x, (width & ~1) - 1)];
  }
  return frame;
}

TEST_F(BitmapTest, BecomesWhatTheFilterMakesOfItsFrame) {
  Random random(12);
  DirectFilter direct(&noisePicture());
  for (const auto& [width, height] : {std::pair{64, 48}, {37, 25}, {16, 3}, {3, 16}, {2, 2}}) {
    for (const int padding : {0, 4, 52}) {
      SCOPED_TRACE(testing::Message() << width << " x " << height << ", padding " << padding);
      const Plane pixels(width * 4, height, width * 4 + padding, Guard::kBehind, Content::kNoise, random);
      Bytes expected = pixels.bytes();
      Bytes frame = frameOf(pixels);
      EXPECT_EQ(direct.process(frame.data(), width, height, expected.data(), pixels.stride()), 0);
      Bitmap bitmap = bitmapOf(pixels);
      EXPECT_EQ(process(&bitmap), 0);
      EXPECT_EQ(bitmap.calls, kWhole);
      EXPECT_TRUE(sameBytes(pixels, expected));
    }
  }
}

TEST_F(BitmapTest, TheSmallestSizesAreTaken) {
  Random random(13);
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 8}, {8, 1}, {0, 0}, {0, 5}, {5, 0}}) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    const Plane pixels(width * 4, height, width * 4, Guard::kBehind, Content::kNoise, random);
    Bitmap bitmap = bitmapOf(pixels);
    EXPECT_EQ(process(&bitmap), 0);
    EXPECT_EQ(bitmap.calls, kWhole);
  }
}

TEST_F(BitmapTest, ResultIsThatOfUnlocking) {
  Random random(14);
  const Plane pixels(64, 8, 64, Guard::kBehind, Content::kNoise, random);
  Bitmap bitmap = bitmapOf(pixels);
  bitmap.unlockResult = -3;
  bitmap.lockResult = -2;  // not looked at: there are pixels
  Bytes before = pixels.bytes();
  EXPECT_EQ(process(&bitmap), -3);
  EXPECT_EQ(bitmap.calls, kWhole);
  EXPECT_FALSE(sameBytes(pixels, before));

  engine_.filter->threadCount = 0;  // the filter refuses, which is not the bitmap's concern
  before = pixels.bytes();
  bitmap.unlockResult = 0;
  EXPECT_EQ(process(&bitmap), 0);
  EXPECT_TRUE(sameBytes(pixels, before));
}

TEST_F(BitmapTest, OtherFormatsAndFailedLocksAreLeftAlone) {
  Random random(15);
  const Plane pixels(64, 8, 64, Guard::kBehind, Content::kNoise, random);
  const Bytes before = pixels.bytes();
  for (const std::int32_t format : {0, 4, 7, 8, 9, -1, 257}) {  // none, RGB_565, RGBA_4444, A_8, half floats ...
    Bitmap bitmap = bitmapOf(pixels);
    bitmap.info.format = format;
    EXPECT_EQ(process(&bitmap), -1) << "format " << format;
    EXPECT_EQ(bitmap.calls, Calls{"getInfo"});
  }
  Bitmap unknown = bitmapOf(pixels);
  unknown.infoResult = -1;
  EXPECT_EQ(process(&unknown), -1);
  EXPECT_EQ(unknown.calls, Calls{"getInfo"});

  for (const int lockResult : {0, -1}) {
    Bitmap unlockable = bitmapOf(pixels);
    unlockable.pixels = nullptr;
    unlockable.lockResult = lockResult;
    EXPECT_EQ(process(&unlockable), -1);
    EXPECT_EQ(unlockable.calls, (Calls{"getInfo", "lockPixels"}));
  }
  EXPECT_TRUE(sameBytes(pixels, before));
}

TEST_F(BitmapTest, SizesWithoutMemoryAreUnlockedAndRefused) {
  Random random(16);
  const Plane pixels(64, 8, 64, Guard::kBehind, Content::kNoise, random);
  const Bytes before = pixels.bytes();
  for (const auto& [width, height, stride] : {std::tuple{0x7FFFFFFFU, 0x7FFFFFFFU, 64U},
                                              {0x80000000U, 2U, 64U},
                                              {2U, 0xFFFFFFFFU, 64U},
                                              {16U, 8U, 0x80000000U}}) {
    Bitmap bitmap = bitmapOf(pixels);
    bitmap.info.width = width;
    bitmap.info.height = height;
    bitmap.info.stride = stride;
    EXPECT_EQ(process(&bitmap), -1) << width << " x " << height << ", stride " << stride;
    EXPECT_EQ(bitmap.calls, kWhole);
  }
  EXPECT_TRUE(sameBytes(pixels, before));
}

}  // namespace
}  // namespace bindings_tests
