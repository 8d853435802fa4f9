/// The engine as the program uses it: settings, and frames beautified by them.
#ifndef VLVK_TOOLS_ENGINE_ENGINE_H
#define VLVK_TOOLS_ENGINE_ENGINE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <vlvk/makeup.h>
#include "tools/engine/mask.h"

namespace vlvk::tool {

/// The engine's, with four threads on every machine.
VlvkSettings defaultSettings();

/// What is done to a picture or video, with the defaults of the command line.
struct Look {
  VlvkSettings settings = defaultSettings();
  std::vector<std::uint8_t> table;  ///< colour picture of 1,048,576 bytes; empty: none
  Mask mask;                        ///< empty: none
};

/// An engine set to a look. Serves frames of any format and size.
class Engine {
 public:
  explicit Engine(Look look);

  /// Beautifies a frame, in place where both are the same. Throws Error with words where the engine refuses it.
  ///
  /// @param number  in a video, for messages; 0: the only frame
  void beautify(const VlvkFrame& source, const VlvkFrame& target, std::uint64_t number = 0);

 private:
  std::unique_ptr<VlvkMakeup, void (*)(VlvkMakeup*)> makeup_;
  Mask mask_;
};

/// An NV21 frame of BT.601 whose rows follow each other without padding, chroma after luma.
VlvkFrame nv21Frame(std::uint8_t* pixels, int width, int height, VlvkRange range = VLVK_LIMITED);

/// Names of the sets of vector instructions that the engine can use on this processor, fastest first.
std::vector<std::string> targetNames();

/// Puts one of them in use for all engines.
void useTarget(const std::string& name);

}  // namespace vlvk::tool

#endif
