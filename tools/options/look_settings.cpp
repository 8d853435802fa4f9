/// See look_settings.h.
#include "tools/options/look_settings.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "tools/io/messages.h"
#include "tools/options/values.h"

namespace vlvk::tool {
namespace {

// "whiten" for "--whiten".
std::string_view axisName(const LookSetting& setting) {
  return std::string_view(setting.option).substr(2);
}

const LookSetting& settingOf(std::string_view name) {
  for (const LookSetting& setting : kLookSettings) {
    if (axisName(setting) == name) return setting;
  }
  throw Error("there is no '" + std::string(name) + "', only " + joined(axisNames(), ", "));
}

// All words, and the range of the numbers with `before` before it.
std::vector<std::string> choicesOf(const LookSetting& setting, const std::string& before = "") {
  std::vector<std::string> choices;
  for (const ValueWord& known : setting.words)
    choices.emplace_back(known.word);
  if (setting.low <= setting.high) choices.push_back(before + spelledRange(setting.low, setting.high));
  return choices;
}

}  // namespace

std::string valuesOf(const LookSetting& setting) {
  return joined(choicesOf(setting), "|");
}

std::string spelled(const LookSetting& setting, int value) {
  for (const ValueWord& known : setting.words) {
    if (known.value == value) return known.word;
  }
  return spelled(value);
}

int readSetting(const LookSetting& setting, std::string_view text) {
  for (const ValueWord& known : setting.words) {
    if (known.word == text) return known.value;
  }
  if (const std::optional<int> number = numberIn(text, setting.low, setting.high)) return *number;
  throw Error("'" + std::string(text) + "' is not " + joined(choicesOf(setting, "a number in "), " or "));
}

std::vector<std::string> axisNames() {
  std::vector<std::string> names;
  for (const LookSetting& setting : kLookSettings)
    names.emplace_back(axisName(setting));
  return names;
}

SheetAxis readAxis(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) throw Error("'" + text + "' is no setting with values such as whiten=0,50,100");
  SheetAxis axis{&settingOf(std::string_view(text).substr(0, equals)), {}};
  for (std::size_t begin = equals + 1, end = 0; begin <= text.size(); begin = end + 1) {
    end = std::min(text.find(',', begin), text.size());
    const int value = readSetting(*axis.setting, std::string_view(text).substr(begin, end - begin));
    if (std::find(axis.values.begin(), axis.values.end(), value) != axis.values.end()) {
      throw Error("'" + text + "' has " + spelled(*axis.setting, value) + " twice");
    }
    axis.values.push_back(value);
  }
  return axis;
}

}  // namespace vlvk::tool
