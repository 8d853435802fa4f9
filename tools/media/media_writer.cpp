/// See media_writer.h.
#include "tools/media/media_writer.h"

#include <exception>

#include "tools/io/messages.h"

namespace vlvk::tool {

MediaWriter::MediaWriter(const std::string& name, Encoder* encoder, StreamCopy* copy, MediaOutput* output)
    : name_(name), encoder_(encoder), copy_(copy), output_(output) {}

void MediaWriter::write(MediaFrame* frame) {
  copyAll(frame->before);
  encode(frame->result());
  *frame = {};  // decoder and encoder get their memory back
}

void MediaWriter::finish(const std::vector<MediaPacket>& rest) {
  copyAll(rest);
  encode(nullptr);
  output_->finish();
}

// The output names itself.
void MediaWriter::encode(AVFrame* frame) {
  std::vector<MediaPacket> packets;
  named(name_, [&] {
    encoder_->encode(frame, [&packets](AVPacket* packet) {
      packets.push_back(owned(av_packet_alloc()));
      av_packet_move_ref(packets.back().get(), packet);
    });
  });
  for (const MediaPacket& packet : packets)
    output_->write(packet.get(), copy_->video(), encoder_->context().time_base);
}

void MediaWriter::copyAll(const std::vector<MediaPacket>& packets) {
  for (const MediaPacket& packet : packets)
    copy_->write(packet.get());
}

}  // namespace vlvk::tool
