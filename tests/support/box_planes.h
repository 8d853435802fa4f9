/// Bands cut from a plane, and the arrays of sums that the statistics kernels write or read, all in guarded memory.
#ifndef VLVK_TESTS_SUPPORT_BOX_PLANES_H
#define VLVK_TESTS_SUPPORT_BOX_PLANES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plane.h"
#include "tests/support/random_content.h"

namespace testing_support {

/// Elements between unreadable pages, aligned for their type and, at the page behind, often no better.
template <class T>
class Elements {
 public:
  Elements(const std::vector<T>& values, Guard guard) : buffer_(values.size() * sizeof(T), guard, Plane::kCanary) {
    std::copy(values.begin(), values.end(), data());
  }

  T* data() const { return buffer_.template as<T>(); }
  std::vector<T> values() const { return {data(), data() + buffer_.size() / sizeof(T)}; }

 private:
  GuardedBuffer buffer_;
};

/// `count` values that use every bit of T.
template <class T>
std::vector<T> randomBits(std::size_t count, Random& random) {
  std::vector<T> values;
  while (values.size() < count)
    values.push_back(static_cast<T>(std::uint64_t{random.bits()} << 32 | random.bits()));
  return values;
}

/// A plane and the settings that it is tested with.
struct BoxCase {
  Content content;
  int width, height, stride, radius, level;
  Guard guard;

  std::string text() const;
};

/// Any content, width, stride and guard; the rest is 0.
BoxCase randomBoxCase(int leastWidth, Random& random);

/// The rows of a plane as a box sees them: those above and below are its edge rows.
naive::RowOf clampedRows(const Plane& plane);

enum class BandKind { kWhole, kTop, kMiddle, kBottom };

/// How many rows above and below a band its kernel reads, and how many rows a bottom band needs.
struct BandReach {
  int above, below, leastBottomRows;
};

/// Some rows of a plane, and a copy of what their kernel may read: nothing above and below it exists.
struct BandCut {
  BandKind kind;
  int firstRow, rows;
  int rowsAbove;
  Plane readable;

  const std::uint8_t* start() const { return readable.row(rowsAbove); }
  std::string text() const;
};

/// A random band; one without rows where the plane has no room for one of this kind.
BandCut cutBand(BandKind kind, const Plane& plane, BandReach reach, Guard guard, Random& random);

/// The two arrays that a statistics kernel writes, ending with the last element that it may write.
class StatisticsPlanes {
 public:
  /// @param pitch  elements between rows
  StatisticsPlanes(int columns, int rows, int pitch, Guard guard)
      : sums_(4 * columns, rows, 4 * pitch, guard), squares_(4 * columns, rows, 4 * pitch, guard) {}

  std::uint32_t* sums() const { return reinterpret_cast<std::uint32_t*>(sums_.data()); }
  std::uint32_t* squares() const { return reinterpret_cast<std::uint32_t*>(squares_.data()); }

  /// Whether rows `firstRow` and following of `expected` are here, and nothing between the rows was written.
  testing::AssertionResult hold(const naive::Statistics& expected, int firstRow = 0) const;

 private:
  Plane sums_, squares_;
};

}  // namespace testing_support

#endif
