/// Buffer sizes that notice when they no longer fit `size_t`.
#ifndef VLVK_BASE_CHECKED_SIZE_H
#define VLVK_BASE_CHECKED_SIZE_H

#include <algorithm>
#include <cstddef>

namespace vlvk {

/// A size in bytes, or "does not fit". Once it does not fit, nothing computed from it does.
class CheckedSize {
 public:
  /// A negative value does not fit, nor does one that is too wide.
  template <class Integer>
  constexpr CheckedSize(Integer value)  // NOLINT(google-explicit-constructor): reads as plain arithmetic
      : value_(static_cast<std::size_t>(value)), fits_(value >= 0 && static_cast<Integer>(value_) == value) {}

  constexpr bool fits() const { return fits_; }
  constexpr std::size_t bytes() const { return value_; }

  friend constexpr CheckedSize operator*(CheckedSize a, CheckedSize b) {
    CheckedSize product(0U);
    product.fits_ = !__builtin_mul_overflow(a.value_, b.value_, &product.value_) && a.fits_ && b.fits_;
    return product;
  }

  friend constexpr CheckedSize operator+(CheckedSize a, CheckedSize b) {
    CheckedSize sum(0U);
    sum.fits_ = !__builtin_add_overflow(a.value_, b.value_, &sum.value_) && a.fits_ && b.fits_;
    return sum;
  }

  friend constexpr CheckedSize larger(CheckedSize a, CheckedSize b) {
    CheckedSize result(std::max(a.value_, b.value_));
    result.fits_ = a.fits_ && b.fits_;
    return result;
  }

 private:
  std::size_t value_;
  bool fits_;
};

}  // namespace vlvk

#endif
