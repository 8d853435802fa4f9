/// See values.h.
#include "tools/options/values.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <system_error>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

template <typename Number>
std::string streamed(Number value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// Reads a number and the character after it off the start of `text`; '\0' stands for the end.
bool takeNumber(std::string_view* text, int* number, char after) {
  const char* end = text->data() + text->size();
  const auto [last, error] = std::from_chars(text->data(), end, *number);
  if (error != std::errc() || *number < 0) return false;
  if (after == '\0') return last == end;
  if (last == end || *last != after) return false;
  text->remove_prefix(static_cast<std::size_t>(last + 1 - text->data()));
  return true;
}

}  // namespace

std::string spelled(int number) {
  return streamed(number);
}

std::string spelled(double number) {
  return streamed(number);
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text, Number low, Number high) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  // Written so that NaN is out of range.
  if (error == std::errc() && last == end && number >= low && number <= high) return number;
  return std::nullopt;
}

template <typename Number>
Number readNumber(std::string_view text, Number low, Number high) {
  if (const std::optional<Number> number = numberIn(text, low, high)) return *number;
  throw Error("'" + std::string(text) + "' is not a number in " + spelledRange(low, high));
}

template std::optional<int> numberIn(std::string_view, int, int);
template int readNumber(std::string_view, int, int);
template double readNumber(std::string_view, double, double);

FrameSize readSize(const std::string& text) {
  FrameSize size{};
  std::string_view rest = text;
  if (takeNumber(&rest, &size.width, 'x') && takeNumber(&rest, &size.height, '\0') && size.width > 0 &&
      size.height > 0 && isSizeTaken(static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height))) {
    return size;
  }
  throw Error("'" + text + "' is no size such as 1280x720, with at most " + std::to_string(kMaxSide) +
              " pixels on a side and 268 million in all");
}

Region readRegion(const std::string& text) {
  Region region{};
  std::string_view rest = text;
  if (takeNumber(&rest, &region.width, 'x') && takeNumber(&rest, &region.height, '+') &&
      takeNumber(&rest, &region.x, '+') && takeNumber(&rest, &region.y, '\0') && region.width > 0 &&
      region.height > 0) {
    return region;
  }
  throw Error("'" + text + "' is no part of a picture such as 200x150+40+0");
}

TableLayout readLayout(const std::string& text) {
  if (text == "lookup") return TableLayout::kLookup;
  if (text == "hald") return TableLayout::kHald;
  throw Error("'" + text + "' is not lookup or hald");
}

ChromaLayout readFormat(const std::string& text) {
  if (text == "i420") return ChromaLayout::kPlanar;
  if (text == "nv12") return ChromaLayout::kUThenV;
  if (text == "nv21") return ChromaLayout::kVThenU;
  throw Error(text + " not in {i420,nv12,nv21}");
}

std::string readTarget(const std::string& text) {
  const std::vector<std::string> names = targetNames();
  if (std::find(names.begin(), names.end(), text) != names.end()) return text;
  throw Error("there is no '" + text + "' on this machine, only " + joined(names, ", "));
}

std::string joined(const std::vector<std::string>& names, const char* separator) {
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : separator) + name;
  return text;
}

}  // namespace vlvk::tool
