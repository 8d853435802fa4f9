/// See engine.h.
#include "tools/engine/engine.h"

#include <cstddef>
#include <utility>

#include "rows/row_loops.h"
#include "tools/io/messages.h"
#include "tools/table/vlk_file.h"

namespace vlvk::tool {
namespace {

void require(VlvkResult result, std::uint64_t number = 0) {
  if (result == VLVK_OK) return;
  const std::string reason = vlvkResultText(result);
  throw Error(number == 0 ? reason : reason + " for frame " + std::to_string(number));
}

}  // namespace

VlvkSettings defaultSettings() {
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  settings.threads = 4;
  return settings;
}

Engine::Engine(Look look) : makeup_(nullptr, vlvkMakeupDestroy), mask_(std::move(look.mask)) {
  VlvkMakeup* made = nullptr;
  require(vlvkMakeupCreate(&made, &look.settings));
  makeup_.reset(made);
  if (look.table.empty()) return;
  const std::vector<std::uint8_t> file = formatVlk(look.table);
  require(vlvkMakeupSetTable(made, file.data(), file.size()));
}

void Engine::beautify(const VlvkFrame& source, const VlvkFrame& target, std::uint64_t number) {
  const VlvkMask mask = mask_.view();
  require(vlvkMakeupProcess(makeup_.get(), &source, &target, mask_.empty() ? nullptr : &mask), number);
}

VlvkFrame nv21Frame(std::uint8_t* pixels, int width, int height, VlvkRange range) {
  std::uint8_t* chroma = pixels + static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  return {sizeof(VlvkFrame), VLVK_NV21, VLVK_BT601, range, width, height, {pixels, chroma}, {width, width + width % 2}};
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
