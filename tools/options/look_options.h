/// The options by which a command is told a look.
#ifndef VLVK_TOOLS_OPTIONS_LOOK_OPTIONS_H
#define VLVK_TOOLS_OPTIONS_LOOK_OPTIONS_H

#include <CLI/App.hpp>
#include <string>

#include "tools/options/look.h"

namespace vlvk::tool {

/// A setting that is a number.
struct LookSetting {
  const char* option;
  const char* title;  ///< what a picture calls it
  int Look::*value;
  int low;
  int high;
  const char* help;
};

inline constexpr LookSetting kLookSettings[] = {
    {"--whiten", "whitening (percent)", &Look::whiten, 0, 100, "Whitening in percent"},
    {"--soften", "softening", &Look::soften, 0, 1000, "Strength of skin smoothing"},
    {"--radius", "radius (pixels)", &Look::radius, 0, 128,
     "Reach of the smoothing in pixels, rounded up to a multiple of 8; 0: none"},
};

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
