/// Reading of .cube files.
#include "tools/table/cube_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kMaxNumberLength = 100;  // from_chars would work through any number of digits
constexpr int kMinSize = 2;
constexpr Color kZero{0, 0, 0};
constexpr Color kOne{1, 1, 1};
constexpr int kMaxCubeSize = 256;
constexpr int kMaxCurveSize = 65536;

enum Keyword { kTitle, kCurveSize, kCubeSize, kDomainMin, kDomainMax, kCurveRange, kCubeRange, kKeywords };

struct KeywordForm {
  const char* name;
  int numbers;  // that follow it
};

constexpr std::array<KeywordForm, kKeywords> kForms{{{"TITLE", 0},
                                                     {kCurveSizeWord, 1},
                                                     {kCubeSizeWord, 1},
                                                     {"DOMAIN_MIN", 3},
                                                     {"DOMAIN_MAX", 3},
                                                     {"LUT_1D_INPUT_RANGE", 2},
                                                     {"LUT_3D_INPUT_RANGE", 2}}};

// The words of a line before a comment: no more than a line may have, and one. A # inside a word begins no comment, as
// 1.#INF and 1.#QNAN are what some programs write for numbers that are none.
struct Words {
  static constexpr int kMost = 5;
  std::array<std::string_view, kMost> word;
  int count = 0;
};

Words wordsOf(std::string_view line) {
  static constexpr std::string_view kBlanks = " \t";
  Words words;
  while (words.count < Words::kMost) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    if (line.empty() || line.front() == '#') break;
    const std::size_t length = std::min(line.find_first_of(kBlanks), line.size());
    words.word.at(static_cast<std::size_t>(words.count++)) = line.substr(0, length);
    line.remove_prefix(length);
  }
  return words;
}

std::string quoted(std::string_view word) {
  std::string text(1, '\'');
  return text.append(printable(word, 40)).append(1, '\'');
}

