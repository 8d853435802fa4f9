/// Times frames with pauses in between, as a camera leaves them, through one build of the shared library or several.
///
///     vlvk_paced_bench [--size=WIDTHxHEIGHT]... [--pace=MS]... [--threads=N] [--seconds=S | --frames=N] LIBRARY...
///
/// Frames back to back keep threads on the processors where they are. After a pause the scheduler places them anew, so
/// times differ, and so does what is won by changes to the running of bands. All libraries take turns within one run:
/// class and handle with an NV21 frame, and the class with a BGRA picture. The first library is the base: the column
/// "ratio" is its median by the other's of the same kind, the column "class" the median of its class by that of the
/// row, so above 1 is faster. With a number of frames, of which whole tens are taken, memory that grows from the first
/// of them to the last is printed as well. Libraries named without a folder are those in the working directory.
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/makeup.h>
#include <vlvk/yuv_to_rgb.h>
#include "bench/allocation_counter.h"
#include "bench/options.h"
#include "tools/engine/frame_times.h"
#include "tools/engine/skin_frame.h"

namespace {

using vlvk::tool::processorTime;
using vlvk::tool::quantile;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kRounds = 10;
constexpr int kWarmUpFrames = 3;

struct Options {
  vlvk_bench::Size size;  ///< the one in turn
  std::vector<vlvk_bench::Size> sizes;
  std::vector<double> paces;
  int threads = 4;
  double seconds = 2;  ///< for each contender and pause
  int frames = 0;      ///< as well, in place of the time
  std::vector<std::string> libraries;
};

/// A function of one of several builds of the library.
template <class Function>
Function find(void* library, const char* name) {
  void* found = dlsym(library, name);
  if (found == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function>(found);
}

/// Beautifies a frame.
using Beautify = std::function<bool(std::uint8_t* frame)>;

Beautify handleOf(void* library, const Options& options) {
  const vlvk_bench::Size size = options.size;
  VlvkSettings settings;
  find<decltype(&vlvkSettingsInit)>(library, "vlvkSettingsInit")(&settings, sizeof settings);
  settings.threads = options.threads;
  settings.radius = 20;  // this and contrast as the class
  settings.contrast = VLVK_CONTRAST_ABSOLUTE;
  VlvkMakeup* made = nullptr;
  const int result = find<decltype(&vlvkMakeupCreate)>(library, "vlvkMakeupCreate")(&made, &settings);
  if (result != VLVK_OK) throw std::runtime_error("vlvkMakeupCreate: result " + std::to_string(result));
  const std::shared_ptr<VlvkMakeup> makeup(made, find<decltype(&vlvkMakeupDestroy)>(library, "vlvkMakeupDestroy"));
  const auto process = find<decltype(&vlvkMakeupProcess)>(library, "vlvkMakeupProcess");
  return [=](std::uint8_t* pixels) {
    const VlvkFrame frame = {sizeof frame,
                             VLVK_NV21,
                             VLVK_BT601,
                             VLVK_LIMITED,
                             size.width,
                             size.height,
                             {pixels, pixels + size.pixels()},
                             {size.width, size.width}};
    return process(makeup.get(), &frame, &frame, nullptr) == VLVK_OK;
  };
}

/// The class is found by its mangled names: several builds of it are loaded at once.
std::shared_ptr<CFastEdgePreserved> filterOf(void* library, const Options& options) {
  using Construct = void (*)(void*, int, IBeautyResourceLoader*);
  using Destroy = void (*)(CFastEdgePreserved*);
  const auto construct = find<Construct>(library, "_ZN18CFastEdgePreservedC1EiP21IBeautyResourceLoader");
  const auto destroy = find<Destroy>(library, "_ZN18CFastEdgePreservedD1Ev");
  void* memory = std::malloc(sizeof(CFastEdgePreserved));
  if (memory == nullptr) throw std::bad_alloc();
  construct(memory, options.threads, nullptr);
  return {static_cast<CFastEdgePreserved*>(memory), [=](CFastEdgePreserved* made) {
            std::free(made->nv12Scratch);
            destroy(made);
            std::free(made);
          }};
}

Beautify classOf(void* library, const Options& options) {
  const vlvk_bench::Size size = options.size;
  using Process =
      int (*)(CFastEdgePreserved*, unsigned char*, int, unsigned char*, int, int, int, unsigned char*, int, bool);
  const auto process = find<Process>(library, "_ZN18CFastEdgePreserved12processVideoEPhiS0_iiiS0_ib");
  const auto filter = filterOf(library, options);
  filter->colorAdjustIntensity = 0;  // as the handle without a table
  return [=](std::uint8_t* pixels) {
    return process(filter.get(), pixels, size.width, pixels + size.pixels(), size.width, size.width, size.height,
                   nullptr, 0, true) == 0;
  };
}

/// A BGRA picture onto itself, through the class and its table.
Beautify bgraOf(void* library, const Options& options) {
  const vlvk_bench::Size size = options.size;
  using Process = int (*)(CFastEdgePreserved*, unsigned char*, int, int, int, unsigned char*, int);
  const auto process = find<Process>(library, "_ZN18CFastEdgePreserved16processBGRAVideoEPhiiiS0_i");
  return [=, filter = filterOf(library, options)](std::uint8_t* pixels) {
    return process(filter.get(), pixels, size.width, size.height, 4 * size.width, pixels, 4 * size.width) == 0;
  };
}

/// An NV21 frame as BGRA pixels.
std::vector<std::uint8_t> pictureOf(const std::vector<std::uint8_t>& frame, vlvk_bench::Size size, void* library) {
  std::vector<std::uint8_t> picture(4 * size.pixels());
  const auto convert = find<decltype(&VKNV21ToBGRA_NeonCall)>(library, "VKNV21ToBGRA_NeonCall");
  convert(frame.data(), size.width, frame.data() + size.pixels(), size.width, picture.data(), 4 * size.width,
          size.width, size.height);
  return picture;
}

struct Contender {
  std::string name;
  std::size_t base;  ///< whose median is divided by this one's
  const std::vector<std::uint8_t>* scene;
  Beautify beautify;
  std::vector<double> times{};
  double processor = 0;  ///< of all frames
};

/// How long one contender goes on: for a number of frames, or for a time.
struct Turn {
  Milliseconds pause;
  int frames;
  Milliseconds time;
};

/// What the threads do after the frame, on their way to sleep, counts as processor time too.
void takeTurn(Contender& contender, std::vector<std::uint8_t>& frame, Turn turn) {
  const Clock::time_point begun = Clock::now();
  const auto goesOn = [&](int i) { return turn.frames > 0 ? i < turn.frames : Clock::now() - begun < turn.time; };
  for (int i = -kWarmUpFrames; i < 1 || goesOn(i); ++i) {
    std::copy(contender.scene->begin(), contender.scene->end(), frame.begin());
    const double processorBefore = processorTime();
    const Clock::time_point begin = Clock::now();
    if (!contender.beautify(frame.data())) throw std::runtime_error(contender.name + ": the frame failed");
    const Milliseconds time = Clock::now() - begin;
    if (turn.pause.count() > 0) std::this_thread::sleep_for(turn.pause);
    if (i < 0) continue;
    contender.times.push_back(time.count());
    contender.processor += processorTime() - processorBefore;
  }
}

void printTimes(std::vector<Contender>& contenders) {
  const double classicMedian = quantile(contenders[0].times, 50);
  for (Contender& contender : contenders) {
    const double median = quantile(contender.times, 50);
    std::printf("%-14s%8zu%12.3f%10.3f%10.2f%14.3f%8.2f\n", contender.name.c_str(), contender.times.size(), median,
                quantile(contender.times, 99), quantile(contenders[contender.base].times, 50) / median,
                contender.processor / static_cast<double>(contender.times.size()), classicMedian / median);
  }
}

void measure(const Options& options, const std::vector<void*>& libraries, double pace) {
  const std::vector<std::uint8_t> scene = vlvk::tool::skinFrame(options.size.width, options.size.height);
  const std::vector<std::uint8_t> picture = pictureOf(scene, options.size, libraries.front());
  std::vector<Contender> contenders;
  for (std::size_t i = 0; i < libraries.size(); ++i) {
    const std::string of = " of " + std::to_string(i);
    contenders.push_back({"class" + of, 0, &scene, classOf(libraries[i], options)});
    contenders.push_back({"handle" + of, 1, &scene, handleOf(libraries[i], options)});
    contenders.push_back({"picture" + of, 2, &picture, bgraOf(libraries[i], options)});
  }
  std::vector<std::uint8_t> frame(picture.size());
  const Turn turn = {Milliseconds(pace), options.frames / kRounds, Milliseconds(options.seconds * 1e3 / kRounds)};
  for (int i = 0; i < 2; ++i) {  // twice: stacks that a class gave back go to a handle's workers
    for (Contender& contender : contenders)
      takeTurn(contender, frame, turn);
  }
  for (Contender& contender : contenders) {
    contender.times.assign(static_cast<std::size_t>(options.frames), 0.0);  // there from now on
    contender.times.clear();
    contender.processor = 0;
  }
  vlvk_bench::residentBytes();  // what its first call takes stays
  const std::size_t heap = vlvk_bench::heapBytes();
  const std::size_t resident = vlvk_bench::residentBytes();
  for (int round = 0; round < kRounds; ++round) {
    for (Contender& contender : contenders)
      takeTurn(contender, frame, turn);
  }
  const auto heapGrowth = static_cast<std::ptrdiff_t>(vlvk_bench::heapBytes() - heap);
  const auto growth = static_cast<std::ptrdiff_t>(vlvk_bench::residentBytes() - resident);
  std::printf("\n%s, %d threads, %g ms between frames\n%-14s%8s%12s%10s%10s%14s%8s\n", options.size.name().c_str(),
              options.threads, pace, "", "frames", "median ms", "99 %", "ratio", "processor ms", "class");
  printTimes(contenders);
  if (options.frames > 0) std::printf("growth: heap %td, process %td bytes\n", heapGrowth, growth);
}

/// The value of `--name=value`, or null.
const char* valueOf(const std::string& argument, const char* name) {
  const std::string start = std::string("--") + name + "=";
  return argument.rfind(start, 0) == 0 ? argument.c_str() + start.size() : nullptr;
}

/// The number that an option has, `int` or `double`.
template <typename Number>
Number numberOf(const std::string& argument, const char* value, Number low, Number high) {
  char* end = nullptr;
  const double number = std::strtod(value, &end);
  if (end != value && *end == 0 && number >= low && number <= high) {
    const auto read = static_cast<Number>(number);
    if (read == number) return read;
  }
  char range[80];
  std::snprintf(range, sizeof range, ": not a%s number from %.10g to %.10g", std::is_integral_v<Number> ? " whole" : "",
                static_cast<double>(low), static_cast<double>(high));
  throw std::runtime_error(argument + range);
}

/// A name for dlopen, which looks for one without a slash among the system's libraries.
std::string inWorkingDirectory(const std::string& file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

Options readOptions(int argc, char** argv) {
  Options options;
  options.sizes = vlvk_bench::takeSizes(&argc, argv);
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (const char* pace = valueOf(argument, "pace")) {
      options.paces.push_back(numberOf(argument, pace, 0.0, 1000.0));
    } else if (const char* threads = valueOf(argument, "threads")) {
      options.threads = numberOf(argument, threads, 1, 64);
    } else if (const char* seconds = valueOf(argument, "seconds")) {
      options.seconds = numberOf(argument, seconds, 0.01, 600.0);
    } else if (const char* frames = valueOf(argument, "frames")) {
      options.frames = numberOf(argument, frames, kRounds, 1'000'000) / kRounds * kRounds;
    } else if (argument.rfind("--", 0) == 0) {
      throw std::runtime_error("unknown option " + argument);
    } else {
      options.libraries.push_back(inWorkingDirectory(argument));
    }
  }
  if (options.libraries.empty()) throw std::runtime_error("name a shared library, or the base and others");
  if (options.paces.empty()) options.paces = {0, 5, 15, 33};
  return options;
}

}  // namespace

int main(int argc, char** argv) try {
  Options options = readOptions(argc, argv);
  std::vector<void*> libraries;
  for (const std::string& file : options.libraries) {
    libraries.push_back(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (libraries.back() == nullptr) throw std::runtime_error(dlerror());
    std::printf("%zu: %s\n", libraries.size() - 1, file.c_str());
  }
  for (const vlvk_bench::Size size : options.sizes) {
    options.size = size;
    for (const double pace : options.paces)
      measure(options, libraries, pace);
  }
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "vlvk_paced_bench: %s\n", error.what());
  return 1;
}
