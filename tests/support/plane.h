/// A rectangle of bytes with a stride, in guarded memory, that is compared whole: what lies between the rows counts
/// too.
#ifndef VLVK_TESTS_SUPPORT_PLANE_H
#define VLVK_TESTS_SUPPORT_PLANE_H

#include <gtest/gtest.h>

#include <algorithm>
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
  Plane(int width, int height, int stride, Guard guard = Guard::kBehind)
      : width_(width),
        height_(height),
        stride_(stride),
        buffer_(width <= 0 || height <= 0 ? 0 : static_cast<std::size_t>(std::ptrdiff_t{height - 1} * stride + width),
                guard, kCanary) {}
  Plane(int width, int height, int stride, Guard guard, Content content, Random& random)
      : Plane(width, height, stride, guard) {
    fill(content, data(), width, height, stride, random);
  }

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

/// Compares memory; tells the first byte that differs.
inline testing::AssertionResult sameBytes(const std::uint8_t* actual, const std::uint8_t* expected, std::size_t size,
                                          int stride) {
  std::size_t at = 0;
  while (at < size && actual[at] == expected[at])
    ++at;
  if (at == size) return testing::AssertionSuccess();
  const auto pitch = static_cast<std::size_t>(std::max(stride, 1));
  return testing::AssertionFailure() << "row " << at / pitch << ", byte " << at % pitch << ": got " << +actual[at]
                                     << ", expected " << +expected[at] << " (stride " << stride << ") ";
}

/// Compares rows and padding.
inline testing::AssertionResult sameBytes(const Plane& actual, const std::vector<std::uint8_t>& expected) {
  auto result = sameBytes(actual.data(), expected.data(), expected.size(), actual.stride());
  if (!result) result << "in a plane of " << actual.width() << " bytes x " << actual.height() << " rows ";
  return result;
}

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
