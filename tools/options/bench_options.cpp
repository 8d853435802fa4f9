/// The options of `bench`.
#include <memory>

#include "tools/options/command_options.h"

namespace vlvk::tool {

void addBench(Command program, CommandLine* line) {
  const Command command = program.addCommand("bench", "Measure how fast the engine is on this machine");
  const auto options = std::make_shared<BenchOptions>();
  command.addValues(
      "--size", "WxH", "Size of the frames, may be given again; without it 720p, 1080p and 2160p",
      [options] { options->sizes.clear(); },
      [options](const std::string& text) { options->sizes.push_back(readSize(text)); });
  command.addNumber("--seconds", &options->seconds, 0.001, 60.0, "Time for each row of the table");
  command.addNumber("--pace", &options->pace, 0.0, 1000.0, "Milliseconds of pause after each frame, as of a camera");
  command.addNumber("--threads", &options->threads, 1, 64, "Bands of a frame and threads for it");
  addTarget(command, line);
  command.addNotes(
      "There is a row for each size and each set of vector instructions that the processor has, fastest first: the\n"
      "one that is used without --target. The time is the median over the frames, and frames/s that time's rate,\n"
      "without pauses; 99 of 100 frames take no longer than the next time says, which for fewer than 100 frames is "
      "the\n"
      "slowest: with --pace take --seconds 10. Processor time is that of all threads for a frame, a measure of the\n"
      "energy that it takes.");
  command.whenRead([=] {
    if (!line->target.empty()) options->targets = {line->target};
    line->command = *options;
  });
}

}  // namespace vlvk::tool
