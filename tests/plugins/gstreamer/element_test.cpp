/// The element does to buffers what the handle does to frames, and says what it does not do.
#include <gst/controller/gstdirectcontrolbinding.h>
#include <gst/controller/gstinterpolationcontrolsource.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <tuple>

#include "tests/plugins/gstreamer/element_rig.h"

namespace {

using namespace element_rig;  // NOLINT(google-build-using-namespace)
using plugin_test::defaultSettings;
using testing_support::Random;

constexpr struct {
  const char* name;
  VlvkFormat format;
} kFormats[] = {{"NV12", VLVK_NV12}, {"NV21", VLVK_NV21}, {"I420", VLVK_I420}, {"RGBA", VLVK_RGBA}, {"BGRA", VLVK_BGRA},
                {"RGBx", VLVK_RGBX}, {"BGRx", VLVK_BGRX}, {"RGB", VLVK_RGB},   {"BGR", VLVK_BGR}};

constexpr struct {
  const char* text;
  VlvkMatrix matrix;
  VlvkRange range;
} kColors[] = {{"2:4:0:0", VLVK_BT601, VLVK_LIMITED}, {"1:4:7:1", VLVK_BT601, VLVK_FULL},
               {"0:4:0:0", VLVK_BT601, VLVK_FULL},    {"bt709", VLVK_BT709, VLVK_LIMITED},
               {"1:3:0:0", VLVK_BT709, VLVK_FULL},    {"", VLVK_BT601, VLVK_LIMITED}};  // BT.709 from 577 lines on

// Every size, colorimetry and kind of buffer in turn: one element renegotiates.
TEST(GstElement, DoesWhatTheHandleDoesToEveryFormat) {
  Random random(2);
  const Engine engine = engineOf(defaultSettings());
  for (const auto& format : kFormats) {
    Element element;
    for (const auto& colors : kColors) {
      for (const auto& [width, height] : {std::pair{64, 48}, {17, 13}, {1, 1}, {150, 3}, {2, 577}}) {
        Video video{format.name, format.format, width, height, colors.text, colors.matrix, colors.range};
        if (*colors.text == 0 && height > 576) video.matrix = VLVK_BT709;
        if (*colors.text != 0 && video.format >= VLVK_RGBA) video.colorimetry = "sRGB";
        element.caps(video);
        for (const int slack : {0, 5, 64}) {
          SCOPED_TRACE(video.caps() + ", slack " + std::to_string(slack));
          Buffer input = video.noise(random, slack);
          GstBuffer* const sent = input.get();
          const Buffer expected = video.expected(engine.get(), sent);
          const Bytes before = allBytes(sent);

          const Buffer shared(gst_buffer_ref(sent));
          const Buffer elsewhere = element.through(std::move(input));
          ASSERT_TRUE(elsewhere);
          EXPECT_NE(elsewhere.get(), sent);
          EXPECT_TRUE(allBytes(sent) == before) << "a buffer that others read is written to";
          EXPECT_TRUE(allBytes(elsewhere.get()) == allBytes(video.expected(engine.get(), sent, elsewhere.get()).get()));

          Buffer own(gst_buffer_copy_deep(sent));
          GstBuffer* const ownSent = own.get();
          const Buffer inPlace = element.through(std::move(own));
          EXPECT_EQ(inPlace.get(), ownSent);
          EXPECT_TRUE(allBytes(inPlace.get()) == allBytes(expected.get()));
        }
      }
    }
    EXPECT_EQ(element.error(), "");
  }
}

// Memory that is read-only, and memory that another buffer has too.
TEST(GstElement, LeavesMemoryAloneThatIsNotItsOwn) {
  Random random(3);
  const Video video;
  Element element;
  element.caps(video);
  const Buffer original = video.noise(random);
  Bytes bytes = allBytes(original.get());
  const Bytes before = bytes;
  GstBuffer* readOnly = gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, bytes.data(), bytes.size(), 0,
                                                    bytes.size(), nullptr, nullptr);
  for (GstBuffer* sent : {readOnly, gst_buffer_copy(original.get())}) {
    const Buffer result = element.through(Buffer(sent));
    ASSERT_TRUE(result);
    EXPECT_NE(result.get(), sent);
    EXPECT_NE(allBytes(result.get()), before);
    EXPECT_EQ(bytes, before);
    EXPECT_EQ(allBytes(original.get()), before);
  }
}

