/// What the command line says about the encoder.
#ifndef VLVK_TOOLS_MEDIA_ENCODER_WISHES_H
#define VLVK_TOOLS_MEDIA_ENCODER_WISHES_H

#include <optional>
#include <string>

namespace vlvk::tool {

struct EncoderWishes {
  std::string codec;          ///< an encoder or a codec, as FFmpeg calls it; empty: as the kind of file has it
  std::optional<double> crf;  ///< quality on the encoder's own scale
  std::string preset;         ///< empty: the usual one

  bool any() const { return !codec.empty() || crf || !preset.empty(); }
};

}  // namespace vlvk::tool

#endif
