/// See sheet_options.h.
#include "tools/commands/sheet_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "tools/options/number_option.h"

namespace vlvk::tool {
namespace {

// "whiten" for "--whiten".
std::string_view axisName(const LookSetting& setting) {
  return std::string_view(setting.option).substr(2);
}

const LookSetting& settingOf(const std::string& option, std::string_view name) {
  std::string known;
  for (const LookSetting& setting : kLookSettings) {
    if (axisName(setting) == name) return setting;
    known += (known.empty() ? "" : ", ") + std::string(axisName(setting));
  }
  throw CLI::ValidationError(option, "there is no '" + std::string(name) + "', only " + known);
}

// Reads a number and the character behind it off the start of `text`; '\0' stands for the end.
bool takeNumber(std::string_view* text, int* number, char behind) {
  const char* end = text->data() + text->size();
  const auto [last, error] = std::from_chars(text->data(), end, *number);
  if (error != std::errc() || *number < 0) return false;
  if (behind == '\0') return last == end;
  if (last == end || *last != behind) return false;
  text->remove_prefix(static_cast<std::size_t>(last + 1 - text->data()));
  return true;
}

}  // namespace

SheetAxis readAxis(const std::string& option, const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    throw CLI::ValidationError(option, "'" + text + "' is no setting with values such as whiten=0,50,100");
  }
  SheetAxis axis{&settingOf(option, std::string_view(text).substr(0, equals)), {}};
  for (std::size_t begin = equals + 1, end = 0; begin <= text.size(); begin = end + 1) {
    end = std::min(text.find(',', begin), text.size());
    int value = 0;
    const std::string_view word = std::string_view(text).substr(begin, end - begin);
    const std::string reason = readNumber(word, axis.setting->low, axis.setting->high, &value);
    if (!reason.empty()) throw CLI::ValidationError(option, reason);
    if (std::find(axis.values.begin(), axis.values.end(), value) != axis.values.end()) {
      throw CLI::ValidationError(option, "'" + text + "' has " + std::to_string(value) + " twice");
    }
    axis.values.push_back(value);
  }
  return axis;
}

Region readRegion(const std::string& option, const std::string& text) {
  Region region{};
  std::string_view rest = text;
  if (takeNumber(&rest, &region.width, 'x') && takeNumber(&rest, &region.height, '+') &&
      takeNumber(&rest, &region.x, '+') && takeNumber(&rest, &region.y, '\0') && region.width > 0 &&
      region.height > 0) {
    return region;
  }
  throw CLI::ValidationError(option, "'" + text + "' is no part of a picture such as 200x150+40+0");
}

}  // namespace vlvk::tool
