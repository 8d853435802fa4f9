/// What colours of a video are taken for, and which encoder writes it.
#include "tests/tools/tool_support.h"
#include "tools/media/color_tags.h"
#include "tools/media/encoder_choice.h"
#include "tools/media/media_output.h"

namespace vlvk::tool_test {
namespace {

using tool::ColorPlan;
using tool::ColorTags;
using tool::UntaggedMatrix;

std::string words(const ColorTags& tags, AVPixelFormat format, int height,
                  UntaggedMatrix untagged = UntaggedMatrix::kBySize) {
  const ColorPlan plan = tool::planColors(tags, format, height, untagged);
  return tool::colorWords(plan.source) + " > " + tool::colorWords(plan.work) + (plan.assumed.empty() ? "" : "?");
}

TEST(MediaColors, UntaggedOnesGoBySizeAndFormat) {
  const ColorTags none;
  EXPECT_EQ(words(none, AV_PIX_FMT_YUV420P, 719), "BT.601, limited range > BT.601, limited range?");
  EXPECT_EQ(words(none, AV_PIX_FMT_YUV420P, 720), "BT.709, limited range > BT.709, limited range?");
  EXPECT_EQ(words(none, AV_PIX_FMT_YUV420P, 720, UntaggedMatrix::kBt601),
            "BT.601, limited range > BT.601, limited range?");
  EXPECT_EQ(words(none, AV_PIX_FMT_YUVJ422P, 1080), "BT.709, full range > BT.709, full range?");
  EXPECT_EQ(words(none, AV_PIX_FMT_RGB24, 480), "RGB > BT.601, limited range");
  EXPECT_EQ(words(none, AV_PIX_FMT_GBRP, 720), "RGB > BT.709, limited range");
  ColorTags sd;
  sd.primaries = AVCOL_PRI_SMPTE170M;
  EXPECT_EQ(words(sd, AV_PIX_FMT_NV12, 1080), "BT.601, limited range > BT.601, limited range?");
}

TEST(MediaColors, TagsCountMoreThanTheSize) {
  const ColorTags sd{AVCOL_SPC_BT470BG, AVCOL_RANGE_JPEG};
  EXPECT_EQ(words(sd, AV_PIX_FMT_YUV420P, 1080), "BT.601, full range > BT.601, full range");
  const ColorTags wide{AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, AVCOL_PRI_BT2020, AVCOL_TRC_BT2020_10};
  const ColorPlan plan = tool::planColors(wide, AV_PIX_FMT_YUV420P10, 480, UntaggedMatrix::kBySize);
  EXPECT_EQ(tool::colorWords(plan.work), "BT.709, limited range");
  EXPECT_EQ(plan.work.primaries, AVCOL_PRI_BT709);
  EXPECT_EQ(plan.work.transfer, AVCOL_TRC_BT709);
  const auto refusal = [](AVColorSpace matrix, AVColorTransferCharacteristic transfer) {
    return reasonOf([&] { words({matrix, {}, {}, transfer}, AV_PIX_FMT_YUV420P10, 1080); });
  };
  expectHolds(refusal(AVCOL_SPC_BT2020_NCL, AVCOL_TRC_SMPTE2084), "HDR video (PQ)");
  expectHolds(refusal(AVCOL_SPC_UNSPECIFIED, AVCOL_TRC_ARIB_STD_B67), "HDR video (HLG)");
  expectHolds(refusal(AVCOL_SPC_YCGCO, AVCOL_TRC_BT709), "matrix ycgco");
}

std::string encoderFor(const std::string& out, const tool::EncoderWishes& wishes = {}) {
  tool::EncoderChoice choice = tool::chooseEncoder(tool::outputKind(out, ""), wishes);
  const AVDictionaryEntry* crf = av_dict_get(*choice.options.get(), "crf", nullptr, 0);
  return choice.codec->name + std::string(crf == nullptr ? "" : " ") + (crf == nullptr ? "" : crf->value);
}

TEST(MediaEncoder, GoesByTheKindOfFile) {
  for (const std::string name : {"a.mp4", "a.MOV", "a.mkv", "a.ts", "a.flv"})
    EXPECT_EQ(encoderFor(name), "libx264 18");
  EXPECT_EQ(encoderFor("a.webm"), "libvpx-vp9 24");
  EXPECT_EQ(encoderFor("a.avi"), "mpeg4");
  EXPECT_EQ(encoderFor("a.mp4", {"hevc", 23.5, "fast"}), "libx265 23.5");
  const auto refusal = [](const std::string& name, const tool::EncoderWishes& wishes) {
    return reasonOf([&] { encoderFor(name, wishes); });
  };
  expectHolds(refusal("a.mp4", {"no", {}, ""}), "--codec: FFmpeg has no encoder 'no'");
  expectHolds(refusal("a.mp4", {"aac", {}, ""}), "--codec: FFmpeg has no encoder 'aac' for video");
  expectHolds(refusal("a.webm", {"h264", {}, ""}), "hold no h264");
  expectHolds(refusal("a.avi", {"", {}, "fast"}), "--preset: the encoder mpeg4 has none");
  expectHolds(refusal("a", {}), "its name ends like no kind");
}

}  // namespace
}  // namespace vlvk::tool_test
