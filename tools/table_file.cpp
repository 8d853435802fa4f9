/// Reading and judging a resource file that should hold a colour table.
#include "tools/table_file.h"

#include <cstddef>

#include "bindings/resource_file.h"
#include "tools/error.h"
#include "tools/input_file.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kMaxFileSize = std::size_t{16} << 20;  // the engine does not mind what follows the payload

}  // namespace

std::vector<std::uint8_t> readTable(const std::string& path) {
  const std::vector<std::uint8_t> file = readFile(path, kMaxFileSize);
  if (file.size() < kResourceHeaderSize) {
    throw Error(path, "not a colour table, the file is shorter than its header");
  }
  const std::int32_t size = resourcePayloadSize(file.data());
  if (size != kMaxResourcePayload) {
    throw Error(path, "not a colour table, the header states " + std::to_string(size) + " bytes instead of " +
                          std::to_string(kMaxResourcePayload));
  }
  if (file.size() - kResourceHeaderSize < static_cast<std::size_t>(size)) {
    throw Error(path, "the colour table is cut short, " + std::to_string(file.size() - kResourceHeaderSize) + " of " +
                          std::to_string(size) + " bytes are there");
  }
  std::vector<std::uint8_t> table(static_cast<std::size_t>(size));
  scrambleResource(file.data() + kResourceHeaderSize, size, table.data());
  return table;
}

}  // namespace vlvk::tool
