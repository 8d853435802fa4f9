/// The way of a resource through a Java stream: every call, and what each failure leaves out.
#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

const Calls kCalls{
    "GetObjectClass weak loader",
    "GetMethodID class of weak loader loadFromName(Ljava/lang/String;)Ljava/io/InputStream;",
    "NewStringUTF some.vlk",
    "CallObjectMethod weak loader loadFromName(Ljava/lang/String;)Ljava/io/InputStream; some.vlk",
    "GetObjectClass stream",  // 4
    "GetMethodID class of stream read([BII)I",
    "NewByteArray 12",
    "CallIntMethod stream read([BII)I array 12 0 12",
    "GetElements array 12",  // 8
    "ReleaseElements array 12",
    "NewByteArray 5",
    "CallIntMethod stream read([BII)I array 5 0 5",
    "GetElements array 5",  // 12
    "ReleaseElements array 5",
    "DeleteLocalRef array 5",
    "DeleteLocalRef array 12",
    "GetMethodID class of stream close()V",  // 16
    "CallVoidMethod stream close()V",
    "DeleteLocalRef stream",
    "DeleteLocalRef class of stream",
    "DeleteLocalRef some.vlk",  // 20
    "DeleteLocalRef class of weak loader",
};

class Resource : public testing::Test {
 protected:
  /// Reads the file into the room that getResFromName asks for; returns the calls.
  Calls load(int result, const Bytes& expected) {
    java_.takeCalls();
    const testing_support::GuardedBuffer dst(1048576, testing_support::Guard::kBehind, 0xC5);
    EXPECT_EQ(vlvk::engineOf(engine_.handle)->getResFromName("some.vlk", dst.data()), result);
    Bytes whole(dst.size(), 0xC5);
    std::copy(expected.begin(), expected.end(), whole.begin());
    EXPECT_TRUE(testing_support::sameBytes(dst.data(), whole.data(), whole.size(), 2048));
    return java_.takeCalls();
  }

  const Bytes kPayload{0x00, 0x5A, 0xFF, 0x01, 0x80};
  FakeJava java_;
  Engine engine_{java_};
};

TEST_F(Resource, IsReadThroughAStreamWhoseEveryStepMayFail) {
  struct Break {
    int call;
    jint given;   ///< by this call: nothing, or the bytes of a read that delivers in pieces or miscounts
    int resumed;  ///< first of the calls that still follow
    int result;
  };
  const Break breaks[] = {{0, 0, 22, -1}, {1, 0, 21, -1}, {2, 0, 21, -1},  {3, 0, 20, -1}, {4, 0, 18, 0},
                          {5, 0, 16, 0},  {6, 0, 16, 0},  {7, -1, 15, 0},  {7, 0, 15, 0},  {7, 11, 15, 0},
                          {8, 0, 15, 0},  {10, 0, 15, 0}, {11, -1, 14, 0}, {11, 0, 14, 0}, {11, 4, 14, 0},
                          {11, 6, 14, 0}, {12, 0, 14, 0}, {16, 0, 18, 0}};
  java_.file = resourceFile({5, 0, 0, 0, 1, 0, 0, 0}, kPayload);
  EXPECT_EQ(load(0, kPayload), kCalls);
  for (const auto& [call, given, resumed, result] : breaks) {
    const std::string& failing = kCalls[static_cast<std::size_t>(call)];
    SCOPED_TRACE(testing::Message() << failing << " gives " << given);
    java_.results = {{failing, given}};
    Calls expected = firstOf(kCalls, call + 1);
    std::copy(kCalls.begin() + resumed, kCalls.end(), std::back_inserter(expected));
    if (call == 4) std::erase(expected, "DeleteLocalRef class of stream");
    EXPECT_EQ(load(result, call == 16 ? kPayload : Bytes{}), expected);
  }
}

TEST_F(Resource, SizesAreTakenFromSignedFactors) {
  const std::pair<std::array<std::uint8_t, 8>, int> sizes[] = {
      // -1: not read
      {{1, 0, 0, 0, 1, 0, 0, 0}, 1},          {{0, 0, 0, 0, 0, 2, 0, 0}, 0},     {{0, 8, 0, 0, 0, 2, 0, 0}, 1048576},
      {{0xFF, 0x08, 0, 0, 1, 0, 0, 0}, 2047}, {{0xFF, 0, 0, 0, 1, 0, 0, 0}, -1}, {{1, 0, 16, 0, 1, 0, 0, 0}, -1},
  };
  for (const auto& [factors, bytes] : sizes) {
    SCOPED_TRACE(testing::PrintToString(factors));
    const Bytes payload = noise(static_cast<std::size_t>(std::max(bytes, 0)), 3);
    java_.file = resourceFile(factors, payload);
    const Calls calls = load(0, payload);
    EXPECT_EQ(calls.size(), bytes < 0 ? 17U : kCalls.size());
    EXPECT_EQ(calls[10], bytes < 0 ? "DeleteLocalRef array 12" : "NewByteArray " + std::to_string(bytes));
  }
}

}  // namespace
}  // namespace bindings_tests
