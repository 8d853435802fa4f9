/// `vlvk-makeup table`, run as a process.
#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include <vlvk/rgb_to_yuv.h>
#include "tests/tools/tool_directory.h"

namespace vlvk::tool_test {
namespace {

constexpr int kSide = 512;
constexpr std::size_t kPayload = 1048576;

// The colour that a pixel of a table stands for, 6 bits a channel: red, green, blue.
int levelAt(int x, int y, int channel) {
  return channel == 0 ? x % 64 : channel == 1 ? y % 64 : y / 64 * 8 + x / 64;
}

// A colour table with a header of one's choice; the payload is not scrambled by the program's own code.
Bytes tableFile(const Bytes& factors, std::size_t payload = kPayload) {
  Bytes file(12 + payload, 't');
  std::copy(factors.begin(), factors.end(), file.begin() + 4);
  for (std::size_t i = 0; i < payload; ++i)
    file[12 + i] = static_cast<std::uint8_t>((i ^ 1) % 251) ^ 0x5A;
  return file;
}

const Bytes kGoodFactors{0, 8, 0, 0, 0, 2, 0, 0};

class Table : public ToolDirectory {
 protected:
  /// The pixels of a picture of one colour, as `photo --table look.vlk` shows them without smoothing and whitening.
  Bytes shown(const Image& image) const {
    writeRgba(path("in.png"), image);
    expectDone({"photo", path("in.png"), path("out.png"), "--table", path("look.vlk"), "--radius=0", "--whiten=0"});
    return readPng(path("out.png")).pixels;
  }
};

TEST_F(Table, PackedPictureBecomesColoursOfPhotos) {
  // Where there is much red, 250 instead, else 10; where there is much blue, 240 instead, else 20.
  writePng(path("look.png"), kSide, kSide, {PNG_COLOR_TYPE_RGB, 8}, [](int x, int y, int channel) {
    const bool much = levelAt(x, y, channel) >= 32;
    return channel == 0 ? (much ? 250 : 10) : channel == 1 ? 0 : much ? 240 : 20;
  });
  expectDone({"table", "pack", path("look.png"), path("look.vlk")});
  for (const bool red : {true, false}) {
    Image image{16, 16, {}};
    const Bytes pixel = red ? Bytes{255, 0, 0, 255} : Bytes{0, 0, 255, 255};
    for (int i = 0; i < 256; ++i)
      image.pixels.insert(image.pixels.end(), pixel.begin(), pixel.end());
    const Bytes result = shown(image);
    for (std::size_t i = 0; i < result.size(); i += 4) {
      ASSERT_EQ(result[i], red ? 250 : 10) << "byte " << i;
      ASSERT_EQ(result[i + 2], red ? 20 : 240) << "byte " << i;
    }
  }
  const Bytes file = readBytes(path("look.vlk"));
  ASSERT_EQ(file.size(), 12 + kPayload);
  EXPECT_EQ(Bytes(file.begin() + 4, file.begin() + 12), kGoodFactors);
}

int sampleAt(int x, int y, int channel) {
  return (x * 7 + y * 5 + x * y + channel * 85) & 255;
}

TEST_F(Table, UnpackingGivesThePictureBack) {
  const PngKind kinds[] = {
      {PNG_COLOR_TYPE_RGB, 8}, {PNG_COLOR_TYPE_RGB_ALPHA, 8}, {PNG_COLOR_TYPE_GRAY, 4}, {PNG_COLOR_TYPE_PALETTE, 8}};
  for (const PngKind& kind : kinds) {
    SCOPED_TRACE(testing::Message() << "color type " << kind.colorType << ", depth " << kind.depth);
    const int top = (1 << kind.depth) - 1;
    writePng(path("in.png"), kSide, kSide, kind,
             [&](int x, int y, int channel) { return channel == 3 ? top : sampleAt(x, y, channel) & top; });
    expectDone({"table", "pack", path("in.png"), path("look.VLK")});
    expectDone({"table", "unpack", path("look.VLK"), path("back.PNG")});
    EXPECT_TRUE(readPng(path("back.PNG")).pixels == readPng(path("in.png")).pixels);
  }
  writePng(path("8.png"), kSide, kSide, {PNG_COLOR_TYPE_RGB, 8}, sampleAt);
  writePng(path("16.png"), kSide, kSide, {PNG_COLOR_TYPE_RGB, 16},
           [](int x, int y, int channel) { return sampleAt(x, y, channel) * 257; });
  expectDone({"table", "pack", path("8.png"), path("8.vlk")});
  expectDone({"table", "pack", path("16.png"), path("16.vlk")});
  EXPECT_TRUE(readBytes(path("8.vlk")) == readBytes(path("16.vlk")));
}

struct NeutralLoader final : IBeautyResourceLoader {
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

TEST_F(Table, NeutralIsWhatTheFilterUsesByItself) {
  expectDone({"table", "neutral", path("look.vlk")});
  expectDone({"table", "neutral", path("look.png")});
  const Image picture = readPng(path("look.png"));
  ASSERT_EQ(picture.pixels.size(), kPayload);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      for (int c = 0; c < 3; ++c)
        ASSERT_EQ(picture.at(x, y)[c], (levelAt(x, y, c) * 510 + 63) / 126) << x << ", " << y << ", " << c;
    }
  }
  expectDone({"table", "pack", path("look.png"), path("again.vlk")});
  EXPECT_TRUE(readBytes(path("again.vlk")) == readBytes(path("look.vlk")));

