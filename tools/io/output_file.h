/// Writing a file whole or not at all.
#ifndef VLVK_TOOLS_IO_OUTPUT_FILE_H
#define VLVK_TOOLS_IO_OUTPUT_FILE_H

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/io/interrupt.h"

namespace vlvk::tool {

/// What may be written to besides files.
enum class Devices { kRefused, kTaken };

/// A file that is written piece by piece under a temporary name next to its own and renamed in the end. Until then an
/// old file stays as it is, and after a failure or an interrupt, which is held back while this object lives, nothing
/// new is left. A link is followed; an old file keeps its permissions.
///
/// A pipe or a device, "-" and /dev/stdout among them, is written straight, and interrupts take effect at once.
class OutputFile {
 public:
  /// Everything here throws Error, which names `path` as given.
  OutputFile(const std::string& path, Devices devices);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Whether size() and seek() can be used: of what is written straight nothing can be changed.
  bool seekable() const { return !temporary_.empty(); }

  /// Bytes so far.
  std::uint64_t size();

  /// What is written next replaces what is there.
  void seek(std::uint64_t position);

  /// Where the bytes are until commit(); empty: written straight.
  const std::string& temporary() const { return temporary_; }

  void write(std::span<const std::uint8_t> bytes);

  /// Gives the file its name.
  void commit();

 private:
  void openStraight(const std::string& path);
  void makeTemporary(mode_t mode);
  void rename();

  std::string name_;                     // for messages
  std::optional<InterruptPause> pause_;  // the last to go: the temporary file is removed then
  std::filesystem::path target_;         // of the renaming; empty: none
  std::string temporary_;                // empty: none, or renamed
  mode_t mode_ = 0;                      // what the file gets
  int descriptor_ = -1;
};

/// Whether `path` is the program's standard output, which OutputFile then writes to.
bool isStandardOutput(const std::string& path);

/// Where `path` leads to, however it is spelled; "-": standard output.
std::string placeOf(const std::string& path);

/// Throws Error as writeFile would, as far as that is known beforehand. Leaves everything as it is.
void requireWritable(const std::string& path);

/// Writes a file in one piece. Throws Error, which names `path` as given.
void writeFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// Text as the bytes that a file gets.
std::span<const std::uint8_t> bytesOf(std::string_view text);

}  // namespace vlvk::tool

#endif
