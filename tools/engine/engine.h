/// The engine as the program uses it: settings, and frames beautified by them. No other room includes its headers.
#ifndef VLVK_TOOLS_ENGINE_ENGINE_H
#define VLVK_TOOLS_ENGINE_ENGINE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vlvk::tool {

/// Settings of a picture or video. The defaults are the engine's.
struct Look {
  int whiten = 50;                  ///< percent
  int soften = 1000;                ///< 1000: full
  int radius = 20;                  ///< pixels; 0: no smoothing
  int threads = 4;                  ///< does not change the result
  std::vector<std::uint8_t> table;  ///< colour picture of 1,048,576 bytes; empty: none
};

/// A 4:2:0 frame whose rows follow each other without padding.
struct Frame {
  int width;
  int height;
  std::uint8_t* luma;
  std::uint8_t* chroma;      ///< pairs, half as many rows, rounded up
  bool vThenU = true;        ///< in the pairs, as NV21 has them; otherwise as NV12
  std::uint64_t number = 0;  ///< in a video, for messages; 0: the only one
};

/// An engine set to a look. Serves frames of any size and order.
class Engine {
 public:
  explicit Engine(const Look& look);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine();

  /// Beautifies a frame, in place or into RGBA pixels; of an odd size, the last column and row stay unconverted. Throws
  /// Error when memory runs out.
  ///
  /// @param rgba  rows of `frame.width` pixels; null: in place
  void beautify(const Frame& frame, std::uint8_t* rgba = nullptr);

 private:
  struct Filter;
  std::unique_ptr<Filter> filter_;
};

/// Names of the sets of vector instructions that the engine can use on this processor, fastest first.
std::vector<std::string> targetNames();

/// Puts one of them in use for all engines.
void useTarget(const std::string& name);

}  // namespace vlvk::tool

#endif
