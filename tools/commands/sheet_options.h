/// What a contact sheet shows, read from the command line.
#ifndef VLVK_TOOLS_COMMANDS_SHEET_OPTIONS_H
#define VLVK_TOOLS_COMMANDS_SHEET_OPTIONS_H

#include <string>
#include <vector>

#include "tools/commands/sheet_canvas.h"
#include "tools/options/look_options.h"

namespace vlvk::tool {

/// One direction of a sheet: a setting and the values that it takes in turn.
struct SheetAxis {
  const LookSetting* setting;
  std::vector<int> values;
};

/// Reads "whiten=0,25,50", the text of `option`. Throws CLI::ValidationError.
SheetAxis readAxis(const std::string& option, const std::string& text);

/// Reads "WxH+X+Y", the text of `option`. Throws CLI::ValidationError.
Region readRegion(const std::string& option, const std::string& text);

}  // namespace vlvk::tool

#endif
