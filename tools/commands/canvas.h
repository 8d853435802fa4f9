/// The surface that a contact sheet is drawn on: scaled pictures and text.
#ifndef VLVK_TOOLS_COMMANDS_CANVAS_H
#define VLVK_TOOLS_COMMANDS_CANVAS_H

#include <memory>
#include <string>

#include "tools/options/values.h"
#include "tools/picture/picture.h"

struct gdImageStruct;

namespace vlvk::tool {

/// A white surface. Its functions throw Error when memory runs out.
class SheetCanvas {
 public:
  SheetCanvas(int width, int height);

  /// Draws a part of a picture, each pixel the mean of the area that it covers. What is transparent shows white.
  void drawPicture(const Picture& picture, const Region& part, const Region& place);

  /// Size of a letter of writeText, for `scale` 1.
  static int letterWidth();
  static int letterHeight();

  /// Writes a line of ASCII.
  ///
  /// @param x        middle of the line
  /// @param y        middle of the line
  /// @param scale    size of the letters, 1 or more
  /// @param upwards  the line is turned by a quarter and runs from the bottom to the top
  void writeText(const std::string& text, int x, int y, int scale, bool upwards = false);

  /// What was drawn, as an opaque picture.
  Picture picture() const;

 private:
  struct Release {
    void operator()(gdImageStruct* image) const;
  };
  using Image = std::unique_ptr<gdImageStruct, Release>;

  static Image makeImage(int width, int height);

  Image image_;
};

}  // namespace vlvk::tool

#endif
