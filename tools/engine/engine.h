/// The engine as the program uses it: settings, and frames beautified by them.
#ifndef VLVK_TOOLS_ENGINE_ENGINE_H
#define VLVK_TOOLS_ENGINE_ENGINE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <vlvk/makeup.h>

namespace vlvk::tool {

/// Settings of a picture or video, with the defaults of the command line.
struct Look {
  int whiten = 50;                  ///< percent
  int soften = 1000;                ///< 1000: full
  int radius = 20;                  ///< pixels; 0: no smoothing
  int threads = 4;                  ///< does not change the result
  std::vector<std::uint8_t> table;  ///< colour picture of 1,048,576 bytes; empty: none
};

/// An engine set to a look. Serves frames of any format and size.
class Engine {
 public:
  explicit Engine(const Look& look);

  /// Beautifies a frame, in place where both are the same. Throws Error with words where the engine refuses it.
  ///
  /// @param number  in a video, for messages; 0: the only frame
  void beautify(const VlvkFrame& source, const VlvkFrame& target, std::uint64_t number = 0);

 private:
  std::unique_ptr<VlvkMakeup, void (*)(VlvkMakeup*)> makeup_;
};

/// An NV21 frame of BT.601 in limited range whose rows follow each other without padding, chroma after luma.
VlvkFrame nv21Frame(std::uint8_t* pixels, int width, int height);

/// Names of the sets of vector instructions that the engine can use on this processor, fastest first.
std::vector<std::string> targetNames();

/// Puts one of them in use for all engines.
void useTarget(const std::string& name);

}  // namespace vlvk::tool

#endif
