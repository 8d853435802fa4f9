/// See look_options.h.
#include "tools/options/look_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/number_option.h"
#include "tools/table/table_formats.h"

namespace vlvk::tool {

void LookOptions::addTo(CLI::App* command) {
  for (const LookSetting& setting : kLookSettings) {
    addNumberOption(command, setting.option, &(look_.*setting.value), setting.low, setting.high, setting.help);
  }
  tableOption_ =
      command->add_option("--table", table_, "Colour table to apply: .vlk, .cube or HALD .png")->type_name("FILE");
  addNumberOption(command, "--threads", &look_.threads, 1, 64, "Threads to use; the result is the same");
}

Look LookOptions::look() const {
  Look look = look_;
  if (tableOption_->count() > 0) look.table = readAnyTable(table_);
  return look;
}

}  // namespace vlvk::tool
