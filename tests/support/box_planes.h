/// Planes, bands cut from them, and the arrays of sums that kernels write or read, all in guarded memory.
#ifndef VLVK_TESTS_SUPPORT_BOX_PLANES_H
#define VLVK_TESTS_SUPPORT_BOX_PLANES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <ostream>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/plane.h"

namespace testing_support {

/// Elements between unreadable pages. With a shift they are aligned for their type and no better.
template <class T>
class Elements {
 public:
  Elements(const std::vector<T>& values, Guard guard, int shift = 0)
      : count_(values.size()),
        shift_(guard == Guard::kBefore ? shift : 0),
        buffer_((count_ + static_cast<std::size_t>(shift)) * sizeof(T), guard, Plane::kCanary) {
    std::copy(values.begin(), values.end(), data());
  }

  T* data() const { return buffer_.template as<T>() + shift_; }
  std::vector<T> values() const { return {data(), data() + count_}; }

 private:
  std::size_t count_;
  int shift_;
  GuardedBuffer buffer_;
};

/// `count` values that use every bit of T.
template <class T>
std::vector<T> randomBits(std::size_t count, Random& random) {
  std::vector<T> values(count);
  for (T& value : values)
    value = static_cast<T>(std::uint64_t{random.bits()} << 32 | random.bits());
  return values;
}

/// 1667: the variance constant is exactly 0. -228: flat areas have a divisor near 0. From 5967 on, and far below 0, the
/// constants are negative, very large or wrapped.
inline constexpr std::initializer_list<int> kLevels = {
    0,    1,  50,   100,   333,  600,    999,     1000,    1652,    1654,    1667,
    5000, -1, -228, -5000, -227, 123456, 7158279, INT_MAX, INT_MIN, 1 << 30, -(1 << 30)};

/// A plane or band and the settings that it is tested with.
struct BoxCase {
  Content content;
  int width, height, stride, radius, level;
  Guard guard;
  int shift = 0;  ///< of arrays of sums, elements

  // For kernels that work on whole groups of columns and round the radius up.
  int columns() const { return width & ~7; }
  int R() const { return (radius + 7) / 8 * 8; }
  int h() const { return R() - 1; }
};
inline std::ostream& operator<<(std::ostream& out, const BoxCase& c) {
  return out << "content " << static_cast<int>(c.content) << ", " << c.width << " x " << c.height << ", stride "
             << c.stride << ", radius " << c.radius << ", level " << c.level << ' ';
}

/// Anything but height and radius, which are 0; few are as wide as `widest`.
inline BoxCase randomBoxCase(int leastWidth, int widest, Random& random) {
  BoxCase c{};
  c.content = random.pick(kLumaContents);
  c.width = leastWidth + random.between(0, random.between(0, 7) == 0 ? widest : random.pick({1, 16, 60}));
  c.stride = c.width + random.pick({0, 0, 1, 5, 64});
  c.level = random.pick(kLevels);
  c.guard = random.pick({Guard::kBehind, Guard::kBefore});
  c.shift = random.pick({0, 0, 1, 3});
  return c;
}

/// The rows of a plane as a box sees them: row 0 is row `origin` of the plane.
inline naive::Rows rowsOf(const Plane& plane, int origin = 0) {
  return {[&plane, origin](long long i) { return plane.row(origin + static_cast<int>(i)); }, -origin,
          plane.height() - 1 - origin};
}

/// Some rows of a plane, and a copy of what their kernel may read: nothing above and below it exists.
struct Band {
  int firstRow, rows;
  int rowsAbove;
  Plane readable;

  const std::uint8_t* start() const { return readable.row(rowsAbove); }
};

/// A random band that reads `above` and `below` rows more; 0 where it ends with the plane. Without rows where the plane
/// has no room for `leastRows`.
inline Band cutBand(const Plane& plane, int above, int below, int leastRows, Guard guard, Random& random) {
  const int last = plane.height() - below;
  const bool room = last - leastRows >= above;
  const int first = room && above > 0 ? random.between(above, last - leastRows) : above;
  const int rows = !room ? 0 : below > 0 ? random.between(leastRows, last - first) : last - first;
  Band band{first, rows, above, {plane.width(), room ? above + rows + below : 0, plane.stride(), guard}};
  for (int y = 0; y < band.readable.height(); ++y)
    std::copy_n(plane.row(first - above + y), plane.width(), band.readable.row(y));
  band.readable.makeReadOnly();
  return band;
}

/// The two arrays that a statistics kernel writes, ending with the last element that it may write.
class StatisticsPlanes {
 public:
  /// @param pitch  elements between rows
  StatisticsPlanes(int columns, int rows, int pitch, Guard guard)
      : sums_(4 * columns, rows, 4 * pitch, guard), squares_(4 * columns, rows, 4 * pitch, guard) {}

  std::uint32_t* sums() const { return reinterpret_cast<std::uint32_t*>(sums_.data()); }
  std::uint32_t* squares() const { return reinterpret_cast<std::uint32_t*>(squares_.data()); }

  /// Whether rows `firstRow` and following of `expected` are here, and nothing between the rows was written.
  testing::AssertionResult hold(const naive::Statistics& expected, int firstRow = 0) const {
    const auto check = [firstRow](const Plane& actual, const std::vector<std::uint32_t>& values) {
      const auto* bytes = reinterpret_cast<const std::uint8_t*>(values.data());
      return holds(actual, [&](int x, int y) { return bytes[(firstRow + y) * actual.width() + x]; });
    };
    auto result = check(sums_, expected.sums) << "(sums) ";
    if (result) result = check(squares_, expected.squares) << "(squares) ";
    return result << "from row " << firstRow << ' ';
  }

 private:
  Plane sums_, squares_;
};

}  // namespace testing_support

#endif
