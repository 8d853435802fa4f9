/// Resource files, those that the program reads as colour tables, and the scrambling at any size.
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "fuzz/pace.h"
#include "resource/resource_file.h"
#include "tools/io/messages.h"
#include "tools/table/table_io.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using vlvk::kMaxResourcePayload;
using vlvk::kResourceHeaderSize;

/// The size that a header states, in plain arithmetic: signed bytes, modulo 2^32.
std::int32_t statedSize(const Bytes& header) {
  std::int64_t factors[2] = {0, 0};
  for (std::size_t i = 0; i < 8; ++i)
    factors[i / 4] += std::int64_t{static_cast<std::int8_t>(header[4 + i])} * (std::int64_t{1} << (i % 4 * 8));
  return static_cast<std::int32_t>(static_cast<std::uint64_t>(factors[0]) * static_cast<std::uint64_t>(factors[1]));
}

Bytes unscrambled(const Bytes& payload) {
  Bytes plain(payload.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    const bool alone = i + 1 == plain.size() && i % 2 == 0;
    plain[i] = payload[alone ? i : i ^ 1] ^ 0x5A;
  }
  return plain;
}

/// Into memory of the exact size, and in place.
void checkScrambling(const Bytes& payload) {
  const auto size = static_cast<std::int32_t>(payload.size());
  Bytes result(payload.size());
  vlvk::scrambleResource(payload.data(), size, result.data());
  fuzz::check(result == unscrambled(payload), "scrambled wrongly");
  vlvk::scrambleResource(result.data(), size, result.data());
  fuzz::check(result == payload, "scrambled wrongly in place, or a changed source");
}

void checkTable(const Bytes& file) {
  const bool hasHeader = file.size() >= kResourceHeaderSize;
  const std::int32_t stated = hasHeader ? statedSize(file) : -1;
  constexpr std::ptrdiff_t kWhole = std::ptrdiff_t{kResourceHeaderSize} + kMaxResourcePayload;
  try {
    const vlvk::tool::VlkTable table = vlvk::tool::parseResource(file);
    fuzz::check(hasHeader && stated == kMaxResourcePayload && std::ssize(file) >= kWhole,
                "a table that is none was taken");
    const Bytes payload(file.begin() + kResourceHeaderSize, file.begin() + kWhole);
    fuzz::check(table.picture == unscrambled(payload), "a table was read wrongly");
    fuzz::check(!vlvk::tool::describe(table).empty(), "a table has no description");
  } catch (const vlvk::tool::Error& error) {
    const std::string text = error.what();
    fuzz::check(text.starts_with("not a "), "an error without its reason");
    fuzz::checkPlainLine(text);
  }
  if (hasHeader) fuzz::check(vlvk::resourcePayloadSize(file.data()) == stated, "another size than the header states");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  // The payload of a whole table is a megabyte: a size, and the rest of the input over and over.
  const int shape = input.byte();
  const bool isSlow = shape % 8 == 1;
  if (isSlow && !fuzz::mayBeSlow()) return 0;
  const int fileSize = kResourceHeaderSize + input.between(0, 300) + (isSlow ? kMaxResourcePayload - 150 : 0);
  Bytes file(input.rest().begin(), input.rest().end());
  checkScrambling(file);
  if (!file.empty() && shape % 4 != 0) {
    const Bytes pattern = file;
    file.resize(static_cast<std::size_t>(fileSize));
    for (std::size_t i = 0; i < file.size(); ++i)
      file[i] = pattern[i % pattern.size()];
  }
  checkTable(file);
  return 0;
}
