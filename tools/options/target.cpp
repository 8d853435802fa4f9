/// The option `--target`.
#include "tools/options/target.h"

#include <CLI/CLI.hpp>
#include <cstddef>

#include "rows/row_loops.h"

namespace vlvk::tool {

std::vector<std::string> targetNames() {
  int count = 0;
  const RowLoops* const* sets = availableRowLoops(count);
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    names.emplace_back(sets[i]->name);
  return names;
}

void addTargetOption(CLI::App* command) {
  const auto force = [](const std::string& name) {
    if (forceRowLoops(name.c_str())) return;
    throw CLI::ValidationError(
        "--target", "there is no '" + name + "' on this machine, only " + CLI::detail::join(targetNames(), ", "));
  };
  command
      ->add_option_function<std::string>("--target", force,
                                         "Vector instructions to use instead of the fastest; the result is the same")
      ->type_name(CLI::detail::join(targetNames(), "|"));
}

}  // namespace vlvk::tool
