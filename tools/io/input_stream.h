/// Reading a file, pipe or device from front to back.
#ifndef VLVK_TOOLS_IO_INPUT_STREAM_H
#define VLVK_TOOLS_IO_INPUT_STREAM_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace vlvk::tool {

/// Bytes in their order. All members throw Error, a bare reason; reading also when an interrupt that is held back
/// (InterruptPause) is due, or when a stop is requested, even while no bytes come.
class InputStream {
 public:
  /// @param path  "-" is standard input
  explicit InputStream(const std::string& path);
  InputStream(const InputStream&) = delete;
  InputStream& operator=(const InputStream&) = delete;
  ~InputStream();

  /// Bytes of a regular file.
  std::optional<std::uint64_t> fileSize() const;

  /// The next bytes, without taking them: `count`, at most 4096, and fewer only at the end of the stream.
  std::string_view peek(std::size_t count);

  /// Goes to a place in a regular file.
  void seek(std::uint64_t position);

  /// Fills `bytes`. Returns how many there were: fewer only at the end of the stream.
  std::size_t read(std::span<std::uint8_t> bytes, const std::stop_token& stop);

  /// Bytes up to and with the next line end, fewer where the stream or `limit` ends first.
  std::string readLine(std::size_t limit, const std::stop_token& stop);

 private:
  std::size_t readSome(std::span<std::uint8_t> bytes, const std::stop_token& stop);
  void waitForBytes(const std::stop_token& stop) const;

  int descriptor_;
  std::vector<std::uint8_t> buffer_;  // read ahead, for lines
  std::size_t taken_ = 0;             // of buffer_
};

}  // namespace vlvk::tool

#endif