bool startsNumber(char c) {
  return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

// A word that is a number as a whole, whatever the locale. A plus sign may lead, which from_chars does not take.
template <typename Number>
std::optional<Number> parsed(std::string_view word) {
  if (word.size() > kMaxNumberLength) return std::nullopt;
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  Number value{};
  const char* end = word.data() + word.size();
  const auto [last, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc() || last != end) return std::nullopt;
  return value;
}

class Parser {
 public:
  ColorCube parse(std::string_view text) {
    static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    textSize_ = text.size();
    while (!text.empty()) {
      ++line_;
      const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
      parseLine(wordsOf(text.substr(0, length)));
      const std::size_t end = text.substr(length).starts_with("\r\n") ? 2 : 1;
      text.remove_prefix(std::min(length + end, text.size()));
    }
    finish();
    return std::move(cube_);
  }

 private:
  [[noreturn]] static void failAt(int line, const std::string& reason) {
    throw Error("line " + std::to_string(line) + ": " + reason);
  }
  [[noreturn]] void fail(const std::string& reason) const { failAt(std::max(line_, 1), reason); }

  void parseLine(const Words& words) {
    if (words.count == 0) return;
    if (startsNumber(words.word[0].front())) {
      parseRow(words);
    } else {
      parseKeyword(words);
    }
  }

  double number(std::string_view word) const {
    const auto value = parsed<double>(word);
    // Written so that NaN is out of range.
    if (!value || !(std::abs(*value) <= std::numeric_limits<float>::max())) {
      fail(quoted(word) + " is not a number that can be used");
    }
    return *value;
  }

  Color colorIn(const Words& words, std::size_t first) const {
    return {number(words.word.at(first)), number(words.word.at(first + 1)), number(words.word.at(first + 2))};
  }

  int size(const Words& words, int most) const {
    const auto value = parsed<int>(words.word[1]);
    if (!value || *value < kMinSize || *value > most) {
      fail(std::string(words.word[0]) + " is a whole number from 2 to " + std::to_string(most) + ", not " +
           quoted(words.word[1]));
    }
    return *value;
  }

  void setRange(ColorNodes* nodes, const Words& words) {
    nodes->low.fill(number(words.word[1]));
    nodes->high.fill(number(words.word[2]));
    boundsLine_ = line_;
  }

  // A keyword that is not known may well change the meaning of the rows: none is skipped.
  void parseKeyword(const Words& words) {
    const auto form =
        std::find_if(kForms.begin(), kForms.end(), [&](const KeywordForm& f) { return words.word[0] == f.name; });
    if (form == kForms.end()) fail("unknown keyword " + quoted(words.word[0]));
    const std::string name = form->name;
    if (inRows_) fail(name + " must stand before the rows");
    const auto keyword = static_cast<Keyword>(form - kForms.begin());
    if (stated_.at(keyword)) fail(name + " is stated a second time");
    stated_.at(keyword) = true;
    if (keyword != kTitle && words.count != form->numbers + 1) {
      fail(name + " takes " + std::to_string(form->numbers) + (form->numbers == 1 ? " number" : " numbers"));
    }
    take(keyword, words);
  }

  void take(Keyword keyword, const Words& words) {
    switch (keyword) {
      case kCurveSize:
        cube_.curves.size = size(words, kMaxCurveSize);
        break;
      case kCubeSize:
        cube_.nodes.size = size(words, kMaxCubeSize);
        break;
      case kDomainMin:
        domainLow_ = colorIn(words, 1);
        boundsLine_ = line_;
        break;
      case kDomainMax:
        domainHigh_ = colorIn(words, 1);
        boundsLine_ = line_;
        break;
      case kCurveRange:
        setRange(&cube_.curves, words);
        break;
      case kCubeRange:
        setRange(&cube_.nodes, words);
        break;
      default:  // the title is not used
        break;
    }
  }

  void setBounds(ColorNodes* nodes, Keyword range) const {
    if (nodes->size == 0) return;
    if (stated_[kDomainMin] || stated_[kDomainMax]) {
      if (stated_.at(range) && (nodes->low != domainLow_ || nodes->high != domainHigh_)) {
        failAt(boundsLine_, std::string(kForms.at(range).name) + " and DOMAIN_MIN or DOMAIN_MAX contradict each other");
      }
      nodes->low = domainLow_;
      nodes->high = domainHigh_;
    }
    for (std::size_t c = 0; c < 3; ++c) {
      if (nodes->high.at(c) <= nodes->low.at(c)) {
        failAt(boundsLine_, "the inputs end at or below the value that they begin with");
      }
    }
  }

  void beginRows() {
    if (cube_.nodes.size == 0 && cube_.curves.size == 0)
      fail("neither LUT_3D_SIZE nor LUT_1D_SIZE stands before the rows");
    const bool ordinary = domainLow_ == kZero && domainHigh_ == kOne;
    if (cube_.nodes.size > 0 && cube_.curves.size > 0 && !ordinary) {
      failAt(boundsLine_, "DOMAIN_MIN and DOMAIN_MAX do not tell which of two tables they are for");
    }
    setBounds(&cube_.curves, kCurveRange);
    setBounds(&cube_.nodes, kCubeRange);
    const auto edge = static_cast<std::size_t>(cube_.nodes.size);
    curveRows_ = static_cast<std::size_t>(cube_.curves.size);
    allRows_ = curveRows_ + edge * edge * edge;
    cube_.nodes.values.reserve(3 * std::min(edge * edge * edge, textSize_ / 6));  // "0 0 0" and a line end
    inRows_ = true;
  }

  void parseRow(const Words& words) {
    if (!inRows_) beginRows();
    if (words.count != 3) fail("a row has three numbers");
    if (rows_ == allRows_) fail("more rows than the " + std::to_string(allRows_) + " that the size tells");
    std::vector<float>& values = rows_ < curveRows_ ? cube_.curves.values : cube_.nodes.values;
    for (const double value : colorIn(words, 0))
      values.push_back(static_cast<float>(value));
    ++rows_;
  }

  void finish() {
    if (!inRows_) beginRows();
    if (rows_ < allRows_) {
      fail("the file ends after " + std::to_string(rows_) + " of " + std::to_string(allRows_) + " rows");
    }
  }

  ColorCube cube_;
  std::array<bool, kKeywords> stated_{};
  Color domainLow_ = kZero;
  Color domainHigh_ = kOne;
  int line_ = 0;
  int boundsLine_ = 0;  // of the last keyword that stated inputs
  bool inRows_ = false;
  std::size_t textSize_ = 0;
  std::size_t curveRows_ = 0;
  std::size_t allRows_ = 0;
  std::size_t rows_ = 0;
};

}  // namespace

ColorCube parseCube(std::span<const std::uint8_t> file) {
  return Parser().parse({reinterpret_cast<const char*>(file.data()), file.size()});
}

}  // namespace vlvk::tool
