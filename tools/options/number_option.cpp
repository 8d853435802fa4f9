/// Reading of numbers for the command line.
#include "tools/options/number_option.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <sstream>
#include <string>
#include <system_error>

namespace vlvk::tool {
namespace {

template <typename Number>
std::string spelled(Number value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

template <typename Number>
std::string rangeOf(Number low, Number high) {
  return spelled(low) + ".." + spelled(high);
}

}  // namespace

template <typename Number>
std::string readNumber(std::string_view text, Number low, Number high, Number* value) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  // Written so that NaN is out of range.
  if (error != std::errc() || last != end || !(number >= low && number <= high)) {
    return "'" + std::string(text) + "' is not a number in " + rangeOf(low, high);
  }
  *value = number;
  return "";
}

template <typename Number>
void addNumberOption(CLI::App* command, const char* name, Number* value, Number low, Number high, const char* help) {
  // CLI11 by itself takes 010 as octal and 0x10 as hexadecimal; it is handed the number in its plain form.
  const auto checked = [low, high](std::string& text) {
    Number number{};
    std::string reason = readNumber(text, low, high, &number);
    if (reason.empty()) text = spelled(number);
    return reason;
  };
  command->add_option(name, *value, help)
      ->transform(CLI::Validator(checked, ""))
      ->type_name(rangeOf(low, high))
      ->capture_default_str();
}

template std::string readNumber(std::string_view, int, int, int*);
template void addNumberOption(CLI::App*, const char*, int*, int, int, const char*);
template void addNumberOption(CLI::App*, const char*, double*, double, double, const char*);

}  // namespace vlvk::tool
