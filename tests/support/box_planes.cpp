/// See box_planes.h.
#include "tests/support/box_planes.h"

#include <cstddef>
#include <cstring>
#include <sstream>

namespace testing_support {
namespace {

struct Rows {
  int first = 0, count = 0;
};

Rows randomRows(BandKind kind, int height, BandReach reach, Random& random) {
  const int end = height - reach.below;
  switch (kind) {
    case BandKind::kWhole:
      return {0, height};
    case BandKind::kTop:
      return end < 1 ? Rows{} : Rows{0, random.between(1, end)};
    case BandKind::kMiddle: {
      if (reach.above >= end) return {};
      const int first = random.between(reach.above, end - 1);
      return {first, random.between(1, end - first)};
    }
    case BandKind::kBottom: {
      const int latest = height - reach.leastBottomRows;
      if (reach.above > latest) return {};
      const int first = random.between(reach.above, latest);
      return {first, height - first};
    }
  }
  return {};
}

}  // namespace

std::string BoxCase::text() const {
  std::ostringstream out;
  out << "content " << static_cast<int>(content) << ", " << width << " x " << height << ", stride " << stride
      << ", radius " << radius << ", level " << level << " ";
  return out.str();
}

BoxCase randomBoxCase(int leastWidth, Random& random) {
  BoxCase c{};
  c.content = random.pick(kLumaContents);
  c.width = leastWidth + random.between(0, random.pick({1, 16, 60, 200}));
  c.stride = c.width + random.pick({0, 0, 1, 5, 64});
  c.guard = random.pick({Guard::kBehind, Guard::kBefore});
  return c;
}

std::string BandCut::text() const {
  std::ostringstream out;
  out << "; " << rows << " rows from row " << firstRow << ", band kind " << static_cast<int>(kind) << " ";
  return out.str();
}

naive::RowOf clampedRows(const Plane& plane) {
  return [&plane](long long row) { return plane.row(static_cast<int>(std::clamp(row, 0LL, plane.height() - 1LL))); };
}

BandCut cutBand(BandKind kind, const Plane& plane, BandReach reach, Guard guard, Random& random) {
  const Rows band = randomRows(kind, plane.height(), reach, random);
  const bool hasAbove = kind == BandKind::kMiddle || kind == BandKind::kBottom;
  const bool hasBelow = kind == BandKind::kMiddle || kind == BandKind::kTop;
  const int above = hasAbove && band.count > 0 ? reach.above : 0;
  const int below = hasBelow && band.count > 0 ? reach.below : 0;
  const auto copyRows = [&](int first, int count) {
    Plane copy(plane.width(), count, plane.stride(), guard);
    for (int y = 0; y < count; ++y)
      std::copy_n(plane.row(first + y), plane.width(), copy.row(y));
    copy.makeReadOnly();
    return copy;
  };
  return {kind, band.first, band.count, above, copyRows(band.first - above, above + band.count + below)};
}

testing::AssertionResult StatisticsPlanes::hold(const naive::Statistics& expected, int firstRow) const {
  const auto check = [firstRow](const Plane& actual, const std::vector<std::uint32_t>& values, const char* what) {
    std::vector<std::uint8_t> bytes = actual.bytes();
    const auto rowSize = static_cast<std::size_t>(actual.width());
    const auto* from = reinterpret_cast<const std::uint8_t*>(values.data()) + firstRow * actual.width();
    for (int y = 0; y < actual.height() && rowSize > 0; ++y)
      std::memcpy(bytes.data() + static_cast<std::ptrdiff_t>(y) * actual.stride(), from + y * actual.width(), rowSize);
    return sameBytes(actual, bytes) << what;
  };
  auto result = check(sums_, expected.sums, "(sums) ");
  return result ? check(squares_, expected.squares, "(squares) ") : result;
}

}  // namespace testing_support
