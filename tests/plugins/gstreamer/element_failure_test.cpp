/// No memory for a frame: an error and no more, and frames after it are processed.
#include <gtest/gtest.h>

#include "tests/plugins/gstreamer/element_rig.h"
#include "tests/support/failing_system.h"

namespace {

using namespace element_rig;  // NOLINT(google-build-using-namespace)

TEST(GstElementFailure, SaysThatThereIsNoMemory) {
  testing_support::Random random(1);
  const Video video{"NV12", VLVK_NV12, 1920, 1080};
  Element element;
  element.caps(video);
  Buffer buffer = video.noise(random);
  testing_support::memoryFault.leastBytes = 4096;  // GLib's own requests are smaller, and would end the process
  testing_support::memoryFault.arm(0, INT_MAX);
  const GstFlowReturn flow = element.push(std::move(buffer));
  testing_support::memoryFault.armed = false;
  EXPECT_EQ(flow, GST_FLOW_ERROR);
  EXPECT_EQ(element.error(), "There is not enough memory for the engine.");
  EXPECT_TRUE(element.through(video.noise(random)));

  const Table table;
  gst_element_set_state(element.element, GST_STATE_NULL);
  element.set("table", table.path);
  testing_support::memoryFault.arm(0, INT_MAX);
  EXPECT_EQ(gst_element_set_state(element.element, GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
  testing_support::memoryFault.armed = false;
  EXPECT_EQ(element.error(), "There is not enough memory for the engine.");
}

}  // namespace
