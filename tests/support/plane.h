/// A rectangle of bytes with a stride, in guarded memory, that is compared whole: what lies between the rows counts
/// too.
#ifndef VLVK_TESTS_SUPPORT_PLANE_H
#define VLVK_TESTS_SUPPORT_PLANE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/support/guarded_buffer.h"
#include "tests/support/random_content.h"

namespace testing_support {

/// The bytes from the first of row 0 to the last of the last row; the padding after that row does not exist. Rows and
/// padding start as kCanary.
class Plane {
 public:
  static constexpr std::uint8_t kCanary = 0xC5;

  /// @param width  bytes of a row, not pixels
  Plane(int width, int height, int stride, Guard guard = Guard::kBehind);
  Plane(int width, int height, int stride, Guard guard, Content content, Random& random);

  void makeReadOnly() { buffer_.makeReadOnly(); }

  std::uint8_t* data() const { return buffer_.data(); }
  std::uint8_t* row(int y) const { return data() + static_cast<std::ptrdiff_t>(y) * stride_; }
  int width() const { return width_; }
  int height() const { return height_; }
  int stride() const { return stride_; }

  /// A copy, padding included, to write the expected result into.
  std::vector<std::uint8_t> bytes() const { return {data(), data() + buffer_.size()}; }

 private:
  int width_, height_, stride_;
  GuardedBuffer buffer_;
};

/// Compares rows and padding; tells the geometry and the first byte that differs.
testing::AssertionResult sameBytes(const Plane& actual, const std::vector<std::uint8_t>& expected);

/// The same for memory that is no Plane.
testing::AssertionResult sameBytes(const std::uint8_t* actual, const std::uint8_t* expected, std::size_t size,
                                   int stride);

/// Compares every row with value(x, y); what lies between the rows must be untouched.
template <class Value>
testing::AssertionResult holds(const Plane& actual, Value value) {
  std::vector<std::uint8_t> expected(actual.bytes().size(), Plane::kCanary);
  for (int y = 0; y < actual.height(); ++y) {
    for (int x = 0; x < actual.width(); ++x)
      expected[static_cast<std::size_t>(std::ptrdiff_t{y} * actual.stride() + x)] = value(x, y);
  }
  return sameBytes(actual, expected);
}

}  // namespace testing_support

#endif