  Image image = patternImage(32, 16);
  for (std::size_t i = 3; i < image.pixels.size(); i += 4)
    image.pixels[i] = 255;
  const Bytes result = shown(image);
  Bytes luma(32 * 16 * 3 / 2);
  VKRGBAToNV21_NeonCall(image.pixels.data(), 128, luma.data(), 32, luma.data() + 512, 32, 32, 16);
  NeutralLoader loader;
  CFastEdgePreserved filter(4, &loader);
  filter.radius = 0;
  filter.put_whitenIntensity(0);
  EXPECT_EQ(filter.processVideo(luma.data(), 32, luma.data() + 512, 32, 32, 16, image.pixels.data(), 128, true), 0);
  EXPECT_EQ(result, image.pixels);
}

TEST_F(Table, CheckTellsWhatTheEngineTakesWhole) {
  const auto expectFine = [this](const Bytes& file, const std::vector<std::string>& texts) {
    writeBytes(path("look.vlk"), file);
    const ProgramRun run = runProgram({"table", "check", path("look.vlk")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.find(path("look.vlk") + ": "), 0U) << run.out;
    for (const std::string& text : texts)
      EXPECT_NE(run.out.find(text), std::string::npos) << text << " is not in: " << run.out;
  };
  expectFine(tableFile(kGoodFactors),
             {"74 74 74 74", "A 2048 (00 08 00 00)", "B 512 (00 02 00 00)", "1048576 bytes", "1048588 bytes\n"});
  expectFine(tableFile(kGoodFactors, kPayload + 7), {"1048595 bytes, the last 7 "});
  expectFine(tableFile({0, 0xF8, 0, 0, 0, 0xFE, 0, 0}), {"A -2048 (00 F8 00 00)", "B -512 (00 FE 00 00)", "negative"});
}

TEST_F(Table, CheckAndUnpackTellWhatIsWrong) {
  const auto expectFault = [this](const Bytes& file, const std::vector<std::string>& texts) {
    writeBytes(path("look.vlk"), file);
    for (const std::string& text : texts) {
      expectRefused({"table", "check", path("look.vlk")}, text);
      expectRefused({"table", "unpack", path("look.vlk"), path("out.png")}, text);
    }
  };
  const std::string name = path("look.vlk") + ": ";
  const Bytes good = tableFile(kGoodFactors);
  expectFault({}, {name});
  expectFault(Bytes(good.begin(), good.begin() + 11), {name, "11 bytes"});
  expectFault(Bytes(good.begin(), good.begin() + 12), {name, "only 0 "});
  expectFault(Bytes(good.begin(), good.end() - 1), {name, "74 74 74 74", "only 1048575 "});
  expectFault(Bytes(std::size_t{17} << 20), {name, "16 MiB"});
  writePng(path("other.png"), 8, 8, {PNG_COLOR_TYPE_GRAY, 8}, [](int x, int, int) { return x; });
  expectFault(readBytes(path("other.png")), {name + "not a colour table of the engine, it holds a PNG\n"});
  expectFault(Bytes(40, 'a'), {name + "not a colour table, nor any other resource file of the engine\n"});
  struct Fault {
    Bytes factors;
    std::vector<std::string> texts;
  };
  const Fault faults[] = {
      {{0, 4, 0, 0, 0, 2, 0, 0}, {"states 524288 bytes", "A 1024 (00 04 00 00)"}},
      {{0, 8, 0, 0, 0, 4, 0, 0}, {"states 2097152 bytes", "B 1024 (00 04 00 00)"}},
      {{0, 8, 0, 0, 0, 0, 0, 0}, {"states 0 bytes"}},
      {{0, 0, 1, 0, 0, 0, 1, 0}, {"states 0 bytes", "A 65536", "B 65536"}},  // 2^32 wraps
      {{0xFF, 8, 0, 0, 0, 2, 0, 0}, {"states 1048064 bytes", "A 2047 (FF 08 00 00)", "negative"}},
      {{0x80, 0, 0, 0, 0, 0x20, 0, 0}, {"states -1048576 bytes", "A -128 (80 00 00 00)", "negative"}},
  };
  for (const Fault& fault : faults)
    expectFault(tableFile(fault.factors), fault.texts);
}

TEST_F(Table, UnusablePicturesAreRefused) {
  const auto refuse = [this](const std::string& in, const std::string& reason) {
    SCOPED_TRACE(in + ", " + reason);
    expectRefused({"table", "pack", path(in), path("out.vlk")}, path(in) + ": ");
    expectRefused({"table", "pack", path(in), path("out.vlk")}, reason);
  };
  for (const auto& [width, height] : {std::pair{511, 512}, {512, 513}, {1024, 256}, {1, 1}}) {
    writePng(path("in.png"), width, height, {PNG_COLOR_TYPE_GRAY, 8}, [](int, int, int) { return 9; });
    refuse("in.png", std::to_string(width) + " x " + std::to_string(height));
  }
  writePng(path("in.png"), kSide, kSide, {PNG_COLOR_TYPE_RGB_ALPHA, 8},
           [](int x, int y, int channel) { return channel == 3 && x + y == 1022 ? 254 : 255; });
  refuse("in.png", "transparent");
  writeJpeg(path("in.jpg"), kSide, kSide, {.space = 1, .channels = 1}, [](int, int, int) { return 9; });
  refuse("in.jpg", ".png");
  std::filesystem::copy_file(path("in.jpg"), path("jpeg.png"));
  refuse("jpeg.png", "JPEG");
  refuse("missing.png", "No such file");
}

TEST_F(Table, UnusableOutputIsRefused) {
  expectDone({"table", "neutral", path("good.vlk")});
  expectDone({"table", "neutral", path("good.png")});
  const auto refuse = [this](std::vector<std::string> command, const std::string& out,
                             const Surroundings& surroundings = {}) {
    SCOPED_TRACE(command[1] + " " + out);
    command.push_back(path(out));
    expectRefused(command, path(out) + ": ", surroundings);
  };
  const std::vector<std::string> pack{"table", "pack", path("good.png")};
  const std::vector<std::string> unpack{"table", "unpack", path("good.vlk")};
  const std::vector<std::string> neutral{"table", "neutral"};
  for (const std::string out : {"out.jpg", "out", "none/out.png", "none/out.vlk"}) {
    for (const auto& command : {pack, unpack, neutral})
      refuse(command, out);
  }
  refuse(pack, "out.png");
  refuse(unpack, "out.vlk");
  for (const auto& command : {pack, neutral})
    refuse(command, "good.vlk", {.fileLimit = 4096});  // the disk is full
  for (const auto& command : {unpack, neutral})
    refuse(command, "good.png", {.fileLimit = 512});
}

// Whenever it comes, the file is the old or the new one, and there is no other.
TEST_F(Table, InterruptLeavesAWholeFile) {
  expectDone({"table", "neutral", path("new.vlk")});
  const Bytes old{'o', 'l', 'd'};
  for (int delay = 0; delay < 40; ++delay) {
    writeBytes(path("look.vlk"), old);
    auto expected = contents();
    const ProgramRun run = runProgram({"table", "neutral", path("look.vlk")}, {.meanwhile = [delay](pid_t program) {
                                        usleep(static_cast<useconds_t>(delay * 250));
                                        kill(program, SIGTERM);
                                      }});
    EXPECT_TRUE(run.exitCode == 0 || run.signal == SIGTERM) << run.err;
    if (run.exitCode == 0 || readBytes(path("look.vlk")) != old) {
      expected[path("look.vlk")] = expected[path("new.vlk")];
    }
    EXPECT_TRUE(contents() == expected) << "interrupted after " << delay;
  }
}

TEST_F(Table, CommandLinesThatMakeNoSenseAreRefused) {
  expectRefused({"table"}, "vlvk-makeup: a command is required");
  expectRefused({"table", "paint"}, "vlvk-makeup: there is no 'paint'");
  expectRefused({"table", "neutral"}, "OUT");
  expectRefused({"table", "pack", "a.png"}, "a.png: OUT");
  expectRefused({"table", "check", "a.vlk", "b.vlk"}, "a.vlk: ");
}

}  // namespace
}  // namespace vlvk::tool_test