TEST(GstElement, PromisesTheStridesThatComeAfterIt) {
  GstCaps* caps = gst_caps_from_string(Video().caps().c_str());
  for (const bool any : {false, true}) {
    Element element;
    if (any) gst_harness_add_propose_allocation_meta(element.harness, GST_VIDEO_META_API_TYPE, nullptr);
    element.caps(Video());
    GstQuery* query = gst_query_new_allocation(caps, TRUE);
    EXPECT_TRUE(gst_pad_peer_query(element.harness->srcpad, query));
    EXPECT_EQ(gst_query_find_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr) != FALSE, any);
    gst_query_unref(query);
  }
  gst_caps_unref(caps);
}

// Rows that overlap, a picture upside down, planes that end past the buffer or another of its memories.
TEST(GstElement, RefusesBuffersThatDoNotHoldAFrame) {
  Random random(9);
  const Video video;
  const struct {
    int stride;  // 0: no video meta
    int chromaStride;
    gsize bytes;
    gsize moreBytes;
    const char* words;
  } cases[] = {{63, 64, 4608, 0, "plane 0: stride 63"},
               {-64, 64, 4608, 0, "plane 0: stride -64"},
               {64, 128, 4608, 0, "4608 bytes"},
               {64, 64, 4000, 608, "4608 bytes"},
               {0, 0, 4607, 0, "4607 bytes"}};
  for (const auto& c : cases) {
    Element element;
    element.caps(video);
    Buffer input(gst_buffer_new_allocate(nullptr, c.bytes, nullptr));
    if (c.moreBytes != 0) gst_buffer_append_memory(input.get(), gst_allocator_alloc(nullptr, c.moreBytes, nullptr));
    gsize offsets[GST_VIDEO_MAX_PLANES] = {c.stride < 0 ? gsize{47} * 64 : 0, gsize{48} * 64};
    gint strides[GST_VIDEO_MAX_PLANES] = {c.stride, c.chromaStride};
    if (c.stride != 0) {
      gst_buffer_add_video_meta_full(input.get(), GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_FORMAT_NV12, 64, 48, 2, offsets,
                                     strides);
    }
    EXPECT_EQ(element.push(std::move(input)), GST_FLOW_ERROR) << c.words;
    EXPECT_NE(element.error().find(c.words), std::string::npos) << c.words;
    EXPECT_TRUE(element.through(video.noise(random)));
  }
}

TEST(GstElement, RefusesWhatTheEngineDoesNotDoAndSaysWhy) {
  const std::string nv12 = "video/x-raw,format=NV12,framerate=25/1,width=64,height=48";
  const std::pair<std::string, std::string> cases[] = {
      {nv12 + ",interlace-mode=interleaved", "Interlaced frames (interlace-mode=interleaved)"},
      {nv12 + ",interlace-mode=mixed", "interlace-mode=mixed"},
      {nv12 + ",colorimetry=bt2020", "matrix BT.2020"},
      {nv12 + ",colorimetry=smpte240m", "matrix SMPTE 240M"},
      {nv12 + ",colorimetry=2:2:0:0", "matrix FCC"},
      {nv12 + ",colorimetry=bt2100-pq", "HDR"},
      {nv12 + ",multiview-mode=separated,views=2", "several views"},
      {"video/x-raw,format=RGB,framerate=25/1,width=8,height=8,colorimetry=2:1:0:0", "limited range"},
      {"video/x-raw,format=NV12,framerate=25/1,width=65536,height=2", "65536 x 2 pixels"},
      {"video/x-raw,format=NV12,framerate=25/1,width=2,height=65536", "2 x 65536 pixels"},
  };
  Random random(5);
  const Video good;
  for (const auto& [caps, reason] : cases) {
    Element element;
    element.caps(caps);
    EXPECT_EQ(element.push(good.noise(random)), GST_FLOW_NOT_NEGOTIATED) << caps;
    EXPECT_NE(element.error().find(reason), std::string::npos) << caps;
    EXPECT_EQ(element.error(), "") << "said twice: " << caps;
    element.caps(good);
    EXPECT_TRUE(element.through(good.noise(random))) << caps;
  }
  Element element;
  GstCaps* others = gst_caps_from_string("video/x-raw,format=YUY2; video/x-raw(memory:DMABuf),format=NV12");
  GstPad* sink = gst_element_get_static_pad(element.element, "sink");
  GstCaps* taken = gst_pad_query_caps(sink, nullptr);
  EXPECT_FALSE(gst_caps_can_intersect(taken, others));
  gst_object_unref(sink);
  gst_caps_unref(taken);
  gst_caps_unref(others);
}

