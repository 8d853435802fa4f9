/// See engine.h.
#include "tools/engine/engine.h"

#include <algorithm>
#include <cstddef>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "rows/row_loops.h"
#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

// Hands the filter the colour picture. Without one it leaves the filter's neutral picture alone, and still reports a
// resource: a filter whose resource is missing does not whiten its first frame.
class TableLoader final : public IBeautyResourceLoader {
 public:
  explicit TableLoader(const std::vector<std::uint8_t>& table) : table_(table) {}

  int getResFromName(const char* /*name*/, unsigned char* dst) override {
    std::copy(table_.begin(), table_.end(), dst);
    return 0;
  }

 private:
  std::vector<std::uint8_t> table_;
};

}  // namespace

struct Engine::Filter {
  explicit Filter(const Look& look) : loader(look.table), filter(look.threads, &loader) {
    filter.put_whitenIntensity(look.whiten);
    filter.put_softenSkinIntensity(look.soften);
    // Without a table, tone curves whiten at full precision; the table would round every colour to 6 bits.
    if (look.table.empty()) filter.put_colorAdjustIntensity(0);
    filter.radius = look.radius;
  }

  TableLoader loader;
  CFastEdgePreserved filter;
};

Engine::Engine(const Look& look) : filter_(std::make_unique<Filter>(look)) {}

Engine::~Engine() = default;

void Engine::beautify(const Frame& frame, std::uint8_t* rgba) {
  if (filter_->filter.processVideo(frame.luma, frame.width, frame.chroma, frame.width, frame.width, frame.height, rgba,
                                   frame.width * 4, frame.vThenU) == 0) {
    return;
  }
  throw Error(frame.number == 0 ? "not enough memory" : "not enough memory for frame " + std::to_string(frame.number));
}

std::vector<std::string> targetNames() {
  int count = 0;
  const RowLoops* const* sets = availableRowLoops(count);
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    names.emplace_back(sets[i]->name);
  return names;
}

void useTarget(const std::string& name) {
  forceRowLoops(name.c_str());
}

}  // namespace vlvk::tool
