// Processes an NV21 frame of a file in place, without Java:
//
//   vlvk_reference_frame FRAME WIDTH HEIGHT WHITENING SOFTENING [PICTURE]
//
// PICTURE holds the 1,048,576 bytes of a colour picture; "-" stands for a missing one. Without it the neutral one is
// used.
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>

namespace {

std::vector<char> readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct PictureFile : IBeautyResourceLoader {
  std::string path;

  int getResFromName(const char* /*name*/, unsigned char* dst) override {
    if (path == "-") return -1;
    for (char byte : readFile(path))
      *dst++ = static_cast<unsigned char>(byte);
    return 0;
  }
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 6) return 2;
  std::vector<char> frame = readFile(arguments[1]);
  const int width = std::atoi(arguments[2]);
  const int height = std::atoi(arguments[3]);
  PictureFile picture;
  if (count > 6) picture.path = arguments[6];

  CFastEdgePreserved filter(4, &picture);
  filter.put_whitenIntensity(std::atoi(arguments[4]));
  filter.put_softenSkinIntensity(std::atoi(arguments[5]));
  auto* luma = reinterpret_cast<unsigned char*>(frame.data());
  const int result = filter.processVideo(luma, width, luma + width * height, width, width, height, nullptr, 0, true);
  std::ofstream(arguments[1], std::ios::binary).write(frame.data(), static_cast<std::streamsize>(frame.size()));
  return result;
}
