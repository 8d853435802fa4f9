/// Whitens a frame, in C++11, which the installed headers promise to be enough.
#include <cstdio>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/version.h>

struct NeutralColors : IBeautyResourceLoader {
  int getResFromName(const char*, unsigned char*) override { return 0; }
};

int main() {
  const int width = 64, height = 32;
  std::vector<unsigned char> frame(width * height * 3 / 2, 128);
  NeutralColors colors;
  CFastEdgePreserved filter(4, &colors);
  filter.put_whitenIntensity(60);
  unsigned char* luma = frame.data();
  const int result = filter.processVideo(luma, width, luma + width * height, width, width, height, nullptr, 0, true);
  std::puts(VLVK_VERSION_STRING);
  return result == 0 && luma[0] > 128 && vlvkVersion() == VLVK_VERSION ? 0 : 1;
}
