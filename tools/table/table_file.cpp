/// Reading, judging and writing a resource file that holds a colour table.
#include "tools/table/table_file.h"

#include <algorithm>

#include "resource/color_picture.h"
#include "tools/io/error.h"
#include "tools/io/error_line.h"
#include "tools/io/input_file.h"
#include "tools/io/output_file.h"
#include "tools/picture/picture_file.h"
#include "tools/table/cube_file.h"

namespace vlvk::tool {
namespace {

using Header = std::array<std::uint8_t, kResourceHeaderSize>;

constexpr std::size_t kMaxFileSize = std::size_t{16}
                                     << 20;  // of this program; the engine minds nothing behind the payload
constexpr int kFactorA = 4;                  // where the factors stand in the header
constexpr int kFactorB = 8;

// Every byte is below 128: the same number to readers that take bytes as signed and those that do not.
constexpr Header kTableHeader{'V', 'L', 'K', '1', 0x00, 0x08, 0, 0, 0x00, 0x02, 0, 0};

std::string hex(const Header& header, int at) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (int i = at; i < at + 4; ++i) {
    const std::uint8_t byte = header.at(static_cast<std::size_t>(i));
    text += {kDigits[byte >> 4], kDigits[byte & 15], ' '};
  }
  text.pop_back();
  return text;
}

// What a file of another kind holds.
std::string whatElse(std::span<const std::uint8_t> file) {
  if (const auto picture = kindOfContent(file)) return std::string(" of the engine, it holds a ") + nameOf(*picture);
  if (isCubeText(file)) return " of the engine, it holds the text of a .cube file";
  return ", nor any other resource file of the engine";
}

// A factor by itself: the size that the header would state if the other factor were 1.
std::int32_t factor(const Header& header, int at) {
  Header alone{};
  std::copy_n(header.begin() + at, 4, alone.begin() + kFactorA);
  alone[kFactorB] = 1;
  return resourcePayloadSize(alone.data());
}

std::string described(const Header& header, int at) {
  return std::to_string(factor(header, at)) + " (" + hex(header, at) + ")";
}

// Factors of any other kind of file are, nearly always, more than any payload has bytes.
bool isFactorCredible(const Header& header, int at) {
  const std::int32_t value = factor(header, at);
  return value >= -kMaxResourcePayload && value <= kMaxResourcePayload;
}

std::string whatIsWrong(std::int32_t size, std::size_t present) {
  constexpr auto kWanted = static_cast<std::int32_t>(kColorPictureSize);
  if (!isResourcePayloadAllowed(size)) return "the engine reads nothing unless that is 0 to " + std::to_string(kWanted);
  if (size != kWanted) return "a colour table has " + std::to_string(kWanted);
  if (present < kColorPictureSize) {
    return "only " + std::to_string(present) + " of them are there and the engine uses none";
  }
  return "";
}

std::string factorsOf(const Header& header) {
  const bool negative = std::any_of(header.begin() + kFactorA, header.end(), [](int byte) { return byte >= 0x80; });
  return "A " + described(header, kFactorA) + " times B " + described(header, kFactorB) +
         (negative ? ", bytes from 80 on counting as negative" : "");
}

}  // namespace

Table readTable(const std::string& path) {
  const std::vector<std::uint8_t> file = readFile(path, kMaxFileSize);
  if (file.size() < kResourceHeaderSize) {
    throw Error(path, "not a colour table, the file has " + std::to_string(file.size()) + " bytes and a header 12");
  }
  Table table{.header = {}, .fileSize = file.size(), .picture = std::vector<std::uint8_t>(kColorPictureSize)};
  std::copy_n(file.begin(), kResourceHeaderSize, table.header.begin());
  if (!isFactorCredible(table.header, kFactorA) || !isFactorCredible(table.header, kFactorB)) {
    throw Error(path, "not a colour table" + whatElse(file));
  }
  const std::int32_t size = resourcePayloadSize(file.data());
  const std::string fault = whatIsWrong(size, file.size() - kResourceHeaderSize);
  if (!fault.empty()) {
    throw Error(path, "not a whole colour table, the header " + hex(table.header, 0) + " states " +
                          std::to_string(size) + " bytes (" + factorsOf(table.header) + "), " + fault);
  }
  scrambleResource(file.data() + kResourceHeaderSize, size, table.picture.data());
  return table;
}

std::string describe(const std::string& path, const Table& table) {
  const std::size_t behind = table.fileSize - kResourceHeaderSize - table.picture.size();
  std::string text = oneLine(path) + ": a colour table that the engine takes whole\n";
  text += "header   " + hex(table.header, 0) + ", free for a signature\n";
  text += "factors  " + factorsOf(table.header) + "\n";
  text += "payload  " + std::to_string(table.picture.size()) + " bytes, 512 x 512 pixels\n";
  text += "file     " + std::to_string(table.fileSize) + " bytes";
  return text + (behind == 0 ? "\n" : ", the last " + std::to_string(behind) + " are not read\n");
}

void writeTable(const std::string& path, std::span<const std::uint8_t> picture) {
  std::vector<std::uint8_t> file(kResourceHeaderSize + picture.size());
  std::copy(kTableHeader.begin(), kTableHeader.end(), file.begin());
  scrambleResource(picture.data(), static_cast<std::int32_t>(picture.size()), file.data() + kResourceHeaderSize);
  writeFile(path, file);
}

}  // namespace vlvk::tool
