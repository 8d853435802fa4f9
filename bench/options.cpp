/// See options.h.
#include "bench/options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vlvk_bench {

std::vector<Size> takeSizes(int* argc, char** argv) {
  constexpr char kOption[] = "--size=";
  std::vector<Size> sizes;
  int kept = 0;
  for (int i = 0; i < *argc; ++i) {
    if (std::strncmp(argv[i], kOption, sizeof kOption - 1) != 0) {
      argv[kept++] = argv[i];
      continue;
    }
    Size size{};
    char rest = 0;
    const int read = std::sscanf(argv[i] + sizeof kOption - 1, "%5dx%5d%c", &size.width, &size.height, &rest);
    if (read != 2 || size.width < 64 || size.height < 64 || size.width % 2 != 0 || size.height % 2 != 0) {
      std::fprintf(stderr, "%s: not an even size of 64x64 or more\n", argv[i]);
      std::exit(2);
    }
    sizes.push_back(size);
  }
  argv[kept] = nullptr;
  *argc = kept;
  if (sizes.empty()) sizes = {{1280, 720}, {1920, 1080}, {3840, 2160}};
  return sizes;
}

}  // namespace vlvk_bench
