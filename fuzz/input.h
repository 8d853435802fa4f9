/// What every fuzzer needs: the input as numbers, and an end when it has found something.
#ifndef VLVK_FUZZ_INPUT_H
#define VLVK_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the process with a message, which the fuzzing engine takes as a finding.
[[noreturn]] inline void fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

inline void check(bool holds, const char* what) {
  if (!holds) fail(what);
}

inline void checkPlainLine(std::string_view text) {
  for (const char c : text)
    check(c >= 0x20 && c <= 0x7E, "an error is not one plain line");
}

/// The bytes of one input as numbers: each draw uses up some of them, and is 0 where none are left.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool empty() const { return rest_.empty(); }
  std::span<const std::uint8_t> rest() const { return rest_; }

  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }

  std::uint32_t word() {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
      value = value << 8 | byte();
    return value;
  }

  bool flag() { return (byte() & 1) != 0; }

  /// @param high  less than 65536 above `low`
  int between(int low, int high) {
    const int choices = high - low + 1;
    const int drawn = choices <= 256 ? byte() : byte() << 8 | byte();
    return low + drawn % choices;
  }

  template <class T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[byte() % choices.size()];
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace fuzz

#endif