TEST(GstElement, ChangesFromBufferToBuffer) {
  Random random(6);
  const Table table;
  const Video video;
  const Buffer skin = video.noise(random);  // made as quiet as skin, and of its colour, but for the first columns
  GstMapInfo map;
  gst_buffer_map(skin.get(), &map, GST_MAP_READWRITE);
  for (int i = 0; i < 64 * 72; ++i) {
    const int quiet = i >= 64 * 48 ? (i % 2 != 0 ? 145 : 105) : 40 + 2 * (i % 64);
    if (i % 64 >= 8) map.data[i] = static_cast<std::uint8_t>(quiet + map.data[i] / 16);
  }
  gst_buffer_unmap(skin.get(), &map);
  Element element;
  element.caps(video);
  VlvkSettings settings = defaultSettings();
  const Engine engine = engineOf(settings);
  const struct {
    const char* property;
    const char* value;
    std::int32_t VlvkSettings::*setting;
    int number;
  } changes[] = {{"whitening", "0", &VlvkSettings::whitening, 0},
                 {"whitening", "100", &VlvkSettings::whitening, 100},
                 {"whiten-area", "skin", &VlvkSettings::whitenArea, VLVK_WHITEN_SKIN},
                 {"softening", "400", &VlvkSettings::softening, 400},
                 {"radius", "24", &VlvkSettings::radius, 24},
                 {"contrast", "absolute", &VlvkSettings::contrast, VLVK_CONTRAST_ABSOLUTE},
                 {"even-tone", "1000", &VlvkSettings::evenTone, 1000},
                 {"threads", "3", &VlvkSettings::threads, 3},
                 {"radius", "-1", &VlvkSettings::radius, -1}};
  const auto check = [&](const std::string& what) {
    const Buffer expected = video.expected(engine.get(), skin.get());
    const Buffer result = element.through(Buffer(gst_buffer_copy_deep(skin.get())));
    ASSERT_TRUE(result) << what;
    EXPECT_TRUE(allBytes(result.get()) == allBytes(expected.get())) << what;
  };
  for (const auto& change : changes) {
    const Buffer before = video.expected(engine.get(), skin.get());
    element.set(change.property, change.value);
    settings.*change.setting = change.number;
    ASSERT_EQ(vlvkMakeupConfigure(engine.get(), &settings), VLVK_OK);
    check(change.property);
    EXPECT_EQ(allBytes(before.get()) == allBytes(video.expected(engine.get(), skin.get()).get()),
              change.setting == &VlvkSettings::threads)
        << change.property << " shows nothing";
  }
  element.set("table", table.path);
  ASSERT_EQ(vlvkMakeupSetTable(engine.get(), table.bytes.data(), table.bytes.size()), VLVK_OK);
  check("table");
  for (const std::string bad : {"/none.vlk", "/", "/dev/null"}) {
    element.set("table", bad);
    EXPECT_NE(element.error().find("'" + bad + "'"), std::string::npos);
    EXPECT_EQ(element.get("table"), table.path) << "the table in use";
    check("the table of before");
  }
  g_object_set(element.element, "table", nullptr, nullptr);
  ASSERT_EQ(vlvkMakeupSetTable(engine.get(), nullptr, 0), VLVK_OK);
  check("no table");

  GstControlSource* ramp = gst_interpolation_control_source_new();
  g_object_set(ramp, "mode", GST_INTERPOLATION_MODE_LINEAR, nullptr);
  gst_timed_value_control_source_set(GST_TIMED_VALUE_CONTROL_SOURCE(ramp), 0, 0.0);
  gst_timed_value_control_source_set(GST_TIMED_VALUE_CONTROL_SOURCE(ramp), GST_SECOND, 1.0);
  ASSERT_TRUE(gst_object_add_control_binding(
      GST_OBJECT(element.element), gst_direct_control_binding_new(GST_OBJECT(element.element), "whitening", ramp)));
  gst_object_unref(ramp);
  Buffer later = video.noise(random);
  GST_BUFFER_PTS(later.get()) = GST_SECOND / 4;
  settings.whitening = 25;
  vlvkMakeupConfigure(engine.get(), &settings);
  const Buffer expected = video.expected(engine.get(), later.get());
  EXPECT_TRUE(allBytes(element.through(std::move(later)).get()) == allBytes(expected.get())) << "controlled";
}

