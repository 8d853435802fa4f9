/// What the program asks of the engine: settings, and the filter that has them.
#ifndef VLVK_TOOLS_OPTIONS_LOOK_H
#define VLVK_TOOLS_OPTIONS_LOOK_H

#include <cstdint>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>

namespace vlvk::tool {

/// Settings of a picture or video. The defaults are the filter's.
struct Look {
  int whiten = 50;                  ///< percent
  int soften = 1000;                ///< 1000: full
  int radius = 20;                  ///< pixels; 0: no smoothing
  int threads = 4;                  ///< does not change the result
  std::vector<std::uint8_t> table;  ///< colour picture of 1,048,576 bytes; empty: none
};

/// A filter set to a look. Serves frames of any size and order.
class LookFilter {
 public:
  explicit LookFilter(const Look& look);

  CFastEdgePreserved* operator->() { return &filter_; }

 private:
  // Hands the filter the colour picture. Without one it leaves the filter's neutral picture alone, and still reports a
  // resource: a filter whose resource is missing does not whiten its first frame.
  class TableLoader final : public IBeautyResourceLoader {
   public:
    explicit TableLoader(const std::vector<std::uint8_t>& table) : table_(table) {}
    int getResFromName(const char* name, unsigned char* dst) override;

   private:
    std::vector<std::uint8_t> table_;
  };

  TableLoader loader_;
  CFastEdgePreserved filter_;
};

}  // namespace vlvk::tool

#endif
