/// What FFmpeg says when something fails.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_LOG_H
#define VLVK_TOOLS_MEDIA_MEDIA_LOG_H

#include <cstdint>
#include <string>

namespace vlvk::tool {

/// Keeps FFmpeg's lines off standard error, from the first call on, and forgets the last one.
void startMediaLog();

/// The reason for a call of FFmpeg that gave `code`: the last error that it logged since startMediaLog(), which tells
/// most, or the words for the code.
std::string mediaReason(int code);

/// The same, before a file is opened.
void startInputLog();

/// Whether a demuxer has logged that its file is cut off, which FFmpeg does not return, since startInputLog().
bool inputEndedEarly();

/// How many errors decoders have logged so far, which hide much of what they find.
std::uint64_t decoderErrors();

/// Throws Error, a bare reason, if `code`, which a call of FFmpeg gave, is negative. Returns it otherwise.
int require(int code);

}  // namespace vlvk::tool

#endif
