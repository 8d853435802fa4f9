/// makeup_ProcessBitmap3 with bitmaps of this file's making. The library finds its AndroidBitmap functions here.
#include <vlvk/rgb_to_yuv.h>
#include "bindings/android_bitmap.h"
#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

using testing_support::Plane;

constexpr std::int32_t kRgba8888 = 1;
struct Bitmap {
  AndroidBitmapInfo info{16, 8, 64, kRgba8888, 0};
  bool hasPixels = true;
  int infoResult = 0, lockResult = 0, unlockResult = 0, result = -1, expectedCalls = 123, filterThreads = 4;
  bool isProcessed = false;
  unsigned char* pixels = nullptr;
  int calls = 0;  ///< a digit each: 1 for getInfo, 2 for lockPixels, 3 for unlockPixels
};

Bitmap& called(jobject object, int function) {
  auto& bitmap = *reinterpret_cast<Bitmap*>(object);
  bitmap.calls = bitmap.calls * 10 + function;
  return bitmap;
}

Plane noisePixels(int width, int height, int padding) {
  testing_support::Random random(12);
  return {width * 4, height, width * 4 + padding, testing_support::Guard::kBehind, testing_support::Content::kNoise,
          random};
}

void expectAnswer(const Engine& engine, Bitmap bitmap, const Plane& pixels) {
  bitmap.pixels = pixels.data();
  engine.filter->threadCount = bitmap.filterThreads;
  JNIEnv* env = engine.java.env();
  EXPECT_EQ(makeup_ProcessBitmap3(env, nullptr, engine.handle, reinterpret_cast<jobject>(&bitmap)), bitmap.result);
  EXPECT_EQ(bitmap.calls, bitmap.expectedCalls);
}

TEST(BitmapTest, BecomesWhatTheFilterMakesOfItsFrame) {
  FakeJava java;
  java.file = kPictureFile;
  const Engine engine(java);
  // Sizes without a pair of rows and columns are only taken: there is nothing to convert.
  for (const auto& [width, height] :
       {std::pair{64, 48}, {37, 25}, {16, 3}, {3, 16}, {2, 2}, {1, 1}, {1, 8}, {8, 1}, {0, 0}, {0, 5}, {5, 0}}) {
    for (const int padding : {0, 4, 52}) {
      SCOPED_TRACE(testing::Message() << width << " x " << height << ", padding " << padding);
      const Plane pixels = noisePixels(width, height, padding);
      Bytes expected = pixels.bytes();
      const bool isConverted = width > 1 && height > 1;
      if (isConverted) {
        Bytes frame = skinFrame(width, height, 11);
        unsigned char* luma = frame.data();
        VKRGBAToNV21_NeonCall(pixels.data(), pixels.stride(), luma, width, luma + width * height, width, width, height);
        for (int i = 0; i < width * height; ++i)  // an odd last column and row are those next to them
          luma[i] = luma[std::min(i / width, (height & ~1) - 1) * width + std::min(i % width, (width & ~1) - 1)];
        processDirectly(frame, width, height, expected.data(), pixels.stride());
      }
      const std::uint32_t sizes[] = {std::uint32_t(width), std::uint32_t(height), std::uint32_t(pixels.stride())};
      expectAnswer(engine, {.info = {sizes[0], sizes[1], sizes[2], kRgba8888, 0}, .result = 0}, pixels);
      EXPECT_TRUE(!isConverted || sameBytes(pixels, expected));
    }
  }
}

TEST(BitmapTest, FailuresOfThePlatformAreAnswered) {
  std::vector<Bitmap> bitmaps{
      {.lockResult = -2, .unlockResult = -3, .result = -3, .isProcessed = true},  // there are pixels
      {.result = 0, .filterThreads = 0},  // the filter refuses, which is not the bitmap's concern
      {.infoResult = -1, .expectedCalls = 1},
      {.hasPixels = false, .expectedCalls = 12},
      {.hasPixels = false, .lockResult = -1, .expectedCalls = 12},
      // No memory for the frame, and sizes beyond int.
      {.info = {0x7FFFFFFF, 0x7FFFFFFF, 64, kRgba8888, 0}},
      {.info = {0x80000000, 2, 64, kRgba8888, 0}},
      {.info = {2, 0xFFFFFFFF, 64, kRgba8888, 0}},
      {.info = {16, 8, 0x80000000, kRgba8888, 0}},
  };
  for (const std::int32_t format : {0, 4, 7, 8, 9, -1, 257})  // none, RGB_565, RGBA_4444, A_8, half floats ...
    bitmaps.push_back({.info = {16, 8, 64, format, 0}, .expectedCalls = 1});
  FakeJava java;
  const Engine engine(java);
  for (const Bitmap& bitmap : bitmaps) {
    SCOPED_TRACE(testing::Message() << "bitmap " << &bitmap - bitmaps.data());
    const Plane pixels = noisePixels(16, 8, 0);
    const Bytes before = pixels.bytes();
    expectAnswer(engine, bitmap, pixels);
    EXPECT_NE(pixels.bytes() == before, bitmap.isProcessed);
  }
}

}  // namespace
}  // namespace bindings_tests

int AndroidBitmap_getInfo(JNIEnv* /*env*/, jobject bitmap, AndroidBitmapInfo* info) {
  const auto& self = bindings_tests::called(bitmap, 1);
  if (self.infoResult == 0) *info = self.info;
  return self.infoResult;
}

int AndroidBitmap_lockPixels(JNIEnv* /*env*/, jobject bitmap, void** pixels) {
  const auto& self = bindings_tests::called(bitmap, 2);
  if (self.hasPixels) *pixels = self.pixels;
  return self.lockResult;
}

int AndroidBitmap_unlockPixels(JNIEnv* /*env*/, jobject bitmap) {
  return bindings_tests::called(bitmap, 3).unlockResult;
}
