/// The command `video` for all that FFmpeg reads and writes.
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands/files.h"
#include "tools/commands/video_steps.h"
#include "tools/io/output_file.h"
#include "tools/media/encoder.h"
#include "tools/media/encoder_choice.h"
#include "tools/media/media_input.h"
#include "tools/media/media_output.h"
#include "tools/media/media_reader.h"
#include "tools/media/media_writer.h"
#include "tools/media/stream_copy.h"
#include "tools/media/video_plan.h"

namespace vlvk::tool {
bool isMediaSource(const VideoOptions& options) {
  return named(streamName(options.in), [&] { return isOpenedByFfmpeg(options.in, options.from); });
}

void runMedia(const VideoOptions& options, std::unique_ptr<InputStream> stream) {
  const std::string in = streamName(options.in);
  const AVOutputFormat& kind =
      named(options.out, [&]() -> const AVOutputFormat& { return outputKind(options.out, options.to); });
  const EncoderChoice choice = chooseEncoder(kind, options.encoder);
  VideoRecords records(options);
  Look look = readLook(options.look);
  // From here on an interrupt waits, which the threads of decoder and encoder take over.
  std::optional<OutputFile> file;
  if (!isOutputDevice(kind)) file.emplace(options.out, Devices::kTaken);
  std::vector<std::string> notes;
  std::optional<MediaInput> input;
  const VideoPlan plan = named(in, [&] {
    input.emplace(options.in, std::move(stream), options.from);
    return planVideo(*input, kind, *choice.codec, &notes);
  });
  look.mask = turnedBack(look.mask, plan.marked.quarters, plan.marked.mirrored);  // it lies on what is shown
  Engine engine(std::move(look));
  Encoder encoder = named(options.out, [&] { return Encoder(choice, plan, (kind.flags & AVFMT_GLOBALHEADER) != 0); });
  MediaOutput output(options.out, kind, file ? &*file : nullptr);
  StreamCopy copy =
      named(options.out, [&] { return StreamCopy(*input, encoder.context(), plan.turn.none(), &output, &notes); });
  printNotes(in, notes);
  output.writeHeader();
  MediaReader reader(in, &*input, plan);
  MediaWriter writer(options.out, &encoder, &copy, &output);
  std::exception_ptr broken;
  {
    Progress progress(options.quiet, input->expectedFrames());
    broken = beautifyAll(&engine, &reader, &writer, &progress, &records);
    writer.finish(reader.takeRest());
  }
  if (file) file->commit();
  records.write();
  if (broken != nullptr) std::rethrow_exception(broken);
  named(in, [&] { copy.reportDamage(); });
}

}  // namespace vlvk::tool
