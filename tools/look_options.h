/// The options by which a command is told a look.
#ifndef VLVK_TOOLS_LOOK_OPTIONS_H
#define VLVK_TOOLS_LOOK_OPTIONS_H

#include <CLI/App.hpp>
#include <string>

#include "tools/look.h"

namespace vlvk::tool {

/// The values of `--whiten`, `--soften`, `--radius`, `--threads` and `--table`.
class LookOptions {
 public:
  /// Adds the options. This object must outlive the command.
  void addTo(CLI::App* command);

  /// The look that was asked for, its colour table read. Throws Error, which names the table.
  Look look() const;

 private:
  Look look_;
  std::string table_;
  CLI::Option* tableOption_ = nullptr;
};

}  // namespace vlvk::tool

#endif
