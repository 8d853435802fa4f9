/// What the handle refuses, in which words, and that nothing has changed then; structures of other versions.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/engine/makeup_rig.h"

namespace makeup_rig {
namespace {

struct MakeupContract : testing::Test {
  MakeupContract() { EXPECT_EQ(engine.setTable(true), VLVK_OK); }
  ~MakeupContract() override {  // settings and table are as they were
    EXPECT_EQ(engine.check(source, target) + engine.check(source, source), "");
  }
  VlvkResult process(const VlvkFrame* from, const VlvkFrame* to, const VlvkMask* mask = nullptr) const {
    const Picture::Memory before[] = {source.content(), target.content()};
    const VlvkResult result = vlvkMakeupProcess(engine.makeup, from, to, mask);
    EXPECT_EQ(result == VLVK_OK ? "" : source.difference(before[0]) + target.difference(before[1]), "");
    return result;
  }

  Random random{311};
  Engine engine{settingsOf(40, 900, 16)};
  const Picture source{VLVK_NV12, 1, 128, 34};
  const Picture target{VLVK_NV12, 1, 128, 34, random};
};

TEST_F(MakeupContract, RefusesFramesWithWords) {
  const std::tuple<VlvkResult, std::string, void (*)(VlvkFrame&)> cases[] = {
      {VLVK_NULL_POINTER, "plane 0: null pointer", [](auto& f) { f.plane[0] = nullptr; }},
      {VLVK_NULL_POINTER, "plane 2: null pointer", [](auto& f) { f.format = VLVK_I420; }},
      {VLVK_BAD_STRIDE, "plane 0: stride 127, a row has 128 bytes", [](auto& f) { f.stride[0] = 127; }},
      {VLVK_BAD_STRIDE, "plane 1: stride -128, a row has 128 bytes", [](auto& f) { f.stride[1] = -128; }},
      {VLVK_BAD_STRIDE, "plane 0: stride 383, a row has 384", [](auto& f) { f.format = 20, f.stride[0] = 383; }},
      {VLVK_BAD_STRIDE, "plane 1: stride 129, a row has 130",
       [](auto& f) { f.width = f.stride[0] = f.stride[1] = 129; }},
      {VLVK_BAD_FORMAT, "format 22 is unknown", [](auto& f) { f.format = 22; }},
      {VLVK_BAD_FORMAT, "matrix 2, range 1: the matrix is 1 (BT.709), 5 or 6 ", [](auto& f) { f.matrix = 2; }},
      {VLVK_BAD_FORMAT, "matrix 6, range 2: the matrix is", [](auto& f) { f.range = 2; }},
      {VLVK_BAD_SIZE, "0 x 34 pixels: each side has 1 to 65535", [](auto& f) { f.width = 0; }},
      {VLVK_BAD_SIZE, "128 x -2147483648 pixels: each side has", [](auto& f) { f.height = INT_MIN; }},
      {VLVK_BAD_SIZE, "65536 x 34 pixels: each side has", [](auto& f) { f.width = 65536; }},
      {VLVK_BAD_SIZE, "128 x 65536 pixels: each side has", [](auto& f) { f.height = 65536; }},
      {VLVK_BAD_SIZE, "plane 0: ", [](auto& f) { f.plane[0] = reinterpret_cast<Byte*>(UINTPTR_MAX - 4000); }},
      {VLVK_OTHER_VERSION, "frame: size 0, this version has", [](auto& f) { f.size = 0; }},
      {VLVK_OTHER_VERSION, "frame: size 4097, this version has", [](auto& f) { f.size = 4097; }},
  };
  for (const auto& [result, words, spoil] : cases) {
    for (const bool isTarget : {false, true}) {
      VlvkFrame frames[] = {source.frame, target.frame};
      spoil(frames[isTarget]);
      EXPECT_EQ(process(&frames[0], &frames[1]), result) << words;
      char text[200];
      EXPECT_EQ(vlvkFrameCheck(&frames[isTarget], text, sizeof text), result);
      EXPECT_EQ(std::string(text).substr(0, words.size()), words);
      char small[] = "????????";
      vlvkFrameCheck(&frames[isTarget], small, 5);
      EXPECT_EQ(std::string(small, 6), words.substr(0, 4) + '\0' + '?') << "room for 5 bytes";
    }
  }
  const VlvkFrame& good = source.frame;
  char text[] = "??";
  EXPECT_EQ(vlvkFrameCheck(&good, text, 0), VLVK_OK);
  EXPECT_STREQ(text, "??");
  EXPECT_EQ(vlvkFrameCheck(&good, text, sizeof text), VLVK_OK);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(vlvkFrameCheck(nullptr, nullptr, 9), VLVK_NULL_POINTER);
  EXPECT_EQ(process(nullptr, &good), VLVK_NULL_POINTER);
  EXPECT_EQ(process(&good, nullptr), VLVK_NULL_POINTER);
  EXPECT_EQ(vlvkMakeupProcess(nullptr, &good, &good, nullptr), VLVK_NULL_POINTER);
}

TEST_F(MakeupContract, RefusesMasks) {
  constexpr uint32_t kKnown = sizeof(VlvkMask);
  constexpr int kPlane = 128 * 34;
  Bytes memory(std::size_t{3} * kPlane);  // 8 bytes, luma, something between, chroma
  Byte* const luma = &memory[8];
  Byte* const chroma = luma + kPlane + 200;
  const VlvkFrame to = {sizeof to, VLVK_NV12, VLVK_BT601, VLVK_LIMITED, 128, 34, {luma, chroma}, {128, 128}};
  const Bytes other(std::size_t{9} * 40);
  struct {
    VlvkMask known;
    Byte tail[8] = {0, 0, 0, 1};  // of a later version
  } mask;
  const std::tuple<VlvkResult, VlvkMask> cases[] = {
      {VLVK_OK, {kKnown, 40, 9, 40, other.data()}},
      {VLVK_OK, {kKnown + 3, 1, 1, 1, other.data()}},
      {VLVK_OTHER_VERSION, {kKnown + 4, 1, 1, 1, other.data()}},
      {VLVK_OTHER_VERSION, {kKnown - 1, 1, 1, 1, other.data()}},
      {VLVK_BAD_SIZE, {kKnown, 0, 9, 40, other.data()}},
      {VLVK_BAD_SIZE, {kKnown, 40, -1, 40, other.data()}},
      {VLVK_BAD_SIZE, {kKnown, 40, 200, 40, reinterpret_cast<Byte*>(UINTPTR_MAX - 4000)}},
      {VLVK_BAD_STRIDE, {kKnown, 40, 9, 39, other.data()}},
      {VLVK_NULL_POINTER, {kKnown, 40, 9, 40, nullptr}},
      {VLVK_OK, {kKnown, 8, 1, 8, luma - 8}},
      {VLVK_OVERLAP, {kKnown, 8, 1, 8, luma - 7}},
      {VLVK_OK, {kKnown, 1, 200, 1, luma + kPlane}},
      {VLVK_OVERLAP, {kKnown, 1, 2, 200, luma + kPlane}},  // its last row
      {VLVK_OVERLAP, {kKnown, 1, 1, 1, chroma + 128 * 17 - 1}},
      {VLVK_OK, {kKnown, 128, 34, 128, source.planes[0].row(0)}},  // a source may
  };
  for (const auto& [result, given] : cases) {
    mask.known = given;
    memory.assign(memory.size(), 100);
    EXPECT_EQ(process(&source.frame, &to, &mask.known), result);
    EXPECT_EQ(memory == Bytes(memory.size(), 100), result != VLVK_OK) << result;
  }
  EXPECT_EQ(process(&source.frame, &source.frame, &mask.known), VLVK_OVERLAP);
}

TEST_F(MakeupContract, KnowsWhichPlanesShareMemory) {
  constexpr int kPlane = 128 * 34;
  constexpr int kEnd = 2 * kPlane + kPlane / 2;  // of the source
  Bytes memory(std::size_t{4} * kPlane, 100);
  const auto frame = [&](int first, int second, int format = VLVK_NV12, int matrix = 6, int stride = 128) {
    return VlvkFrame{sizeof(VlvkFrame), format, matrix, 1, 128, 34, {&memory[first], &memory[second]}, {128, stride}};
  };
  const VlvkFrame from = frame(kPlane, 2 * kPlane);
  VlvkFrame narrow = from;
  narrow.width = 126;
  const std::tuple<VlvkFrame, VlvkFrame, VlvkResult> cases[] = {
      {from, frame(kPlane, 2 * kPlane, VLVK_NV21), VLVK_OVERLAP},
      {from, frame(kPlane, 2 * kPlane, VLVK_NV12, 1), VLVK_OVERLAP},
      {from, frame(kPlane, 2 * kPlane, VLVK_NV12, 6, 129), VLVK_OVERLAP},
      {from, frame(kPlane, 2 * kPlane, VLVK_NV12, 5), VLVK_OK},  // BT.601 as well: in place
      {from, frame(1, kEnd), VLVK_OVERLAP},
      {from, frame(0, kEnd - 1), VLVK_OVERLAP},
      {from, frame(0, kEnd), VLVK_OK},
      {from, frame(0, kPlane - 1), VLVK_OVERLAP},
      {from, frame(kEnd, kEnd + 9), VLVK_OVERLAP},  // the target with itself
      {frame(0, 9), frame(0, 9), VLVK_OVERLAP},
      {frame(0, 9), from, VLVK_OK},  // a source may
      {from, narrow, VLVK_BAD_SIZE},
      {frame(0, 0, VLVK_RGBA, 77, 0), frame(0, 0, VLVK_RGBA, 6, 0), VLVK_BAD_STRIDE},
  };
  for (const auto& [given, wanted, result] : cases) {
    memory.assign(memory.size(), 100);
    EXPECT_EQ(process(&given, &wanted), result);
    EXPECT_TRUE(result == VLVK_OK || memory == Bytes(memory.size(), 100)) << result;
  }
}

TEST_F(MakeupContract, RefusesSettingsOutOfRangeAndOtherTables) {
  const struct {
    int32_t VlvkSettings::*member;
    int least, most;
  } ranges[] = {{&VlvkSettings::whitening, 0, 100}, {&VlvkSettings::softening, 0, 1000},
                {&VlvkSettings::radius, -1, 128},   {&VlvkSettings::contrast, 0, 1},
                {&VlvkSettings::whitenArea, 0, 1},  {&VlvkSettings::evenTone, 0, 1000},
                {&VlvkSettings::threads, 0, 64}};
  for (const auto& [member, least, most] : ranges) {
    for (const int value : {INT_MIN, least - 1, least, most, most + 1, INT_MAX}) {
      VlvkSettings given = engine.settings;
      given.*member = value;
      const VlvkResult result = value >= least && value <= most ? VLVK_OK : VLVK_BAD_SETTING;
      VlvkMakeup* made = engine.makeup;
      EXPECT_EQ(vlvkMakeupCreate(&made, &given), result) << value;
      EXPECT_EQ(made == nullptr, result != VLVK_OK);
      vlvkMakeupDestroy(made);
      EXPECT_EQ(result == VLVK_OK ? VLVK_BAD_SETTING : vlvkMakeupConfigure(engine.makeup, &given), VLVK_BAD_SETTING);
    }
  }
  EXPECT_EQ(vlvkMakeupConfigure(engine.makeup, nullptr), VLVK_NULL_POINTER);
  EXPECT_EQ(vlvkMakeupConfigure(nullptr, &engine.settings), VLVK_NULL_POINTER);
  EXPECT_EQ(vlvkMakeupCreate(nullptr, nullptr), VLVK_NULL_POINTER);
  vlvkMakeupDestroy(nullptr);

  Bytes file = tableFile();
  for (std::size_t i = 12; i < file.size(); ++i)
    file[i] ^= 0xFF;
  EXPECT_EQ(vlvkMakeupSetTable(engine.makeup, file.data(), file.size() - 1), VLVK_BAD_TABLE);
  EXPECT_EQ(vlvkMakeupSetTable(engine.makeup, file.data(), 0), VLVK_BAD_TABLE);
  EXPECT_EQ(vlvkMakeupSetTable(nullptr, file.data(), file.size()), VLVK_NULL_POINTER);
  file[5] = 2;  // half of its size
  EXPECT_EQ(vlvkMakeupSetTable(engine.makeup, file.data(), file.size()), VLVK_BAD_TABLE);
}

TEST_F(MakeupContract, TakesStructuresOfOtherVersions) {
  struct {
    VlvkSettings known;
    Byte tail[5000];
  } given = {engine.settings, {}};
  constexpr std::size_t kKnown = sizeof(VlvkSettings);
  const auto configure = [&](std::size_t size) {
    given.known.size = static_cast<uint32_t>(size);
    return vlvkMakeupConfigure(engine.makeup, &given.known);
  };
  given.tail[100] = 1;  // a member that is not known
  EXPECT_EQ(configure(kKnown + 100), VLVK_OK);
  EXPECT_EQ(configure(kKnown + 101), VLVK_OTHER_VERSION);
  given.tail[100] = 0;
  EXPECT_EQ(configure(4096), VLVK_OK);
  for (const std::size_t size : {std::size_t{0}, kKnown - 1, std::size_t{4097}, std::size_t{UINT32_MAX}}) {
    EXPECT_EQ(configure(size), VLVK_OTHER_VERSION) << size;
    vlvkSettingsInit(&given.known, size);
    EXPECT_EQ(given.known.whitening, engine.settings.whitening) << size;
  }
  std::memset(&given, 0xEE, sizeof given);
  vlvkSettingsInit(&given.known, kKnown + 3);
  EXPECT_EQ(given.known.size, kKnown + 3);
  EXPECT_TRUE(given.tail[2] == 0 && given.tail[3] == 0xEE);
  VlvkSettings defaults = settingsOf(50, 1000, VLVK_RADIUS_AUTO, 0);
  defaults.size = given.known.size;
  defaults.contrast = VLVK_CONTRAST_RELATIVE;
  EXPECT_EQ(std::memcmp(&given.known, &defaults, kKnown), 0);
  vlvkSettingsInit(nullptr, kKnown);

  struct {
    VlvkFrame known;
    int64_t tail;
  } frame = {source.frame, 0};
  frame.known.size = sizeof frame;
  EXPECT_EQ(process(&frame.known, &frame.known), VLVK_OK);
  frame.tail = 1;
  EXPECT_EQ(process(&frame.known, &frame.known), VLVK_OTHER_VERSION);
  char text[80];
  vlvkFrameCheck(&frame.known, text, sizeof text);
  EXPECT_NE(std::string(text).find(" are not 0, members of a later version"), std::string::npos);
}

TEST(MakeupFrame, DescribesThreePlanes) {
  constexpr uint32_t kSize = sizeof(VlvkFrame);
  Byte y[4000];
  Byte* const c = y + 2000;
  const struct {
    Byte* planes[3];
    int32_t strides[3];
    int step;
    VlvkResult result;
    VlvkFrame frame;
  } cases[] = {
      {{y, c, c + 1}, {40, 44, 44}, 2, VLVK_OK, {kSize, VLVK_NV12, 78, 79, 40, 25, {y, c}, {40, 44}}},
      {{y, c + 1, c}, {40, 44, 44}, 2, VLVK_OK, {kSize, VLVK_NV21, 78, 79, 40, 25, {y, c}, {40, 44}}},
      {{y, c, c + 600}, {48, 20, 24}, 1, VLVK_OK, {kSize, VLVK_I420, 78, 79, 40, 25, {y, c, c + 600}, {48, 20, 24}}},
      {{y, c, c + 1}, {40, 20, 20}, 1, VLVK_OK, {kSize, VLVK_I420, 78, 79, 40, 25, {y, c, c + 1}, {40, 20, 20}}},
      {{y, c, c + 2}, {40, 44, 44}, 2, VLVK_BAD_FORMAT, {}},
      {{y, c, c + 1}, {40, 44, 44}, 3, VLVK_BAD_FORMAT, {}},
      {{y, c, c + 1}, {40, 44, 44}, 0, VLVK_BAD_FORMAT, {}},
      {{y, c, c + 1}, {40, 44, 40}, 2, VLVK_BAD_STRIDE, {}},
      {{y, c, c + 1}, {39, 44, 44}, 2, VLVK_BAD_STRIDE, {}},
      {{y, c, c + 600}, {40, 20, 19}, 1, VLVK_BAD_STRIDE, {}},
      {{y, nullptr, c}, {40, 40, 40}, 1, VLVK_NULL_POINTER, {}},
  };
  const VlvkFrame given = {kSize, 77, 78, 79, 40, 25, {y, y, y, y}, {5, 6, 7, 8}};
  for (const auto& [planes, strides, step, result, described] : cases) {
    VlvkFrame frame = given;
    EXPECT_EQ(vlvkFrameFromYuv420(&frame, planes, strides, step), result) << step;
    EXPECT_EQ(std::memcmp(&frame, result == VLVK_OK ? &described : &given, kSize), 0) << strides[0];
  }
  const auto& [planes, strides, step, result, none] = cases[0];
  VlvkFrame frame = given;
  EXPECT_EQ(vlvkFrameFromYuv420(nullptr, planes, strides, step), VLVK_NULL_POINTER);
  EXPECT_EQ(vlvkFrameFromYuv420(&frame, nullptr, strides, step), VLVK_NULL_POINTER);
  EXPECT_EQ(vlvkFrameFromYuv420(&frame, planes, nullptr, step), VLVK_NULL_POINTER);
  frame.height = 0;
  EXPECT_EQ(vlvkFrameFromYuv420(&frame, planes, strides, step), VLVK_BAD_SIZE);
  frame.size = 3;
  EXPECT_EQ(vlvkFrameFromYuv420(&frame, planes, strides, step), VLVK_OTHER_VERSION);
}

TEST(MakeupResult, HasWordsForAnyNumber) {
  std::set<std::string> texts;
  for (int i = VLVK_OK; i >= VLVK_OTHER_VERSION - 1; --i)
    texts.insert(vlvkResultText(static_cast<VlvkResult>(i)));
  EXPECT_EQ(texts.size(), 11U);
  EXPECT_STREQ(vlvkResultText(static_cast<VlvkResult>(1)), "unknown result");
}

}  // namespace
}  // namespace makeup_rig
