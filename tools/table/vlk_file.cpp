/// Reading, judging and writing a resource file that holds a colour table.
#include "tools/table/vlk_file.h"

#include <algorithm>

#include "resource/color_picture.h"
#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

using Header = std::array<std::uint8_t, kResourceHeaderSize>;

constexpr int kFactorA = 4;  // where the factors stand in the header
constexpr int kFactorB = 8;

// Every byte is below 128: the same number to readers that take bytes as signed and those that do not.
constexpr Header kTableHeader{'V', 'L', 'K', '1', 0x00, 0x08, 0, 0, 0x00, 0x02, 0, 0};

Header headerOf(std::span<const std::uint8_t> file) {
  Header header{};
  std::copy_n(file.begin(), header.size(), header.begin());
  return header;
}

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

bool isVlk(std::span<const std::uint8_t> file) {
  if (file.size() < kResourceHeaderSize) return true;
  const Header header = headerOf(file);
  return isFactorCredible(header, kFactorA) && isFactorCredible(header, kFactorB);
}

VlkTable parseVlk(std::span<const std::uint8_t> file) {
  if (file.size() < kResourceHeaderSize) {
    throw Error("not a colour table, the file has " + std::to_string(file.size()) + " bytes and a header 12");
  }
  VlkTable table{.header = headerOf(file), .fileSize = file.size(), .picture = {}};
  const std::int32_t size = resourcePayloadSize(file.data());
  const std::string fault = whatIsWrong(size, file.size() - kResourceHeaderSize);
  if (!fault.empty()) {
    throw Error("not a whole colour table, the header " + hex(table.header, 0) + " states " + std::to_string(size) +
                " bytes (" + factorsOf(table.header) + "), " + fault);
  }
  table.picture.resize(kColorPictureSize);
  scrambleResource(file.data() + kResourceHeaderSize, size, table.picture.data());
  return table;
}

std::string describe(const VlkTable& table) {
  const std::size_t unread = table.fileSize - kResourceHeaderSize - table.picture.size();
  std::string text = "a colour table that the engine takes whole\n";
  text += "header   " + hex(table.header, 0) + ", free for a signature\n";
  text += "factors  " + factorsOf(table.header) + "\n";
  text += "payload  " + std::to_string(table.picture.size()) + " bytes, 512 x 512 pixels\n";
  text += "file     " + std::to_string(table.fileSize) + " bytes";
  return text + (unread == 0 ? "\n" : ", the last " + std::to_string(unread) + " are not read\n");
}

std::vector<std::uint8_t> formatVlk(std::span<const std::uint8_t> picture) {
  std::vector<std::uint8_t> file(kResourceHeaderSize + picture.size());
  std::copy(kTableHeader.begin(), kTableHeader.end(), file.begin());
  scrambleResource(picture.data(), static_cast<std::int32_t>(picture.size()), file.data() + kResourceHeaderSize);
  return file;
}

}  // namespace vlvk::tool
