/// The command `photo`.
#include <utility>

#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/engine/beautify.h"
#include "tools/io/messages.h"

namespace vlvk::tool {

void run(const PhotoOptions& options) {
  requirePictureName(options.out);  // before the work is done
  const Picture original = readPicture(options.in);
  const Look look = readLook(options.look);
  const Picture shown = named(options.in, [&] {
    Picture result = options.showWeight ? weightMap(original, look.mask) : beautify(original, look);
    return options.compare ? sideBySide(original, result) : std::move(result);
  });
  writePicture(options.out, shown, options.quality);
}

}  // namespace vlvk::tool
