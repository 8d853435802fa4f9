/// See messages.h.
#include "tools/io/messages.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <system_error>

namespace vlvk::tool {
namespace {

bool isControl(unsigned char c) {
  return c < 0x20 || c == 0x7F;
}

// Bytes of a control character or line separator at the start of `text`: ASCII, or in UTF-8 U+0080..U+009F (C2 80..9F)
// and U+2028, U+2029 (E2 80 A8, E2 80 A9). 0 for everything else.
std::size_t controlLength(std::string_view text) {
  const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  if (isControl(static_cast<unsigned char>(text[0]))) return 1;
  if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) <= 0x9F) return 2;
  if (byte(0) == 0xE2 && byte(1) == 0x80 && (byte(2) == 0xA8 || byte(2) == 0xA9)) return 3;
  return 0;
}

// The last line of the terminal, of which there is one.
struct Status {
  std::mutex mutex;
  std::string shown;

  // Blanks cover what is left of a longer text.
  void replace(const std::string& text) {
    const std::string rest(shown.size() - std::min(text.size(), shown.size()), ' ');
    std::fprintf(stderr, "\r%s%s%s", text.c_str(), rest.c_str(), text.empty() ? "\r" : "");
    std::fflush(stderr);
    shown = text;
  }
};

Status& status() {
  static Status instance;
  return instance;
}

}  // namespace

std::string systemReason(int code) {
  return std::generic_category().message(code);
}

std::string oneLine(std::string_view text) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string line;
  while (!text.empty()) {
    const std::size_t length = controlLength(text);
    if (length == 0) line += text[0];
    for (std::size_t i = 0; i < length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      line += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return line;
}

std::string printable(std::string_view text, std::size_t longest) {
  std::string shown(text.substr(0, longest));
  std::replace_if(
      shown.begin(), shown.end(), [](unsigned char c) { return c < 0x20 || c > 0x7E; }, '?');
  return text.size() > longest ? shown + "..." : shown;
}

void printError(std::string_view text) {
  const std::string line = "vlvk-makeup: " + oneLine(text) + "\n";
  Status& last = status();
  const std::lock_guard lock(last.mutex);
  const std::string shown = last.shown;
  if (!shown.empty()) last.replace("");
  std::fwrite(line.data(), 1, line.size(), stderr);
  if (!shown.empty()) last.replace(shown);
}

void printNotes(const std::string& name, const std::vector<std::string>& notes) {
  for (const std::string& note : notes)
    printError(std::string(name).append(": ").append(note));
}

void showStatus(const std::string& text) {
  if (::isatty(STDERR_FILENO) != 1) return;
  const std::lock_guard lock(status().mutex);
  status().replace(text);
}

void endStatus() {
  const std::lock_guard lock(status().mutex);
  if (!status().shown.empty()) std::fputc('\n', stderr);
  status().shown.clear();
}

void printText(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) < text.size() || std::fflush(stdout) != 0) {
    throw Error("standard output cannot be written: " + systemReason(errno));
  }
}

}  // namespace vlvk::tool
