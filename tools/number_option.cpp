/// Reading of numbers for the command line.
#include "tools/number_option.h"

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

}  // namespace

template <typename Number>
void addNumberOption(CLI::App* command, const char* name, Number* value, Number low, Number high, const char* help) {
  const std::string range = spelled(low) + ".." + spelled(high);
  // CLI11 by itself takes 010 as octal and 0x10 as hexadecimal; it is handed the number in its plain form.
  const auto checked = [=](std::string& text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number);
    // Written so that NaN is out of range.
    if (error != std::errc() || last != end || !(number >= low && number <= high)) {
      return "'" + text + "' is not a number in " + range;
    }
    text = spelled(number);
    return std::string();
  };
  command->add_option(name, *value, help)
      ->transform(CLI::Validator(checked, ""))
      ->type_name(range)
      ->capture_default_str();
}

template void addNumberOption(CLI::App*, const char*, int*, int, int, const char*);
template void addNumberOption(CLI::App*, const char*, double*, double, double, const char*);

}  // namespace vlvk::tool
