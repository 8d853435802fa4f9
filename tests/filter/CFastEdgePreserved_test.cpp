/// The filter object: what native callers rely on in memory, and settings.
#include <vlvk/CFastEdgePreserved.h>

#include <gtest/gtest.h>
#include <sys/timeb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <tuple>

namespace {

/// Expects each member right behind the one before it, as its alignment allows.
template <typename Object, typename... Members>
void expectInOrder(const Object& object, std::size_t first, const Members&... members) {
  const char* end = reinterpret_cast<const char*>(&object) + first;
  int index = 0;
  const auto expectNext = [&](const auto& member) {
    const auto* address = reinterpret_cast<const char*>(&member);
    EXPECT_TRUE(address >= end && address - end < std::ptrdiff_t{alignof(decltype(member))}) << "member " << index;
    end = address + sizeof member;
    ++index;
  };
  (expectNext(members), ...);
}

TEST(Filter, MembersStandInTheOrderThatNativeCallersKnow) {
  const CFastEdgePreserved f(1, nullptr);
  expectInOrder(f, sizeof(void*), f.whitenIntensity, f.radius, f.softenSkinIntensity, f.colorAdjustIntensity,
                f.toneCurve0, f.toneCurve1, f.toneCurve2, f.threadCount, f.colorTable, f.lookupDirty, f.rgbOrder,
                f.skinCentre, f.skinTable, f.mutex, f.meanBuffer, f.scratchA, f.scratchB, f.lineSums, f.nv12Scratch,
                f.rgbaBuffer, f.hasEdgeRows, f.edgeRows, f.cachedWidth, f.cachedHeight, f.cachedStride, f.cachedRadius,
                f.cachedThreads, f.loader);
  EXPECT_LT(sizeof(CFastEdgePreserved), 4096u);

  const CFastEdgePreserved::BandTask t{};
  expectInOrder(t, 0, t.owner, t.stage, t.bandIndex, t.param);
  const CFastEdgePreserved::MakeupParam p{};
  expectInOrder(p, 0, p.variant, p.rgbOrder, p.inPlace, p.yPlane, p.yStride, p.uvPlane, p.uvStride, p.dstPlane,
                p.dstStride, p.outPlane, p.outStride, p.width, p.rows, p.radius, p.whitenIntensity, p.softenLevel,
                p.colorAdjustIntensity, p.skinCentre, p.meanPlane, p.scratchA, p.scratchB, p.lineSums, p.edgeRows);
}

TEST(Filter, SettersMarkTheTablesOnlyWhenTheyNeedIt) {
  using Class = CFastEdgePreserved;
  Class f(1, nullptr);
  std::array<char, sizeof f> before;
  for (const auto& [put, field, marksTables] :
       {std::tuple{&Class::put_whitenIntensity, &Class::whitenIntensity, true},
        {&Class::put_colorAdjustIntensity, &Class::colorAdjustIntensity, true},
        {&Class::put_softenSkinIntensity, &Class::softenSkinIntensity, false}}) {
    for (const int value : {-7, 2000000000, 5, 5}) {
      const bool marks = marksTables && f.*field != value;
      for (const bool dirty : {false, true}) {
        f.lookupDirty = dirty;
        (f.*put)(value);
        std::memcpy(before.data(), static_cast<const void*>(&f), sizeof f);
        EXPECT_EQ(f.setOutputSize(value, value), -1);
        EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&f), sizeof f), 0)
            << "setOutputSize sets nothing";
        EXPECT_EQ(f.*field, value);
        EXPECT_EQ(f.lookupDirty, dirty || marks);
      }
    }
  }
}

TEST(Filter, DiffTimeCountsMillisecondsIn32Bits) {
  timespec now;
  ASSERT_EQ(clock_gettime(CLOCK_REALTIME, &now), 0);
  for (const auto& [secondsAgo, expected] : {std::pair{2, 2000}, {-3600, -3600000}, {3000000, -1294967296}}) {
    timeb start{};
    start.time = now.tv_sec - secondsAgo;
    start.millitm = static_cast<unsigned short>(now.tv_nsec / 1000000);
    const int difference = CFastEdgePreserved(1, nullptr).diffTime(&start);
    EXPECT_TRUE(difference >= expected && difference < expected + 60000) << difference;  // a minute to get here
  }
}

TEST(Filter, DestructorLeavesWhatItDoesNotOwn) {
  const auto allocate = [] { return static_cast<unsigned char*>(std::malloc(8)); };
  unsigned char* const kept[] = {allocate(), allocate()};
  {
    CFastEdgePreserved f(1, nullptr);
    for (unsigned char** owned : {&f.colorTable, &f.toneCurve0, &f.toneCurve1, &f.toneCurve2, &f.meanBuffer,
                                  &f.scratchA, &f.scratchB, &f.lineSums, &f.rgbaBuffer}) {
      *owned = allocate();
    }
    f.nv12Scratch = kept[0];
    f.edgeRows = kept[1];
  }
  std::free(kept[0]);  // twice, were one of them released already
  std::free(kept[1]);
}

}  // namespace
