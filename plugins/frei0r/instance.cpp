/// See instance.h.
#include "plugins/frei0r/instance.h"

#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "plugins/table_file.h"

namespace vlvk::frei0r {
namespace {

constexpr unsigned kPixelBytes = 4;

/// Gives a table to an engine; on failure the one of before stays.
///
/// @param path  an `adjust.vlk`; "": no table
/// @return null, or why there is none, in words that last until the next call on this thread
const char* setTable(VlvkMakeup* makeup, const char* path) {
  plugins::TableBytes table;
  const int error = plugins::readTable(path, table);
  if (error == ENOMEM) return vlvkResultText(VLVK_NO_MEMORY);
  if (error != 0) return std::strerror(error);  // C libraries of today keep its text for each thread
  const VlvkResult result = vlvkMakeupSetTable(makeup, table.data.get(), table.size);
  return result == VLVK_OK ? nullptr : vlvkResultText(result);
}

void say(const char* what, const char* reason) {
  std::fprintf(stderr, "vlvkmakeup: %s: %s\n", what, reason);
}

VlvkFrame frameAt(VlvkFrame frame, const std::uint32_t* pixels) {
  // A source's plane is only read, and has no type of its own.
  frame.plane[0] = const_cast<unsigned char*>(  // NOLINT(cppcoreguidelines-pro-type-const-cast)
      reinterpret_cast<const unsigned char*>(pixels));
  return frame;
}

}  // namespace

void Instance::FreeText::operator()(char* text) const {
  std::free(text);
}

Instance* Instance::create(unsigned width, unsigned height) {
  VlvkFrame frame = {};
  frame.size = sizeof frame;
  frame.format = VLVK_RGBA;
  frame.width = static_cast<std::int32_t>(width);
  frame.height = static_cast<std::int32_t>(height);
  frame.stride[0] = static_cast<std::int32_t>(width * kPixelBytes);
  char reason[200];
  if (vlvkFrameCheck(&frame, reason, sizeof reason) != VLVK_NULL_POINTER) {  // the planes of all frames come later
    say("no such frames", reason);
    return nullptr;
  }

  std::unique_ptr<Instance> instance(new (std::nothrow) Instance(frame));
  VlvkMakeup* makeup = nullptr;
  const VlvkSettings settings = settingsOf(kDefaultNumbers);
  const VlvkResult result = instance != nullptr ? vlvkMakeupCreate(&makeup, &settings) : VLVK_NO_MEMORY;
  if (result != VLVK_OK) {
    say("no engine", vlvkResultText(result));
    return nullptr;
  }
  instance->makeup_.reset(makeup);
  return instance.release();
}

void Instance::setNumber(Parameter parameter, double value) {
  if (std::isnan(value) || value == numbers_[parameter]) return;
  numbers_[parameter] = value;
  hasNewNumbers_ = true;
}

char* Instance::tablePath() {
  return path_ != nullptr ? path_.get() : noPath_;
}

void Instance::setTablePath(const char* path) {
  if (path == nullptr) path = "";
  if (std::strcmp(path, tablePath()) == 0) return;
  std::unique_ptr<char, FreeText> copy(strdup(path));
  const char* reason = copy != nullptr ? setTable(makeup_.get(), path) : vlvkResultText(VLVK_NO_MEMORY);
  if (reason != nullptr) say(path, reason);
  if (copy != nullptr) path_ = std::move(copy);
}

void Instance::process(const std::uint32_t* source, std::uint32_t* target) {
  if (hasNewNumbers_) {
    const VlvkSettings settings = settingsOf(numbers_);
    hasNewNumbers_ = vlvkMakeupConfigure(makeup_.get(), &settings) != VLVK_OK;
  }
  const VlvkFrame from = frameAt(frame_, source);
  const VlvkFrame to = frameAt(frame_, target);
  const VlvkResult result = vlvkMakeupProcess(makeup_.get(), &from, &to, nullptr);
  if (result == VLVK_OK) return;
  std::memmove(target, source, static_cast<std::size_t>(frame_.stride[0]) * static_cast<std::size_t>(frame_.height));
  if (!hasFailed_) say("frames stay as they are", vlvkResultText(result));
  hasFailed_ = true;
}

}  // namespace vlvk::frei0r