TEST(GstElement, PassesBuffersOnWhereNothingIsToBeDone) {
  Random random(7);
  const Table table;
  const Video video{"RGBx", VLVK_RGBX, 64, 48, "sRGB"};
  Element element;
  element.caps(video);
  const auto passes = [&] {
    Buffer input = video.noise(random);
    const Buffer shared(gst_buffer_ref(input.get()));
    const Bytes before = allBytes(input.get());
    const Buffer result = element.through(std::move(input));
    return result == shared && allBytes(result.get()) == before;
  };
  EXPECT_FALSE(passes());
  for (const auto& [property, value, idle] : {std::tuple{"enabled", "false", true},
                                              {"enabled", "true", false},
                                              {"whitening", "0", false},
                                              {"softening", "0", true},
                                              {"even-tone", "1", false},
                                              {"radius", "0", true},
                                              {"table", table.path.c_str(), false}}) {
    element.set(property, value);
    EXPECT_EQ(passes(), idle) << property << "=" << value;
  }
}

TEST(GstElement, StopsAndStartsAgain) {
  Random random(8);
  const Table table;
  const Video video;
  Element element;
  element.caps(video);
  EXPECT_TRUE(element.through(video.noise(random)));
  gst_harness_push_event(element.harness, gst_event_new_flush_start());
  gst_harness_push_event(element.harness, gst_event_new_flush_stop(TRUE));
  GstSegment segment;
  gst_segment_init(&segment, GST_FORMAT_BYTES);  // as of bare frames in a file
  gst_harness_push_event(element.harness, gst_event_new_segment(&segment));
  EXPECT_TRUE(element.through(video.noise(random))) << "after a flush, without times";

  gst_element_set_state(element.element, GST_STATE_NULL);
  element.set("table", "/none.vlk");
  EXPECT_EQ(element.error(), "") << "it is read at the start";
  EXPECT_EQ(gst_element_set_state(element.element, GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
  EXPECT_NE(element.error().find("'/none.vlk' cannot be read: No such file"), std::string::npos);
  gst_element_set_state(element.element, GST_STATE_NULL);
  element.set("table", table.path);
  EXPECT_EQ(gst_element_set_state(element.element, GST_STATE_PLAYING), GST_STATE_CHANGE_SUCCESS);
  gst_harness_push_event(element.harness, gst_event_new_stream_start("again"));
  element.caps(video);
  Buffer input = video.noise(random);
  const Engine engine = engineOf(defaultSettings());
  vlvkMakeupSetTable(engine.get(), table.bytes.data(), table.bytes.size());
  const Buffer expected = video.expected(engine.get(), input.get());
  const Buffer result = element.through(std::move(input));
  ASSERT_TRUE(result);
  EXPECT_TRUE(allBytes(result.get()) == allBytes(expected.get()));

  gst_harness_push_event(element.harness, gst_event_new_eos());
  EXPECT_EQ(element.push(video.noise(random)), GST_FLOW_EOS);
}

// Each stream has its own engine, and properties change while frames run.
TEST(GstElement, RunsInManyStreamsAtOnce) {
  const Table table;
  std::vector<std::thread> streams;
  for (unsigned seed = 0; seed < 4; ++seed) {
    streams.emplace_back([seed, &table] {
      Random random(seed);
      const Video video{"I420", VLVK_I420, 150, 70 + static_cast<int>(seed)};
      Element element;
      element.caps(video);
      std::atomic<bool> done{false};
      std::thread changes([&] {
        for (int i = 0; !done; ++i) {
          element.set("whitening", std::to_string(i % 101));
          element.set("enabled", i % 3 != 0 ? "true" : "false");
          if (i % 8 == 0) element.set("table", i % 16 == 0 ? table.path : "");
          element.get("table");
          std::this_thread::sleep_for(std::chrono::milliseconds(1));  // sanitizers have enough to do
        }
      });
      for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(element.through(video.noise(random)));
      done = true;
      changes.join();
      element.set("enabled", "true");
      element.set("table", "");
      element.set("whitening", std::to_string(seed));
      VlvkSettings settings = defaultSettings();
      settings.whitening = static_cast<int>(seed);
      Buffer input = video.noise(random);
      const Buffer expected = video.expected(engineOf(settings).get(), input.get());
      EXPECT_TRUE(allBytes(element.through(std::move(input)).get()) == allBytes(expected.get()));
    });
  }
  for (std::thread& stream : streams)
    stream.join();
}

}  // namespace
